// The jobs that record stores are measured at, written once for all of them.
//
// A store offers, for 100-byte records under ascending keys:
//   Store(folder, durable)   an empty one; durable: Commit() reaches the disk
//   Add() -> key, Get(key) -> sum, Update(key), Delete(key), Scan() -> records, Commit(), Bytes()
// Every job works through a whole file; the time that counts, per_record, is that of one record.
// Gets, updates and deletes come in a random order that is the same for all stores.
#ifndef BENCHMARKS_RECORDBENCH_H
#define BENCHMARKS_RECORDBENCH_H

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace bench {

inline constexpr std::size_t kRecordSize = 100;
inline constexpr std::int64_t kBatch = 1000;  // records between commits

// A folder in the one for temporary files, gone at the end.
class RecordFolder {
public:
    RecordFolder() : path_(std::filesystem::temp_directory_path() / "zelkor-record-bench") {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~RecordFolder() { std::filesystem::remove_all(path_); }
    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

// What a record holds; the number makes records differ.
inline std::string Record(std::uint32_t number) {
    std::string record(kRecordSize, 'r');
    std::copy_n(reinterpret_cast<const char*>(&number), sizeof number, record.begin());
    return record;
}

// Reads what was got, so that no store can leave it unread.
inline std::uint64_t Sum(const void* data, std::size_t size) {
    std::uint64_t sum = 0;
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (std::size_t i = 0; i + 8 <= size; i += 8) {
        std::uint64_t word;
        std::copy_n(bytes + i, 8, reinterpret_cast<unsigned char*>(&word));
        sum += word;
    }
    return sum;
}

inline void PerRecord(benchmark::State& state) {
    state.counters["per_record"] = benchmark::Counter(
        static_cast<double>(state.range(0)),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <typename Store>
std::vector<std::uint32_t> Fill(Store& store, std::int64_t count) {
    std::vector<std::uint32_t> keys;
    keys.reserve(static_cast<std::size_t>(count));
    for (std::int64_t i = 0; i < count; ++i) {
        keys.push_back(store.Add());
        if ((i + 1) % kBatch == 0) store.Commit();
    }
    store.Commit();
    return keys;
}

// Writes a file of that many bytes and deletes it. In a virtual machine memory may first have to
// be had back from the host, which costs many times what a store's own work does; so every store
// finds it there.
inline void FetchMemory(const std::filesystem::path& folder, std::int64_t bytes) {
    const std::filesystem::path name = folder / "memory";
    const std::string part(1 << 20, 'm');
    std::ofstream file(name, std::ios::binary);
    for (std::int64_t done = 0; done < bytes; done += 1 << 20) file << part;
    file.close();
    std::filesystem::remove(name);
}

template <typename Store, bool durable = false>
void BM_Add(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        {
            const RecordFolder folder;
            FetchMemory(folder.Path(), state.range(0) * 160);
            Store store(folder.Path(), durable);
            state.ResumeTiming();
            Fill(store, state.range(0));
            state.PauseTiming();
            state.counters["bytes_a_record"] =
                static_cast<double>(store.Bytes()) / static_cast<double>(state.range(0));
        }
        state.ResumeTiming();
    }
    PerRecord(state);
}

// `job(store, keys)` once over a filled store; `refill` when it leaves none to work on.
template <typename Store, typename Job>
void OverAll(benchmark::State& state, bool refill, Job job, bool durable = false) {
    const RecordFolder folder;
    auto store = std::make_unique<Store>(folder.Path(), durable);
    std::vector<std::uint32_t> keys = Fill(*store, state.range(0));
    std::mt19937 random(42);
    std::shuffle(keys.begin(), keys.end(), random);
    for (auto _ : state) {
        job(*store, keys);
        if (!refill) continue;
        state.PauseTiming();
        store.reset();
        store = std::make_unique<Store>(folder.Path(), durable);
        keys = Fill(*store, state.range(0));
        std::shuffle(keys.begin(), keys.end(), random);
        state.ResumeTiming();
    }
    PerRecord(state);
}

template <typename Store>
void BM_Get(benchmark::State& state) {
    OverAll<Store>(state, false, [](Store& store, const std::vector<std::uint32_t>& keys) {
        std::uint64_t sum = 0;
        for (const std::uint32_t key : keys) sum += store.Get(key);
        benchmark::DoNotOptimize(sum);
    });
}

template <typename Store, bool durable = false>
void BM_Update(benchmark::State& state) {
    OverAll<Store>(
        state, false,
        [](Store& store, const std::vector<std::uint32_t>& keys) {
            std::int64_t done = 0;
            for (const std::uint32_t key : keys) {
                store.Update(key);
                if (++done % kBatch == 0) store.Commit();
            }
            store.Commit();
        },
        durable);
}

template <typename Store, bool durable = false>
void BM_Delete(benchmark::State& state) {
    OverAll<Store>(
        state, true,
        [](Store& store, const std::vector<std::uint32_t>& keys) {
            std::int64_t done = 0;
            for (const std::uint32_t key : keys) {
                store.Delete(key);
                if (++done % kBatch == 0) store.Commit();
            }
            store.Commit();
        },
        durable);
}

template <typename Store>
void BM_Enumerate(benchmark::State& state) {
    OverAll<Store>(state, false, [&](Store& store, const std::vector<std::uint32_t>& keys) {
        if (store.Scan() != keys.size()) state.SkipWithError("records are missing");
    });
}

}  // namespace bench

// All jobs for one store; wants `using namespace bench`.
#define RECORD_BENCHMARKS(Store)                            \
    BENCHMARK_TEMPLATE(BM_Add, Store)->RECORD_SIZES;        \
    BENCHMARK_TEMPLATE(BM_Get, Store)->RECORD_SIZES;        \
    BENCHMARK_TEMPLATE(BM_Update, Store)->RECORD_SIZES;     \
    BENCHMARK_TEMPLATE(BM_Delete, Store)->RECORD_SIZES;     \
    BENCHMARK_TEMPLATE(BM_Enumerate, Store)->RECORD_SIZES;  \
    BENCHMARK_TEMPLATE(BM_Add, Store, true)->RECORD_FEW;    \
    BENCHMARK_TEMPLATE(BM_Update, Store, true)->RECORD_FEW; \
    BENCHMARK_TEMPLATE(BM_Delete, Store, true)->RECORD_FEW
#define RECORD_FEW Arg(20000)->Iterations(2)->UseRealTime()->Unit(benchmark::kMillisecond)
#define RECORD_SIZES Arg(200000)->Iterations(2)->Unit(benchmark::kMillisecond)

// The same over ten times as many, to see whether a record's cost stays.
#define RECORD_MILLIONS(Store)                         \
    BENCHMARK_TEMPLATE(BM_Add, Store)->RECORD_MANY;    \
    BENCHMARK_TEMPLATE(BM_Get, Store)->RECORD_MANY;    \
    BENCHMARK_TEMPLATE(BM_Update, Store)->RECORD_MANY; \
    BENCHMARK_TEMPLATE(BM_Delete, Store)->RECORD_MANY; \
    BENCHMARK_TEMPLATE(BM_Enumerate, Store)->RECORD_MANY
#define RECORD_MANY Arg(2000000)->Iterations(1)->Unit(benchmark::kMillisecond)

#endif
