// Hash tables that are measured beside each other, with data of 16 bytes: inserting all keys,
// finding them, missing as many others, erasing them, in other orders and by other copies.
#ifndef BENCHMARKS_HASHBENCH_H
#define BENCHMARKS_HASHBENCH_H

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace bench {

struct Data {
    std::uint64_t first, second;
};

// `count` keys, the same in another order, and as many others: words of the system's dictionary
// (the others with one letter changed), random numbers.
template <typename Key>
struct Keys {
    std::vector<Key> present, wanted, absent;
};
const Keys<std::u16string>& TextsOf(std::int64_t count);
const Keys<std::uint32_t>& NumbersOf(std::int64_t count);

// A Table has Insert(key, data), Find(key) and Erase(key) for the keys that keys_of(count) answers;
// Find and Erase answer whether the key was there.
template <typename Table>
class TableBenchmarks {
public:
    template <typename KeysOf>
    TableBenchmarks(const std::string& keys, const std::string& name, KeysOf keys_of) {
        Register(keys + "/insert/" + name, keys_of, Insert);
        Register(keys + "/hit/" + name, keys_of, Hit);
        Register(keys + "/miss/" + name, keys_of, Miss);
        Register(keys + "/erase/" + name, keys_of, Erase);
    }

private:
    template <typename KeysOf, typename Run>
    static void Register(const std::string& name, KeysOf keys_of, Run run) {
        const auto measure = [keys_of, run](benchmark::State& state) {
            const auto& keys = keys_of(state.range(0));
            if (keys.present.empty()) return state.SkipWithError("no dictionary");
            run(state, keys);
            state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
        };
        benchmark::RegisterBenchmark(name.c_str(), measure)->Arg(1000)->Arg(100'000);
    }
    static void Fill(Table& table, const auto& keys) {
        for (const auto& key : keys.present) table.Insert(key, Data{1, 2});
    }

    static constexpr auto Insert = [](benchmark::State& state, const auto& keys) {
        std::unique_ptr<Table> table;
        for (auto _ : state) {
            state.PauseTiming();
            table = std::make_unique<Table>();
            state.ResumeTiming();
            Fill(*table, keys);
        }
    };
    static constexpr auto Hit = [](benchmark::State& state, const auto& keys) {
        Table table;
        Fill(table, keys);
        for (auto _ : state) {
            std::size_t found = 0;
            for (const auto& key : keys.wanted) found += table.Find(key);
            if (found != keys.present.size()) return state.SkipWithError("keys not found");
        }
    };
    static constexpr auto Miss = [](benchmark::State& state, const auto& keys) {
        Table table;
        Fill(table, keys);
        for (auto _ : state) {
            std::size_t found = 0;
            for (const auto& key : keys.absent) found += table.Find(key);
            if (found != 0) return state.SkipWithError("keys found");
        }
    };
    static constexpr auto Erase = [](benchmark::State& state, const auto& keys) {
        for (auto _ : state) {
            state.PauseTiming();
            auto table = std::make_unique<Table>();
            Fill(*table, keys);
            state.ResumeTiming();
            std::size_t erased = 0;
            for (const auto& key : keys.wanted) erased += table->Erase(key);
            if (erased != keys.present.size()) state.SkipWithError("keys not erased");
            state.PauseTiming();
            table.reset();
            state.ResumeTiming();
        }
    };
};

}  // namespace bench

#endif
