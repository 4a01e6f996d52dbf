// Encoding and decoding a completely full configuration image, byte order included, against one
// copy of its 629,896 bytes.

#include <memory>

#include "bench/ratio.h"
#include "model/config_image.h"
#include "support/configurations.h"

using namespace korvane;

int main() {
    const auto full = test::randomImage(1, true);
    const auto tables = std::make_unique<ConfigTables>();
    decodeImage(*full, *tables);
    toNetworkOrder(*full);
    const auto image = std::make_unique<ConfigImage>(*full);
    // Also gives each decoding an image in network order.
    const auto copy = [&] {
        std::memcpy(static_cast<void*>(image.get()), full.get(), sizeof(ConfigImage));
    };
    const auto encode = [&] {
        encodeImage(*tables, *image);
        toNetworkOrder(*image);
    };
    const auto decode = [&] {
        fromNetworkOrder(*image);
        decodeImage(*image, *tables);
    };
    const bool encodeMet = bench::meets("encode / copy", 4, 1000, encode, copy);
    const bool decodeMet = bench::meets("decode / copy", 4, 1000, decode, copy);
    return encodeMet && decodeMet ? 0 : 1;
}
