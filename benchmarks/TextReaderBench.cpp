// Lines out of a 50 MB text file: the stream text reader beside std::getline, and in
// TextReaderBenchQt.cpp beside QTextStream.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "Foundation/Core/File/Stream.h"
#include "Foundation/Core/File/TextReader.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Core/String/UString.h"
#include "TextFiles.h"

namespace {

void BM_ReadLine(benchmark::State& state, bench::TextFile text) {
    const std::string& name = bench::FileOf(text);
    const CT_UString path(name.c_str(), CT_String::kToEnd, 65001);
    const auto encoding =
        text == bench::TextFile::Utf8 ? CT_Codepage::kUtf8 : CT_Codepage::kWindows1252;
    for (auto _ : state) {
        CT_WinFile file(&path, 16384);
        CT_FileStream stream(&file);
        CT_StreamTextReader reader(&stream, encoding, TRUE);
        CT_UString line;
        std::size_t units = 0;
        while (reader.b_ReadLine(line)) units += line.n_GetLength();
        benchmark::DoNotOptimize(units);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(std::filesystem::file_size(name)));
}
BENCHMARK_CAPTURE(BM_ReadLine, utf8, bench::TextFile::Utf8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadLine, windows1252, bench::TextFile::Windows1252)
    ->Unit(benchmark::kMillisecond);

// Bytes only, without any conversion.
void BM_StdGetline(benchmark::State& state, bench::TextFile text) {
    const std::string& name = bench::FileOf(text);
    for (auto _ : state) {
        std::ifstream file(name, std::ios::binary);
        std::string line;
        std::size_t bytes = 0;
        while (std::getline(file, line)) bytes += line.size();
        benchmark::DoNotOptimize(bytes);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(std::filesystem::file_size(name)));
}
BENCHMARK_CAPTURE(BM_StdGetline, utf8, bench::TextFile::Utf8)->Unit(benchmark::kMillisecond);

}  // namespace
