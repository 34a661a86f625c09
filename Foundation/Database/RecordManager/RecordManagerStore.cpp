// CT_RecordManager: writing header and tables back, in an order that a killed process may stop at.
//
// A write that stays within a page happens as a whole or not at all; a store into a mapping does so
// for one aligned word pair, that is one entry. What is larger goes out in such parts:
//   1. the change counters, and a count of 0 free blocks: nobody trusts tables that he kept, and
//      free space may be lost but is not given out twice
//   2. the free table
//   3. the directory, entries that move before those they overwrite
//   4. the header
#include <algorithm>
#include <cstring>

#include "Foundation/Database/RecordManager/Internal/RecordManagerDetail.h"

namespace format = zelkor::record_format;
using format::Failed;
using format::LoadU32;
using format::StoreU32;

namespace {

constexpr unsigned int kPage = 4096;

// The tables' entries as they lie in the file.
void ToFile(const CT_VoidArray& table, std::byte* out) {
    const CT_Buffer* const buffer = table.pcco_GetBuffer();
    const auto* const entries = static_cast<const std::byte*>(buffer->qcv_Get());
    for (std::uint32_t at = 0; at < buffer->n_GetUsedSize(); at += format::kWord) {
        std::uint32_t word;
        std::memcpy(&word, entries + at, sizeof word);
        format::StoreU32(out + at, word);
    }
}

// Where the key is among entries of the directory; `count` when it is not.
std::uint32_t FindKey(const std::byte* entries, std::uint32_t count, std::uint32_t key) {
    std::uint32_t first = 0;
    for (std::uint32_t last = count; first < last;) {
        const std::uint32_t middle = first + (last - first) / 2;
        const std::uint32_t there = LoadU32(entries + std::size_t{middle} * format::kEntrySize);
        if (there == key) return middle;
        if (there < key) {
            first = middle + 1;
        } else {
            last = middle;
        }
    }
    return count;
}

// A new directory beside the one in the file.
struct Directories {
    const std::byte* now;
    std::uint32_t count;
    const std::byte* before;

    // Whether an entry from this range of positions goes to one before the range.
    [[nodiscard]] bool MoveBack(std::uint32_t first, std::uint32_t last) const {
        for (std::uint32_t i = first; i < last; ++i) {
            if (FindKey(now, count, LoadU32(before + std::size_t{i} * format::kEntrySize)) <
                first) {
                return true;
            }
        }
        return false;
    }
    [[nodiscard]] bool Differ(std::uint32_t first, std::uint32_t last) const {
        const std::size_t from = std::size_t{first} * format::kEntrySize;
        return std::memcmp(now + from, before + from,
                           std::size_t{last - first} * format::kEntrySize) != 0;
    }
};

static_assert(format::kResourceCountAt == format::kFreeCountAt + 8);
static_assert(format::kFreeCounterAt == format::kFreeCountAt + 20);
constexpr unsigned int kCountsSize = 24;  // from the free count to the last change counter

}  // namespace

void CT_RecordManager::v_WriteHeader() {
    if (!PayDebts()) return void(Failed());
    const bool table = open_mode_ == kModeReadWrite && Get(format::kFreeCounterAt) != free_copy_;
    const bool directory = Get(format::kResourceCounterAt) != resource_copy_;
    if (!table && !directory && Get(format::kHeaderCounterAt) == header_copy_) return;
    std::uint64_t end = format::kFreeTableAt;
    if (table) end += std::uint64_t{free_table_.n_GetCount()} * format::kEntrySize;
    if (directory) {
        end = format::DirectoryAt(Get(format::kCapacityAt)) +
              std::uint64_t{directory_.n_GetCount()} * format::kEntrySize;
    }
    if (b_GetMapping() || end > kPage) {
        WriteInSteps(table, directory);
    } else {
        WriteTogether(table, directory, static_cast<unsigned int>(end));
    }
    if (Failed()) return;
    header_copy_ = Get(format::kHeaderCounterAt);
    if (table) free_copy_ = Get(format::kFreeCounterAt);
    if (directory) resource_copy_ = Get(format::kResourceCounterAt);
}

// All of it is less than a page: one write.
void CT_RecordManager::WriteTogether(bool table, bool directory, unsigned int end) {
    scratch_.v_SetMinSize(end, FALSE);
    scratch_.v_SetUsedSize(end);
    auto* const image = static_cast<std::byte*>(scratch_.qv_Get());
    if (directory) {  // unused entries before it keep what they hold
        std::memset(image, 0, end);
        ReadAt(image, 0, end);
        if (Failed()) return;
    }
    std::memcpy(image, header_.data(), format::kHeaderSize);
    if (table) ToFile(free_table_, image + format::kFreeTableAt);
    if (directory) {
        ToFile(*directory_.pcco_GetArray(), image + format::DirectoryAt(Get(format::kCapacityAt)));
    }
    v_Write(0, image, end);
}

void CT_RecordManager::WriteInSteps(bool table, bool directory) {
    unsigned int stored = n_GetResourceCount();
    if (directory) {
        std::byte word[format::kWord]{};
        ReadAt(word, format::kResourceCountAt, sizeof word);
        if (Failed()) return;
        stored =
            std::min({LoadU32(word), n_GetResourceMaxCount(), n_GetSize() / format::kEntrySize});
    }
    if (table || directory) {
        std::byte counts[kCountsSize];
        std::memcpy(counts, header_.data() + format::kFreeCountAt, sizeof counts);
        if (table) StoreU32(counts, 0);
        StoreU32(counts + (format::kResourceCountAt - format::kFreeCountAt), stored);
        v_Write(format::kFreeCountAt, counts, sizeof counts);
        if (Failed()) return;
    }
    if (table && free_table_.n_GetCount() != 0) {
        const unsigned int size = free_table_.n_GetCount() * format::kEntrySize;
        scratch_.v_SetMinSize(size, FALSE);
        ToFile(free_table_, static_cast<std::byte*>(scratch_.qv_Get()));
        v_Write(format::kFreeTableAt, scratch_.qcv_Get(), size);
        if (Failed()) return;
    }
    if (directory && !WriteDirectory(stored)) return;
    v_Write(0, header_.data(), format::kHeaderSize);
}

// The file counts `stored` entries, or more once those behind them are there. Entries keep their
// order, so among parts that give entries to each other there is a first one to write: those whose
// entries move only towards the end from the last on, then the others from the first on.
bool CT_RecordManager::WriteDirectory(unsigned int stored) {
    constexpr unsigned int kEntry = format::kEntrySize;
    const auto at = static_cast<unsigned int>(format::DirectoryAt(Get(format::kCapacityAt)));
    const unsigned int count = directory_.n_GetCount();
    CT_Buffer former(stored * kEntry);
    former.v_SetUsedSize(stored * kEntry);
    auto* const before = static_cast<std::byte*>(former.qv_Get());
    if (stored != 0) {
        std::memset(before, 0, std::size_t{stored} * kEntry);
        ReadAt(before, at, stored * kEntry);
        if (Failed()) return false;
    }
    scratch_.v_SetMinSize(count * kEntry, FALSE);
    auto* const now = static_cast<std::byte*>(scratch_.qv_Get());
    ToFile(*directory_.pcco_GetArray(), now);
    if (count > stored) {
        v_Write(at + stored * kEntry, now + std::size_t{stored} * kEntry,
                (count - stored) * kEntry);
        if (!Failed()) v_Write(format::kResourceCountAt, count);
        if (Failed()) return false;
    }
    const Directories both{now, count, before};
    const unsigned int both_count = std::min(stored, count);
    if (both_count == 0) return true;
    const unsigned int part = b_GetMapping() ? 1 : kPage / kEntry;
    const unsigned int lead = at / kEntry % part;  // entries of the first part's page before it
    const unsigned int parts = (lead + both_count + part - 1) / part;
    for (const bool back : {false, true}) {
        for (unsigned int i = 0; i < parts; ++i) {
            const unsigned int page = (back ? i : parts - 1 - i) * part;
            const unsigned int first = page < lead ? 0 : page - lead;
            const unsigned int last = std::min(page + part - lead, both_count);
            if (!both.Differ(first, last) || both.MoveBack(first, last) != back) continue;
            v_Write(at + first * kEntry, now + std::size_t{first} * kEntry,
                    (last - first) * kEntry);
            if (Failed()) return false;
        }
    }
    return true;
}
