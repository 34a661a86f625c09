// Files beside the standard library's: lines in, a small file opened and read, the question for the
// end of a file.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "Foundation/Core/File/FileSystem.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Core/String/CString.h"

namespace {

// 16 MiB of lines, 8-bit or UTF-16, that the program leaves behind for nobody.
class LineFile {
public:
    explicit LineFile(unsigned int unit) {
        CT_FileSystem::sv_CreateTempFile(&name_, u"zfb", nullptr);
        path_ = std::filesystem::path(std::u16string(name_.qcuz_Get() + 2));
        std::string native = path_.string();
        for (char& byte : native) byte = byte == '\\' ? '/' : byte;
        path_ = native;
        std::string text;
        for (unsigned int i = 0; text.size() < (16u << 20); ++i) {
            for (unsigned int k = 0; k < 20 + i * 7 % 60; ++k) Add(text, 'x', unit);
            Add(text, '\n', unit);
        }
        std::ofstream(path_, std::ios::binary) << text;
        size_ = static_cast<std::int64_t>(text.size());
    }
    ~LineFile() { std::filesystem::remove(path_); }

    CT_UString name_;
    std::filesystem::path path_;
    std::int64_t size_ = 0;

private:
    static void Add(std::string& text, char unit, unsigned int size) {
        text += unit;
        if (size == 2) text += '\0';
    }
};

template <typename Text>
void ReadLines(benchmark::State& state, unsigned int unit,
               unsigned int (CT_File::*reader)(Text*, const Text*)) {
    const LineFile lines(unit);
    for (auto _ : state) {
        CT_WinFile file(&lines.name_, 16384);
        file.vv_Open(CT_File::kReadAccess, CT_File::kOpenExisting, CT_File::kShareRead, 1, 0);
        Text line;
        while ((file.*reader)(&line, nullptr) != 0) benchmark::DoNotOptimize(line);
    }
    state.SetBytesProcessed(state.iterations() * lines.size_);
}

void BM_LinesSequential(benchmark::State& state) {
    ReadLines<CT_CString>(state, 1, &CT_File::n_ReadLineCSequential);
}
void BM_LinesSequential16(benchmark::State& state) {
    ReadLines<CT_UString>(state, 2, &CT_File::n_ReadLineUSequential);
}
void BM_LinesPositioned(benchmark::State& state) {
    ReadLines<CT_CString>(state, 1, &CT_File::n_ReadLineC);
}
BENCHMARK(BM_LinesSequential);
BENCHMARK(BM_LinesSequential16);
BENCHMARK(BM_LinesPositioned);

void BM_LinesGetline(benchmark::State& state) {
    const LineFile lines(1);
    for (auto _ : state) {
        std::ifstream file(lines.path_, std::ios::binary);
        std::string line;
        while (std::getline(file, line)) benchmark::DoNotOptimize(line);
    }
    state.SetBytesProcessed(state.iterations() * lines.size_);
}
BENCHMARK(BM_LinesGetline);

void BM_LinesFgets(benchmark::State& state) {
    const LineFile lines(1);
    for (auto _ : state) {
        std::FILE* const file = std::fopen(lines.path_.c_str(), "rb");
        char line[256];
        while (std::fgets(line, sizeof line, file) != nullptr) benchmark::DoNotOptimize(line);
        std::fclose(file);
    }
    state.SetBytesProcessed(state.iterations() * lines.size_);
}
BENCHMARK(BM_LinesFgets);

// Open with read sharing, read 100 bytes, close: what a look at a file's beginning costs.
void BM_Peek(benchmark::State& state) {
    const LineFile lines(1);
    char bytes[100];
    for (auto _ : state) {
        CT_WinFile file(&lines.name_, 16384);
        file.vv_Open(CT_File::kReadAccess, CT_File::kOpenExisting, CT_File::kShareRead, 1, 0);
        benchmark::DoNotOptimize(file.vn_Read(bytes, sizeof bytes));
    }
}
BENCHMARK(BM_Peek);

void BM_PeekIfstream(benchmark::State& state) {
    const LineFile lines(1);
    char bytes[100];
    for (auto _ : state) {
        std::ifstream file(lines.path_, std::ios::binary);
        benchmark::DoNotOptimize(file.read(bytes, sizeof bytes));
    }
}
BENCHMARK(BM_PeekIfstream);

void BM_IsEof(benchmark::State& state) {
    const LineFile lines(1);
    CT_WinFile file(&lines.name_, 16384);
    for (auto _ : state) benchmark::DoNotOptimize(file.vb_IsEof());
}
BENCHMARK(BM_IsEof);

void BM_IsEofStd(benchmark::State& state) {
    const LineFile lines(1);
    for (auto _ : state) benchmark::DoNotOptimize(std::filesystem::file_size(lines.path_));
}
BENCHMARK(BM_IsEofStd);

}  // namespace
