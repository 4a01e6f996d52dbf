// The reader of the text form, fed with any bytes: it refuses them with a sentence, or what it
// takes comes back the same from a text of our own. An input that begins with a version mark is a
// configuration file, which must come back through its text byte for byte.

#include <algorithm>
#include <span>

#include "fresh.h"
#include "model/config_file.h"
#include "text_form/text_form.h"

namespace {

using namespace korvane;
using fuzz::fresh;
using fuzz::require;

struct Read : Configuration {};
struct Again : Configuration {};

void requireTrip(const Configuration& content) {
    auto& again = fresh<Again>();
    const std::string text = text_form::write(content);
    require(!text_form::read(text, again));
    require(config_file::encode(again) == config_file::encode(content));
    require(text_form::write(again) == text);
}

// A file that is a whole one of the current layout already.
void requireKept(std::span<const std::uint8_t> file, const Configuration& content) {
    const auto bytes = config_file::encode(content);
    const auto mark = [](auto& all) { return std::span(all).first(sizeof(std::uint32_t)); };
    if (file.size() == bytes.size() && std::ranges::equal(mark(file), mark(bytes)))
        require(std::ranges::equal(file, bytes));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    int result = 0;
    if (const auto file = config_file::decodeWhole({data, size}, result)) {
        requireKept({data, size}, *file);
        requireTrip(*file);
        return 0;
    }
    auto& content = fresh<Read>();
    const auto problem = text_form::read({reinterpret_cast<const char*>(data), size}, content);
    if (problem)
        require(!problem->reason.empty());
    else
        requireTrip(content);
    return 0;
}
