#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>

#include "forms/form.h"

namespace korvane::test {

// The controls of a dialog without a window. Any number is a control of any kind.
class ScriptedControls : public FieldControls {
  public:
    std::string text(int control) const override { return value(texts, control); }
    void setText(int control, std::string_view text) override { texts[control] = text; }
    int selected(int control) const override { return value(selections, control); }
    void select(int control, int index) override { selections[control] = index; }
    void setItems(int control, std::span<const std::string_view> list) override {
        items[control] = {list.begin(), list.end()};
    }
    bool checked(int control) const override { return value(checks, control); }
    void setChecked(int control, bool checked) override { checks[control] = checked; }
    std::vector<int> checkedRows(int control) const override { return value(rows, control); }
    void setCheckedRows(int control, const std::vector<int>& checked) override {
        rows[control] = checked;
    }
    std::optional<Ipv4> address(int control) const override { return value(addresses, control); }
    void setAddress(int control, const std::optional<Ipv4>& address) override {
        addresses[control] = address;
    }
    void setLevel(int control, int percent) override { levels[control] = percent; }
    void setEnabled(int control, bool enabled) override { enabledOnes[control] = enabled; }
    void setVisible(int control, bool visible) override { visibleOnes[control] = visible; }
    void focus(int control) override { focused = control; }

    std::map<int, std::string> texts;
    std::map<int, int> selections, levels;
    std::map<int, std::vector<std::string>> items;
    std::map<int, bool> checks, enabledOnes, visibleOnes;
    std::map<int, std::vector<int>> rows;  // those that are checked
    std::map<int, std::optional<Ipv4>> addresses;
    int focused = 0;

  private:
    template <class T>
    static T value(const std::map<int, T>& values, int control) {
        const auto found = values.find(control);
        return found == values.end() ? T{} : found->second;
    }
};

// An operator who fills in each form that comes up by script: one that the script does not hold is
// cancelled. An entry that is refused cancels the form, too; where the focus was then, is noted.
class ScriptedForms : public FormRunner {
  public:
    using Entries = std::function<void(ScriptedControls&)>;

    explicit ScriptedForms(Prompts& prompts) : prompts_(prompts) {}

    bool run(Form& form) override {
        ScriptedControls own;
        ++shown;
        const bool accepted = fillIn(form, own);
        controls = std::move(own);
        return accepted;
    }

    std::deque<Entries> script;
    Form* current = nullptr;    // that is filled in: it may show others
    ScriptedControls controls;  // of the last form
    int shown = 0;              // forms so far

  private:
    bool fillIn(Form& form, ScriptedControls& own) {
        FormExchange exchange(form, own, prompts_);
        exchange.show();
        if (script.empty()) return false;
        const Entries enter = std::move(script.front());
        script.pop_front();
        current = &form;
        enter(own);
        return exchange.accept();
    }

    Prompts& prompts_;
};

}  // namespace korvane::test
