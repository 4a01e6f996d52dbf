#pragma once

#include <cstdint>
#include <string_view>

#include "model/config_model.h"
#include "model/ipv4.h"
#include "model/prompts.h"

namespace korvane {

// The rules that a value must keep before an editor stores it. A check that fails says why in a
// message of its own and returns a negative code; one that passes returns 0 and says nothing. None
// changes the configuration. Texts are GBK bytes like those of the records.
class ConfigChecks {
  public:
    ConfigChecks(const ConfigModel& model, Prompts& prompts) : model_(model), prompts_(prompts) {}

    // -1: not a multicast address (only looked at with `checkMulticast`); -2: another channel of
    // the flat list has both.
    int checkInputChannelAddress(const Ipv4& address, std::uint16_t port, bool checkMulticast);
    int checkCountryCode(std::string_view text);  // at most 3 characters
    int checkNetworkName(std::string_view text);  // at most 256 bytes
    // -2: above 39; -1: a frame of the continuous table has it.
    int checkFrameId(std::uint16_t id);
    // Whether `count` more slots (its low 8 bits) fit behind the last one that the continuous
    // table's frames use.
    int checkTimeSlotCount(std::uint32_t count);
    // -1: above 65535; -2: a service of another continuous frame than that at `frameIndex` has it.
    int checkServiceId(int frameIndex, std::uint32_t id);
    // Neither the continuous table nor that of `kind` may have the pair already.
    int checkServiceFrequencyPair(std::uint16_t serviceId, std::uint8_t channelNumber,
                                  TableKind kind = TableKind::Continuous);
    // -1: the CA system id is there; -2: the service id is. Each only looked at with its flag.
    int checkCaSystem(std::uint16_t caSystemId, std::uint16_t serviceId, bool checkCaId,
                      bool checkServiceId);
    int checkPid(std::uint32_t pid);  // below 8192
    // -1: not 12 characters; -2: one that is neither digit nor letter; -3: a group address. Letters
    // beyond F count on from 15 and fold into the byte: devices were configured so.
    int checkMacAddress(std::string_view text);
    int checkMulticastAddress(const Ipv4& address);  // 0.0.0.0 or 224-239
    int checkNeighbourNetwork(const NeighbourNetwork& network);
    int checkFrequencyPoint(const FrequencyPoint& point);
    int checkDataUnitType(std::uint8_t type);       // 128-159
    int checkDeviceNumber(std::uint32_t number);    // below 65536
    int checkSystemBitRate(std::uint32_t bitRate);  // bit/s, its whole kbit/s as limits say

  private:
    int refuse(std::string_view message, int result);

    const ConfigModel& model_;
    Prompts& prompts_;
};

}  // namespace korvane
