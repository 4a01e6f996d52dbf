#include "forms/form.h"

namespace korvane {

FormExchange::FormExchange(Form& form, FieldControls& controls, Prompts& prompts)
    : form_(form), controls_(controls), prompts_(prompts) {
    form.describe(fields_);
}

void FormExchange::show() {
    form_.load();
    fields_.show(controls_);
}

bool FormExchange::accept() {
    int wrong = 0;
    if (const auto refusal = fields_.read(controls_)) {
        prompts_.warning(refusal->message);
        wrong = refusal->control;
    } else {
        wrong = form_.accept();
    }
    if (wrong != 0) controls_.focus(wrong);
    return wrong == 0;
}

}  // namespace korvane
