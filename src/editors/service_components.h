#pragma once

#include <array>

#include "editors/component_list.h"
#include "editors/frame_questions.h"

namespace korvane {

// What the editors know of a service type. Types count from 0 here, in records from 1.
struct ServiceTypeRules {
    std::string_view name;
    ChannelType channel;       // of its component; media services have lists instead
    bool sharesChannels;       // takes those that other services use, too
    bool hasEcm, isScrambled;  // beside the component; may be
};
namespace service_type {
inline constexpr int none = -1, media = 0, dra = 1, esg = 2, emm = 3, data = 4;
}
inline constexpr std::array<ServiceTypeRules, 5> serviceTypes = {{
    {"媒体业务", ChannelType::Video, false, false, true},
    {"DRA音频广播", ChannelType::Dra, false, true, true},
    {"ESG业务", ChannelType::Esg, true, false, false},
    {"EMM业务", ChannelType::Emm, false, false, false},
    {"数据广播业务", ChannelType::Data, true, true, true},
}};
// For a stored type: 0 is that of a media service.
int serviceTypeIndex(std::uint8_t stored);

// The components of a service while it is edited. The lists outlast each change of its type; what a
// type makes of them, and of the channel that was selected, is committed when it is left, and, with
// all checks, by OK.
class ServiceComponents {
  public:
    // What the dialog shows of it beside the lists.
    struct Entered {
        int type;
        std::uint32_t serviceId;
        int component = -1;  // the item that is selected of offer()
        bool scrambled;
    };
    // What was committed.
    struct Contents {
        std::uint8_t scrambled, esgInternal;
        Components components;
    };

    ServiceComponents(const Editing& editing, FrameQuestions& frame, const ServiceRecord& edited);
    ServiceComponents(const ServiceComponents&) = delete;
    ServiceComponents& operator=(const ServiceComponents&) = delete;

    Entered& entered() { return entered_; }
    ComponentList& video() { return video_; }
    ComponentList& audio() { return audio_; }
    ComponentList& ecm() { return ecm_; }

    // The items that a service of this type chooses its component from, and that of `contents`.
    std::vector<std::string> offer(int type);
    int offeredIndex(int type) const;

    void leave(int type) { fill(contents_, type, Checks::None); }
    // 0, or the control to return to: then nothing was committed.
    int commit(int type);
    const Contents& contents() const { return contents_; }

  private:
    enum class Checks { None, All };

    Components channelsOf(ChannelType type) const;
    Components untaken(ChannelType type) const;
    Components candidates(int type) const;
    int fill(Contents& contents, int type, Checks checks) const;
    int fillMedia(Contents& contents, Checks checks) const;
    int fillEsg(Contents& contents) const;
    int fillSingle(Contents& contents, int type, Checks checks) const;
    void chooseAmong(const Components& candidates, Components& components) const;
    int refuse(std::string_view message, int control) const;

    Editing editing_;
    FrameQuestions& frame_;
    Entered entered_;
    Contents contents_;
    ComponentList video_, audio_, ecm_;
    Components offered_;
};

}  // namespace korvane
