// Qt's part of LocaleBench.
#include <benchmark/benchmark.h>

#include <QChar>
#include <QLocale>

namespace {

void BM_Month(benchmark::State& state) {
    const QLocale locale(QLocale::German, QLocale::Germany);
    int month = 0;
    for (auto _ : state) {
        month = (month + 1) % 12;
        benchmark::DoNotOptimize(locale.standaloneMonthName(month + 1));
    }
}
BENCHMARK(BM_Month)->Name("LocaleMonth/Qt");

void BM_Letters(benchmark::State& state) {
    std::uint32_t letters = 0;
    for (auto _ : state) {
        for (ushort unit = 0; unit < 0x3000; ++unit) letters += QChar(unit).isLetter();
    }
    benchmark::DoNotOptimize(letters);
    state.SetItemsProcessed(state.iterations() * 0x3000);
}
BENCHMARK(BM_Letters)->Name("IsLetter/Qt");

}  // namespace
