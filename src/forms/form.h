#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "forms/fields.h"
#include "model/prompts.h"

namespace korvane {

class FormExchange;

// What a dialog or a page with fields decides, without its window.
class Form {
  public:
    virtual ~Form() = default;

    // Its resource.
    virtual int dialog() const = 0;
    // UTF-8; empty for that of the resource.
    virtual std::string_view title() const { return {}; }
    // Controls of the resource that this form does not show.
    virtual std::span<const int> hidden() const { return {}; }

    // Takes its values from where they are kept: a page's are shown again and again.
    virtual void load() {}

    // Says which control stands for which of its values.
    virtual void describe(Fields& fields) = 0;

    // The exchange that the form's own doings may read its values by; it outlives none of them.
    virtual void attach(FormExchange&) {}

    // Something was entered in a control: what can be read has been. For what the form shows of
    // its entries, and which of its controls.
    virtual void entered(int /*control*/, FieldControls&) {}

    // All values have been read: checks them and stores what the form is for. 0, or the control
    // that the operator is to return to: then a message has been shown and nothing was stored.
    virtual int accept() = 0;
};

// A form and the controls that it is shown in.
class FormExchange {
  public:
    FormExchange(Form& form, FieldControls& controls, Prompts& prompts);

    // Shows the form's values as they are kept now.
    void show();
    // Whether anything was entered since.
    bool changed() const { return fields_.changed(controls_); }
    // Reads, checks and stores. False when that was refused: a message has been shown, the focus is
    // where it belongs, and all entries are still there.
    bool accept();
    // Reads alone; false when that was refused.
    bool read();
    void clicked(int control) { fields_.clicked(controls_, control); }
    // What was entered there may change what the form shows.
    void entered(int control);

  private:
    Form& form_;
    FieldControls& controls_;
    Prompts& prompts_;
    Fields fields_;
    bool showing_ = false;
};

// The seam to the windows of modal forms.
class FormRunner {
  public:
    virtual ~FormRunner() = default;

    // Shows the form until it is accepted (true) or cancelled.
    virtual bool run(Form& form) = 0;
};

}  // namespace korvane
