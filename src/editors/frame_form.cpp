#include "editors/frame_form.h"

#include <algorithm>

#include "editors/sub_frame_form.h"
#include "editors/time_slot_form.h"
#include "model/capacity.h"
#include "model/edit_result.h"
#include "model/frame_text.h"
#include "resources/ids.h"

namespace korvane {
namespace {

constexpr std::size_t noSubFrame = limits::services;

MultiplexFrame proposedFrame(const ConfigModel& model) {
    MultiplexFrame frame;
    frame.id = static_cast<std::uint8_t>(std::max(model.highestFrameId(TableKind::Continuous),
                                                  model.highestFrameId(TableKind::ShortTime)) +
                                         1);
    frame.rsRate = frame.byteInterleaving = frame.modulation = 1;
    return frame;
}

std::string countText(std::size_t count) {
    return "共" + std::to_string(count) + "个";
}

std::string bitRate(std::int64_t bitsPerSecond) {
    return std::to_string(bitsPerSecond) + " bps";
}

// What the services of a frame need of its channel, in bit/s.
struct Load {
    std::int64_t capacity, used = 0;

    explicit Load(const MultiplexFrame& frame) : capacity(frameCapacity(frame) * 8) {
        for (const ServiceRecord& service : frame.services) used += service.bandwidth;
    }
    bool isOver() const { return used > capacity; }
    // Above 100 whenever it is over.
    int percent() const {
        if (isOver()) return 101;
        return capacity == 0 ? 0 : static_cast<int>(used * 100 / capacity);
    }
    std::string text() const {
        return "信道带宽：" + bitRate(capacity) + "，已用：" + bitRate(used) + "，" +
               (isOver() ? "超出：" : "剩余：") + bitRate(std::abs(capacity - used));
    }
};

bool announces(const MultiplexFrame& frame) {
    return frame.id != 0;
}

// How many entries the continuous services' table would have with this frame in its place.
std::size_t pairsWith(const MultiplexFrame& frame, int index, const ConfigTables& tables) {
    const auto& table = tables.continuous;
    std::size_t pairs = announces(frame) ? frame.services.size() : 0;
    for (std::size_t i = 0; i < table.frames.size(); ++i)
        if (static_cast<int>(i) != index && announces(table.frames[i]))
            pairs += table.frames[i].services.size();
    for (const ServiceFrequencyEntry& entry : tables.continuousServices.entries)
        if (entry.channelNumber != table.header[1]) ++pairs;
    return pairs;
}

}  // namespace

FrameForm::FrameForm(const Editing& editing, const ConfigModel::FramePlace& place, int before)
    : editing_(editing),
      place_(place),
      slots_(editing.model, place, before),
      frame_(proposedFrame(editing.model)),
      editedSubFrame_(noSubFrame) {
    if (editing.model.getFrame(place.kind, place.index, frame_) == 0) openedId_ = frame_.id;
    enteredId_ = frame_.id;
}

int FrameForm::refuse(std::string_view message, int result) {
    editing_.prompts.warning(message);
    return result;
}

int FrameForm::dialog() const {
    return IDD_FRAME;
}

void FrameForm::describe(Fields& fields) {
    fields.number(IDC_FRAME_ID, enteredId_);
    fields.choice(IDC_RS_RATE, frame_.rsRate, rsCodeRateNames, "RS码速率");
    fields.choice(IDC_BYTE_INTERLEAVING, frame_.byteInterleaving, byteInterleaveNames,
                  "字节交织模式");
    fields.choice(IDC_MODULATION, frame_.modulation, modulationNames, "调制方式");
    fields.choice(IDC_LDPC_RATE, frame_.ldpcRate, ldpcRateNames, "LDPC编码速率");
    fields.choice(IDC_SCRAMBLING, frame_.scrambling, scramblingModeNames, "扰码方式");
}

void FrameForm::entered(int, FieldControls& controls) {
    const Load load(frame_);
    controls.setText(IDC_TIME_SLOT_COUNT, countText(frame_.timeSlots.size()));
    controls.setText(IDC_SUB_FRAME_COUNT, countText(frame_.services.size()));
    controls.setText(IDC_CAPACITY_TEXT, load.text());
    controls.setLevel(IDC_CAPACITY_BAR, load.percent());
}

int FrameForm::accept() {
    frame_.id = frameId();
    if (frame_.timeSlots.empty()) return refuse("时隙数不能为0", IDC_TIME_SLOTS);
    if (openedId_ != frame_.id && !idIsFree()) return IDC_FRAME_ID;
    if (!servicesFit() || !pairsFit()) return IDC_SUB_FRAMES;
    return slotsFit(slots_, frame_.timeSlots.size(), editing_.prompts) ? 0 : IDC_TIME_SLOTS;
}

// The model's check looks at the continuous table alone.
bool FrameForm::idIsFree() {
    if (ConfigChecks(editing_.model, editing_.prompts).checkFrameId(frame_.id) != 0) return false;
    const auto& others = editing_.model.tables().shortTime.frames;
    return std::ranges::find(others, frame_.id, &MultiplexFrame::id) == others.end() ||
           refuse("已有相同标识的复用帧", false);
}

bool FrameForm::servicesFit() {
    std::uint32_t total = 0;
    std::int32_t over = 0;
    if (!totalBandwidthOverflows(frame_, total, &over)) return true;
    return refuse("总业务带宽(" + std::to_string(total) + ")超过信道带宽(" +
                      bitRate(frameCapacity(frame_) * 8) + ")，溢出带宽(" + bitRate(over) + ")",
                  false);
}

bool FrameForm::pairsFit() {
    const ConfigModel& model = editing_.model;
    if (model.checkFrame(place_.kind, place_.index, frame_) != edit_result::csctFull) return true;
    return refuse("持续业务配置表最多支持40项，该复用帧的业务使其达到" +
                      std::to_string(pairsWith(frame_, place_.index, model.tables())) + "项",
                  false);
}

bool FrameForm::configureTimeSlots() {
    TimeSlotForm form(editing_, slots_, static_cast<std::uint8_t>(frame_.timeSlots.size()));
    if (!editing_.forms.run(form)) return false;
    frame_.timeSlots = slots_.numbered(form.count());
    return true;
}

// The form asks about the sub-frame from its beginning on.
bool FrameForm::addSubFrame() {
    if (!readControls()) return false;
    if (frame_.services.full()) return refuse("已达最大子帧数(8)", false);
    std::uint8_t highest = 0;
    for (const ServiceRecord& service : frame_.services)
        highest = std::max(highest, service.subFrameNumber);
    editedSubFrame_ = noSubFrame;
    SubFrameForm form(editing_, *this, static_cast<std::uint8_t>(highest + 1));
    return editing_.forms.run(form) && frame_.services.append(form.service());
}

bool FrameForm::editSubFrame(std::size_t index) {
    if (!readControls()) return false;
    editedSubFrame_ = index;
    SubFrameForm form(editing_, *this, frame_.services[index]);
    const bool accepted = editing_.forms.run(form);
    if (accepted) frame_.services[index] = form.service();
    editedSubFrame_ = noSubFrame;
    return accepted;
}

int FrameForm::checkSubFrameId(std::uint8_t id) {
    const bool used = std::ranges::find(frame_.services, id, &ServiceRecord::subFrameNumber) !=
                      frame_.services.end();
    return used ? refuse("已有相同标识的子帧", -1) : 0;
}

// The model's check looks at the continuous table alone, without the frame that this one replaces.
int FrameForm::checkServiceId(std::uint32_t id) {
    if (std::ranges::find(frame_.services, id, &ServiceRecord::serviceId) != frame_.services.end())
        return refuse("已有相同标识的业务", -1);
    const int skipped = place_.kind == TableKind::Continuous ? place_.index : -1;
    return ConfigChecks(editing_.model, editing_.prompts).checkServiceId(skipped, id) == 0 ? 0 : -2;
}

int FrameForm::checkBandwidth(std::uint32_t bandwidth) {
    if (!readControls()) return 1;
    std::int32_t available = 0;
    if (!serviceBandwidthOverflows(frame_, editedSubFrame_, bandwidth, &available)) return 0;
    const std::int64_t capacity = frameCapacity(frame_) * 8;
    if (capacity == 0) return refuse("时隙数为0，请先配置时隙", 1);
    return refuse("业务带宽(" + bitRate(bandwidth) + ")超过信道带宽(" + bitRate(capacity) +
                      ")，可用带宽(" + bitRate(available) + ")",
                  1);
}

std::int32_t FrameForm::availableBandwidth() {
    std::int32_t available = 0;
    serviceBandwidthOverflows(frame_, editedSubFrame_, 0, &available);
    return available;
}

void FrameForm::dropTaken(std::uint32_t serviceId,
                          std::vector<InputChannelRecord>& candidates) const {
    for (std::size_t i = 0; i < frame_.services.size(); ++i) {
        const ServiceRecord& other = frame_.services[i];
        if (i == editedSubFrame_ || other.serviceId == serviceId) continue;
        for (const InputChannelRecord& taken : other.components)
            std::erase_if(candidates, [&taken](const auto& c) { return sameStream(c, taken); });
    }
}

}  // namespace korvane
