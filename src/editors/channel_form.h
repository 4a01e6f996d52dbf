#pragma once

#include <memory>
#include <optional>
#include <string>

#include "forms/form.h"
#include "model/config_checks.h"

namespace korvane {

// One input channel. What its dialog does not show stays as it is.
class ChannelForm : public Form {
  public:
    std::string_view title() const override { return title_; }
    void describe(Fields& fields) override;
    int accept() override;

    // What was entered, once it was accepted.
    const InputChannelRecord& record() const { return record_; }

  protected:
    ChannelForm(ConfigChecks checks, const InputChannelRecord& record, bool isNew);

    bool is(ChannelType type) const { return static_cast<ChannelType>(record_.type) == type; }
    bool isNew() const { return !edited_; }

    InputChannelRecord record_;

  private:
    virtual int addressControl() const;
    virtual void describeOthers(Fields& fields) = 0;
    // All checks have passed: what does not go from a control into the record by itself.
    virtual void store() {}
    bool hasOtherAddress() const;

    ConfigChecks checks_;
    std::optional<InputChannelRecord> edited_;
    std::string title_;
};

// The form of a new channel of this type, and that of a channel that is edited.
std::unique_ptr<ChannelForm> newChannelForm(ConfigChecks checks, ChannelType type);
std::unique_ptr<ChannelForm> editedChannelForm(ConfigChecks checks,
                                               const InputChannelRecord& record);

}  // namespace korvane
