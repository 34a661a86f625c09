// CT_Compare beside the comparisons of the C library and std::u16string: two texts that differ in
// their last character only, and words of a list to be sorted, most of which differ early.
#include <benchmark/benchmark.h>
#include <strings.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/Compare.h"
#include "Foundation/Core/String/UString.h"

namespace {

template <typename Text>
Text Letters(std::int64_t length, char last) {
    Text text;
    for (std::int64_t i = 1; i < length; ++i) {
        text += static_cast<typename Text::value_type>('a' + i % 26);
    }
    text += static_cast<typename Text::value_type>(last);
    return text;
}

// A comparison is called through a pointer, as containers do.
template <typename Text, typename Compare>
void Texts(benchmark::State& state, Compare compare) {
    const Text a = Letters<Text>(state.range(0), 'y'), b = Letters<Text>(state.range(0), 'z');
    benchmark::DoNotOptimize(compare);
    for (auto _ : state) benchmark::DoNotOptimize(compare(a.c_str(), b.c_str()));
}
template <typename String, typename Compare>
void Strings(benchmark::State& state, Compare compare) {
    const String a(Letters<std::u16string>(state.range(0), 'y').c_str());
    const String b(Letters<std::u16string>(state.range(0), 'z').c_str());
    benchmark::DoNotOptimize(compare);
    for (auto _ : state) benchmark::DoNotOptimize(compare(&a, &b));
}
int CompareStandard(const std::u16string* a, const std::u16string* b) {
    return a->compare(*b);
}

void CaseBytes(benchmark::State& state) {
    Texts<std::string>(state, &CT_Compare::si_CompareCaseQCCZ);
}
void CaseBytesStrcmp(benchmark::State& state) {
    Texts<std::string>(state, &std::strcmp);
}
void NoCaseBytes(benchmark::State& state) {
    Texts<std::string>(state, &CT_Compare::si_CompareNoCaseQCCZ);
}
void NoCaseBytesStrcasecmp(benchmark::State& state) {
    Texts<std::string>(state, &strcasecmp);
}
void CaseUnits(benchmark::State& state) {
    Texts<std::u16string>(state, &CT_Compare::si_CompareCaseQCUZ);
}
void NoCaseUnits(benchmark::State& state) {
    Texts<std::u16string>(state, &CT_Compare::si_CompareNoCaseQCUZ);
}
void CaseCStrings(benchmark::State& state) {
    Strings<CT_CString>(state, &CT_Compare::si_CompareCStringPCCO);
}
void CaseUStrings(benchmark::State& state) {
    Strings<CT_UString>(state, &CT_Compare::si_CompareUStringPCCO);
}
void CaseUStringsStandard(benchmark::State& state) {
    Strings<std::u16string>(state, &CompareStandard);
}
void NoCaseUStrings(benchmark::State& state) {
    Strings<CT_UString>(state, &CT_Compare::si_CompareUStringNoCasePCCO);
}
void EitherStrings(benchmark::State& state) {
    Strings<CT_UString>(state, &CT_Compare::si_CompareStringPCCO);
}
BENCHMARK(CaseBytes)->Arg(8)->Arg(40)->Arg(400);
BENCHMARK(CaseBytesStrcmp)->Arg(8)->Arg(40)->Arg(400);
BENCHMARK(NoCaseBytes)->Arg(8)->Arg(40)->Arg(400);
BENCHMARK(NoCaseBytesStrcasecmp)->Arg(8)->Arg(40)->Arg(400);
BENCHMARK(CaseUnits)->Arg(8)->Arg(40)->Arg(400);
BENCHMARK(NoCaseUnits)->Arg(8)->Arg(40)->Arg(400);
BENCHMARK(CaseCStrings)->Arg(8)->Arg(40)->Arg(400);
BENCHMARK(CaseUStrings)->Arg(8)->Arg(40)->Arg(400);
BENCHMARK(CaseUStringsStandard)->Arg(8)->Arg(40)->Arg(400);
BENCHMARK(NoCaseUStrings)->Arg(8)->Arg(40)->Arg(400);
BENCHMARK(EitherStrings)->Arg(8)->Arg(40)->Arg(400);

// Sorting 20,000 made-up words, as pointers to strings.
template <typename String, typename Less>
void Sort(benchmark::State& state, Less less) {
    std::vector<String> words;
    std::uint32_t random = 1;
    for (std::uint32_t i = 0; i < 20000; ++i) {
        std::u16string word;
        for (std::uint32_t length = 3 + i % 9; length != 0; --length) {
            random = random * 1664525 + 1013904223;
            word += static_cast<char16_t>(u'a' + (random >> 16) % 26);
        }
        words.emplace_back(word.c_str());
    }
    std::vector<const String*> order, sorted;
    for (const String& word : words) order.push_back(&word);
    for (auto _ : state) {
        sorted = order;
        std::sort(sorted.begin(), sorted.end(), less);
    }
    state.SetItemsProcessed(state.iterations() * 20000);
}
void SortOurs(benchmark::State& state) {
    Sort<CT_UString>(state, [compare = &CT_Compare::si_CompareUStringPCCO](auto a, auto b) {
        return compare(a, b) < 0;
    });
}
void SortNoCaseOurs(benchmark::State& state) {
    Sort<CT_UString>(state, [compare = &CT_Compare::si_CompareUStringNoCasePCCO](auto a, auto b) {
        return compare(a, b) < 0;
    });
}
void SortStandard(benchmark::State& state) {
    Sort<std::u16string>(state, [](auto a, auto b) { return *a < *b; });
}
BENCHMARK(SortOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(SortNoCaseOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(SortStandard)->Unit(benchmark::kMillisecond);

}  // namespace
