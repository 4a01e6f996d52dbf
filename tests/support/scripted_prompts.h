#pragma once

#include <deque>
#include <string>
#include <vector>

#include "model/prompts.h"

namespace korvane::test {

// An operator who answers by script and notes what was asked. An answer that the script does not
// hold is No, or Cancel.
class ScriptedPrompts : public Prompts {
  public:
    // "say TEXT", "warn TEXT", "ask TEXT" ("ask/No TEXT" when No is preset), "open EXTENSION
    // FILTER", "save …", "busy RESULT" once that is over.
    std::vector<std::string> log;
    std::deque<bool> answers;
    std::deque<std::filesystem::path> files;

    void message(std::string_view text) override { log.push_back("say " + std::string(text)); }
    void warning(std::string_view text) override { log.push_back("warn " + std::string(text)); }
    bool confirm(std::string_view text, DefaultButton preset) override {
        log.push_back((preset == DefaultButton::No ? "ask/No " : "ask ") + std::string(text));
        return take(answers).value_or(false);
    }
    std::optional<std::filesystem::path> chooseFileToOpen(const FileChoice& choice) override {
        return choose("open ", choice);
    }
    std::optional<std::filesystem::path> chooseFileToSave(const FileChoice& choice) override {
        return choose("save ", choice);
    }
    int whileBusy(const std::function<int()>& work) override {
        const int result = work();
        log.push_back("busy " + std::to_string(result));
        return result;
    }

  private:
    template <class T>
    static std::optional<T> take(std::deque<T>& script) {
        if (script.empty()) return std::nullopt;
        T next = std::move(script.front());
        script.pop_front();
        return next;
    }
    std::optional<std::filesystem::path> choose(const char* kind, const FileChoice& choice) {
        log.push_back(kind + std::string(choice.defaultExtension) + ' ' +
                      std::string(choice.filter));
        if (!choice.folder.empty()) log.push_back("in " + choice.folder.filename().string());
        return take(files);
    }
};

}  // namespace korvane::test
