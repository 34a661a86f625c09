// The compressed list beside other dictionaries: building, finding, missing, memory. The lists are
// Debian's wamerican (small: about 104,000 words) and a million words of several languages.
#include "benchmarks/CompListBench.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <unordered_map>
#include <unordered_set>

#include "Foundation/Core/CompList/CompList.h"
#include "Foundation/Core/CompList/CompListIterator.h"
#include "Foundation/Core/CompList/CompListReader.h"
#include "Foundation/Platform/Text/Utf.h"

namespace platform = zelkor::platform;

namespace bench {
namespace {

constexpr std::size_t kLargeWords = 1'000'000;
constexpr std::size_t kQueries = 200'000;
enum List : int { kSmall, kSmallShuffled, kLarge, kLargeShuffled };
constexpr const char* kListNames[] = {"small", "small_shuffled", "large", "large_shuffled"};

void Append(WordSet& set, const std::string& word) {
    std::u16string wide(word.size(), u'\0');
    wide.resize(platform::Utf8ToUtf16(word.data(), word.size(), wide.data(), wide.size()).written);
    set.utf8.Append(word);
    set.utf16.Append(wide);
}

std::vector<std::string> Lines(std::initializer_list<const char*> files, std::size_t most) {
    std::vector<std::string> lines;
    std::unordered_set<std::string> seen;
    for (const char* const file : files) {
        std::ifstream in(std::string("/usr/share/dict/") + file);
        for (std::string line; lines.size() < most && std::getline(in, line);) {
            if (!line.empty() && seen.insert(line).second) lines.push_back(line);
        }
    }
    return lines;
}

// Empty when the word lists are not installed.
const WordSet& WordsOf(List list) {
    static WordSet sets[4];
    WordSet& set = sets[list];
    if (set.Size() != 0) return set;
    const bool small = list == kSmall || list == kSmallShuffled;
    std::vector<std::string> lines =
        small ? Lines({"american-english"}, kLargeWords)
              : Lines({"american-english-insane", "ngerman", "french", "spanish", "polish"},
                      kLargeWords);
    if (list == kSmallShuffled || list == kLargeShuffled) {
        std::shuffle(lines.begin(), lines.end(), std::mt19937(1));
    }
    for (const std::string& line : lines) Append(set, line);
    return set;
}

WordSet Hits(const WordSet& words) {
    WordSet hits;
    std::mt19937 random(2);
    for (std::size_t i = 0; i < kQueries; ++i) {
        Append(hits, std::string(words.utf8.View(random() % words.Size())));
    }
    return hits;
}

// Words with one letter changed; a few of them are words all the same.
WordSet Misses(const WordSet& words) {
    WordSet misses;
    std::mt19937 random(3);
    while (misses.Size() < kQueries) {
        std::string word(words.utf8.View(random() % words.Size()));
        char& letter = word[random() % word.size()];
        if ((letter & 0x80) != 0) continue;
        letter = static_cast<char>('a' + random() % 26);
        Append(misses, word);
    }
    return misses;
}

void PerWord(benchmark::State& state, const char* name, std::size_t words) {
    state.counters[name] = benchmark::Counter(
        static_cast<double>(words),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Build(benchmark::State& state, MakeDictionary make, List list) {
    const WordSet& words = WordsOf(list);
    if (words.Size() == 0) return state.SkipWithError("no word lists in /usr/share/dict");
    double stored = 0;
    double memory = 0;
    for (auto _ : state) {
        const auto dictionary = make();
        dictionary->Build(words);
        state.PauseTiming();
        stored = static_cast<double>(dictionary->StoredBytes());
        memory = static_cast<double>(dictionary->Bytes());
        state.ResumeTiming();
    }
    const auto count = static_cast<double>(words.Size());
    PerWord(state, "per_word", words.Size());
    state.counters["stored_bytes_per_word"] = stored / count;
    state.counters["memory_bytes_per_word"] = memory / count;
}

void Find(benchmark::State& state, MakeDictionary make, List list, bool hits) {
    const WordSet& words = WordsOf(list);
    if (words.Size() == 0) return state.SkipWithError("no word lists in /usr/share/dict");
    const auto dictionary = make();
    dictionary->Build(words);
    const WordSet queries = hits ? Hits(words) : Misses(words);
    std::size_t found = dictionary->Find(queries);
    if (hits && found != kQueries) state.SkipWithError("a word is missing");
    for (auto _ : state) benchmark::DoNotOptimize(dictionary->Find(queries));
    PerWord(state, "per_word", kQueries);
    state.counters["found"] = static_cast<double>(found);
    state.counters["memory_bytes_per_word"] =
        static_cast<double>(dictionary->Bytes()) / static_cast<double>(words.Size());
}

CT_CompList NewList() {
    return CT_CompList(CT_CompList::kTwoBytes, 4, FALSE, TRUE, 128, 0);
}

void AddAll(CT_CompList& list, const WordSet& words) {
    unsigned handle = 0;
    for (std::size_t i = 0; i < words.Size(); ++i) list.b_Add(words.utf16.At(i), handle++);
}

// As a program has it that builds the list itself.
class Grown : public Dictionary {
public:
    void Build(const WordSet& words) override {
        AddAll(list_, words);
        benchmark::DoNotOptimize(list_.pcco_GetBuffer());
    }
    std::size_t Find(const WordSet& words) const override { return FindIn(list_, words); }
    std::size_t StoredBytes() const override { return list_.n_GetEnd(); }
    std::size_t Bytes() const override {
        return list_.pcco_GetBuffer()->n_GetMaximumSize() + list_.MemoryBesideImage();
    }
    static std::size_t FindIn(const CT_CompList& list, const WordSet& words) {
        std::size_t found = 0;
        for (std::size_t i = 0; i < words.Size(); ++i) {
            found += list.b_Search(words.utf16.At(i)) != FALSE ? 1 : 0;
        }
        return found;
    }

protected:
    CT_CompList list_ = NewList();
};

// As a program has it that loads a stored image.
class Loaded : public Grown {
public:
    void Build(const WordSet& words) override {
        Grown::Build(words);
        const CT_Buffer image(list_.pcco_GetBuffer());
        list_.v_Set(&image);
    }
};

// The same, asking how much of each word matched.
class Measured : public Loaded {
public:
    std::size_t Find(const WordSet& words) const override {
        std::size_t found = 0;
        for (std::size_t i = 0; i < words.Size(); ++i) {
            unsigned int matched = 0;
            found += list_.b_Search(words.utf16.At(i), &matched) != FALSE ? 1 : 0;
            benchmark::DoNotOptimize(matched);
        }
        return found;
    }
};

class HashMap : public Dictionary {
public:
    void Build(const WordSet& words) override {
        unsigned handle = 0;
        for (std::size_t i = 0; i < words.Size(); ++i) {
            map_.emplace(words.utf16.View(i), handle++);
        }
    }
    std::size_t Find(const WordSet& words) const override {
        std::size_t found = 0;
        std::u16string word;
        for (std::size_t i = 0; i < words.Size(); ++i) {
            word = words.utf16.View(i);
            found += map_.count(word);
        }
        return found;
    }
    std::size_t StoredBytes() const override { return 0; }
    // The nodes with their hash and the heap's 8 bytes, the buckets, and the longer texts.
    std::size_t Bytes() const override {
        std::size_t bytes = map_.bucket_count() * sizeof(void*);
        for (const auto& [word, handle] : map_) {
            bytes += sizeof(std::pair<const std::u16string, unsigned>) + 24;
            if (word.size() > 7) bytes += (2 * word.size() + 2 + 8 + 15) / 16 * 16;
        }
        return bytes;
    }

private:
    std::unordered_map<std::u16string, unsigned> map_;
};

template <typename Kind>
std::unique_ptr<Dictionary> Make() {
    return std::make_unique<Kind>();
}

const DictionaryEntry kEntries[] = {{"complist", Make<Grown>},
                                    {"complist_loaded", Make<Loaded>},
                                    {"complist_loaded_matched", Make<Measured>},
                                    {"unordered_map", Make<HashMap>}};

// From the text file, as the list's reader reads it, to the image.
void BuildFromFile(benchmark::State& state) {
    const auto list = static_cast<List>(state.range(0));
    const WordSet& words = WordsOf(list);
    if (words.Size() == 0) return state.SkipWithError("no word lists in /usr/share/dict");
    state.SetLabel(kListNames[list]);
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / "zelkor-complist-bench.txt";
    std::ofstream out(path, std::ios::binary);
    for (std::size_t i = 0; i < words.Size(); ++i) out << words.utf8.View(i) << '\n';
    out.close();
    const std::u16string name = path.u16string();
    for (auto _ : state) {
        CT_CompList read = NewList();
        CT_CompListReader(&read, FALSE).b_ReadItems(name.c_str());
        benchmark::DoNotOptimize(read.pcco_GetBuffer());
        if (read.n_GetNrOfEntries() != words.Size()) state.SkipWithError("a word is missing");
    }
    std::filesystem::remove(path);
    PerWord(state, "per_word", words.Size());
}
BENCHMARK(BuildFromFile)->DenseRange(kSmall, kLargeShuffled)->Unit(benchmark::kMillisecond);

// All words of a stored image with their handles.
void Iterate(benchmark::State& state) {
    const WordSet& words = WordsOf(static_cast<List>(state.range(0)));
    if (words.Size() == 0) return state.SkipWithError("no word lists in /usr/share/dict");
    state.SetLabel(kListNames[state.range(0)]);
    CT_CompList list = NewList();
    AddAll(list, words);
    for (auto _ : state) {
        CT_UCompListIterator iterator(&list);
        CT_UString word;
        unsigned int handle = 0;
        std::size_t count = 0;
        while (iterator.b_GetNext(&word, &handle) != FALSE) ++count;
        if (count != words.Size()) state.SkipWithError("a word is missing");
    }
    PerWord(state, "per_word", words.Size());
}
BENCHMARK(Iterate)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);

// Adds with a search for another word after each; beside it the adds alone and the searches alone.
void Interleaved(benchmark::State& state) {
    const WordSet& words = WordsOf(kSmallShuffled);
    if (words.Size() == 0) return state.SkipWithError("no word lists in /usr/share/dict");
    const bool add = state.range(0) != 1;
    const bool search = state.range(0) != 0;
    state.SetLabel(add ? search ? "both" : "adds alone" : "searches alone");
    CT_CompList full = NewList();
    AddAll(full, words);
    const std::size_t count = words.Size();
    for (auto _ : state) {
        CT_CompList growing = NewList();
        std::size_t found = 0;
        const CT_CompList& searched = add ? growing : full;
        for (std::size_t i = 0; i < count; ++i) {
            if (add) growing.b_Add(words.utf16.At(i), 0);
            if (search) found += searched.b_Search(words.utf16.At(i * 7 % count)) ? 1 : 0;
        }
        benchmark::DoNotOptimize(found);
    }
    PerWord(state, "per_word", count);
}
BENCHMARK(Interleaved)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

// Adopting the image of a million words, and one search in it.
void Open(benchmark::State& state) {
    const WordSet& words = WordsOf(kLarge);
    if (words.Size() == 0) return state.SkipWithError("no word lists in /usr/share/dict");
    CT_CompList list = NewList();
    AddAll(list, words);
    const CT_Buffer* const image = list.pcco_GetBuffer();
    for (auto _ : state) {
        const CT_CompList opened(image);
        benchmark::DoNotOptimize(opened.b_Search(u"word"));
    }
    state.counters["image_bytes"] = static_cast<double>(image->n_GetUsedSize());
}
BENCHMARK(Open);

}  // namespace

DictionaryEntry::DictionaryEntry(const char* name, MakeDictionary make) {
    for (const List list : {kSmall, kSmallShuffled, kLarge, kLargeShuffled}) {
        const std::string suffix = std::string("/") + kListNames[list] + "/" + name;
        benchmark::RegisterBenchmark(("Build" + suffix).c_str(), Build, make, list)
            ->Unit(benchmark::kMillisecond);
        if (list == kSmallShuffled || list == kLargeShuffled) continue;
        benchmark::RegisterBenchmark(("Hit" + suffix).c_str(), Find, make, list, true)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("Miss" + suffix).c_str(), Find, make, list, false)
            ->Unit(benchmark::kMillisecond);
    }
}

}  // namespace bench
