#pragma once

#include <string>

#include "forms/field_controls.h"

namespace korvane {

// Why an entry was not taken, and where it stands.
struct RefusedEntry {
    int control;
    std::string message;  // UTF-8
};

// One control and the value that it stands for.
class Field {
  public:
    explicit Field(int control) : control_(control) {}
    virtual ~Field() = default;

    int control() const { return control_; }

    virtual void show(FieldControls& controls) = 0;
    // Whether the control shows something else than show() put there.
    virtual bool changed(const FieldControls& controls) const = 0;
    // Looks at what the control shows now; the message of a refusal, or empty.
    virtual std::string parse(const FieldControls& controls) = 0;
    // Stores what was parsed.
    virtual void take() = 0;
    virtual void clicked(FieldControls&) const {}

  private:
    int control_;
};

}  // namespace korvane
