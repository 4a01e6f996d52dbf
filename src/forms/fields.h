#pragma once

#include <concepts>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include "forms/field_kinds.h"
#include "model/records.h"

namespace korvane {

using AddressText = DeviceParamBlock::Text;

// What a dialog says once: which control stands for which value. The values outlive this table.
// A value whose control still shows what it was given keeps all of its bits, also those that no
// control can show.
class Fields {
  public:
    // A decimal number; what is beyond the range, or the value's type, is refused.
    template <std::unsigned_integral T>
    void number(int control, T& value, std::uint32_t least = 0,
                std::uint32_t most = std::numeric_limits<T>::max());
    // A frequency in units of 10 Hz, shown and entered in whole MHz, at most 42,949.
    void megahertz(int control, std::uint32_t& value);
    // A rate in bit/s, shown and entered in whole kbit/s, at most 4,294,967.
    void kilobits(int control, std::uint32_t& bitsPerSecond);
    // GBK text. `name` is what the operator calls it; one of more than `limit` bytes is refused.
    void text(int control, std::string& gbk, std::string_view name, std::size_t limit = SIZE_MAX);
    // The index of an item of a drop-down list. A value that there is no item for shows as the
    // first one; with `name`, what the operator calls the choice, as none, and they are asked to
    // make it.
    template <std::unsigned_integral T>
    void choice(int control, T& value, std::span<const std::string_view> items,
                std::string_view name = {});
    // A check box, checked for any value but 0, and stored as 1 or 0; `enables`, if any, is a
    // control that is enabled only while it is checked.
    template <class T>
    void flag(int control, T& value, int enables = 0);
    void address(int control, Ipv4& value);
    // Dotted decimal; a text that is no address shows as none.
    void address(int control, AddressText& text);
    // The selected item of a drop-down list that the form itself fills; -1 for none.
    void selection(int control, int& index);
    // The checked rows of a list that the form's window fills.
    void checkedRows(int control, std::vector<int>& rows);

    void show(FieldControls& controls);
    bool changed(const FieldControls& controls) const;
    // Takes what the controls show into the values: all of it, or nothing and the first refusal.
    std::optional<RefusedEntry> read(const FieldControls& controls);
    // Takes what can be taken as it stands, and leaves the other values alone: for what a dialog
    // shows while the operator enters.
    void readValid(const FieldControls& controls);
    // The control was clicked.
    void clicked(FieldControls& controls, int control) const;

  private:
    std::vector<std::unique_ptr<Field>> fields_;
};

template <std::unsigned_integral T>
void Fields::number(int control, T& value, std::uint32_t least, std::uint32_t most) {
    fields_.push_back(std::make_unique<NumberField<T>>(control, value, least, most));
}

template <std::unsigned_integral T>
void Fields::choice(int control, T& value, std::span<const std::string_view> items,
                    std::string_view name) {
    fields_.push_back(std::make_unique<ChoiceField<T>>(control, value, items, name));
}

template <class T>
void Fields::flag(int control, T& value, int enables) {
    fields_.push_back(std::make_unique<FlagField<T>>(control, value, enables));
}

}  // namespace korvane
