// The loops that CharacterBench runs for the library and for its peers.
#ifndef BENCHMARKS_CHARACTERBENCH_H
#define BENCHMARKS_CHARACTERBENCH_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

#include "benchmarks/Texts.h"

namespace bench {

inline constexpr std::size_t kCharacterText = 1 << 20;  // bytes of UTF-8
inline constexpr Language kCharacterLanguages[] = {
    Language::Ascii, Language::German, Language::Russian, Language::Japanese, Language::Mixed};

inline void CountUnits(benchmark::State& state, const std::u16string& text) {
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(text.size() * sizeof(char16_t)));
}

// One answer for each unit, summed up.
template <typename Classify>
void RunClassify(benchmark::State& state, Language language, Classify classify) {
    const std::u16string text = Utf16Text(language, kCharacterText);
    for (auto _ : state) {
        unsigned int sum = 0;
        for (const char16_t unit : text) sum += static_cast<unsigned int>(classify(unit));
        benchmark::DoNotOptimize(sum);
    }
    CountUnits(state, text);
}

// One unit for each unit, into a text of the same length.
template <typename Map>
void RunMap(benchmark::State& state, Language language, Map map) {
    const std::u16string text = Utf16Text(language, kCharacterText);
    std::u16string out = text;
    for (auto _ : state) {
        for (std::size_t i = 0; i < text.size(); ++i) out[i] = static_cast<char16_t>(map(text[i]));
        benchmark::DoNotOptimize(out.data());
    }
    CountUnits(state, text);
}

// Registers `run` as "JOB/LANGUAGE/WHO" for every text.
template <typename Run>
bool Register(const std::string& job, const char* who, Run run) {
    for (const Language language : kCharacterLanguages) {
        benchmark::RegisterBenchmark(
            (job + "/" + NameOf(language) + "/" + who).c_str(),
            [run, language](benchmark::State& state) { run(state, language); });
    }
    return true;
}

}  // namespace bench

#endif
