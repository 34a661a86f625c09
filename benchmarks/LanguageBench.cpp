// Languages and locales: reading names and codes, values of locales, default code pages.
#include <benchmark/benchmark.h>

#include "Foundation/Core/Language/Language.h"
#include "Foundation/Core/Language/Locale.h"
#include "Foundation/Core/Language/LocaleInfo.h"
#include "Foundation/Core/String/UString.h"

namespace {

// ---- Names and codes -------------------------------------------------------------------------

void BM_ReadName(benchmark::State& state, const char16_t* name) {
    for (auto _ : state) benchmark::DoNotOptimize(CT_Language::sn_GetLanguageID(name));
}
BENCHMARK_CAPTURE(BM_ReadName, early, u"German (Switzerland)")->Name("ReadName/early/Zelkor");
BENCHMARK_CAPTURE(BM_ReadName, late, u"Quechua (Peru)")->Name("ReadName/late/Zelkor");
BENCHMARK_CAPTURE(BM_ReadName, unknown, u"Klingon (Kronos)")->Name("ReadName/unknown/Zelkor");
BENCHMARK_CAPTURE(BM_ReadName, own, u"Croatian (Bosnia and Herzegovina)")
    ->Name("ReadName/own/Zelkor");

void BM_ReadCode(benchmark::State& state) {
    const CT_UString code(u"de-CH");
    CT_Language::et_Primary primary;
    CT_Language::et_Sub sub;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CT_Language::sb_GetLanguages(&primary, &sub, &code));
    }
}
BENCHMARK(BM_ReadCode)->Name("ReadCode/Zelkor");

void BM_MakeName(benchmark::State& state) {
    CT_UString name;
    for (auto _ : state) {
        CT_Language::sv_MakeLanguageString(&name, CT_Language::kGerman,
                                           CT_Language::kGermanSwitzerland);
        benchmark::DoNotOptimize(name.n_GetLength());
    }
}
BENCHMARK(BM_MakeName)->Name("MakeName/Zelkor");

void BM_Identify(benchmark::State& state) {
    unsigned int id = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CT_Language::seo_GetSub(0x0807 + (id ^= 1)));
    }
}
BENCHMARK(BM_Identify)->Name("Identify/Zelkor");

// ---- Values of locales -----------------------------------------------------------------------

void BM_Value(benchmark::State& state, LCID lcid, CT_LocaleInfo::et_Type type) {
    CT_UString value;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CT_LocaleInfo::sb_GetLocaleInfo(lcid, type, &value));
    }
}
BENCHMARK_CAPTURE(BM_Value, decimal, 0x0407, CT_LocaleInfo::kDecimalSeparator)
    ->Name("Decimal/Zelkor");
BENCHMARK_CAPTURE(BM_Value, month, 0x0407, CT_LocaleInfo::kMonthName1)->Name("MonthName/Zelkor");
BENCHMARK_CAPTURE(BM_Value, date, 0x0407, CT_LocaleInfo::kShortDate)->Name("ShortDate/Zelkor");
BENCHMARK_CAPTURE(BM_Value, name, 0x0407, CT_LocaleInfo::kNativeLanguage)
    ->Name("NativeName/Zelkor");
BENCHMARK_CAPTURE(BM_Value, own, 0x0464, CT_LocaleInfo::kAbbrevMonthName12)->Name("OwnList/Zelkor");
BENCHMARK_CAPTURE(BM_Value, fallback, 0x0435, CT_LocaleInfo::kMonthName12)
    ->Name("OwnListFallback/Zelkor");

void BM_Buffer(benchmark::State& state) {
    char16_t buffer[64];
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            CT_LocaleInfo::sb_GetLocaleInfo(0x0407, CT_LocaleInfo::kMonthName1, buffer, 64));
    }
}
BENCHMARK(BM_Buffer)->Name("MonthNameBuffer/Zelkor");

void BM_Number(benchmark::State& state) {
    unsigned int number = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            CT_LocaleInfo::sb_GetLocaleInfo(0x0407, CT_LocaleInfo::kFirstDayOfWeek, &number));
    }
}
BENCHMARK(BM_Number)->Name("Number/Zelkor");

// Every locale of the catalogue in turn, all asked before.
void BM_AnsiPage(benchmark::State& state) {
    LCID lcid = 0;
    for (auto _ : state) {
        lcid = lcid % 0x57 + 1;
        benchmark::DoNotOptimize(CT_LocaleInfo::sn_GetDefaultANSICodePage(0x0400 + lcid));
    }
}
BENCHMARK(BM_AnsiPage)->Name("AnsiPage/Zelkor")->ThreadRange(1, 2);

void BM_Make(benchmark::State& state) {
    const CT_UString code(u"de-CH");
    for (auto _ : state) {
        CT_Locale locale(&code);
        benchmark::DoNotOptimize(locale);
    }
}
BENCHMARK(BM_Make)->Name("LocaleFromCode/Zelkor");

}  // namespace
