// What the model's largest pieces of work cost, against one copy of what they work on: encoding and
// decoding a completely full configuration image of 629,896 bytes, byte order included; and adding,
// updating and removing a frame in the largest model there is, 40 frames of 8 services in both
// tables.

#include <cstdlib>
#include <memory>

#include "bench/ratio.h"
#include "model/config_model.h"
#include "support/configurations.h"

using namespace korvane;

int main() {
    const auto full = test::randomImage(1, true);
    const auto model = std::make_unique<ConfigModel>();
    test::loadImage(*model, *full);
    const auto tables = copyOf(model->tables());
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
    const auto copyTables = [&] { *tables = model->tables(); };
    // The continuous table renumbers and rebuilds after each change; at its front every frame
    // moves.
    model->removeFrame(TableKind::Continuous, 39);
    const MultiplexFrame empty;
    const auto edit = [&] {
        if (model->addFrame(TableKind::Continuous, empty, 0) != 0 ||
            model->updateFrame(TableKind::Continuous, 0, empty) != 0 ||
            model->removeFrame(TableKind::Continuous, 0) != 0)
            std::exit(1);  // an edit was refused
    };
    const bool met[] = {bench::meets("encode / copy", 4, 1000, encode, copy),
                        bench::meets("decode / copy", 4, 1000, decode, copy),
                        bench::meets("edit a frame / copy the tables", 3, 1000, edit, copyTables)};
    return met[0] && met[1] && met[2] ? 0 : 1;
}
