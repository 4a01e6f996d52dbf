#pragma once

#include "editors/channel_form.h"

namespace korvane {

// A channel that comes as an RTP stream.
class StreamChannelForm : public ChannelForm {
  protected:
    StreamChannelForm(ConfigChecks checks, const InputChannelRecord& record, bool isNew);

    void describeStream(Fields& fields);
    void store() override;

  private:
    const std::uint8_t shownPayloadType_;  // of a record that has an impossible one: the last
    std::uint8_t payloadType_;
    std::uint8_t encapsulation_ = 0;  // shown by nobody, and kept nowhere
};

class VideoChannelForm : public StreamChannelForm {
  public:
    VideoChannelForm(ConfigChecks checks, const InputChannelRecord& record, bool isNew);
    int dialog() const override;

  private:
    void describeOthers(Fields& fields) override;
    void store() override;
};

// Of an audio or a DRA channel, which has no choice of codings.
class AudioChannelForm : public StreamChannelForm {
  public:
    AudioChannelForm(ConfigChecks checks, const InputChannelRecord& record, bool isNew);
    int dialog() const override;

  private:
    void describeOthers(Fields& fields) override;
    void store() override;
};

}  // namespace korvane
