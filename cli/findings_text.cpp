#include "cli/findings_text.h"

#include <algorithm>

namespace korvane::cli {
namespace {

std::ptrdiff_t errorsIn(const std::vector<Finding>& findings) {
    return std::ranges::count(findings, Finding::Severity::Error, &Finding::severity);
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
    return text + std::to_string(errors) + " errors, " +
           std::to_string(std::ssize(findings) - errors) + " warnings\n";
}

bool hasErrors(const std::vector<Finding>& findings) {
    return errorsIn(findings) != 0;
}

}  // namespace korvane::cli
