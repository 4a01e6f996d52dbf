#include "editors/sub_frame_form.h"

#include <algorithm>
#include <utility>

#include "model/channel_text.h"
#include "model/field_text.h"
#include "resources/ids.h"
#include "text/gbk.h"

namespace korvane {
namespace {

using Name = decltype(ServiceDescription::name);

constexpr std::size_t longestName = std::tuple_size_v<Name> - 1;
constexpr std::array<std::uint8_t, 3> chinese = {'z', 'h', 'o'};

ServiceRecord newService(std::uint8_t subFrameId) {
    constexpr std::uint32_t usualBandwidth = 480'000;
    ServiceRecord service;
    service.subFrameNumber = subFrameId;
    service.type = static_cast<std::uint8_t>(ServiceType::Media);
    service.encapsulation = 1;
    service.bandwidth = usualBandwidth;
    enterText(toGbk("请输入业务名称").bytes, service.description.name);
    return service;
}

// One of the short-time table may be described elsewhere than in its record.
ServiceRecord described(const Editing& editing, const FrameQuestions& frame,
                        ServiceRecord service) {
    service.description = editing.model.description(frame.place().kind, service);
    return service;
}

}  // namespace

SubFrameForm::SubFrameForm(const Editing& editing, FrameQuestions& frame, std::uint8_t proposedId)
    : SubFrameForm(editing, frame, newService(proposedId), true) {}

SubFrameForm::SubFrameForm(const Editing& editing, FrameQuestions& frame,
                           const ServiceRecord& edited)
    : SubFrameForm(editing, frame, described(editing, frame, edited), false) {}

// Of the stored encapsulation modes 0 is the second one.
SubFrameForm::SubFrameForm(const Editing& editing, FrameQuestions& frame,
                           const ServiceRecord& service, bool isNew)
    : editing_(editing),
      frame_(frame),
      isNew_(isNew),
      service_(service),
      components_(editing, frame, service),
      shownType_(components_.entered().type),
      subFrameId_(service.subFrameNumber),
      encapsulation_(service.encapsulation == 0),
      bandwidth_(service.bandwidth),
      name_(fieldText(service.description.name)) {}

int SubFrameForm::dialog() const {
    return IDD_SUB_FRAME;
}

void SubFrameForm::describe(Fields& fields) {
    ServiceComponents::Entered& entered = components_.entered();
    fields.number(IDC_SUB_FRAME_ID, subFrameId_);
    fields.number(IDC_SERVICE_ID, entered.serviceId);
    fields.selection(IDC_SERVICE_TYPE, entered.type);
    fields.choice(IDC_ENCAPSULATION, encapsulation_, encapsulationNames);
    fields.number(IDC_SERVICE_BANDWIDTH, bandwidth_);
    fields.text(IDC_SERVICE_NAME, name_, "业务名称", longestName);
    fields.flag(IDC_SCRAMBLED, entered.scrambled);
    fields.selection(IDC_COMPONENT, entered.component);
}

void SubFrameForm::entered(int control, FieldControls& controls) {
    constexpr int opening = 0;
    if (control == opening) {
        std::array<std::string_view, serviceTypes.size()> names;
        std::ranges::transform(serviceTypes, names.begin(), &ServiceTypeRules::name);
        controls.setItems(IDC_SERVICE_TYPE, names);
        controls.select(IDC_SERVICE_TYPE, shownType_);
        layOut(controls);
    }
    if (control == IDC_SERVICE_TYPE) changeType(components_.entered().type, controls);
    showFreeBandwidth(controls);
}

void SubFrameForm::changeType(int type, FieldControls& controls) {
    components_.leave(shownType_);
    shownType_ = type;
    layOut(controls);
}

// A type that is none has none of them.
void SubFrameForm::layOut(FieldControls& controls) {
    const auto index = static_cast<std::size_t>(shownType_);
    const ServiceTypeRules rules =
        index < serviceTypes.size() ? serviceTypes[index] : ServiceTypeRules{};
    const bool media = shownType_ == service_type::media,
               single = !media && shownType_ != service_type::none;
    for (const auto& [control, visible] : {std::pair{IDD_MEDIA_COMPONENTS, media},
                                           {IDC_COMPONENT_LABEL, single},
                                           {IDC_COMPONENT, single},
                                           {IDC_ECM_LABEL, rules.hasEcm},
                                           {IDC_ECM_COMPONENTS, rules.hasEcm},
                                           {IDC_SCRAMBLED, rules.isScrambled}})
        controls.setVisible(control, visible);
    if (single) fillComponents(controls);
}

void SubFrameForm::fillComponents(FieldControls& controls) {
    const std::vector<std::string> items = components_.offer(shownType_);
    controls.setItems(IDC_COMPONENT, std::vector<std::string_view>(items.begin(), items.end()));
    controls.select(IDC_COMPONENT, components_.offeredIndex(shownType_));
}

void SubFrameForm::showFreeBandwidth(FieldControls& controls) const {
    const std::int32_t available = frame_.availableBandwidth();
    const bool fits = std::cmp_less_equal(bandwidth_, available);
    controls.setText(IDC_FREE_BANDWIDTH,
                     "可用带宽：" + std::to_string(available) + (fits ? " bps" : " bps，不足"));
}

int SubFrameForm::accept() {
    if (const int wrong = checkChoices()) return wrong;
    if (const int wrong = askFrame()) return wrong;
    if (const int wrong = components_.commit(components_.entered().type)) return wrong;
    store();
    return 0;
}

int SubFrameForm::checkChoices() {
    const bool hasType = components_.entered().type != service_type::none;
    if (hasType && encapsulation_ < encapsulationNames.size()) return 0;
    editing_.prompts.warning(hasType ? "请选择封装模式" : "请选择业务类型");
    return hasType ? IDC_ENCAPSULATION : IDC_SERVICE_TYPE;
}

int SubFrameForm::askFrame() {
    if ((isNew_ || subFrameId_ != service_.subFrameNumber) &&
        frame_.checkSubFrameId(subFrameId_) != 0)
        return IDC_SUB_FRAME_ID;
    if ((isNew_ || serviceId() != service_.serviceId) && frame_.checkServiceId(serviceId()) != 0)
        return IDC_SERVICE_ID;
    return frame_.checkBandwidth(bandwidth_) != 0 ? IDC_SERVICE_BANDWIDTH : 0;
}

void SubFrameForm::store() {
    const ServiceComponents::Contents& contents = components_.contents();
    service_.subFrameNumber = subFrameId_;
    service_.scrambled = contents.scrambled;
    service_.serviceId = static_cast<std::uint16_t>(serviceId());
    service_.description.serviceId = service_.serviceId;
    service_.description.language = chinese;
    enterText(name_, service_.description.name);
    service_.type = static_cast<std::uint8_t>(components_.entered().type + 1);
    service_.encapsulation = encapsulation_ == 0;
    service_.esgInternal = contents.esgInternal;
    service_.components.clear();
    for (const InputChannelRecord& component : contents.components)
        service_.components.append(component);
    service_.bandwidth = bandwidth_;
}

}  // namespace korvane
