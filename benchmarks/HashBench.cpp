// CT_VoidHashTable beside std::unordered_map, and the string cache.
#include "benchmarks/HashBench.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <random>
#include <unordered_map>
#include <unordered_set>

#include "Foundation/Core/Container/HashFunction.h"
#include "Foundation/Core/Container/HashTable.h"
#include "Foundation/Core/Container/StringCache.h"
#include "Foundation/Core/String/Compare.h"
#include "Foundation/Platform/Text/Utf.h"

namespace platform = zelkor::platform;

namespace bench {

const Keys<std::u16string>& TextsOf(std::int64_t count) {
    static std::map<std::int64_t, Keys<std::u16string>> all;
    Keys<std::u16string>& texts = all[count];
    if (!texts.present.empty()) return texts;
    std::vector<std::u16string> words;
    std::ifstream in("/usr/share/dict/american-english");
    for (std::string line; std::getline(in, line);) {
        std::u16string word(line.size(), u'\0');
        word.resize(
            platform::Utf8ToUtf16(line.data(), line.size(), word.data(), word.size()).written);
        words.push_back(word);
    }
    if (words.size() < static_cast<std::size_t>(count)) return texts;
    std::mt19937 random(1);
    std::unordered_set<std::u16string> taken(words.begin(), words.end());
    std::shuffle(words.begin(), words.end(), random);
    words.resize(static_cast<std::size_t>(count));
    texts.present = words;
    std::shuffle(words.begin(), words.end(), random);
    texts.wanted = words;
    std::vector<std::u16string> absent;
    while (absent.size() < words.size()) {
        std::u16string word = words[random() % words.size()];
        word[random() % word.size()] = static_cast<char16_t>(u'a' + random() % 26);
        if (taken.insert(word).second) absent.push_back(word);
    }
    texts.absent = absent;  // copied, so that it lies in one piece as the others do
    return texts;
}

const Keys<std::uint32_t>& NumbersOf(std::int64_t count) {
    static std::map<std::int64_t, Keys<std::uint32_t>> all;
    Keys<std::uint32_t>& numbers = all[count];
    const auto size = static_cast<std::size_t>(count);
    std::mt19937 random(2);
    std::unordered_set<std::uint32_t> taken;
    while (numbers.absent.size() < size) {
        const auto number = static_cast<std::uint32_t>(random());
        if (!taken.insert(number).second) continue;
        (numbers.present.size() < size ? numbers.present : numbers.absent).push_back(number);
    }
    if (numbers.wanted.empty()) {
        numbers.wanted = numbers.present;
        std::shuffle(numbers.wanted.begin(), numbers.wanted.end(), random);
    }
    return numbers;
}

namespace {

class OurTexts {
public:
    void Insert(const std::u16string& key, const Data& data) { table_.b_Insert(key.c_str(), data); }
    bool Find(const std::u16string& key) const {
        Data data;
        return table_.b_Get(key.c_str(), &data) != FALSE;
    }
    bool Erase(const std::u16string& key) {
        Data data;
        return table_.b_Remove(key.c_str(), &data) != FALSE;
    }

private:
    CT_HashTable<const char16_t*, Data> table_{&CT_HashFunction::sn_HashCasePQCUZ,
                                               &CT_Compare::si_CompareCasePQCUZ};
};

class OurNumbers {
public:
    void Insert(std::uint32_t key, const Data& data) { table_.b_Insert(key, data); }
    bool Find(std::uint32_t key) const {
        Data data;
        return table_.b_Get(key, &data) != FALSE;
    }
    bool Erase(std::uint32_t key) {
        Data data;
        return table_.b_Remove(key, &data) != FALSE;
    }

private:
    CT_HashTable<std::uint32_t, Data> table_{&CT_HashFunction::sn_HashPN4,
                                             &CT_Compare::si_ComparePN4};
};

template <typename Key>
class Standard {
public:
    void Insert(const Key& key, const Data& data) { table_.insert_or_assign(key, data); }
    bool Find(const Key& key) const {
        const auto found = table_.find(key);
        if (found == table_.end()) return false;
        Data data = found->second;
        benchmark::DoNotOptimize(data);
        return true;
    }
    bool Erase(const Key& key) {
        const auto found = table_.find(key);
        if (found == table_.end()) return false;
        Data data = found->second;
        benchmark::DoNotOptimize(data);
        table_.erase(found);
        return true;
    }

private:
    std::unordered_map<Key, Data> table_;
};

const TableBenchmarks<OurTexts> our_texts("Texts", "CT_HashTable", TextsOf);
const TableBenchmarks<Standard<std::u16string>> standard_texts("Texts", "unordered_map", TextsOf);
const TableBenchmarks<OurNumbers> our_numbers("Numbers", "CT_HashTable", NumbersOf);
const TableBenchmarks<Standard<std::uint32_t>> standard_numbers("Numbers", "unordered_map",
                                                                NumbersOf);

// As many words as the cache has pairs; those that it kept are looked up, in it and in a map.
void BM_StringCache(benchmark::State& state, bool cached) {
    const auto& texts = TextsOf(1000);
    if (texts.present.empty()) return state.SkipWithError("no dictionary");
    CT_StringCache cache;
    std::unordered_map<std::u16string, std::u16string> map;
    for (const auto& text : texts.present) cache.v_Insert(text.c_str(), u"the value");
    std::vector<std::u16string> kept;
    std::ranges::copy_if(texts.wanted, std::back_inserter(kept),
                         [&](auto& text) { return cache.qcuz_Lookup(text.c_str()) != nullptr; });
    for (const auto& text : kept) map.emplace(text, u"the value");
    for (auto _ : state) {
        for (const auto& text : kept) {
            benchmark::DoNotOptimize(cached ? cache.qcuz_Lookup(text.c_str())
                                            : map.find(text)->second.c_str());
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kept.size()));
}
BENCHMARK_CAPTURE(BM_StringCache, CT_StringCache, true);
BENCHMARK_CAPTURE(BM_StringCache, unordered_map, false);

}  // namespace
}  // namespace bench
