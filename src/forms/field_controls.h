#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/ipv4.h"

namespace korvane {

// The seam to the controls of a dialog, by their numbers. Texts are UTF-8.
class FieldControls {
  public:
    virtual ~FieldControls() = default;

    virtual std::string text(int control) const = 0;
    virtual void setText(int control, std::string_view text) = 0;
    // Of a drop-down list; -1 for none.
    virtual int selected(int control) const = 0;
    virtual void select(int control, int index) = 0;
    virtual void setItems(int control, std::span<const std::string_view> items) = 0;
    // Of a check box.
    virtual bool checked(int control) const = 0;
    virtual void setChecked(int control, bool checked) = 0;
    // Of a list with a check box in each row, in ascending order.
    virtual std::vector<int> checkedRows(int control) const = 0;
    virtual void setCheckedRows(int control, const std::vector<int>& rows) = 0;
    // Of an IP address box; nothing while all of it is blank, and a part that is counts as 0.
    virtual std::optional<Ipv4> address(int control) const = 0;
    virtual void setAddress(int control, const std::optional<Ipv4>& address) = 0;

    // Of a bar: what is above 100 shows as full, in the colour of a warning.
    virtual void setLevel(int control, int percent) = 0;

    virtual void setEnabled(int control, bool enabled) = 0;
    virtual void setVisible(int control, bool visible) = 0;
    // Gives it the focus and selects its text.
    virtual void focus(int control) = 0;
};

}  // namespace korvane
