// Matching names against patterns. FindFirst and its like belong to the backend.
#include "Foundation/Platform/FindFiles.h"

#include <algorithm>
#include <bitset>

#include "Foundation/Platform/FileNameCase.h"

namespace zelkor::platform {

namespace {

// What a pattern's unit means once its neighbours are known. In a pattern the units < > " mean the
// three special forms outright.
enum class Step {
    kUnit,         // itself, in either case
    kRun,          // any units
    kRunToPeriod,  // any units, but not past the last period
    kOneBefore,    // one unit; none before a period or at the end
    kPeriod,       // a period, or the end
};

// Units of a name that can have been matched so far: bit p, the first p.
constexpr std::size_t kLongestName = 511;
using Reached = std::bitset<kLongestName + 1>;

struct Name {
    std::u16string_view text;
    std::size_t last_period;  // its length when there is none
};

Step StepOf(std::u16string_view pattern, std::size_t at, bool run_at_end) {
    const bool more = at + 1 < pattern.size();
    switch (pattern[at]) {
        case u'*':
            if (!more) return run_at_end ? Step::kRunToPeriod : Step::kRun;
            return pattern[at + 1] == u'.' ? Step::kRunToPeriod : Step::kRun;
        case u'<':
            return Step::kRunToPeriod;
        case u'?':
        case u'>':
            return Step::kOneBefore;
        case u'.':
            return more && (pattern[at + 1] == u'*' || pattern[at + 1] == u'?') ? Step::kPeriod
                                                                                : Step::kUnit;
        case u'"':
            return Step::kPeriod;
        default:
            return Step::kUnit;
    }
}

// Where a single unit leads from `at`; npos when it does not match.
std::size_t AfterOne(Step step, char16_t unit, const Name& name, std::size_t at) {
    const std::size_t none = std::u16string_view::npos;
    const bool end = at == name.text.size();
    switch (step) {
        case Step::kOneBefore:
            return end || name.text[at] == u'.' ? at : at + 1;
        case Step::kPeriod:
            if (end) return at;
            return name.text[at] == u'.' ? at + 1 : none;
        default:
            if (end) return none;
            return FileNameUpper(unit) == FileNameUpper(name.text[at]) ? at + 1 : none;
    }
}

Reached AfterRun(Step step, const Name& name, const Reached& before) {
    Reached after;
    bool running = false;
    for (std::size_t at = 0; at <= name.text.size(); ++at) {
        running = running || before[at];
        after[at] = running;
        if (step == Step::kRunToPeriod && at == name.last_period) running = false;
    }
    return after;
}

Reached After(Step step, char16_t unit, const Name& name, const Reached& before) {
    if (step == Step::kRun || step == Step::kRunToPeriod) return AfterRun(step, name, before);
    Reached after;
    for (std::size_t at = 0; at <= name.text.size(); ++at) {
        if (!before[at]) continue;
        const std::size_t next = AfterOne(step, unit, name, at);
        if (next != std::u16string_view::npos) after.set(next);
    }
    return after;
}

}  // namespace

bool MatchesPattern(std::u16string_view name, std::u16string_view pattern) noexcept {
    if (name.size() > kLongestName) return false;
    const bool period_at_end = pattern.ends_with(u'.');
    pattern = pattern.substr(0, pattern.find_last_not_of(u". ") + 1);
    if (pattern == u"*.*") return true;
    const Name whole = {name, std::min(name.rfind(u'.'), name.size())};
    Reached reached;
    reached.set(0);
    for (std::size_t at = 0; at < pattern.size() && reached.any(); ++at) {
        reached = After(StepOf(pattern, at, period_at_end), pattern[at], whole, reached);
    }
    return reached[name.size()];
}

}  // namespace zelkor::platform
