// CT_SymbolTable and CT_BiLingualUWordList beside pairs of standard maps: 1,000 and 100,000 words
// of the system's dictionary are put in, and found again in another order.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "Foundation/Core/SymbolTable/BiLingualWordList.h"
#include "Foundation/Core/SymbolTable/SymbolTable.h"

namespace {

// Words in some order, each with another one as its translation.
struct Words {
    std::vector<std::u16string> sources, targets;
    std::vector<std::size_t> order;
};

const Words& WordsOf(std::int64_t count) {
    static std::map<std::int64_t, Words> all;
    Words& words = all[count];
    if (!words.order.empty()) return words;
    std::mt19937 random(1);
    std::ifstream in("/usr/share/dict/american-english");
    for (std::string line; std::getline(in, line);) {
        words.sources.emplace_back(line.begin(), line.end());
    }
    if (words.sources.size() < static_cast<std::size_t>(count)) return words;
    std::ranges::shuffle(words.sources, random);
    words.sources.resize(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < words.sources.size(); ++i) {
        words.targets.push_back(u"x" + words.sources[words.sources.size() - 1 - i]);
        words.order.push_back(i);
    }
    std::ranges::shuffle(words.order, random);
    return words;
}

class OurSymbols {
public:
    explicit OurSymbols(const Words& words) {
        for (const auto& name : words.sources) {
            table_.b_Take(new CT_Symbol(name.c_str(), CT_Symbol::kNoId));
        }
    }
    bool Find(const Words& words, std::size_t i) const {
        return table_.pco_Get(words.sources[i].c_str())->n4_GetId() == i + 1 &&
               table_.pco_Get(static_cast<std::uint32_t>(i + 1)) != nullptr;
    }

private:
    CT_SymbolTable table_{TRUE};
};

class StandardSymbols {
public:
    explicit StandardSymbols(const Words& words) {
        for (const auto& name : words.sources) {
            const auto symbol = std::make_shared<Symbol>(Symbol{name, ++last_});
            names_.emplace(name, symbol);
            numbers_.emplace(last_, symbol);
        }
    }
    bool Find(const Words& words, std::size_t i) const {
        return names_.find(words.sources[i])->second->number == i + 1 &&
               numbers_.find(static_cast<std::uint32_t>(i + 1)) != numbers_.end();
    }

private:
    struct Symbol {
        std::u16string name;
        std::uint32_t number;
    };
    std::unordered_map<std::u16string, std::shared_ptr<Symbol>> names_;
    std::unordered_map<std::uint32_t, std::shared_ptr<Symbol>> numbers_;
    std::uint32_t last_ = 0;
};

class OurPairs {
public:
    explicit OurPairs(const Words& words) {
        for (std::size_t i = 0; i < words.sources.size(); ++i) {
            list_.v_Insert(words.sources[i].c_str(), words.targets[i].c_str());
        }
    }
    bool Find(const Words& words, std::size_t i) const {
        return list_.qcuz_FindSource(words.sources[i].c_str()) != nullptr &&
               list_.qcuz_FindTarget(words.targets[i].c_str()) != nullptr;
    }

private:
    CT_BiLingualUWordList list_{TRUE};
};

template <typename Map>
class StandardPairs {
public:
    explicit StandardPairs(const Words& words) {
        for (std::size_t i = 0; i < words.sources.size(); ++i) {
            targets_.emplace(words.sources[i], words.targets[i]);
            sources_.emplace(words.targets[i], words.sources[i]);
        }
    }
    bool Find(const Words& words, std::size_t i) const {
        return targets_.find(words.sources[i]) != targets_.end() &&
               sources_.find(words.targets[i]) != sources_.end();
    }

private:
    Map targets_, sources_;
};

template <typename Container>
void Build(benchmark::State& state) {
    const Words& words = WordsOf(state.range(0));
    if (words.order.empty()) return state.SkipWithError("no dictionary");
    for (auto _ : state) benchmark::DoNotOptimize(std::make_unique<Container>(words));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Container>
void Find(benchmark::State& state) {
    const Words& words = WordsOf(state.range(0));
    if (words.order.empty()) return state.SkipWithError("no dictionary");
    const auto container = std::make_unique<Container>(words);
    for (auto _ : state) {
        for (const std::size_t i : words.order) {
            if (!container->Find(words, i)) return state.SkipWithError("not found");
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

using Texts = std::unordered_map<std::u16string, std::u16string>;
using SortedTexts = std::map<std::u16string, std::u16string>;

#define MEASURE(job, container, name) BENCHMARK(job<container>)->Name(name)->Arg(1000)->Arg(100'000)
MEASURE(Build, OurSymbols, "Symbols/build/CT_SymbolTable");
MEASURE(Build, StandardSymbols, "Symbols/build/unordered_map");
MEASURE(Find, OurSymbols, "Symbols/find/CT_SymbolTable");
MEASURE(Find, StandardSymbols, "Symbols/find/unordered_map");
MEASURE(Build, OurPairs, "Pairs/build/CT_BiLingualUWordList");
MEASURE(Build, StandardPairs<Texts>, "Pairs/build/unordered_map");
MEASURE(Build, StandardPairs<SortedTexts>, "Pairs/build/map");
MEASURE(Find, OurPairs, "Pairs/find/CT_BiLingualUWordList");
MEASURE(Find, StandardPairs<Texts>, "Pairs/find/unordered_map");
MEASURE(Find, StandardPairs<SortedTexts>, "Pairs/find/map");

}  // namespace
