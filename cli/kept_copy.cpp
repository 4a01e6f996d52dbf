#include "cli/kept_copy.h"

#include <algorithm>

#include "cli/failure.h"
#include "cli/places.h"
#include "model/config_file.h"
#include "model/whole_file.h"

namespace korvane::cli {
namespace {

std::string freeName(const std::string& start) {
    constexpr std::string_view extension = ".dat";
    std::string name = start;
    for (int i = 2; std::filesystem::exists(pathOf(name.append(extension))); ++i)
        name = start + '-' + std::to_string(i);
    return name;
}

}  // namespace

std::string keepCopy(const Configuration& configuration, const std::string& folder,
                     const std::string& address, std::string time) {
    std::erase(time, ':');
    std::ranges::replace(time, ' ', '-');
    const std::string name = freeName((folder == "." ? "" : folder + '/') + address + '-' + time);
    if (!replaceFile(pathOf(name), config_file::encode(configuration)))
        throw Failure(ExitCode::File, name + " could not be written: without it nothing is sent");
    return name;
}

}  // namespace korvane::cli
