#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>

#include "model/config_checks.h"
#include "review/findings.h"
#include "review/whole.h"

// A rule is a row of a table: how bad it is to break it, what is then said, and how to see it of
// one item. `panel` is what the panel says to it; "" where it has no such rule.

namespace korvane::review {

inline constexpr auto error = Finding::Severity::Error, warning = Finding::Severity::Warning;

// Nothing of an item that has no such value.
using Value = std::optional<std::uint32_t>;

template <class Item>
struct Rule {
    Finding::Severity severity;
    const char *sentence, *panel;
    bool (*breaks)(const Whole& whole, const Item& item);
};

// A value and the first and last that it may have.
template <class Item>
struct Range {
    Finding::Severity severity;
    const char *what, *panel;
    std::uint32_t first, last;
    Value (*value)(const Item& item);
};

// A check of the panel's, which has its own words.
template <class Item>
struct Check {
    Finding::Severity severity;
    const char* what;
    std::string (*value)(const Item& item);
    int (*check)(ConfigChecks& checks, const Item& item);
};

// One whose sentence needs more than a place; empty where it is kept.
template <class Item>
struct Telling {
    Finding::Severity severity;
    std::string (*tell)(const Whole& whole, const Item& item);
};

// `sentence`, and the panel's words behind it.
std::string withPanelsWords(const std::string& sentence, const std::string& panel);
std::string outsideRange(const char* what, std::uint32_t value, std::uint32_t first,
                         std::uint32_t last);
// What the panel says when it refuses; empty when it does not.
std::string refusal(const std::function<int(ConfigChecks&)>& check);

template <class Item>
std::string sentenceOf(const Rule<Item>& rule, const Whole& whole, const Item& item) {
    return rule.breaks(whole, item) ? withPanelsWords(rule.sentence, rule.panel) : "";
}

template <class Item>
std::string sentenceOf(const Range<Item>& rule, const Whole&, const Item& item) {
    const Value value = rule.value(item);
    if (!value || (*value >= rule.first && *value <= rule.last)) return "";
    return withPanelsWords(outsideRange(rule.what, *value, rule.first, rule.last), rule.panel);
}

template <class Item>
std::string sentenceOf(const Check<Item>& rule, const Whole&, const Item& item) {
    const std::string panel =
        refusal([&](ConfigChecks& checks) { return rule.check(checks, item); });
    return panel.empty()
               ? ""
               : withPanelsWords(rule.what + (' ' + rule.value(item)) + " is wrong", panel);
}

template <class Item>
std::string sentenceOf(const Telling<Item>& rule, const Whole& whole, const Item& item) {
    return rule.tell(whole, item);
}

template <class Item, class Rules>
void judge(const Whole& whole, const Item& item, const Rules& rules,
           std::vector<Finding>& findings) {
    for (const auto& rule : rules)
        if (std::string sentence = sentenceOf(rule, whole, item); !sentence.empty())
            findings.push_back({rule.severity, placeOf(item), std::move(sentence)});
}

// All rules of some tables, item by item.
template <class Items, class... Rules>
void judgeAll(const Whole& whole, const Items& items, std::vector<Finding>& findings,
              const Rules&... rules) {
    for (const auto& item : items) (judge(whole, item, rules, findings), ...);
}

// Whether one before `item` in its own list is like it.
template <class Items, class Item, class Alike>
bool isRepeated(const Items& items, const Item& item, Alike alike) {
    return std::any_of(&*items.begin(), &item,
                       [&](const Item& earlier) { return alike(earlier, item); });
}

// What is said of each part of a configuration.
void judgeLimits(const Whole& whole, std::vector<Finding>& findings);
void judgeNetwork(const Whole& whole, std::vector<Finding>& findings);
void judgeFrames(const Whole& whole, std::vector<Finding>& findings);
void judgeServices(const Whole& whole, std::vector<Finding>& findings);
void judgeChannels(const Whole& whole, std::vector<Finding>& findings);
void judgeTables(const Whole& whole, std::vector<Finding>& findings);
void judgeDevice(const Whole& whole, std::vector<Finding>& findings);

}  // namespace korvane::review
