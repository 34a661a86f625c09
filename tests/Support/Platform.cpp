#include "Support/Platform.h"

#include <algorithm>
#include <string_view>

#include "Foundation/Core/Base/OS.h"
#include "Foundation/Platform/System.h"

namespace platform = zelkor::platform;

namespace test {

namespace {

platform::SystemVersion forced;

bool Answer(platform::SystemVersion* version) {
    *version = forced;
    return true;
}

void Classify(bool (*answer)(platform::SystemVersion*)) {
    platform::SystemAnswers answers;
    answers.version = answer;
    platform::SetSystemAnswers(answers);
    zelkor::detail::ClassifySystemAgain();
}

}  // namespace

ForcedVersion::ForcedVersion(std::uint32_t family, std::uint32_t major, std::uint32_t minor,
                             std::uint32_t build, const char16_t* text) {
    forced = platform::SystemVersion{family, major, minor, build, {}};
    std::ranges::copy(std::u16string_view(text).substr(0, 127), forced.text);
    Classify(Answer);
}

ForcedVersion::~ForcedVersion() {
    Classify(nullptr);
}

}  // namespace test
