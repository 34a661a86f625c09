// ICU's part of LocaleBench.
#include <benchmark/benchmark.h>
#include <unicode/uchar.h>
#include <unicode/udat.h>

namespace {

// Out of a format that is kept open, the fastest way.
void BM_Copy(benchmark::State& state) {
    UErrorCode status = U_ZERO_ERROR;
    UDateFormat* format =
        udat_open(UDAT_NONE, UDAT_SHORT, "de_DE", nullptr, 0, nullptr, 0, &status);
    UChar text[32];
    std::int32_t month = 0;
    for (auto _ : state) {
        month = (month + 1) % 12;
        benchmark::DoNotOptimize(
            udat_getSymbols(format, UDAT_STANDALONE_MONTHS, month, text, 32, &status));
    }
    udat_close(format);
}
BENCHMARK(BM_Copy)->Name("LocaleMonthCopy/ICU");

void BM_Letters(benchmark::State& state) {
    std::uint32_t letters = 0;
    for (auto _ : state) {
        for (UChar32 unit = 0; unit < 0x3000; ++unit) letters += u_isalpha(unit) != 0;
    }
    benchmark::DoNotOptimize(letters);
    state.SetItemsProcessed(state.iterations() * 0x3000);
}
BENCHMARK(BM_Letters)->Name("IsLetter/ICU");

}  // namespace
