// ICU's part of CharacterBench.
#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include "benchmarks/CharacterBench.h"

namespace bench {
namespace {

using StringMap = std::int32_t (*)(UChar*, std::int32_t, const UChar*, std::int32_t, const char*,
                                   UErrorCode*);

void RunString(benchmark::State& state, Language language, StringMap map) {
    const std::u16string text = Utf16Text(language, kCharacterText);
    const auto length = static_cast<std::int32_t>(text.size());
    std::u16string out(text.size() + 100, u'\0');
    for (auto _ : state) {
        UErrorCode error = U_ZERO_ERROR;
        benchmark::DoNotOptimize(map(out.data(), static_cast<std::int32_t>(out.size()), text.data(),
                                     length, "", &error));
    }
    CountUnits(state, text);
}

void RunDecompose(benchmark::State& state, Language language) {
    const std::u16string text = Utf16Text(language, kCharacterText);
    std::u16string out(2 * text.size(), u'\0');
    UErrorCode error = U_ZERO_ERROR;
    const UNormalizer2* const nfd = unorm2_getNFDInstance(&error);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            unorm2_normalize(nfd, text.data(), static_cast<std::int32_t>(text.size()), out.data(),
                             static_cast<std::int32_t>(out.size()), &error));
    }
    CountUnits(state, text);
}

const bool registered[] = {
    Register("Category", "ICU",
             [](auto& state, Language language) { RunClassify(state, language, u_charType); }),
    Register("IsAlpha", "ICU",
             [](auto& state, Language language) { RunClassify(state, language, u_isalpha); }),
    Register("IsSpace", "ICU",
             [](auto& state, Language language) { RunClassify(state, language, u_isspace); }),
    Register("Lower", "ICU",
             [](auto& state, Language language) { RunMap(state, language, u_tolower); }),
    Register("Upper", "ICU",
             [](auto& state, Language language) { RunMap(state, language, u_toupper); }),
    Register("LowerString", "ICU",
             [](auto& state, Language language) { RunString(state, language, u_strToLower); }),
    Register("UpperString", "ICU",
             [](auto& state, Language language) { RunString(state, language, u_strToUpper); }),
    Register("Decompose", "ICU", RunDecompose),
};

}  // namespace
}  // namespace bench
