#pragma once

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "cli/terminal.h"

namespace korvane::test {

// Answers questions by script, and notes what a command tells.
class ScriptedTerminal : public cli::Terminal {
  public:
    void write(std::string_view text) override { written += text; }
    void redraw(std::string_view text) override { write(text); }
    void note(std::string_view line) override { notes.append(line).append("\n"); }
    void transient(std::string_view line) override {
        ++transients;
        if (onTransient) onTransient(line);
        interruptAsked = interruptAsked || (!interruptAt.empty() && line.contains(interruptAt));
    }
    bool confirm(std::string_view question) override {
        questions.emplace_back(question);
        if (answers.empty()) return false;
        const bool answer = answers.front();
        answers.pop_front();
        return answer;
    }
    std::string input() override { return std::exchange(typed, {}); }
    bool interrupted() const override { return interruptAsked; }

    std::string written, notes, typed;
    std::vector<std::string> questions;
    std::deque<bool> answers;
    int transients = 0;
    std::function<void(std::string_view line)> onTransient;
    std::string interruptAt;  // Ctrl-C as soon as a passing line holds this
    bool interruptAsked = false;
};

}  // namespace korvane::test
