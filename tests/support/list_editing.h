#pragma once

#include "forms/edit_list.h"
#include "support/editing_fixture.h"

namespace korvane::test {

// Lists, and an operator who edits their records in dialogs.
class ListEditing : public EditingFixture {
  protected:
    using Entries = std::map<int, std::string>;  // by control; of a drop-down list the index

    static void put(const Entries& entries, Controls& controls) {
        for (const auto& [control, text] : entries)
            if (controls.selections.contains(control))
                controls.selections[control] = std::stoi(text);
            else
                controls.texts[control] = text;
    }
    // The list, of which the next dialog is answered with these entries.
    EditList& entering(const Entries& entries, EditList& list) {
        forms_.script = {[=](Controls& controls) { put(entries, controls); }};
        return list;
    }
    void expectRefused(bool taken, int focus, const std::string& message) {
        EXPECT_FALSE(taken) << message;
        EXPECT_EQ(said(), "warn " + message + '\n');
        EXPECT_EQ(forms_.controls.focused, focus) << message;
    }
};

}  // namespace korvane::test
