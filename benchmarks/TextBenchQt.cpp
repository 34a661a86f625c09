// The peers of string tools in Qt.
#include <benchmark/benchmark.h>

#include <QLocale>
#include <QString>
#include <QStringList>
#include <QVector>
#include <string>

#include "TextBench.h"

namespace {

QString String(const std::u16string& text) {
    return QString::fromUtf16(text.data(), static_cast<int>(text.size()));
}

void CountBytes(benchmark::State& state, const QString& text) {
    state.SetBytesProcessed(state.iterations() * text.size() * 2);
}

void ReplaceQt(benchmark::State& state, const bench::Replacement& replacement) {
    const QString original = String(bench::TextToScan());
    const QString find = QString::fromUtf16(replacement.find);
    const QString given = QString::fromUtf16(replacement.replacement);
    for (auto _ : state) {
        QString copy = original;
        copy.replace(find, given);
        benchmark::DoNotOptimize(copy);
    }
    CountBytes(state, original);
}
const bool replaces = [] {
    for (const bench::Replacement& replacement : bench::kReplacements) {
        benchmark::RegisterBenchmark(("Replace/" + std::string(replacement.name) + "/Qt").c_str(),
                                     ReplaceQt, replacement);
    }
    return true;
}();

void SplitQt(benchmark::State& state) {
    const QString text = String(bench::TextToScan(state.range(0)));
    for (auto _ : state) {
        QStringList items = text.split(QLatin1Char(' '));
        benchmark::DoNotOptimize(items);
    }
    CountBytes(state, text);
}
BENCHMARK(SplitQt)->Name("Split/Qt")->Arg(1000)->Arg(500000);

void CountItemsQt(benchmark::State& state) {
    const QString text = String(bench::TextToScan());
    for (auto _ : state) benchmark::DoNotOptimize(text.count(QLatin1Char(' ')));
    CountBytes(state, text);
}
BENCHMARK(CountItemsQt)->Name("CountItems/Qt");

void ItemQt(benchmark::State& state) {
    const QString text = String(bench::TextToScan(state.range(0)));
    const int count = text.count(QLatin1Char(' ')) + 1;
    int n = 0;
    for (auto _ : state) {
        QString item = text.section(QLatin1Char(' '), n, n);
        n = (n + 7919) % count;
        benchmark::DoNotOptimize(item);
    }
}
BENCHMARK(ItemQt)->Name("Item/Qt")->Arg(100)->Arg(10000);

// With the locale looked up each time, as we look it up, and kept.
void FormatNumberQt(benchmark::State& state) {
    const QLocale kept(QLocale::German, QLocale::Germany);
    const bool keeps = state.range(0) != 0;
    double value = 1234567.5;
    for (auto _ : state) {
        const QLocale german = keeps ? kept : QLocale(QLocale::German, QLocale::Germany);
        QString text = german.toString(value, 'f', 2);
        benchmark::DoNotOptimize(text);
        value += 1;
    }
}
BENCHMARK(FormatNumberQt)->Name("FormatNumber/Qt")->Arg(0)->Arg(1);

}  // namespace
