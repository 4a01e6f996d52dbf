#include "device/icmp_socket.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

// Whether this computer may be asked depends on who runs the tests; that it is silent would be
// wrong in any case.
TEST(IcmpSocket, TellsSilenceFromWhatItCannotKnow) {
    EXPECT_NE(echoOf("127.0.0.1"), Echo::None);
    EXPECT_EQ(echoOf("no address"), Echo::Unknown);
}

}  // namespace
}  // namespace korvane
