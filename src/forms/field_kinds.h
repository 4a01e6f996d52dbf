#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "forms/field.h"

namespace korvane {

// The number that a text is, held to 64 bits; nothing when it is none. Blanks around it do not
// count.
std::optional<std::int64_t> parseNumber(std::string_view text);

// The platform's usual words for a number that is none, or out of its range.
std::string numberRefusal(std::string_view text, std::uint32_t least, std::uint32_t most);

// What the kinds have in common: a value, what it was and what was shown of it.
template <class T, class Shown>
class ShownField : public Field {
  public:
    ShownField(int control, T& value) : Field(control), value_(value) {}

    void show(FieldControls& controls) final {
        pending_ = original_ = value_;
        put(controls, original_);
        shown_ = current(controls);
    }
    bool changed(const FieldControls& controls) const final { return current(controls) != shown_; }
    std::string parse(const FieldControls& controls) final {
        pending_ = original_;
        return changed(controls) ? entered(current(controls), pending_) : untouched(original_);
    }
    void take() final { value_ = pending_; }

  protected:
    virtual void put(FieldControls& controls, const T& value) = 0;
    virtual Shown current(const FieldControls& controls) const = 0;
    // What the operator entered, as a value; the message of a refusal, or empty.
    virtual std::string entered(const Shown& shown, T& value) const = 0;
    // Of a value that nobody touched: why it may not stay, or empty.
    virtual std::string untouched(const T&) const { return {}; }

  private:
    T& value_;
    T original_{}, pending_{};
    Shown shown_{};
};

template <class T>
class NumberField : public ShownField<T, std::string> {
  public:
    NumberField(int control, T& value, std::uint32_t least, std::uint32_t most,
                std::uint32_t unit = 1)
        : ShownField<T, std::string>(control, value), least_(least), most_(most), unit_(unit) {}

  private:
    void put(FieldControls& controls, const T& value) override {
        controls.setText(this->control(), std::to_string(value / unit_));
    }
    std::string current(const FieldControls& controls) const override {
        return controls.text(this->control());
    }
    std::string entered(const std::string& text, T& value) const override {
        const auto number = parseNumber(text);
        if (!number || *number < least_ || *number > most_)
            return numberRefusal(text, least_, most_);
        // The same number in other words is no other number.
        const auto entered = static_cast<std::uint32_t>(*number);
        if (entered != value / unit_) value = static_cast<T>(entered * unit_);
        return {};
    }

    std::uint32_t least_, most_, unit_;
};

template <class T>
class ChoiceField : public ShownField<T, int> {
  public:
    ChoiceField(int control, T& value, std::span<const std::string_view> items,
                std::string_view name)
        : ShownField<T, int>(control, value), items_(items), name_(name) {}

  private:
    // What a value that there is no item for shows as, and whether it may stay.
    bool staysEmpty() const { return !name_.empty(); }
    void put(FieldControls& controls, const T& value) override {
        const int other = staysEmpty() ? -1 : 0;
        controls.setItems(this->control(), items_);
        controls.select(this->control(), value < items_.size() ? static_cast<int>(value) : other);
    }
    int current(const FieldControls& controls) const override {
        return controls.selected(this->control());
    }
    std::string entered(const int& index, T& value) const override {
        value = static_cast<T>(index);
        return {};
    }
    std::string untouched(const T& value) const override {
        return staysEmpty() && value >= items_.size() ? "请选择" + std::string(name_)
                                                      : std::string();
    }

    std::span<const std::string_view> items_;
    std::string_view name_;
};

template <class T>
class FlagField : public ShownField<T, bool> {
  public:
    FlagField(int control, T& value, int enables)
        : ShownField<T, bool>(control, value), enables_(enables) {}
    void clicked(FieldControls& controls) const override {
        if (enables_ != 0) controls.setEnabled(enables_, current(controls));
    }

  private:
    void put(FieldControls& controls, const T& value) override {
        controls.setChecked(this->control(), value != T{});
        clicked(controls);
    }
    bool current(const FieldControls& controls) const override {
        return controls.checked(this->control());
    }
    std::string entered(const bool& checked, T& value) const override {
        value = static_cast<T>(checked);
        return {};
    }

    int enables_;
};

// What the form itself puts into the control: the table only reads it.
template <class T, T (FieldControls::*Current)(int) const>
class ReadField : public Field {
  public:
    ReadField(int control, T& value) : Field(control), value_(value) {}

    void show(FieldControls& controls) override { shown_ = current(controls); }
    bool changed(const FieldControls& controls) const override {
        return current(controls) != shown_;
    }
    std::string parse(const FieldControls& controls) override {
        pending_ = current(controls);
        return {};
    }
    void take() override { value_ = pending_; }

  private:
    T current(const FieldControls& controls) const { return (controls.*Current)(control()); }

    T& value_;
    T shown_{}, pending_{};
};

}  // namespace korvane
