#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <optional>
#include <vector>

#include "keeping/backups.h"
#include "model/config_model.h"

namespace korvane {

// Keeps what an operator did until the device has it. Knows what the device was last known to hold,
// and so whether the panel's configuration differs; keeps one that does in a file beside the cache
// file, "<key>.unsaved.dat", so that neither the host's end nor a power cut loses it; and keeps
// what the device held before it is overwritten. Not locked: on one thread at a time, that which
// has the model.
class KeptWork {
  public:
    enum class Notice {
        None,
        Edited,       // the configuration differs from what the device holds
        FromLastTime  // an earlier run left one that did: recover() or discard()
    };
    using WallClock = std::time_t (*)();

    static constexpr std::uint32_t writePeriodMs = 10'000, complaintPeriodMs = 3'600'000;

    // `model` outlives this object. Ticks, in milliseconds, may wrap.
    explicit KeptWork(
        ConfigModel& model, WallClock clock = [] { return std::time(nullptr); })
        : model_(model), clock_(clock) {}

    // A device was started, and the model is what its cache file holds, if there was one.
    void begin(bool fromCache);
    // It is left; the model still is what it was. Writes what differs.
    void end(std::uint32_t ticks);

    // Looks at the model, and writes or removes the file: to be called often. While the
    // configuration differs it is written when it changes, at most once a period.
    Notice tend(std::uint32_t ticks);

    // What came from the device, or goes there. Between saving() and a saved() without failure
    // nobody knows what it holds.
    void loaded();
    void saving(std::uint32_t ticks);
    void saved(int result);
    void sentDeviceParams();

    // Keeps what the device was last known to hold, for it may be gone soon.
    void backUp(std::uint32_t ticks);
    // Empty for a device that cannot name a file.
    std::filesystem::path backupFolder() const { return backups().folder(); }

    // Takes in what an earlier run left, and what is edited now becomes a backup; or the other way
    // round.
    void recover(std::uint32_t ticks);
    void discard(std::uint32_t ticks);

  private:
    using Bytes = std::vector<std::uint8_t>;
    enum class Known { Nothing, Uncertain, Surely };

    Bytes current() const;
    std::filesystem::path unsavedFile() const;
    Backups backups() const;
    bool differs(const Bytes& configuration) const;
    void findLeftOver();
    void write(const Bytes& configuration, std::uint32_t ticks);
    bool makeRoom();
    void removeOwn();
    void keepAsBackup(const Bytes& configuration, std::uint32_t ticks);
    void complain(const char* what, std::uint32_t ticks);

    ConfigModel& model_;
    WallClock clock_;
    bool active_ = false;
    Known known_ = Known::Nothing;
    Bytes device_;                     // what it was last known to hold, as a file
    DeviceParamBlock deviceParams_{};  // a save does not send them
    Bytes leftOver_;                   // from an earlier run, until it is decided about
    bool ownFile_ = false;             // the file is of this run
    Bytes written_;                    // what it holds
    std::optional<std::uint32_t> lastWrite_, lastComplaint_;  // ticks
};

}  // namespace korvane
