// CT_RecordManager: taking blocks and giving them back.
#include <algorithm>

#include "Foundation/Core/Error/Failure.h"
#include "Foundation/Database/RecordManager/RecordManagerDetail.h"
#include "Foundation/Platform/LastError.h"

namespace format = foundation::record_format;
using foundation::detail::Failed;

namespace {

constexpr unsigned int kLongestWalk = 100000;
constexpr unsigned int kUnknownBound = 0xFFFFFFFF;

}  // namespace

const CT_RecordManager::FreeEntry* CT_RecordManager::FreeEntries() const {
    return static_cast<const FreeEntry*>(free_table_.pcco_GetBuffer()->qcv_Get());
}

// Whether the full table ends in the head of the overflow chain.
bool CT_RecordManager::HasChain() const {
    const unsigned int count = free_table_.n_GetCount();
    return count == Get(format::kCapacityAt) && FreeEntries()[count - 1].size == 0;
}

// Whether a block of that size can be had once the one of size `returned` is given back; records
// the error. Asked before anything is given back, so that a file at its limit keeps what it has.
bool CT_RecordManager::CanTake(std::uint64_t size, std::uint64_t returned) {
    const std::uint64_t need = Round(size);
    if (need + n_GetSize() <= format::kLargestFile || returned >= need) return true;
    const FreeEntry* const entries = FreeEntries();
    for (unsigned int i = 0; i < free_table_.n_GetCount(); ++i) {
        if (entries[i].size >= need) return true;
    }
    SystemFailure(platform::kErrorFileTooLarge);
    return false;
}

// ---- Taking -------------------------------------------------------------------------------------

// First fit: the table, the chain, the end of the file. 0 after a failure.
unsigned int CT_RecordManager::n_GetFreeBlock(unsigned int size) {
    const std::uint64_t rounded = Round(size);
    if (rounded > format::kLargestFile) {
        SystemFailure(platform::kErrorFileTooLarge);
        return 0;
    }
    const auto need = static_cast<unsigned int>(rounded);
    Add(format::kFreeCounterAt, 1);
    const FreeEntry* const entries = FreeEntries();
    const unsigned int count = free_table_.n_GetCount();
    for (unsigned int i = 0; i < count; ++i) {
        if (entries[i].size >= need) return TakeEntry(i + 1, need);
    }
    if (count != 0 && HasChain()) {
        const unsigned int offset = TakeFromChain(need);
        if (Failed()) return 0;
        if (offset != 0) return offset;
    }
    Add(format::kFreeCounterAt, -1);
    return TakeAtEnd(need);
}

unsigned int CT_RecordManager::TakeEntry(unsigned int position, unsigned int need) {
    const FreeEntry entry = FreeEntries()[position - 1];
    if (!IsBlock(entry.offset, entry.size) || entry.size % n_GetBlockSize() != 0) {
        v_SetError(format::kCorrupt);
        return 0;
    }
    if (entry.size > need) {
        const FreeEntry rest{entry.offset + need, entry.size - need};
        v_Write(rest.offset, rest.size);
        if (Failed()) return 0;
        free_table_.v_SetAt(&rest, static_cast<int>(position));
        return entry.offset;
    }
    const unsigned int count = free_table_.n_GetCount();
    if (position == count) {
        free_table_.v_RemoveAt(count);
    } else if (!FillPlace(position, FreeEntries()[count - 1])) {
        return 0;
    }
    Put(format::kFreeCountAt, free_table_.n_GetCount());
    return entry.offset;
}

// The table's last entry fills the place of one that was used up. When it is the chain's head, the
// chain's first block does, and the chain starts at its next one.
bool CT_RecordManager::FillPlace(unsigned int position, FreeEntry last) {
    const unsigned int count = free_table_.n_GetCount();
    FreeEntry chain{0, 0};
    if (count == Get(format::kCapacityAt) && last.size == 0) {
        ChainBlock first;
        if (!ReadChainBlock(last.offset, &first)) return false;
        last.size = first.size;
        chain.offset = first.link;
        if (!chain_end_seen_) chain_bound_ = kUnknownBound;
    }
    free_table_.v_RemoveAt(count);
    free_table_.v_SetAt(&last, static_cast<int>(position));
    if (chain.offset != 0) free_table_.v_Insert(&chain);
    return true;
}

// The first block of the chain that fits, not counting the one at its head. Remembers how large the
// largest is, so that a chain is not walked again for what it cannot hold; the outcome is the same.
unsigned int CT_RecordManager::TakeFromChain(unsigned int need) {
    if (need > chain_bound_) return 0;
    unsigned int previous = FreeEntries()[free_table_.n_GetCount() - 1].offset;
    ChainBlock block;
    if (!ReadChainBlock(previous, &block)) return 0;
    unsigned int largest = block.size;
    unsigned int offset = block.link;
    for (unsigned int steps = 0; offset != 0 && steps < kLongestWalk; ++steps) {
        if (!ReadChainBlock(offset, &block)) return 0;
        if (block.size >= need) return UnlinkFromChain(previous, offset, block, need);
        largest = std::max(largest, block.size);
        previous = offset;
        offset = block.link;
    }
    chain_bound_ = largest;
    chain_end_seen_ = offset == 0;
    return 0;
}

// Whether the table too has the block: then the chain is one that a killed process left, and leads
// through blocks that were used since.
bool CT_RecordManager::InTable(unsigned int offset) const {
    const FreeEntry* const entries = FreeEntries();
    return std::any_of(entries, entries + free_table_.n_GetCount(), [offset](FreeEntry entry) {
        return offset - entry.offset < std::max(entry.size, 1u);
    });
}

// The remainder of a larger block stays in its place in the chain.
unsigned int CT_RecordManager::UnlinkFromChain(unsigned int previous, unsigned int offset,
                                               const ChainBlock& block, unsigned int need) {
    if (InTable(offset)) {
        v_SetError(format::kCorrupt);
        return 0;
    }
    unsigned int next = block.link;
    if (block.size > need) {
        next = offset + need;
        WritePair(next, block.size - need, block.link);
        if (Failed()) return 0;
    }
    v_Write(previous + format::kFreeLinkAt, next);
    if (Failed()) return 0;
    if (!chain_end_seen_) chain_bound_ = kUnknownBound;
    return offset;
}

bool CT_RecordManager::ReadChainBlock(unsigned int offset, ChainBlock* block) {
    std::byte words[2 * format::kWord];
    if (!IsBlock(offset, sizeof words)) {
        v_SetError(format::kCorrupt);
        return false;
    }
    v_Read(words, offset, sizeof words);
    if (Failed()) return false;
    *block = {format::LoadU32(words), format::LoadU32(words + format::kFreeLinkAt)};
    if (block->size != 0 && block->size % n_GetBlockSize() == 0 && IsBlock(offset, block->size)) {
        return true;
    }
    v_SetError(format::kCorrupt);
    return false;
}

unsigned int CT_RecordManager::TakeAtEnd(unsigned int need) {
    if (std::uint64_t{need} + n_GetSize() > format::kLargestFile) {
        SystemFailure(platform::kErrorFileTooLarge);
        return 0;
    }
    if (end_cap_ != kNoCap) {
        v_SetError(format::kCorrupt);
        return 0;
    }
    const unsigned int offset = n_GetSize();
    Put(format::kDataEndAt, offset + need);
    return offset;
}

// ---- Giving back --------------------------------------------------------------------------------

void CT_RecordManager::v_PutFreeBlock(int /*kind*/, unsigned int offset, unsigned int size) {
    const std::uint64_t rounded = Round(size);
    if (!IsBlock(offset, rounded)) return v_SetError(format::kCorrupt);
    const FreeEntry freed{offset, static_cast<unsigned int>(rounded)};
    Add(format::kFreeCounterAt, 1);
    const unsigned int capacity = Get(format::kCapacityAt);
    if (free_table_.n_GetCount() < capacity) {
        v_Write(offset, freed.size);
        if (Failed()) return;
        free_table_.v_Insert(&freed);
        Put(format::kFreeCountAt, free_table_.n_GetCount());
        return;
    }
    const FreeEntry last = FreeEntries()[capacity - 1];
    if (last.size != 0) {
        if (!IsBlock(last.offset, last.size)) return v_SetError(format::kCorrupt);
        v_Write(last.offset + format::kFreeLinkAt, 0u);
        if (Failed()) return;
        chain_bound_ = 0;
        chain_end_seen_ = true;
    }
    WritePair(offset, freed.size, last.offset);
    if (Failed()) return;
    const FreeEntry head{offset, 0};
    free_table_.v_SetAt(&head, static_cast<int>(capacity));
    chain_bound_ = std::max({chain_bound_, last.size, freed.size});
}

// Marks what a failed operation took, so that a scan does not follow the size the block once had.
// The error that is set stays.
void CT_RecordManager::Abandon(unsigned int offset, unsigned int word) {
    CT_ErrorManager* const errors = CT_ErrorManager::spco_Get();
    errors->v_SetIgnoreError(TRUE);
    v_Write(offset, word);
    errors->v_SetIgnoreError(FALSE);
}
