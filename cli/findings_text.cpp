#include "cli/findings_text.h"

#include <algorithm>

namespace korvane::cli {
namespace {

std::ptrdiff_t errorsIn(const std::vector<Finding>& findings) {
    return std::ranges::count(findings, Finding::Severity::Error, &Finding::severity);
}

std::string counted(std::ptrdiff_t count, const char* what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string lineOf(const Finding& finding) {
    const std::string start =
        finding.severity == Finding::Severity::Error ? "error: " : "warning: ";
    return start + (finding.place.empty() ? "" : finding.place + ": ") + finding.sentence + '\n';
}

}  // namespace

std::string findingsText(const std::vector<Finding>& findings) {
    std::string text;
    for (const Finding& finding : findings) text += lineOf(finding);
    if (findings.empty()) return text;
    const auto errors = errorsIn(findings);
    return text + counted(errors, "error") + ", " +
           counted(std::ssize(findings) - errors, "warning") + '\n';
}

bool hasErrors(const std::vector<Finding>& findings) {
    return errorsIn(findings) != 0;
}

}  // namespace korvane::cli
