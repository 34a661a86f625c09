// Strings beside std::u16string and {fmt}: copying, appending, finding, comparing, formatting, and
// conversion of single words into a kept string.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/StringConvert.h"
#include "Foundation/Core/String/UString.h"

namespace {

std::u16string Letters(std::int64_t length) {
    std::u16string text(static_cast<std::size_t>(length), u' ');
    std::uint32_t state = 1;
    for (char16_t& unit : text) {
        state = state * 1664525 + 1013904223;
        unit = state >> 29 == 0 ? u' ' : static_cast<char16_t>(u'a' + (state >> 16) % 26);
    }
    return text;
}

void CopyOurs(benchmark::State& state) {
    const CT_UString original(Letters(state.range(0)).c_str());
    for (auto _ : state) {
        CT_UString copy(original);
        benchmark::DoNotOptimize(copy);
    }
}
void CopyStandard(benchmark::State& state) {
    const std::u16string original = Letters(state.range(0));
    for (auto _ : state) {
        std::u16string copy(original);
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(CopyOurs)->Arg(4)->Arg(40)->Arg(4000);
BENCHMARK(CopyStandard)->Arg(4)->Arg(40)->Arg(4000);

// One character each time, to texts of the given length.
void AppendOurs(benchmark::State& state) {
    for (auto _ : state) {
        CT_UString text;
        for (std::int64_t i = 0; i < state.range(0); ++i) text.v_Append(u'x');
        benchmark::DoNotOptimize(text);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
void AppendStandard(benchmark::State& state) {
    for (auto _ : state) {
        std::u16string text;
        for (std::int64_t i = 0; i < state.range(0); ++i) text.push_back(u'x');
        benchmark::DoNotOptimize(text);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(AppendOurs)->Arg(40)->Arg(1000)->Arg(100000);
BENCHMARK(AppendStandard)->Arg(40)->Arg(1000)->Arg(100000);

// A text at the end of a megabyte of letters.
void FindTextOurs(benchmark::State& state) {
    const CT_UString text((Letters(state.range(0)) + u"needle").c_str());
    const CT_UString wanted(u"needle");
    for (auto _ : state) benchmark::DoNotOptimize(text.vn_Find(&wanted, 0));
    state.SetBytesProcessed(state.iterations() * state.range(0) * 2);
}
void FindTextStandard(benchmark::State& state) {
    const std::u16string text = Letters(state.range(0)) + u"needle";
    const std::u16string wanted = u"needle";
    for (auto _ : state) benchmark::DoNotOptimize(text.find(wanted));
    state.SetBytesProcessed(state.iterations() * state.range(0) * 2);
}
BENCHMARK(FindTextOurs)->Arg(40)->Arg(1 << 19);
BENCHMARK(FindTextStandard)->Arg(40)->Arg(1 << 19);

void FindUnitOurs(benchmark::State& state) {
    const CT_UString text((Letters(state.range(0)) + u"#").c_str());
    for (auto _ : state) benchmark::DoNotOptimize(text.vn_Find(u'#', 0));
    state.SetBytesProcessed(state.iterations() * state.range(0) * 2);
}
void FindUnitStandard(benchmark::State& state) {
    const std::u16string text = Letters(state.range(0)) + u"#";
    for (auto _ : state) benchmark::DoNotOptimize(text.find(u'#'));
    state.SetBytesProcessed(state.iterations() * state.range(0) * 2);
}
BENCHMARK(FindUnitOurs)->Arg(40)->Arg(1 << 19);
BENCHMARK(FindUnitStandard)->Arg(40)->Arg(1 << 19);

// Texts that differ in their last character only.
void CompareOurs(benchmark::State& state) {
    const std::u16string letters = Letters(state.range(0));
    const CT_UString left((letters + u"a").c_str());
    const CT_UString right((letters + u"b").c_str());
    const CT_String* const other = &right;
    for (auto _ : state) benchmark::DoNotOptimize(left.vi_Compare(other));
}
void CompareStandard(benchmark::State& state) {
    const std::u16string left = Letters(state.range(0)) + u"a";
    const std::u16string right = Letters(state.range(0)) + u"b";
    for (auto _ : state) benchmark::DoNotOptimize(left.compare(right));
}
BENCHMARK(CompareOurs)->Arg(8)->Arg(40)->Arg(1000);
BENCHMARK(CompareStandard)->Arg(8)->Arg(40)->Arg(1000);

void FormatOurs(benchmark::State& state) {
    CT_UString text;
    int number = 0;
    for (auto _ : state) {
        text.v_Format(u"%d %s", ++number & 0xFFFF, u"a text of some length");
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(FormatOurs);

// Words of a text, each into the same string.
void WideWordOurs(benchmark::State& state) {
    const std::string word(static_cast<std::size_t>(state.range(0)), 'w');
    CT_UString text;
    for (auto _ : state) {
        CT_StringConvert::si_MultiToWide(&text, word.data(),
                                         static_cast<std::uint32_t>(word.size()), 65001);
        benchmark::DoNotOptimize(text);
    }
}
void NarrowWordOurs(benchmark::State& state) {
    const std::u16string word(static_cast<std::size_t>(state.range(0)), u'w');
    CT_CString text;
    for (auto _ : state) {
        CT_StringConvert::si_WideToMulti(&text, word.data(),
                                         static_cast<std::uint32_t>(word.size()), 65001);
        benchmark::DoNotOptimize(text);
    }
}
void AssignOurs(benchmark::State& state) {
    const std::u16string word(static_cast<std::size_t>(state.range(0)), u'w');
    CT_UString text;
    for (auto _ : state) {
        text.v_Set(word.data(), static_cast<std::uint32_t>(word.size()));
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(WideWordOurs)->Arg(8)->Arg(40);
BENCHMARK(NarrowWordOurs)->Arg(8)->Arg(40);
BENCHMARK(AssignOurs)->Arg(8)->Arg(40);

}  // namespace
