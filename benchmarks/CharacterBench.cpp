// Classifying and mapping 1 MB of text, unit by unit and as whole strings. Throughput counts bytes
// of UTF-16. Whole strings are copied first, as their mapping is in place and a peer's is not.
#include "benchmarks/CharacterBench.h"

#include "Foundation/Core/Character/CharMappings.h"
#include "Foundation/Core/Character/CharProperties.h"
#include "Foundation/Core/String/UString.h"

namespace bench {
namespace {

void RunString(benchmark::State& state, Language language, void (*map)(CT_UString*)) {
    const std::u16string text = Utf16Text(language, kCharacterText);
    const auto length = static_cast<std::uint32_t>(text.size());
    CT_UString out(text.data(), length);
    for (auto _ : state) {
        out.v_Replace(text.data(), length, 0);
        map(&out);
        benchmark::DoNotOptimize(out.qcuz_Get());
    }
    CountUnits(state, text);
}

void RunDecompose(benchmark::State& state, Language language) {
    const std::u16string text = Utf16Text(language, kCharacterText);
    const CT_UString source(text.data(), static_cast<std::uint32_t>(text.size()));
    CT_UString out;
    for (auto _ : state) {
        CT_CharMappings::sv_Decompose(&source, &out);
        benchmark::DoNotOptimize(out.qcuz_Get());
    }
    CountUnits(state, text);
}

template <BOOL (*test)(char16_t)>
void RunTest(benchmark::State& state, Language language) {
    RunClassify(state, language, [](char16_t unit) { return test(unit); });
}

const bool registered[] = {
    Register("Category", "Zelkor",
             [](auto& state, Language language) {
                 RunClassify(state, language, [](char16_t unit) {
                     return CT_CharProperties::seo_GetUnicodeProperty(unit);
                 });
             }),
    Register("IsAlpha", "Zelkor", RunTest<CT_CharProperties::sb_IsAlpha>),
    Register("IsSpace", "Zelkor", RunTest<CT_CharProperties::sb_IsSpace>),
    Register("IsQuote", "Zelkor", RunTest<CT_CharProperties::sb_IsQuote>),
    Register("Lower", "Zelkor",
             [](auto& state, Language language) {
                 RunMap(state, language,
                        [](char16_t unit) { return CT_CharMappings::su_ToLower(unit); });
             }),
    Register("Upper", "Zelkor",
             [](auto& state, Language language) {
                 RunMap(state, language,
                        [](char16_t unit) { return CT_CharMappings::su_ToUpper(unit); });
             }),
    Register("LowerString", "Zelkor",
             [](auto& state, Language language) {
                 RunString(state, language, CT_CharMappings::sv_ToLower);
             }),
    Register("UpperString", "Zelkor",
             [](auto& state, Language language) {
                 RunString(state, language, CT_CharMappings::sv_ToUpper);
             }),
    Register("FoldDigitString", "Zelkor",
             [](auto& state, Language language) {
                 RunString(state, language, CT_CharMappings::sv_FoldDigit);
             }),
    Register("Decompose", "Zelkor", RunDecompose),
};

}  // namespace
}  // namespace bench
