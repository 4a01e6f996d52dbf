// The image decoders, fed with any bytes as if a device had sent them: whatever they make of them
// is a configuration that encodes and decodes to itself.

#include <algorithm>
#include <cstring>

#include "fresh.h"
#include "model/config_image.h"

namespace {

using namespace korvane;
using fuzz::fresh;

struct Images {
    ConfigImage image{};
    ServiceDescriptionImage descriptions{};
};

struct Once : Images {};
struct Twice : Images {};

// As much as there is, from the front and from the back.
void take(const std::uint8_t* data, std::size_t size, Images& images) {
    std::memcpy(&images.image, data, std::min(size, sizeof images.image));
    fromNetworkOrder(images.image);
    const std::size_t tail = std::min(size, sizeof images.descriptions);
    std::memcpy(&images.descriptions, data + size - tail, tail);
    fromNetworkOrder(images.descriptions);
}

void recode(const Images& from, Images& to) {
    auto& tables = fresh<ConfigTables>();
    decodeImage(from.image, tables);
    decodeDescriptions(from.descriptions, tables);
    encodeImage(tables, to.image);
    encodeDescriptions(tables, {}, to.descriptions);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto& received = fresh<Images>();
    auto& once = fresh<Once>();
    auto& twice = fresh<Twice>();
    take(data, size, received);
    recode(received, once);
    recode(once, twice);
    fuzz::require(std::memcmp(&once.image, &twice.image, sizeof once.image) == 0);
    return 0;
}
