#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/context.h"
#include "cli/exit_code.h"
#include "cli/places.h"

namespace CLI {
class App;
}

namespace korvane::cli {

// What a command does once its arguments are known.
using Action = std::function<ExitCode(Context&)>;

// The arguments of one command, for the parser: where each value goes, which lives as long as the
// parser does. The parser refuses what is none.
class Arguments {
  public:
    // The action of the command that was given goes to `chosen`.
    Arguments(CLI::App& app, Action& chosen) : app_(app), chosen_(chosen) {}

    void address(std::string& value);
    void file(const char* name, std::string& value, const char* help);
    // A file or "device:ADDRESS".
    void place(const char* name, std::string& value);
    void list(const char* name, std::vector<std::string>& values, const char* help);

    void flag(const char* names, bool& value, const char* help);
    void yes(bool& value) { flag("--yes,-y", value, "do not ask"); }
    void format(const char* option, std::optional<Format>& value, const char* help);
    void text(const char* option, std::string& value, const char* valueName, const char* help);
    void seconds(const char* option, std::uint32_t& value, const char* help);

    // A command of this command, which then does nothing by itself.
    Arguments command(const char* name, const char* help);

    // What the command does: run(context, options).
    template <class Options, class Run>
    void does(std::shared_ptr<Options> options, Run run) {
        act([options = std::move(options), run](Context& context) {
            return run(context, *options);
        });
    }

  private:
    void act(Action action);

    CLI::App& app_;
    Action& chosen_;
};

}  // namespace korvane::cli
