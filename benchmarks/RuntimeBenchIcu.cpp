// ICU's part of RuntimeBench.
#include <benchmark/benchmark.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <string>

namespace {

void BM_CompareNoCase_icu(benchmark::State& state) {
    const auto length = static_cast<std::size_t>(state.range(0));
    std::u16string a, b;
    for (std::size_t i = 0; i < length; ++i) {
        a += static_cast<char16_t>(i % 5 == 0 ? u'x' : u'a' + i % 26);
        b += static_cast<char16_t>(i % 5 == 0 ? u'X' : u'a' + i % 26);
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(u_strcasecmp(a.c_str(), b.c_str(), U_FOLD_CASE_DEFAULT));
    }
}
BENCHMARK(BM_CompareNoCase_icu)->Arg(8)->Arg(40)->Arg(400);

}  // namespace
