// The configuration file loader, fed with any bytes: it must refuse them or take them, and what it
// took must come back the same from a file of our own.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>

#include "model/config_image.h"
#include "model/config_model.h"
#include "support/scratch_directory.h"

namespace {

using namespace korvane;

void require(bool condition) {
    if (!condition) std::abort();
}

std::unique_ptr<ConfigImage> imageOf(const ConfigModel& model) {
    auto image = std::make_unique<ConfigImage>();
    encodeImage(model.tables(), *image);
    return image;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::ScratchDirectory scratch;
    const std::filesystem::path path = scratch.path() / "configuration.dat";
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));

    auto model = std::make_unique<ConfigModel>();
    if (model->loadConfigFile(path, true) != 0) return 0;
    require(model->saveConfigFile(path) == 0);
    auto again = std::make_unique<ConfigModel>();
    require(again->loadConfigFile(path, true) == 0);
    require(again->flatChannels() == model->flatChannels());
    require(std::memcmp(imageOf(*again).get(), imageOf(*model).get(), sizeof(ConfigImage)) == 0);
    return 0;
}
