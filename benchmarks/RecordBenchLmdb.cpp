// The same jobs in LMDB: integer keys, appended; a writable map without syncing, or with it.
#include <lmdb.h>

#include "RecordBench.h"

namespace {

class Lmdb {
public:
    Lmdb(const std::filesystem::path& folder, bool durable) : path_(folder / "lmdb") {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
        mdb_env_create(&environment_);
        mdb_env_set_mapsize(environment_, std::size_t{1} << 31);
        mdb_env_open(environment_, path_.c_str(),
                     durable ? 0u : static_cast<unsigned int>(MDB_WRITEMAP | MDB_NOSYNC), 0600);
        mdb_txn_begin(environment_, nullptr, 0, &transaction_);
        mdb_dbi_open(transaction_, nullptr, MDB_INTEGERKEY | MDB_CREATE, &database_);
    }
    ~Lmdb() {
        mdb_txn_commit(transaction_);
        mdb_env_close(environment_);
    }
    Lmdb(const Lmdb&) = delete;
    Lmdb& operator=(const Lmdb&) = delete;

    std::uint32_t Add() {
        std::uint32_t key = ++last_;
        Put(key, MDB_APPEND);
        return key;
    }
    std::uint64_t Get(std::uint32_t key) {
        MDB_val name = Key(key);
        MDB_val value;
        if (mdb_get(transaction_, database_, &name, &value) != 0) return 0;
        // as the record file does, the caller gets a copy of its own
        copy_.assign(static_cast<const char*>(value.mv_data), value.mv_size);
        return bench::Sum(copy_.data(), copy_.size());
    }
    void Update(std::uint32_t key) { Put(key, 0); }
    void Delete(std::uint32_t key) {
        MDB_val name = Key(key);
        mdb_del(transaction_, database_, &name, nullptr);
    }
    std::uint64_t Scan() {
        MDB_cursor* cursor = nullptr;
        mdb_cursor_open(transaction_, database_, &cursor);
        MDB_val name;
        MDB_val value;
        std::uint64_t count = 0;
        std::uint64_t sum = 0;
        while (mdb_cursor_get(cursor, &name, &value, MDB_NEXT) == 0) {
            copy_.assign(static_cast<const char*>(value.mv_data), value.mv_size);
            sum += bench::Sum(copy_.data(), copy_.size());
            ++count;
        }
        mdb_cursor_close(cursor);
        benchmark::DoNotOptimize(sum);
        return count;
    }
    void Commit() {
        mdb_txn_commit(transaction_);
        mdb_txn_begin(environment_, nullptr, 0, &transaction_);
    }
    [[nodiscard]] std::uint64_t Bytes() const {
        MDB_envinfo info;
        MDB_stat stat;
        mdb_env_info(environment_, &info);
        mdb_env_stat(environment_, &stat);
        return (info.me_last_pgno + 1) * std::uint64_t{stat.ms_psize};
    }

private:
    static MDB_val Key(std::uint32_t& key) { return {sizeof key, &key}; }
    void Put(std::uint32_t key, unsigned int flags) {
        std::copy_n(reinterpret_cast<const char*>(&key), sizeof key, record_.begin());
        MDB_val name = Key(key);
        MDB_val value{record_.size(), record_.data()};
        mdb_put(transaction_, database_, &name, &value, flags);
    }

    std::filesystem::path path_;
    MDB_env* environment_ = nullptr;
    MDB_txn* transaction_ = nullptr;
    MDB_dbi database_ = 0;
    std::uint32_t last_ = 0;
    std::string record_ = bench::Record(0);
    std::string copy_;
};

using namespace bench;
RECORD_BENCHMARKS(Lmdb);
RECORD_MILLIONS(Lmdb);

}  // namespace
