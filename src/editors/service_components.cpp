#include "editors/service_components.h"

#include <algorithm>

#include "model/channel_text.h"
#include "resources/ids.h"

namespace korvane {
namespace {

Components::const_iterator find(const Components& channels, const InputChannelRecord& wanted) {
    return std::ranges::find_if(
        channels, [&wanted](const auto& channel) { return sameStream(channel, wanted); });
}

void append(const ComponentList& list, Components& all) {
    all.insert(all.end(), list.components().begin(), list.components().end());
}

template <class List>
Components listed(const List& channels) {
    return {channels.begin(), channels.end()};
}

}  // namespace

int serviceTypeIndex(std::uint8_t stored) {
    const int index = stored == 0 ? service_type::media : stored - 1;
    return index < static_cast<int>(serviceTypes.size()) ? index : service_type::none;
}

// ECM channels may serve several services; the others are one service's.
ServiceComponents::ServiceComponents(const Editing& editing, FrameQuestions& frame,
                                     const ServiceRecord& edited)
    : editing_(editing),
      frame_(frame),
      entered_{.type = serviceTypeIndex(edited.type),
               .serviceId = edited.serviceId,
               .scrambled = edited.scrambled == 1},
      contents_{edited.scrambled, edited.esgInternal, listed(edited.components)},
      video_(editing, ChannelType::Video, contents_.components,
             [this] { return untaken(ChannelType::Video); }),
      audio_(editing, ChannelType::Audio, contents_.components,
             [this] { return untaken(ChannelType::Audio); }),
      ecm_(editing, ChannelType::Ecm, contents_.components,
           [this] { return channelsOf(ChannelType::Ecm); }) {}

Components ServiceComponents::channelsOf(ChannelType type) const {
    return listed(editing_.model.candidateChannels(static_cast<std::size_t>(type), frame_.place()));
}

Components ServiceComponents::untaken(ChannelType type) const {
    Components channels = channelsOf(type);
    frame_.dropTaken(entered_.serviceId, channels);
    return channels;
}

Components ServiceComponents::candidates(int type) const {
    const ServiceTypeRules& rules = serviceTypes.at(static_cast<std::size_t>(type));
    return rules.sharesChannels
               ? listed(editing_.model.channels(static_cast<std::size_t>(rules.channel)))
               : untaken(rules.channel);
}

std::vector<std::string> ServiceComponents::offer(int type) {
    offered_ = candidates(type);
    std::vector<std::string> items;
    for (const InputChannelRecord& channel : offered_) items.push_back(receiveAddress(channel));
    if (type == service_type::esg) items.emplace_back("内部生成");
    return items;
}

int ServiceComponents::offeredIndex(int type) const {
    const auto count = static_cast<int>(offered_.size());
    const bool isEsg = type == service_type::esg;
    if (isEsg && contents_.esgInternal == 1) return count;
    const Components& components = contents_.components;
    const auto found = components.empty() ? offered_.end() : find(offered_, components.front());
    if (found != offered_.end()) return static_cast<int>(found - offered_.begin());
    return count > 0 || isEsg ? 0 : -1;
}

int ServiceComponents::commit(int type) {
    Contents contents = contents_;
    if (const int wrong = fill(contents, type, Checks::All)) return wrong;
    if (contents.components.size() > limits::components)
        return refuse(tooManyComponents, IDC_SERVICE_TYPE);
    contents_ = std::move(contents);
    return 0;
}

int ServiceComponents::fill(Contents& contents, int type, Checks checks) const {
    if (type == service_type::none) return 0;
    const bool mayBe = serviceTypes.at(static_cast<std::size_t>(type)).isScrambled;
    contents.scrambled = mayBe && entered_.scrambled;
    if (type == service_type::media) return fillMedia(contents, checks);
    if (type == service_type::esg) return fillEsg(contents);
    return fillSingle(contents, type, checks);
}

// Only the frame of the control tables may carry a media service of nothing; there is nothing in it
// to scramble.
int ServiceComponents::fillMedia(Contents& contents, Checks checks) const {
    contents.components.clear();
    for (const ComponentList* list : {&video_, &audio_, &ecm_}) append(*list, contents.components);
    if (checks == Checks::None || !contents.components.empty()) return 0;
    contents.scrambled = 0;
    return frame_.frameId() == 0 ? 0 : refuse("请添加组件", IDD_MEDIA_COMPONENTS);
}

// The channel is the device's to find: the service keeps the components that it had.
int ServiceComponents::fillEsg(Contents& contents) const {
    const bool internal = entered_.component == static_cast<int>(offered_.size());
    contents.esgInternal = internal;
    if (internal) contents.components.clear();
    return 0;
}

int ServiceComponents::fillSingle(Contents& contents, int type, Checks checks) const {
    const Components now = candidates(type);
    const bool checked = checks == Checks::All;
    if (checked && now.empty()) return refuse("请先配置当前类型的输入通道", IDC_SERVICE_TYPE);
    chooseAmong(now, contents.components);
    if (checked && contents.components.empty()) return refuse("请选择输入通道", IDC_COMPONENT);
    return 0;
}

// Another service id, entered since the items were offered, may have made other channels the
// service's to choose: what was selected counts, not where it stood.
void ServiceComponents::chooseAmong(const Components& candidates, Components& components) const {
    components.clear();
    const auto item = static_cast<std::size_t>(entered_.component);
    if (item >= offered_.size()) return;
    const auto chosen = find(candidates, offered_[item]);
    if (chosen == candidates.end()) return;
    components.push_back(*chosen);
    append(ecm_, components);
}

int ServiceComponents::refuse(std::string_view message, int control) const {
    editing_.prompts.warning(message);
    return control;
}

}  // namespace korvane
