#include "forms/form.h"

namespace korvane {

FormExchange::FormExchange(Form& form, FieldControls& controls, Prompts& prompts)
    : form_(form), controls_(controls), prompts_(prompts) {
    form.describe(fields_);
    form.attach(*this);
}

void FormExchange::show() {
    form_.load();
    showing_ = true;
    fields_.show(controls_);
    showing_ = false;
    form_.entered(0, controls_);
}

bool FormExchange::read() {
    const auto refusal = fields_.read(controls_);
    if (!refusal) return true;
    prompts_.warning(refusal->message);
    controls_.focus(refusal->control);
    return false;
}

bool FormExchange::accept() {
    if (!read()) return false;
    const int wrong = form_.accept();
    if (wrong != 0) controls_.focus(wrong);
    return wrong == 0;
}

// A control that is given what it shows says so, too.
void FormExchange::entered(int control) {
    if (showing_) return;
    fields_.readValid(controls_);
    form_.entered(control, controls_);
}

}  // namespace korvane
