#pragma once

#include "editors/channel_form.h"

namespace korvane {

// A channel that comes as data. Its receive mode is set once, when it is new.
class DataChannelForm : public ChannelForm {
  public:
    DataChannelForm(ConfigChecks checks, const InputChannelRecord& record, bool isNew);
};

// Of ESG, data broadcast and emergency broadcast.
class GeneralChannelForm : public DataChannelForm {
  public:
    using DataChannelForm::DataChannelForm;
    int dialog() const override;

  private:
    int addressControl() const override;
    void describeOthers(Fields& fields) override;

    bool udp_ = true;  // shown by nobody, and kept nowhere
};

// Of ECM and EMM; the latter has no send interval to enter.
class ConditionalChannelForm : public DataChannelForm {
  public:
    ConditionalChannelForm(ConfigChecks checks, const InputChannelRecord& record, bool isNew);
    int dialog() const override;
    std::span<const int> hidden() const override;

  private:
    void describeOthers(Fields& fields) override;
};

}  // namespace korvane
