// The same jobs in SQLite: one table of blobs by row number; journal and syncing off, or on.
#include <sqlite3.h>

#include "RecordBench.h"

namespace {

class Sqlite {
public:
    Sqlite(const std::filesystem::path& folder, bool durable) : path_(folder / "bench.sqlite") {
        std::filesystem::remove(path_);
        sqlite3_open(path_.c_str(), &base_);
        Run(durable ? "PRAGMA journal_mode=WAL" : "PRAGMA journal_mode=OFF");
        Run(durable ? "PRAGMA synchronous=FULL" : "PRAGMA synchronous=OFF");
        Run("CREATE TABLE records (key INTEGER PRIMARY KEY, data BLOB)");
        Run("BEGIN");
        add_ = Prepare("INSERT INTO records (data) VALUES (?2)");
        get_ = Prepare("SELECT data FROM records WHERE key = ?1");
        update_ = Prepare("UPDATE records SET data = ?2 WHERE key = ?1");
        delete_ = Prepare("DELETE FROM records WHERE key = ?1");
        scan_ = Prepare("SELECT data FROM records");
    }
    ~Sqlite() {
        Run("COMMIT");
        for (sqlite3_stmt* each : {add_, get_, update_, delete_, scan_}) sqlite3_finalize(each);
        sqlite3_close(base_);
    }
    Sqlite(const Sqlite&) = delete;
    Sqlite& operator=(const Sqlite&) = delete;

    std::uint32_t Add() {
        Step(add_, 0, true);
        return static_cast<std::uint32_t>(sqlite3_last_insert_rowid(base_));
    }
    std::uint64_t Get(std::uint32_t key) {
        sqlite3_bind_int64(get_, 1, key);
        const std::uint64_t sum = sqlite3_step(get_) == SQLITE_ROW ? Copy(get_) : 0;
        sqlite3_reset(get_);
        return sum;
    }
    void Update(std::uint32_t key) { Step(update_, key, true); }
    void Delete(std::uint32_t key) { Step(delete_, key, false); }
    std::uint64_t Scan() {
        std::uint64_t count = 0;
        std::uint64_t sum = 0;
        for (; sqlite3_step(scan_) == SQLITE_ROW; ++count) sum += Copy(scan_);
        sqlite3_reset(scan_);
        benchmark::DoNotOptimize(sum);
        return count;
    }
    void Commit() {
        Run("COMMIT");
        Run("BEGIN");
    }
    [[nodiscard]] std::uint64_t Bytes() const { return std::filesystem::file_size(path_); }

private:
    void Run(const char* text) { sqlite3_exec(base_, text, nullptr, nullptr, nullptr); }
    sqlite3_stmt* Prepare(const char* text) {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(base_, text, -1, &statement, nullptr);
        return statement;
    }
    void Step(sqlite3_stmt* statement, std::uint32_t key, bool data) {
        ++number_;
        std::copy_n(reinterpret_cast<const char*>(&number_), sizeof number_, record_.begin());
        if (key != 0) sqlite3_bind_int64(statement, 1, key);
        if (data) {
            sqlite3_bind_blob(statement, 2, record_.data(), static_cast<int>(record_.size()),
                              SQLITE_STATIC);
        }
        sqlite3_step(statement);
        sqlite3_reset(statement);
    }
    std::uint64_t Copy(sqlite3_stmt* statement) {
        copy_.assign(static_cast<const char*>(sqlite3_column_blob(statement, 0)),
                     static_cast<std::size_t>(sqlite3_column_bytes(statement, 0)));
        return bench::Sum(copy_.data(), copy_.size());
    }

    std::filesystem::path path_;
    sqlite3* base_ = nullptr;
    sqlite3_stmt *add_ = nullptr, *get_ = nullptr, *update_ = nullptr, *delete_ = nullptr,
                 *scan_ = nullptr;
    std::uint32_t number_ = 0;
    std::string record_ = bench::Record(0);
    std::string copy_;
};

using namespace bench;
RECORD_BENCHMARKS(Sqlite);
RECORD_MILLIONS(Sqlite);

}  // namespace
