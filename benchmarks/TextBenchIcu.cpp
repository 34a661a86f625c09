// The peers of string tools in ICU.
#include <benchmark/benchmark.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <string>

#include "TextBench.h"

namespace {

void ReplaceIcu(benchmark::State& state, const bench::Replacement& replacement) {
    const std::u16string text = bench::TextToScan();
    const icu::UnicodeString original(text.data(), static_cast<std::int32_t>(text.size()));
    const icu::UnicodeString find(replacement.find), given(replacement.replacement);
    for (auto _ : state) {
        icu::UnicodeString copy = original;
        copy.findAndReplace(find, given);
        benchmark::DoNotOptimize(copy);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size() * 2));
}
const bool replaces = [] {
    // Every other replacement moves the rest of the text at each hit, for seconds.
    for (const bench::Replacement& replacement : bench::kReplacements) {
        const std::string name = replacement.name;
        if (name != "unit" && name != "same" && name != "rare") continue;
        benchmark::RegisterBenchmark(("Replace/" + name + "/ICU").c_str(), ReplaceIcu, replacement);
    }
    return true;
}();

void FindAnyIcu(benchmark::State& state) {
    const std::u16string text = bench::TextToScan() + u"<";
    for (auto _ : state) benchmark::DoNotOptimize(u_strpbrk(text.c_str(), u"<>&"));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size() * 2));
}
BENCHMARK(FindAnyIcu)->Name("FindAny/ICU");

void TokensIcu(benchmark::State& state) {
    const std::u16string text = bench::TextToScan();
    std::u16string area;
    for (auto _ : state) {
        area = text;
        char16_t* place = nullptr;
        for (char16_t* word = u_strtok_r(area.data(), u" \n,.", &place); word != nullptr;
             word = u_strtok_r(nullptr, u" \n,.", &place)) {
            benchmark::DoNotOptimize(word);
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size() * 2));
}
BENCHMARK(TokensIcu)->Name("Tokens/ICU");

}  // namespace
