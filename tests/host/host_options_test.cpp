#include "host/host_options.h"

#include <gtest/gtest.h>

#include "host/ipv4_address.h"

namespace korvane::host {
namespace {

std::string errorOf(const std::vector<std::string>& arguments) {
    try {
        parseHostOptions(arguments);
    } catch (const OptionError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(HostOptions, TakesAddressAndTourInAnyOrder) {
    EXPECT_TRUE(parseHostOptions({}).address.empty());
    EXPECT_EQ(parseHostOptions({"127.0.0.2"}).address, "127.0.0.2");
    const auto options = parseHostOptions({"--attempts", "100", "10.0.0.1", "--tour", "Z:\\out",
                                           "--import", "a.dat", "--console", "c", "--recover"});
    EXPECT_EQ(options.address, "10.0.0.1");
    EXPECT_EQ(options.tourDirectory, "Z:\\out");
    EXPECT_EQ(options.importFile, "a.dat");
    EXPECT_EQ(options.consoleFile, "c");
    EXPECT_EQ(options.attempts, 100);
    EXPECT_TRUE(options.recover);
    EXPECT_FALSE(options.help);
}

TEST(HostOptions, HelpNeedsNothingElse) {
    for (const char* help : {"--help", "-h", "/?"})
        EXPECT_TRUE(parseHostOptions({"--tour", "out", help}).help);
}

TEST(HostOptions, SaysWhatIsWrong) {
    EXPECT_EQ(errorOf({"--loud"}), "unknown option --loud");
    EXPECT_EQ(errorOf({"device"}), "not a device address: device");
    EXPECT_EQ(errorOf({"127.0.0.2", "127.0.0.3"}), "more than one address: 127.0.0.3");
    EXPECT_EQ(errorOf({"127.0.0.2", "--tour"}), "--tour needs a value");
    EXPECT_EQ(errorOf({"127.0.0.2", "--tour", ""}), "--tour needs a value");
    EXPECT_EQ(errorOf({"--tour", "out"}), "--tour needs the device's address");
    EXPECT_EQ(errorOf({"--import", "a.dat"}), "--import is for a tour: give --tour too");
    for (const char* count : {"0", "101", "-1", "3x", "99999999999"})
        EXPECT_EQ(errorOf({"--attempts", count}),
                  std::string("--attempts takes a number from 1 to 100, not ") + count);
}

TEST(DeviceAddress, IsFourPlainNumbersOfOneDevice) {
    for (const char* good : {"1.0.0.0", "127.0.0.2", "192.168.1.20", "223.255.255.255"})
        EXPECT_TRUE(isDeviceAddress(good)) << good;
    for (const char* bad :
         {"",         "1",        "1.2.3",     "1.2.3.4.5",       "1.2.3.",
          ".1.2.3",   "1..2.3",   "1.2.3.256", "1.2.3.0256",      "01.2.3.4",
          "1.2.3.4 ", " 1.2.3.4", "+1.2.3.4",  "1.2.3.-4",        "1.2.3.4x",
          "a.b.c.d",  "0.1.2.3",  "224.0.0.1", "255.255.255.255", "4294967297.0.0.1"})
        EXPECT_FALSE(isDeviceAddress(bad)) << bad;
}

}  // namespace
}  // namespace korvane::host
