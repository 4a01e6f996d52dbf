// The image decoders, fed with any bytes as if a device had sent them: whatever they make of them
// is a configuration that encodes and decodes to itself.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "model/config_image.h"

using namespace korvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto image = std::make_unique<ConfigImage>();
    std::memcpy(static_cast<void*>(image.get()), data, std::min(size, sizeof *image));
    fromNetworkOrder(*image);
    auto tables = std::make_unique<ConfigTables>();
    decodeImage(*image, *tables);

    auto descriptions = std::make_unique<ServiceDescriptionImage>();
    const std::size_t tail = std::min(size, sizeof *descriptions);
    std::memcpy(static_cast<void*>(descriptions.get()), data + size - tail, tail);
    fromNetworkOrder(*descriptions);
    decodeDescriptions(*descriptions, *tables);
    encodeDescriptions(*tables, *descriptions);

    encodeImage(*tables, *image);
    auto again = std::make_unique<ConfigTables>();
    decodeImage(*image, *again);
    decodeDescriptions(*descriptions, *again);
    auto imageAgain = std::make_unique<ConfigImage>();
    encodeImage(*again, *imageAgain);
    if (std::memcmp(image.get(), imageAgain.get(), sizeof *image) != 0) std::abort();
    return 0;
}
