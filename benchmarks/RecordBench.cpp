// Record files of 100-byte records, mapped and not, beside a port of the format that seeks for and
// writes each word.
#include "RecordBench.h"

#include <fcntl.h>
#include <unistd.h>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Database/RecordManager/RecordManager.h"

namespace {

// A head takes one block, a body three.
constexpr unsigned int kHeader = 16;
constexpr unsigned int kBlock = 32;

CT_Buffer Data(std::uint32_t number) {
    const std::string record = bench::Record(number);
    return CT_Buffer(record.data(), bench::kRecordSize, 32);
}

template <CT_RecordManager::et_MappingMode mapping>
class RecordFile {
public:
    RecordFile(const std::filesystem::path& folder, bool durable)
        : durable_(durable),
          name_((folder / "bench.rec").u16string().c_str()),
          file_(&name_, 16384),
          manager_(&file_) {
        manager_.v_Create(kHeader, kBlock, 0);
        manager_.v_Close(TRUE);
        manager_.v_Open(CT_RecordManager::kModeReadWrite, mapping);
    }
    ~RecordFile() { manager_.v_Close(TRUE); }

    std::uint32_t Add() {
        Number();
        return manager_.n_AddRecord(&data_);
    }
    std::uint64_t Get(std::uint32_t key) {
        manager_.v_GetRecord(key, &out_, 0);
        return bench::Sum(out_.qcv_Get(), out_.n_GetUsedSize());
    }
    void Update(std::uint32_t key) {
        Number();
        manager_.v_UpdateRecord(key, &data_);
    }
    void Delete(std::uint32_t key) { manager_.v_DeleteRecord(key); }
    std::uint64_t Scan() {
        std::uint64_t count = 0;
        std::uint64_t sum = 0;
        for (unsigned int cursor = 0; (cursor = manager_.n_GetNextRecord(cursor, &out_)) != 0;) {
            sum += bench::Sum(out_.qcv_Get(), out_.n_GetUsedSize());
            ++count;
        }
        benchmark::DoNotOptimize(sum);
        return count;
    }
    // Without durability nothing is owed until the file is closed.
    void Commit() {
        if (durable_) manager_.v_Flush();
    }
    [[nodiscard]] std::uint64_t Bytes() const { return manager_.n_GetSize(); }

private:
    void Number() {
        ++number_;
        std::copy_n(reinterpret_cast<const char*>(&number_), sizeof number_,
                    static_cast<char*>(data_.qv_Get()));
    }

    bool durable_;
    std::uint32_t number_ = 0;
    CT_UString name_;
    CT_WinFile file_;
    CT_RecordManager manager_;
    CT_Buffer data_ = Data(0);
    CT_Buffer out_;
};

using Mapped = RecordFile<CT_RecordManager::kMapAlways>;
using Unmapped = RecordFile<CT_RecordManager::kMapNever>;

// The same blocks at the end of a file, a seek and a write for each word and each run of bytes.
class WordByWord {
public:
    WordByWord(const std::filesystem::path& folder, bool)
        : descriptor_(open((folder / "words.rec").c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600)) {}
    ~WordByWord() { close(descriptor_); }

    std::uint32_t Add() {
        const std::uint32_t head = end_;
        const std::uint32_t body = head + kBlock;
        end_ = body + 3 * kBlock;
        Word(head, 0xFFFFFFFE);
        Word(head + 4, body);
        Write(head + 8, record_.data(), kHeader);
        Word(body, bench::kRecordSize - kHeader + 4);
        Write(body + 4, record_.data() + kHeader, bench::kRecordSize - kHeader);
        Word(head, 0xFFFFFFFF);
        return head / kBlock;
    }
    void Commit() {}
    [[nodiscard]] std::uint64_t Bytes() const { return end_; }

private:
    void Word(std::uint32_t offset, std::uint32_t word) { Write(offset, &word, sizeof word); }
    void Write(std::uint32_t offset, const void* data, std::size_t size) {
        lseek(descriptor_, offset, SEEK_SET);
        benchmark::DoNotOptimize(write(descriptor_, data, size));
    }

    int descriptor_;
    std::uint32_t end_ = 2112;
    std::string record_ = bench::Record(1);
};

using namespace bench;
RECORD_BENCHMARKS(Mapped);
RECORD_MILLIONS(Mapped);
RECORD_BENCHMARKS(Unmapped);
BENCHMARK_TEMPLATE(BM_Add, Unmapped)->RECORD_MANY;
BENCHMARK_TEMPLATE(BM_Add, WordByWord)->RECORD_SIZES;

}  // namespace
