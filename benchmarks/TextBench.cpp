// String tools beside plain loops of the standard library: replacing, items, words, tokens, sets
// of characters, stored maps.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/Core/Container/StringOrdinalMap.h"
#include "Foundation/Core/Container/StringValueCollection.h"
#include "Foundation/Core/String/UStringForwardIterator.h"
#include "Foundation/Core/Text/FormatString.h"
#include "Foundation/Core/Text/FormattedString.h"
#include "Foundation/Core/Text/StringScanner.h"
#include "Foundation/Core/Text/StringTools.h"
#include "TextBench.h"

namespace {

CT_UString String(const std::u16string& text) {
    return CT_UString(text.data(), static_cast<std::uint32_t>(text.size()));
}

void CountBytes(benchmark::State& state, std::size_t units) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(units * 2));
}

void ReplaceOurs(benchmark::State& state, const bench::Replacement& replacement) {
    const std::u16string text = bench::TextToScan();
    const CT_UString original = String(text);
    const CT_UString find(replacement.find);
    for (auto _ : state) {
        CT_UString copy = original;
        CT_StringTools::sv_ReplaceAll(&copy, &find, replacement.replacement);
        benchmark::DoNotOptimize(copy);
    }
    CountBytes(state, text.size());
}
void ReplaceStandard(benchmark::State& state, const bench::Replacement& replacement) {
    const std::u16string text = bench::TextToScan();
    const std::u16string_view find = replacement.find, given = replacement.replacement;
    for (auto _ : state) {
        std::u16string result;
        std::size_t from = 0;
        for (std::size_t hit; (hit = text.find(find, from)) != std::u16string::npos;) {
            result.append(text, from, hit - from).append(given);
            from = hit + find.size();
        }
        result.append(text, from);
        benchmark::DoNotOptimize(result);
    }
    CountBytes(state, text.size());
}
const bool replaces = [] {
    for (const bench::Replacement& replacement : bench::kReplacements) {
        const std::string name = replacement.name;
        benchmark::RegisterBenchmark(("Replace/" + name + "/Zelkor").c_str(), ReplaceOurs,
                                     replacement);
        benchmark::RegisterBenchmark(("Replace/" + name + "/std").c_str(), ReplaceStandard,
                                     replacement);
    }
    return true;
}();

// All words of the text, each as a string of its own.
void SplitOurs(benchmark::State& state) {
    const CT_UString text = String(bench::TextToScan(state.range(0)));
    for (auto _ : state) {
        CT_StringOrdinalMap map;
        map.v_String2Map(&text, u' ');
        benchmark::DoNotOptimize(map);
    }
    CountBytes(state, text.n_GetLength());
}
void SplitStandard(benchmark::State& state) {
    const std::u16string text = bench::TextToScan(state.range(0));
    for (auto _ : state) {
        std::vector<std::u16string> items;
        std::size_t from = 0;
        for (std::size_t hit; (hit = text.find(u' ', from)) != std::u16string::npos;) {
            items.emplace_back(text, from, hit - from);
            from = hit + 1;
        }
        items.emplace_back(text, from);
        benchmark::DoNotOptimize(items);
    }
    CountBytes(state, text.size());
}
BENCHMARK(SplitOurs)->Name("Split/Zelkor")->Arg(1000)->Arg(500000);
BENCHMARK(SplitStandard)->Name("Split/std")->Arg(1000)->Arg(500000);

// One word after the other into the same string.
constexpr char16_t kSeparators[] = u" \n,.";
void TokensOurs(benchmark::State& state) {
    const CT_UString text = String(bench::TextToScan());
    for (auto _ : state) {
        CT_UStringForwardIterator words(text, kSeparators);
        while (words.b_MoveNext()) benchmark::DoNotOptimize(words.rcco_Current());
    }
    CountBytes(state, text.n_GetLength());
}
void TokensStandard(benchmark::State& state) {
    const std::u16string text = bench::TextToScan();
    for (auto _ : state) {
        std::u16string word;
        std::size_t from = 0;
        while ((from = text.find_first_not_of(kSeparators, from)) != std::u16string::npos) {
            const std::size_t end = std::min(text.find_first_of(kSeparators, from), text.size());
            word.assign(text, from, end - from);
            benchmark::DoNotOptimize(word);
            from = end;
        }
    }
    CountBytes(state, text.size());
}
BENCHMARK(TokensOurs)->Name("Tokens/Zelkor");
BENCHMARK(TokensStandard)->Name("Tokens/std");

void CountWordsOurs(benchmark::State& state) {
    const CT_UString text = String(bench::TextToScan());
    for (auto _ : state) {
        benchmark::DoNotOptimize(CT_StringScanner::n_WordCount(text, kSeparators));
    }
    CountBytes(state, text.n_GetLength());
}
void CountWordsStandard(benchmark::State& state) {
    const std::u16string text = bench::TextToScan();
    for (auto _ : state) {
        std::size_t count = 0;
        bool inside = false;
        for (const char16_t unit : text) {
            const bool separates = std::u16string_view(kSeparators).find(unit) != text.npos;
            count += inside && separates ? 1u : 0u;
            inside = !separates;
        }
        count += inside ? 1u : 0u;
        benchmark::DoNotOptimize(count);
    }
    CountBytes(state, text.size());
}
BENCHMARK(CountWordsOurs)->Name("CountWords/Zelkor");
BENCHMARK(CountWordsStandard)->Name("CountWords/std");

void CountItemsOurs(benchmark::State& state) {
    const CT_UString text = String(bench::TextToScan());
    for (auto _ : state) benchmark::DoNotOptimize(CT_StringScanner::n_ItemCount(text, u' '));
    CountBytes(state, text.n_GetLength());
}
void CountItemsStandard(benchmark::State& state) {
    const std::u16string text = bench::TextToScan();
    for (auto _ : state) benchmark::DoNotOptimize(std::count(text.begin(), text.end(), u' '));
    CountBytes(state, text.size());
}
BENCHMARK(CountItemsOurs)->Name("CountItems/Zelkor");
BENCHMARK(CountItemsStandard)->Name("CountItems/std");

// The item by its number, somewhere in a text of the given length.
void ItemOurs(benchmark::State& state) {
    const CT_UString text = String(bench::TextToScan(state.range(0)));
    const std::uint32_t count = CT_StringScanner::n_ItemCount(text, u' ');
    CT_UString item;
    std::uint32_t n = 1;
    for (auto _ : state) {
        CT_StringScanner::v_Item(&item, text, u' ', n);
        n = (n + 7919) % count + 1;
        benchmark::DoNotOptimize(item);
    }
}
BENCHMARK(ItemOurs)->Name("Item/Zelkor")->Arg(100)->Arg(10000);

// The first of a set of characters, at the end of a long text.
void FindAnyOurs(benchmark::State& state) {
    const CT_UString text = String(bench::TextToScan() + u"<");
    for (auto _ : state) benchmark::DoNotOptimize(CT_StringTools::sn_FindAny(u"<>&", text, 0, 1));
    CountBytes(state, text.n_GetLength());
}
void FindAnyStandard(benchmark::State& state) {
    const std::u16string text = bench::TextToScan() + u"<";
    for (auto _ : state) benchmark::DoNotOptimize(text.find_first_of(u"<>&"));
    CountBytes(state, text.size());
}
BENCHMARK(FindAnyOurs)->Name("FindAny/Zelkor");
BENCHMARK(FindAnyStandard)->Name("FindAny/std");

// The first of a thousand tagged values; a collection of a thousand settings, written and read.
void TaggedOurs(benchmark::State& state) {
    CT_UString record;
    for (int i = 0; i < 1000; ++i) {
        CT_UString key;
        key.v_Format(u"Key%d", i);
        CT_FormattedString::sv_AddDataI(record, key, i);
    }
    int value = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CT_FormattedString::sb_GetDataI(record, u"Key0", &value));
    }
    CountBytes(state, record.n_GetLength());
}
BENCHMARK(TaggedOurs)->Name("Tagged/Zelkor");

void StoreOurs(benchmark::State& state) {
    CT_StringValueCollection settings;
    for (int i = 0; i < 1000; ++i) {
        CT_UString key;
        key.v_Format(u"Settings\\Key%d", i);
        if (i % 2 == 0) {
            settings.b_Add(key, i, FALSE);
        } else {
            settings.b_Add(key, u"a value | of a setting", FALSE);
        }
    }
    CT_UString text;
    for (auto _ : state) {
        settings.v_Serialize(text);
        benchmark::DoNotOptimize(settings.b_Deserialize(text));
    }
    CountBytes(state, text.n_GetLength());
}
BENCHMARK(StoreOurs)->Name("Store/Zelkor");

// Numbers by the conventions of German.
void FormatNumberOurs(benchmark::State& state) {
    CT_UString text;
    float value = 1234567.5f;
    for (auto _ : state) {
        CT_FormatString::sb_FormatNumber(&text, value, 0x0407, 2, 3u);
        benchmark::DoNotOptimize(text);
        value += 1;
    }
}
BENCHMARK(FormatNumberOurs)->Name("FormatNumber/Zelkor");

}  // namespace
