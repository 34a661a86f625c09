// ICU's part of LanguageBench.
#include <benchmark/benchmark.h>
#include <unicode/uloc.h>
#include <unicode/unum.h>

namespace {

void BM_ReadCode(benchmark::State& state) {
    char canonical[32];
    for (auto _ : state) {
        UErrorCode status = U_ZERO_ERROR;
        uloc_canonicalize("de-CH", canonical, sizeof canonical, &status);
        benchmark::DoNotOptimize(uloc_getLCID(canonical));
    }
}
BENCHMARK(BM_ReadCode)->Name("ReadCode/ICU");

void BM_MakeName(benchmark::State& state) {
    UChar name[64];
    for (auto _ : state) {
        UErrorCode status = U_ZERO_ERROR;
        benchmark::DoNotOptimize(uloc_getDisplayName("de_CH", "en", name, 64, &status));
    }
}
BENCHMARK(BM_MakeName)->Name("MakeName/ICU");

// One value out of an object that is kept open, the fastest way.
void BM_Decimal(benchmark::State& state) {
    UErrorCode status = U_ZERO_ERROR;
    UNumberFormat* format = unum_open(UNUM_DECIMAL, nullptr, 0, "de", nullptr, &status);
    UChar text[8];
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            unum_getSymbol(format, UNUM_DECIMAL_SEPARATOR_SYMBOL, text, 8, &status));
    }
    unum_close(format);
}
BENCHMARK(BM_Decimal)->Name("Decimal/ICU");

// From the number of the locale, as the library is asked.
void BM_DecimalOfLocale(benchmark::State& state) {
    UChar text[8];
    for (auto _ : state) {
        char name[32];
        UErrorCode status = U_ZERO_ERROR;
        uloc_getLocaleForLCID(0x0407, name, sizeof name, &status);
        UNumberFormat* format = unum_open(UNUM_DECIMAL, nullptr, 0, name, nullptr, &status);
        unum_getSymbol(format, UNUM_DECIMAL_SEPARATOR_SYMBOL, text, 8, &status);
        unum_close(format);
    }
}
BENCHMARK(BM_DecimalOfLocale)->Name("Decimal/ICU-by-number");

void BM_NativeName(benchmark::State& state) {
    UChar name[64];
    for (auto _ : state) {
        UErrorCode status = U_ZERO_ERROR;
        benchmark::DoNotOptimize(uloc_getDisplayLanguage("de", "de", name, 64, &status));
    }
}
BENCHMARK(BM_NativeName)->Name("NativeName/ICU");

}  // namespace
