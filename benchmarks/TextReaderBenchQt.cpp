// The peer of TextReaderBench.cpp: QTextStream.
#include <benchmark/benchmark.h>

#include <QFile>
#include <QTextStream>
#include <filesystem>

#include "TextFiles.h"

namespace {

void BM_QTextStream(benchmark::State& state, bench::TextFile text) {
    const std::string& name = bench::FileOf(text);
    for (auto _ : state) {
        QFile file(QString::fromStdString(name));
        if (!file.open(QIODevice::ReadOnly)) return state.SkipWithError("cannot open");
        QTextStream stream(&file);
        stream.setCodec(text == bench::TextFile::Utf8 ? "UTF-8" : "windows-1252");
        QString line;
        qsizetype units = 0;
        while (stream.readLineInto(&line)) units += line.size();
        benchmark::DoNotOptimize(units);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(std::filesystem::file_size(name)));
}
BENCHMARK_CAPTURE(BM_QTextStream, utf8, bench::TextFile::Utf8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_QTextStream, windows1252, bench::TextFile::Windows1252)
    ->Unit(benchmark::kMillisecond);

}  // namespace
