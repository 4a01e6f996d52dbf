#include "review/findings.h"

#include "review/rules.h"

namespace korvane {
namespace review {
namespace {

// Listens to what the panel's checks say, and answers nothing.
class Listener final : public Prompts {
  public:
    std::string heard;

    void message(std::string_view) override {}
    void warning(std::string_view text) override { heard = text; }
    bool confirm(std::string_view, DefaultButton) override { return false; }
    std::optional<std::filesystem::path> chooseFileToOpen(const FileChoice&) override { return {}; }
    std::optional<std::filesystem::path> chooseFileToSave(const FileChoice&) override { return {}; }
    int whileBusy(const std::function<int()>& work) override { return work(); }
};

// Values are judged by themselves: what is unique in a whole, its rules know.
const ConfigModel& emptyModel() {
    static const auto model = std::make_unique<const ConfigModel>();
    return *model;
}

}  // namespace

std::string withPanelsWords(const std::string& sentence, const std::string& panel) {
    return panel.empty() ? sentence : sentence + " (\"" + panel + "\")";
}

std::string outsideRange(const char* what, std::uint32_t value, std::uint32_t first,
                         std::uint32_t last) {
    const std::string is = what + (' ' + std::to_string(value)) + " is not ";
    if (first == last) return is + std::to_string(first);
    return is + "from " + std::to_string(first) + " to " + std::to_string(last);
}

std::string refusal(const std::function<int(ConfigChecks&)>& check) {
    Listener listener;
    ConfigChecks checks(emptyModel(), listener);
    return check(checks) == 0 ? "" : listener.heard;
}

}  // namespace review

std::vector<Finding> findingsOf(const Configuration& configuration) {
    const review::Whole whole(configuration);
    std::vector<Finding> findings;
    for (const auto judge :
         {review::judgeLimits, review::judgeNetwork, review::judgeFrames, review::judgeServices,
          review::judgeChannels, review::judgeTables, review::judgeDevice})
        judge(whole, findings);
    return findings;
}

}  // namespace korvane
