#include "simulator/network_settings.h"

#include <algorithm>

#include "model/field_text.h"

namespace korvane {
namespace {

// They are whatever a panel sent.
std::string shown(const DeviceParamBlock::Text& field) {
    std::string text = fieldText(field);
    std::ranges::replace_if(
        text, [](char c) { return c < ' ' || c > '~'; }, '?');
    return text.empty() ? "-" : text;
}

std::string describe(const DeviceParamBlock::Port& port, const DeviceParamBlock::Text& mac) {
    return shown(port.address) + " mask " + shown(port.subnetMask) + " gateway " +
           shown(port.gateway) + " MAC " + shown(mac);
}

}  // namespace

std::string describe(const DeviceParamBlock& params) {
    return "control port " + describe(params.controlPort, params.controlMac) + ", service port " +
           describe(params.servicePort, params.serviceMac) + ", management host " +
           shown(params.managementHost);
}

}  // namespace korvane
