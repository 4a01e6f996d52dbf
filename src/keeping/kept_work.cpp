#include "keeping/kept_work.h"

#include <memory>
#include <system_error>

#include "log/log.h"
#include "model/config_file.h"
#include "model/whole_file.h"

namespace korvane {
namespace {

constexpr const char *cannotKeepEdits = "未设置到设备的修改无法写入磁盘",
                     *cannotBackUp = "设备原有的配置无法备份到磁盘";

// Whether the bytes are a whole file; then what it holds.
bool parse(const std::vector<std::uint8_t>& bytes, Configuration& configuration) {
    return config_file::decode(bytes, configuration) == config_file::ok &&
           config_file::encode(configuration) == bytes;
}

}  // namespace

KeptWork::Bytes KeptWork::current() const {
    return config_file::encode(*model_.configuration());
}

std::filesystem::path KeptWork::unsavedFile() const {
    return model_.deviceFile(u8".unsaved.dat");
}

Backups KeptWork::backups() const {
    const std::filesystem::path file = model_.deviceFile({});
    if (file.empty()) return {{}, {}};
    return {file.parent_path() / "backup", file.filename().u8string()};
}

bool KeptWork::differs(const Bytes& configuration) const {
    return known_ == Known::Uncertain || configuration != device_;
}

void KeptWork::begin(bool fromCache) {
    active_ = true;
    ownFile_ = false;
    written_.clear();
    lastWrite_.reset();
    device_ = current();
    deviceParams_ = model_.deviceParams();
    known_ = fromCache ? Known::Surely : Known::Nothing;
    findLeftOver();
}

// The cache file is written before a save: when both are the same, the save did not come through.
void KeptWork::findLeftOver() {
    const auto configuration = std::make_unique<Configuration>();
    if (readFile(unsavedFile(), config_file::longestFile, leftOver_) != 0) return leftOver_.clear();
    if (!parse(leftOver_, *configuration)) {
        logLine(logWarning, "上次未设置到设备的修改无法读取");
        leftOver_.clear();
    }
    if (leftOver_ == device_) known_ = Known::Uncertain;
}

void KeptWork::end(std::uint32_t ticks) {
    if (!active_) return;
    lastWrite_.reset();
    tend(ticks);
    active_ = false;
}

KeptWork::Notice KeptWork::tend(std::uint32_t ticks) {
    if (!active_) return Notice::None;
    const Bytes now = current();
    const bool edited = differs(now);
    // One that an earlier run left and nobody has decided about is no edit of this run.
    const bool leftAlone = !leftOver_.empty() && now == device_;
    const bool due = !lastWrite_ || ticks - *lastWrite_ >= writePeriodMs;
    if (!edited)
        removeOwn();
    else if (now != written_ && due && !leftAlone)
        write(now, ticks);
    if (!leftOver_.empty()) return Notice::FromLastTime;
    return edited ? Notice::Edited : Notice::None;
}

void KeptWork::write(const Bytes& configuration, std::uint32_t ticks) {
    const std::filesystem::path file = unsavedFile();
    if (file.empty()) return;
    lastWrite_ = ticks;
    if (!makeRoom() || !replaceFile(file, configuration)) return complain(cannotKeepEdits, ticks);
    ownFile_ = true;
    written_ = configuration;
}

// A file that an earlier run left goes to the backups before another takes its place.
bool KeptWork::makeRoom() {
    Bytes earlier;
    if (ownFile_ || readFile(unsavedFile(), config_file::longestFile, earlier) != 0) return true;
    return backups().keep(earlier, clock_());
}

void KeptWork::removeOwn() {
    if (!ownFile_) return;
    std::error_code ignored;
    std::filesystem::remove(unsavedFile(), ignored);
    ownFile_ = false;
    written_.clear();
}

void KeptWork::loaded() {
    device_ = current();
    deviceParams_ = model_.deviceParams();
    known_ = Known::Surely;
}

void KeptWork::saving(std::uint32_t ticks) {
    backUp(ticks);
    if (known_ != Known::Nothing) known_ = Known::Uncertain;
}

// The device's own settings are not sent; of one that nothing else is known of they came with the
// rest.
void KeptWork::saved(int result) {
    if (result != 0) return;
    if (known_ == Known::Nothing) deviceParams_ = model_.deviceParams();
    const auto sent = model_.configuration();
    sent->params = deviceParams_;
    device_ = config_file::encode(*sent);
    known_ = Known::Surely;
}

void KeptWork::sentDeviceParams() {
    const auto held = std::make_unique<Configuration>();
    deviceParams_ = model_.deviceParams();
    if (!parse(device_, *held)) return;
    held->params = deviceParams_;
    device_ = config_file::encode(*held);
}

void KeptWork::backUp(std::uint32_t ticks) {
    if (active_ && known_ != Known::Nothing) keepAsBackup(device_, ticks);
}

void KeptWork::keepAsBackup(const Bytes& configuration, std::uint32_t ticks) {
    if (!backups().keep(configuration, clock_())) complain(cannotBackUp, ticks);
}

void KeptWork::recover(std::uint32_t ticks) {
    const auto configuration = std::make_unique<Configuration>();
    if (leftOver_.empty() || !parse(leftOver_, *configuration)) return;
    const Bytes edited = current();
    if (edited != device_) keepAsBackup(edited, ticks);
    model_.load(*configuration);
    if (!ownFile_) written_ = leftOver_;
    ownFile_ = true;
    leftOver_.clear();
}

void KeptWork::discard(std::uint32_t ticks) {
    if (leftOver_.empty()) return;
    keepAsBackup(leftOver_, ticks);
    if (leftOver_ == device_ && known_ == Known::Uncertain) known_ = Known::Surely;
    leftOver_.clear();
    if (ownFile_) return;
    ownFile_ = true;
    removeOwn();
}

// A disk that takes nothing is told about once in a while, and else no hindrance.
void KeptWork::complain(const char* what, std::uint32_t ticks) {
    if (lastComplaint_ && ticks - *lastComplaint_ < complaintPeriodMs) return;
    lastComplaint_ = ticks;
    logLine(logWarning, "%s", what);
}

}  // namespace korvane
