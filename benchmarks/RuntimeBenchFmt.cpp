// {fmt}'s part of RuntimeBench.
#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <fmt/xchar.h>

#include <string>

namespace {

void BM_FormatNumberAndText_fmt(benchmark::State& state) {
    const std::u16string text = u"translation memory";
    int number = 12345;
    for (auto _ : state) {
        benchmark::DoNotOptimize(fmt::format(u"{} {}", number, text));
        ++number;
    }
}
BENCHMARK(BM_FormatNumberAndText_fmt);

}  // namespace
