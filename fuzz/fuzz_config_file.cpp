// The configuration file loader, fed with any bytes: it must refuse them or take them, and what it
// took, of either layout, must come back the same from a file of our own.

#include <cstring>

#include "fresh.h"
#include "model/config_file.h"
#include "model/config_model.h"

namespace {

using namespace korvane;
using fuzz::fresh;
using fuzz::require;

// As ConfigModel::configuration, but at a place that is there already.
void takeFrom(const ConfigModel& model, Configuration& content) {
    content.channels = model.flatChannels();
    encodeImage(model.tables(), content.image);
    content.params = model.deviceParams();
    encodeDescriptions(model.tables(), {}, content.descriptions);
}

template <class T>
bool sameBytes(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// All but the descriptions: those of short-time services are written, but never read.
bool sameTables(const Configuration& a, const Configuration& b) {
    return a.channels == b.channels && sameBytes(a.image, b.image) && sameBytes(a.params, b.params);
}

// 700 KB from the heap take longer than all else: only what came with all its parts gets a file.
void requireFiled(const Configuration& written) {
    static Configuration read;
    require(config_file::decode(config_file::encode(written), read) == config_file::ok);
    require(sameTables(written, read) && sameBytes(written.descriptions, read.descriptions));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto& content = fresh<Configuration>();
    if (config_file::decode({data, size}, content) != config_file::ok) return 0;
    auto& model = fresh<ConfigModel>();
    model.load(content);

    static Configuration written, again;
    takeFrom(model, written);
    if (content.hasDescriptions) requireFiled(written);

    // Into the model that holds the same already: nothing may be left of it, or come twice.
    model.load(written);
    takeFrom(model, again);
    require(sameTables(written, again));
    return 0;
}
