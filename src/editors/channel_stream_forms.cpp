#include "editors/channel_stream_forms.h"

#include <algorithm>

#include "model/channel_text.h"
#include "resources/ids.h"

namespace korvane {
namespace {

constexpr std::uint8_t lastPayloadType = 127;

}  // namespace

StreamChannelForm::StreamChannelForm(ConfigChecks checks, const InputChannelRecord& record,
                                     bool isNew)
    : ChannelForm(checks, record, isNew),
      shownPayloadType_(std::min(record.payloadType, lastPayloadType)),
      payloadType_(shownPayloadType_) {}

void StreamChannelForm::describeStream(Fields& fields) {
    fields.number(IDC_PAYLOAD_TYPE, payloadType_, 0, lastPayloadType);
    fields.flag(IDC_RTCP_SYNC, record_.rtcpSync);
    fields.choice(IDC_ENCAPSULATION, encapsulation_, encapsulationNames);
}

void StreamChannelForm::store() {
    if (payloadType_ != shownPayloadType_) record_.payloadType = payloadType_;
}

VideoChannelForm::VideoChannelForm(ConfigChecks checks, const InputChannelRecord& record,
                                   bool isNew)
    : StreamChannelForm(checks, record, isNew) {
    constexpr std::uint8_t h264 = 1;
    if (isNew) record_.videoCoding = h264;
}

int VideoChannelForm::dialog() const {
    return IDD_VIDEO_CHANNEL;
}

void VideoChannelForm::describeOthers(Fields& fields) {
    fields.choice(IDC_CODING, record_.videoCoding, videoCodingNames);
    describeStream(fields);
    fields.flag(IDC_FRAME_RATE_GIVEN, record_.frameRateGiven, IDC_FRAME_RATE);
    fields.choice(IDC_FRAME_RATE, record_.videoFrameRate, videoFrameRateNames);
}

void VideoChannelForm::store() {
    StreamChannelForm::store();
    if (record_.frameRateGiven == 0) record_.videoFrameRate = 0;
}

AudioChannelForm::AudioChannelForm(ConfigChecks checks, const InputChannelRecord& record,
                                   bool isNew)
    : StreamChannelForm(checks, record, isNew) {
    constexpr std::uint8_t dra = 0, heAac = 1, rate48kHz = 7;
    if (!isNew) return;
    record_.audioCoding = is(ChannelType::Dra) ? dra : heAac;
    record_.audioSampleRate = rate48kHz;
}

int AudioChannelForm::dialog() const {
    return IDD_AUDIO_CHANNEL;
}

void AudioChannelForm::describeOthers(Fields& fields) {
    const std::span<const std::string_view> codings = audioCodingNames;
    fields.choice(IDC_CODING, record_.audioCoding,
                  is(ChannelType::Dra) ? codings.first(1) : codings);
    fields.choice(IDC_SAMPLE_RATE, record_.audioSampleRate, audioSampleRateNames);
    describeStream(fields);
}

void AudioChannelForm::store() {
    StreamChannelForm::store();
    record_.audioParametersGiven = 1;
}

}  // namespace korvane
