#include "simulator/device_state.h"

#include <cstring>

namespace korvane {

namespace {

template <class T>
bool sameBytes(const T& a, const T& b) {
    static_assert(std::is_trivially_copyable_v<T>);
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}

}  // namespace

bool operator==(const DeviceConfiguration& a, const DeviceConfiguration& b) {
    return sameBytes(a.image, b.image) && sameBytes(a.descriptions, b.descriptions) &&
           a.block2002 == b.block2002 && a.channels == b.channels;
}

bool operator==(const DeviceState& a, const DeviceState& b) {
    return a.set == b.set && a.applied == b.applied && sameBytes(a.paramsSet, b.paramsSet) &&
           sameBytes(a.paramsApplied, b.paramsApplied);
}

std::unique_ptr<ConfigTables> decodeConfiguration(const DeviceConfiguration& configuration) {
    auto tables = std::make_unique<ConfigTables>();
    const auto image = std::make_unique<ConfigImage>(configuration.image);
    fromNetworkOrder(*image);
    decodeImage(*image, *tables);
    const auto descriptions = std::make_unique<ServiceDescriptionImage>(configuration.descriptions);
    fromNetworkOrder(*descriptions);
    decodeDescriptions(*descriptions, *tables);
    return tables;
}

}  // namespace korvane
