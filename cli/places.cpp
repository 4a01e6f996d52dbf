#include "cli/places.h"

#include <vector>

#include "cli/device.h"
#include "cli/failure.h"
#include "model/channel_text.h"
#include "model/config_file.h"
#include "model/object_bytes.h"
#include "model/whole_file.h"
#include "text_form/syntax.h"
#include "text_form/text_form.h"

namespace korvane::cli {
namespace {

constexpr std::string_view devicePrefix = "device:";

using Bytes = std::vector<std::uint8_t>;

Bytes bytesIn(const std::string& name, std::size_t most) {
    Bytes bytes;
    const int result = readFile(pathOf(name), most, bytes);
    if (result == file_result::cannotOpen)
        throw Failure(ExitCode::File, name + " could not be opened");
    if (result != 0) throw Failure(ExitCode::File, name + " could not be read");
    return bytes;
}

std::string contentOf(Context& context, const std::string& name) {
    if (name == standardStream) return context.terminal.input();
    const Bytes bytes = bytesIn(name, text_form::text_limits::bytes + 1);
    return {bytes.begin(), bytes.end()};
}

std::unique_ptr<Configuration> fromText(Context& context, const std::string& name) {
    auto read = std::make_unique<Configuration>();
    const auto problem = text_form::read(contentOf(context, name), *read);
    if (problem) throw Failure(ExitCode::File, name + ": " + problem->sentence());
    return read;
}

std::unique_ptr<Configuration> fromBinary(Context& context, const std::string& name) {
    int result = config_file::ok;
    auto read = config_file::decodeWhole(bytesIn(name, config_file::longestFile), result);
    if (!read)
        throw Failure(ExitCode::File, name + (result == config_file::unknownVersion
                                                  ? " is no configuration file"
                                                  : " has a wrong number of input channels"));
    for (const InputChannelRecord& channel : read->channelsLeftOut)
        context.terminal.note(name + ": more than " + std::to_string(limits::inputChannels) +
                              " input channels, left out: " + channelName(channel));
    return read;
}

// A file is replaced as a whole, which would take away what is no ordinary one, such as a device.
void requireReplaceable(const std::string& name) {
    std::error_code ignored;
    const auto status = std::filesystem::status(pathOf(name), ignored);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        throw Failure(ExitCode::File, name + " is no ordinary file");
}

}  // namespace

Format formatOf(const std::string& name, std::optional<Format> said) {
    const bool stream = name == standardStream;
    if (stream && said == Format::Binary)
        throw Failure(ExitCode::CommandLine, "the standard streams take the text form only");
    if (said) return *said;
    return stream || name.ends_with(".json") ? Format::Text : Format::Binary;
}

std::filesystem::path pathOf(const std::string& name) {
    return std::u8string(name.begin(), name.end());
}

std::optional<std::string> deviceIn(const std::string& place) {
    if (!place.starts_with(devicePrefix)) return std::nullopt;
    return place.substr(devicePrefix.size());
}

std::unique_ptr<Configuration> readConfiguration(Context& context, const std::string& place,
                                                 std::optional<Format> format) {
    if (const auto address = deviceIn(place)) return fetchFrom(context, *address);
    return readConfigurationFile(context, place, format);
}

std::unique_ptr<Configuration> readConfigurationFile(Context& context, const std::string& name,
                                                     std::optional<Format> format) {
    return formatOf(name, format) == Format::Text ? fromText(context, name)
                                                  : fromBinary(context, name);
}

void writeConfiguration(Context& context, const Configuration& configuration,
                        const std::string& name, std::optional<Format> format) {
    const bool asText = formatOf(name, format) == Format::Text;
    const std::string text = asText ? text_form::write(configuration) : std::string();
    if (name == standardStream) return context.terminal.write(text);
    requireReplaceable(name);
    const Bytes bytes =
        asText ? Bytes(text.begin(), text.end()) : config_file::encode(configuration);
    if (!replaceFile(pathOf(name), bytes))
        throw Failure(ExitCode::File, name + " could not be written");
}

}  // namespace korvane::cli
