// What loading a shared library costs: dlopen in a fresh child process each time, measured there.
// The empty object shows the share of the loader itself.
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

namespace {

// Seconds that loading takes in a child; negative when the library is missing.
double LoadOnce(const char* library, int mode) {
    int ends[2];
    if (pipe(ends) != 0) return -1;
    const pid_t child = fork();
    if (child == 0) {
        const auto start = std::chrono::steady_clock::now();
        const void* const handle = dlopen(library, mode | RTLD_LOCAL);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        const double answer = handle != nullptr ? taken.count() : -1;
        _exit(write(ends[1], &answer, sizeof answer) == sizeof answer ? 0 : 1);
    }
    close(ends[1]);
    double answer = -1;
    if (read(ends[0], &answer, sizeof answer) != sizeof answer) answer = -1;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return answer;
}

void BM_Load(benchmark::State& state, const char* library, int mode) {
    for (auto _ : state) {
        const double seconds = LoadOnce(library, mode);
        if (seconds < 0) {
            state.SkipWithError("not installed");
            break;
        }
        state.SetIterationTime(seconds);
    }
}

BENCHMARK_CAPTURE(BM_Load, Zelkor, ZELKOR_LIBRARY, RTLD_LAZY)->UseManualTime();
BENCHMARK_CAPTURE(BM_Load, ZelkorBindNow, ZELKOR_LIBRARY, RTLD_NOW)->UseManualTime();
BENCHMARK_CAPTURE(BM_Load, Empty, EMPTY_LIBRARY, RTLD_LAZY)->UseManualTime();
BENCHMARK_CAPTURE(BM_Load, Icu, "libicuuc.so.72", RTLD_LAZY)->UseManualTime();
BENCHMARK_CAPTURE(BM_Load, Qt, "libQt5Core.so.5", RTLD_LAZY)->UseManualTime();
BENCHMARK_CAPTURE(BM_Load, Sqlite, "libsqlite3.so.0", RTLD_LAZY)->UseManualTime();

}  // namespace
