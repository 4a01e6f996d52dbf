#pragma once

#include <gtest/gtest.h>
#include <memory>

#include "editors/editing.h"
#include "support/scripted_forms.h"
#include "support/scripted_prompts.h"

namespace korvane::test {

// A model, and an operator who edits it by script.
class EditingFixture : public testing::Test {
  protected:
    using Controls = ScriptedControls;

    // What was said since the last time, a line each.
    std::string said() {
        std::string text;
        for (const std::string& line : std::exchange(prompts_.log, {})) text += line + '\n';
        return text;
    }
    const ConfigTables& tables() const { return model_->tables(); }

    std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    ScriptedPrompts prompts_;
    ScriptedForms forms_{prompts_};
    Editing editing_{*model_, prompts_, forms_};
};

}  // namespace korvane::test
