// Qt's part of LanguageBench.
#include <benchmark/benchmark.h>

#include <QLocale>

namespace {

void BM_ReadCode(benchmark::State& state) {
    const QString code = QStringLiteral("de-CH");
    for (auto _ : state) benchmark::DoNotOptimize(QLocale(code).country());
}
BENCHMARK(BM_ReadCode)->Name("ReadCode/Qt");

void BM_Decimal(benchmark::State& state) {
    const QLocale locale(QLocale::German, QLocale::Germany);
    for (auto _ : state) benchmark::DoNotOptimize(locale.decimalPoint());
}
BENCHMARK(BM_Decimal)->Name("Decimal/Qt");

void BM_MonthName(benchmark::State& state) {
    const QLocale locale(QLocale::German, QLocale::Germany);
    for (auto _ : state) benchmark::DoNotOptimize(locale.standaloneMonthName(1));
}
BENCHMARK(BM_MonthName)->Name("MonthName/Qt");

void BM_ShortDate(benchmark::State& state) {
    const QLocale locale(QLocale::German, QLocale::Germany);
    for (auto _ : state) benchmark::DoNotOptimize(locale.dateFormat(QLocale::ShortFormat));
}
BENCHMARK(BM_ShortDate)->Name("ShortDate/Qt");

void BM_NativeName(benchmark::State& state) {
    const QLocale locale(QLocale::German, QLocale::Germany);
    for (auto _ : state) benchmark::DoNotOptimize(locale.nativeLanguageName());
}
BENCHMARK(BM_NativeName)->Name("NativeName/Qt");

}  // namespace
