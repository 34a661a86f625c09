// Cost of the ground's file services above the system calls that they come down to.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>

#include "Foundation/Platform/Files.h"

namespace {

using namespace zelkor::platform;

constexpr std::uint32_t kRecord = 104;
constexpr std::uint32_t kRecords = 10'000;

// A file of a megabyte, gone at the end of the program's measurement.
class SampleFile {
public:
    SampleFile() : native_("/tmp/zelkor-bench-" + std::to_string(getpid())) {
        std::ofstream(native_, std::ios::binary) << std::string(kRecord * kRecords, 'x');
    }
    ~SampleFile() { std::remove(native_.c_str()); }
    [[nodiscard]] const char* native() const { return native_.c_str(); }
    [[nodiscard]] std::u16string name() const { return {native_.begin(), native_.end()}; }

private:
    std::string native_;
};

// Positions that a read ahead does not foresee.
std::int64_t Next(std::uint32_t& state) {
    state = state * 1664525 + 1013904223;
    return std::int64_t{state >> 8} % kRecords * kRecord;
}

void BM_OpenAndClose(benchmark::State& state) {
    const SampleFile file;
    const std::u16string name = file.name();
    for (auto _ : state) {
        CloseHandle(OpenFile(name.c_str(), kAccessRead, kShareRead, kOpenExisting, kFileNormal));
    }
}
BENCHMARK(BM_OpenAndClose);

void BM_OpenAndCloseSystem(benchmark::State& state) {
    const SampleFile file;
    for (auto _ : state) close(open(file.native(), O_RDONLY | O_CLOEXEC));
}
BENCHMARK(BM_OpenAndCloseSystem);

void BM_OpenAndCloseStream(benchmark::State& state) {
    const SampleFile file;
    for (auto _ : state) {
        std::ifstream stream(file.native(), std::ios::binary);
        benchmark::DoNotOptimize(stream);
    }
}
BENCHMARK(BM_OpenAndCloseStream);

void BM_SeekAndRead(benchmark::State& state) {
    const SampleFile file;
    const HANDLE handle = OpenFile(file.name().c_str(), kAccessRead, kShareRead, kOpenExisting, 0);
    char record[kRecord];
    std::uint32_t done = 0, random = 1;
    for (auto _ : state) {
        SetFilePosition(handle, Next(random), kSeekBegin, nullptr);
        ReadFile(handle, record, kRecord, &done);
        benchmark::DoNotOptimize(record);
    }
    CloseHandle(handle);
}
BENCHMARK(BM_SeekAndRead);

void BM_SeekAndReadSystem(benchmark::State& state) {
    const SampleFile file;
    const int descriptor = open(file.native(), O_RDONLY | O_CLOEXEC);
    char record[kRecord];
    std::uint32_t random = 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(lseek(descriptor, Next(random), SEEK_SET));
        benchmark::DoNotOptimize(read(descriptor, record, kRecord));
    }
    close(descriptor);
}
BENCHMARK(BM_SeekAndReadSystem);

void BM_ReadPositionedSystem(benchmark::State& state) {
    const SampleFile file;
    const int descriptor = open(file.native(), O_RDONLY | O_CLOEXEC);
    char record[kRecord];
    std::uint32_t random = 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(pread(descriptor, record, kRecord, Next(random)));
    }
    close(descriptor);
}
BENCHMARK(BM_ReadPositionedSystem);

void BM_QueryStatus(benchmark::State& state) {
    const SampleFile file;
    const std::u16string name = file.name();
    FileStatus status;
    for (auto _ : state) benchmark::DoNotOptimize(QueryStatus(name.c_str(), &status));
}
BENCHMARK(BM_QueryStatus);

void BM_QueryStatusSystem(benchmark::State& state) {
    const SampleFile file;
    for (auto _ : state) benchmark::DoNotOptimize(access(file.native(), F_OK));
}
BENCHMARK(BM_QueryStatusSystem);

// Growing a mapping by a mebibyte and touching its pages, as appending through a view does.
void BM_GrowMapping(benchmark::State& state) {
    const SampleFile sample;
    const HANDLE file =
        OpenFile(sample.name().c_str(), kAccessRead | kAccessWrite, 0, kOpenExisting, 0);
    constexpr std::uint64_t kStep = 1 << 20;
    std::uint64_t size = 2 * kStep;
    for (auto _ : state) {
        const HANDLE mapping = CreateMapping(file, true, size);
        auto* view = static_cast<char*>(MapView(mapping, true, 0));
        for (std::uint64_t at = size - kStep; at < size; at += 4096) view[at] = 'x';
        UnmapView(view);
        CloseHandle(mapping);
        size += kStep;
        if (size > 256 * kStep) {
            size = 2 * kStep;
            SetFilePosition(file, static_cast<std::int64_t>(kStep), kSeekBegin, nullptr);
            SetEndOfFile(file);
        }
    }
    CloseHandle(file);
}
BENCHMARK(BM_GrowMapping);

}  // namespace
