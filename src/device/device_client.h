#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "device/command_frame.h"
#include "device/command_table.h"
#include "device/device_link.h"
#include "device/exchange_lock.h"
#include "device/status_records.h"
#include "model/config_image.h"
#include "model/config_model.h"

namespace korvane {

// What an exchange returns beside 0 (done) and the device's own status word, which is positive. A
// status word above INT_MAX is passed on as INT_MAX: a refusal it stays, whatever its bits.
namespace link_result {
inline constexpr int sendFailed = -1;   // also: the answer is for another command, or is no frame,
                                        // or the record list's length is wrong; or no Start yet
inline constexpr int noAnswer = -2;     // none in time, or a long answer that is not whole
inline constexpr int wrongLength = -3;  // the answer's payload is not what its command has
inline constexpr int openFailed = -4;   // Start only
inline constexpr int unreachable = -8;  // and the device does not answer ICMP either
}  // namespace link_result

// The request/answer link to one device. One exchange at a time, whoever asks.
class DeviceClient {
  public:
    explicit DeviceClient(DeviceLink& link);

    // Opens the link to the dotted `address`. An unusable address starts as well: its exchanges
    // fail. 0 or openFailed.
    int Start(const std::string& address);
    // Ends an exchange under way and closes the link. Always 0.
    int Stop();

    // Whether this thread is in an exchange; and, once it has been ended there by force, the end of
    // its hold on the link.
    bool heldBy(std::thread::id thread) const { return lock_.ownedBy(thread); }
    void takeFrom(std::thread::id thread) { lock_.takeFrom(thread); }
    // After a fault on the calling thread, perhaps amid an exchange: it holds the link no longer,
    // and the next exchange begins with the defaults.
    void abandonExchange();

    // Sends `request` under `code` and waits for the answer; a failed transfer is tried again while
    // attempts are left, after one ICMP check. On success the answer's payload stands at the start
    // of `response`, which holds at least what the command table expects; on failure `response` is
    // unchanged, and the log gets a line. A code that the table does not know goes out empty and
    // comes back unchecked.
    int Exchange(std::uint32_t code, std::span<const std::uint8_t> request,
                 std::span<std::uint8_t> response);

    enum class Timeout { Send = 0, Receive = 1, Defaults = 2 };
    // Milliseconds; Defaults restores both: 2,000 to send, 3,000 to receive.
    void SetTimeout(std::uint32_t value, Timeout which);

    // Tries of one exchange.
    static constexpr std::uint32_t defaultAttempts = 2;
    std::uint32_t attempts = defaultAttempts;

    // The commands, by the table's names; results are Exchange's. Records, images and blocks are in
    // network order both ways, single numbers in host order. What fails leaves its out value alone.
    int SetInputChannels(const FlatChannelList& channels);
    int GetInputChannels(FlatChannelList& channels);  // more than 60 are cut to 60
    int SetDeviceParams(const DeviceParamBlock& params);
    int GetDeviceParams(DeviceParamBlock& params);
    int ApplyDeviceParams();
    int SetServiceDescriptions(const ServiceDescriptionImage& image);
    int GetServiceDescriptions(ServiceDescriptionImage& image);

    // One block each, of which the device calls some by their size or a letter: 624 is the network
    // information, A and B the continuous and the short-time frames, C and D their services'
    // frequencies, 264 the versions, 92 conditional access, 72 the output parameters. Begin… and
    // End… carry the image's transfer byte.
    int BeginConfigSet(const ConfigImage& image);
    int SetImageHeader(const ConfigImage& image);
    int SetImageBlock624(const ConfigImage& image);
    int SetImageBlockA(const ConfigImage& image);
    int SetImageBlockC(const ConfigImage& image);
    int SetImageBlock264(const ConfigImage& image);
    int SetImageBlock92(const ConfigImage& image);
    int SetImageBlock72(const ConfigImage& image);
    int SetImageBlockB(const ConfigImage& image);
    int SetImageBlockD(const ConfigImage& image);
    int EndConfigSet(const ConfigImage& image);
    int BeginConfigGet(ConfigImage& image);
    int GetImageHeader(ConfigImage& image);
    int GetImageBlock624(ConfigImage& image);
    int GetImageBlockA(ConfigImage& image);
    int GetImageBlockC(ConfigImage& image);
    int GetImageBlock264(ConfigImage& image);
    int GetImageBlock92(ConfigImage& image);
    int GetImageBlock72(ConfigImage& image);
    int GetImageBlockB(ConfigImage& image);
    int GetImageBlockD(ConfigImage& image);
    int EndConfigGet(ConfigImage& image);

    // A block beside the image that the save and load sequences do not use: a number and 972 bytes.
    struct Block2002 {
        std::uint16_t value;
        std::array<std::uint8_t, 972> bytes;
    };
    static_assert(sizeof(Block2002) == detail::block2002Size);
    int SetImageBlock2002(const Block2002& block);
    int GetImageBlock2002(Block2002& block);

    int ActivateConfig();
    int RebootDevice();
    int RestoreDefaults();

    // One attempt each, with a receive timeout of 500 ms (GetDeviceStatus: 1,000 ms).
    int GetHeartbeat(std::uint16_t& value);
    int GetDeviceStatus(DeviceStatusImage& image);
    int GetStatusSummary(std::uint8_t selector, StatusSummary& summary);

    // `name` is cut to the 255 bytes that its field holds beside the terminator.
    int BeginUpgrade(const std::string& name, std::uint32_t length, std::uint32_t crc);
    int UpgradeData(std::uint32_t offset, std::span<const std::uint8_t> piece);
    int FinishUpgrade();
    int GetUpgradeState(std::uint8_t& state);  // 0 finished, else still working

  private:
    // A frame in one of the two buffers: its bytes, header included.
    using Buffer = std::unique_ptr<std::uint8_t[]>;

    struct Outcome {
        int result;
        std::uint32_t attempts;  // that were made
    };

    Outcome exchangeQuietly(std::uint32_t code, std::span<const std::uint8_t> request,
                            std::span<std::uint8_t> response);

    std::size_t buildRequest(std::uint32_t code, std::span<const std::uint8_t> payload);
    Outcome transferWithRetries(std::size_t requestLength);
    int transfer(std::size_t requestLength);
    void drain();
    int sendRequest(std::size_t length);
    int receiveAnswer();
    int receiveTrain(std::size_t total);
    int decodeAnswer(std::uint32_t code, std::span<std::uint8_t> response);

    int exchange(KnownCommand command, std::span<const std::uint8_t> request = {},
                 std::span<std::uint8_t> response = {});
    int statusExchange(KnownCommand command, std::uint32_t timeoutMs,
                       std::span<const std::uint8_t> request, std::span<std::uint8_t> response);
    int sendBlock(KnownCommand command, const ConfigImage& image);
    int fetchBlock(KnownCommand command, ConfigImage& image);

    DeviceLink& link_;
    ExchangeLock lock_;  // held for a whole exchange; the status commands hold it around theirs
    bool open_ = false;
    std::uint32_t address_ = 0;  // network byte order
    std::string addressText_;
    std::uint32_t sendTimeoutMs_;
    std::uint32_t receiveTimeoutMs_;
    Buffer request_;
    Buffer response_;
    std::size_t received_ = 0;  // bytes of response_ that the last transfer filled
};

}  // namespace korvane
