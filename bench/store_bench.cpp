// Adding, updating and removing a frame in the largest model there is, 40 frames of 8 services in
// both tables, against copying the tables once.

#include <cstdlib>
#include <memory>

#include "bench/ratio.h"
#include "model/config_model.h"
#include "support/configurations.h"

using namespace korvane;

int main() {
    const auto model = std::make_unique<ConfigModel>();
    test::loadImage(*model, *test::randomImage(1, true));
    const auto copy = std::make_unique<ConfigTables>();
    const auto copyTables = [&] { *copy = model->tables(); };
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
    return bench::meets("edit a frame / copy the tables", 3, 1000, edit, copyTables) ? 0 : 1;
}
