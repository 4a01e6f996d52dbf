#include "model/channel_text.h"
#include "review/rules.h"

namespace korvane::review {
namespace {

constexpr const char* tooManyComponents = "已达最大组件数(8)";

// 0 is stored and shown as a media service.
ServiceType typeOf(const ServiceAt& s) {
    return s.service.type == 0 ? ServiceType::Media : static_cast<ServiceType>(s.service.type);
}

bool is(const InputChannelRecord& channel, ChannelType type) {
    return channel.type == static_cast<std::uint8_t>(type);
}

bool sameId(const ServiceAt& a, const ServiceAt& b) {
    return a.service.serviceId == b.service.serviceId;
}

bool isContinuous(const ServiceAt& s) {
    return s.at.kind == TableKind::Continuous;
}

// The editors look for an id in the frame at hand and in the continuous table.
bool editorsCompare(const ServiceAt& a, const ServiceAt& b) {
    return &a.at == &b.at || isContinuous(a) || isContinuous(b);
}

bool isFullOf(const ServiceAt& s, ChannelType type) {
    return std::ranges::count_if(s.service.components, [type](const auto& c) {
               return is(c, type);
           }) == limits::components;
}

const Rule<ServiceAt> serviceRules[] = {
    {error, "another service has this id", "已有相同标识的业务",
     [](const Whole& w, const ServiceAt& s) {
         return isRepeated(w.services, s, [](const ServiceAt& a, const ServiceAt& b) {
             return sameId(a, b) && editorsCompare(a, b);
         });
     }},
    {warning, "a service of another short-time frame has this id", "",
     [](const Whole& w, const ServiceAt& s) {
         return isRepeated(w.services, s, [](const ServiceAt& a, const ServiceAt& b) {
             return sameId(a, b) && !editorsCompare(a, b);
         });
     }},
    {error, "another service of its frame has its sub-frame number", "已有相同标识的子帧",
     [](const Whole& w, const ServiceAt& s) {
         return isRepeated(w.services, s, [](const ServiceAt& a, const ServiceAt& b) {
             return &a.at == &b.at && a.service.subFrameNumber == b.service.subFrameNumber;
         });
     }},
    {error, "it has no components", "请添加组件",
     [](const Whole&, const ServiceAt& s) {
         return typeOf(s) == ServiceType::Media && s.service.components.empty() &&
                s.at.frame.id != 0;
     }},
    {error, "it has no component", "请选择输入通道",
     [](const Whole&, const ServiceAt& s) {
         return typeOf(s) != ServiceType::Media && typeOf(s) != ServiceType::Esg &&
                s.service.components.empty();
     }},
    {error, "all its components are of one type", tooManyComponents,
     [](const Whole&, const ServiceAt& s) {
         return isFullOf(s, ChannelType::Video) || isFullOf(s, ChannelType::Audio) ||
                isFullOf(s, ChannelType::Ecm);
     }},
};

const Range<ServiceAt> serviceRanges[] = {
    {error, "service type", "请选择业务类型", 0, serviceTypeTerms.size(),
     [](const ServiceAt& s) -> Value { return s.service.type; }},
    {error, "encapsulation", "请选择封装模式", 0, encapsulationTerms.size() - 1,
     [](const ServiceAt& s) -> Value { return s.service.encapsulation; }},
    {error, "its number of components", tooManyComponents, 0, limits::components,
     [](const ServiceAt& s) -> Value { return s.head.componentCount; }},
};

bool sameSource(const InputChannelRecord& a, const InputChannelRecord& b) {
    return a.type == b.type && sameStream(a, b);
}

// A copy keeps the place that its channel had in the list.
bool sameData(const InputChannelRecord& component, InputChannelRecord channel) {
    channel.position = component.position;
    return component == channel;
}

bool hasSource(const Whole& w, const InputChannelRecord& component) {
    return std::ranges::any_of(w.content.channels,
                               [&](const auto& c) { return sameSource(c, component); });
}

bool hasData(const Whole& w, const InputChannelRecord& component) {
    return std::ranges::any_of(w.content.channels,
                               [&](const auto& c) { return sameData(component, c); });
}

// Services share what carries no programme: ESG and data channels, and ECM within a frame.
bool mayShare(const ComponentAt& a, const ComponentAt& b) {
    return is(a.channel, ChannelType::Esg) || is(a.channel, ChannelType::Data) ||
           (is(a.channel, ChannelType::Ecm) && &a.at.at == &b.at.at);
}

// Others would be dropped by the next OK of its editor.
bool takes(ServiceType type, const InputChannelRecord& channel) {
    switch (type) {
        case ServiceType::Media:
            return is(channel, ChannelType::Video) || is(channel, ChannelType::Audio) ||
                   is(channel, ChannelType::Ecm);
        case ServiceType::Dra:
            return is(channel, ChannelType::Dra) || is(channel, ChannelType::Ecm);
        case ServiceType::Emm:
            return is(channel, ChannelType::Emm) || is(channel, ChannelType::Ecm);
        case ServiceType::Data:
            return is(channel, ChannelType::Data) || is(channel, ChannelType::Ecm);
        default:
            return true;
    }
}

// Its channel is the device's to find: no editor changes the component that it once had.
bool isOfEsg(const ComponentAt& c) {
    return typeOf(c.at) == ServiceType::Esg;
}

const Rule<ComponentAt> componentRules[] = {
    {error, "no input channel has this stream any more", "",
     [](const Whole& w, const ComponentAt& c) { return !isOfEsg(c) && !hasSource(w, c.channel); }},
    {warning, "no input channel has this stream any more", "",
     [](const Whole& w, const ComponentAt& c) { return isOfEsg(c) && !hasSource(w, c.channel); }},
    {warning, "the input channel of this stream has other data", "",
     [](const Whole& w, const ComponentAt& c) {
         return hasSource(w, c.channel) && !hasData(w, c.channel);
     }},
    {warning, "another service has this stream", "",
     [](const Whole& w, const ComponentAt& c) {
         return isRepeated(w.components, c, [](const ComponentAt& a, const ComponentAt& b) {
             return &a.at != &b.at && sameSource(a.channel, b.channel) && !mayShare(a, b);
         });
     }},
    {warning, "a service of its type has no such component", "",
     [](const Whole&, const ComponentAt& c) { return !takes(typeOf(c.at), c.channel); }},
};

}  // namespace

void judgeServices(const Whole& whole, std::vector<Finding>& findings) {
    judgeAll(whole, whole.services, findings, serviceRules, serviceRanges);
    judgeAll(whole, whole.components, findings, componentRules);
}

}  // namespace korvane::review
