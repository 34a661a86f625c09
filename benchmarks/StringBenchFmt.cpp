// The peer of formatting: {fmt}, narrow and wide.
#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <fmt/xchar.h>

#include <string>

namespace {

void FormatFmt(benchmark::State& state) {
    std::string text;
    int number = 0;
    for (auto _ : state) {
        text.clear();
        fmt::format_to(std::back_inserter(text), "{} {}", ++number & 0xFFFF,
                       "a text of some length");
        benchmark::DoNotOptimize(text);
    }
}
void FormatFmtWide(benchmark::State& state) {
    int number = 0;
    for (auto _ : state) {
        std::wstring text = fmt::format(L"{} {}", ++number & 0xFFFF, L"a text of some length");
        benchmark::DoNotOptimize(text);
    }
}
void FormatFmtSixteen(benchmark::State& state) {
    int number = 0;
    for (auto _ : state) {
        std::u16string text = fmt::format(u"{} {}", ++number & 0xFFFF, u"a text of some length");
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(FormatFmt);
BENCHMARK(FormatFmtWide);
BENCHMARK(FormatFmtSixteen);

}  // namespace
