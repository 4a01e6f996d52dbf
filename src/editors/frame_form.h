#pragma once

#include <optional>

#include "editors/editing.h"
#include "editors/frame_lists.h"
#include "editors/frame_questions.h"
#include "editors/frame_slots.h"

namespace korvane {

// A multiplex frame: its parameters, time slots and sub-frames. All of it is a working copy, which
// the caller stores once it was accepted.
class FrameForm : public Form, public FrameQuestions {
  public:
    // The one at this place, or a new one that will be inserted before the frame at `before` (-1:
    // at the end).
    FrameForm(const Editing& editing, const ConfigModel::FramePlace& place, int before = -1);
    FrameForm(const FrameForm&) = delete;
    FrameForm& operator=(const FrameForm&) = delete;

    int dialog() const override;
    void describe(Fields& fields) override;
    void attach(FormExchange& exchange) override { exchange_ = &exchange; }
    void entered(int control, FieldControls& controls) override;
    int accept() override;

    EditList& timeSlots() { return timeSlots_; }
    EditList& subFrames() { return subFrames_; }
    const MultiplexFrame& frame() const { return frame_; }
    // Whether there are more or fewer slots than in the model.
    bool resized() const { return frame_.timeSlots.size() != slots_.stored().size(); }

    // What the lists do; each is true when something has changed.
    bool offersSubFrames() const { return openedId_ != 0; }
    bool configureTimeSlots();
    bool addSubFrame();
    bool editSubFrame(std::size_t index);
    bool removeSubFrame(std::size_t index) { return frame_.services.erase(index); }

    std::uint8_t frameId() const override { return static_cast<std::uint8_t>(enteredId_); }
    ConfigModel::FramePlace place() const override { return place_; }
    int checkSubFrameId(std::uint8_t id) override;
    int checkServiceId(std::uint32_t id) override;
    int checkBandwidth(std::uint32_t bandwidth) override;
    std::int32_t availableBandwidth() override;
    void dropTaken(std::uint32_t serviceId,
                   std::vector<InputChannelRecord>& candidates) const override;

  private:
    int refuse(std::string_view message, int result);
    bool readControls() { return !exchange_ || exchange_->read(); }
    bool idIsFree();
    bool servicesFit();
    bool pairsFit();

    Editing editing_;
    ConfigModel::FramePlace place_;
    FrameSlots slots_;
    MultiplexFrame frame_;
    std::optional<std::uint8_t> openedId_;  // none while adding
    std::uint32_t enteredId_ = 0;           // the frame takes the low 8 bits
    std::size_t editedSubFrame_;            // beyond the list: none
    FormExchange* exchange_ = nullptr;
    SlotList timeSlots_{*this};
    SubFrameList subFrames_{*this};
};

}  // namespace korvane
