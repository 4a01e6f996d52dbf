#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "cli/context.h"
#include "model/configuration.h"

// Where configurations stand: files of either form, the standard streams, devices.

namespace korvane::cli {

enum class Format { Text, Binary };

// What a name says unless it is said: ".json" is text. The standard streams take nothing else: a
// Failure.
Format formatOf(const std::string& name, std::optional<Format> said);

// The standard stream, as a place.
inline constexpr const char* standardStream = "-";

std::filesystem::path pathOf(const std::string& name);

// "device:192.168.1.20" names a device.
std::optional<std::string> deviceIn(const std::string& place);

// All of it, or a Failure.
std::unique_ptr<Configuration> readConfiguration(Context& context, const std::string& place,
                                                 std::optional<Format> format);
std::unique_ptr<Configuration> readConfigurationFile(Context& context, const std::string& name,
                                                     std::optional<Format> format);

// Replaces a file; a Failure leaves the old one.
void writeConfiguration(Context& context, const Configuration& configuration,
                        const std::string& name, std::optional<Format> format);

}  // namespace korvane::cli
