// CT_RecordManager: taking blocks and giving them back.
#include <algorithm>

#include "Foundation/Database/RecordManager/Internal/RecordManagerDetail.h"
#include "Foundation/Platform/LastError.h"

namespace platform = zelkor::platform;

namespace format = zelkor::record_format;
using format::Failed;
using format::InSpiteOfError;

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
        if (entry.offset == held_.offset) {
            held_ = {rest.offset, {rest.size, 0}, false};
        } else {
            v_Write(rest.offset, rest.size);
        }
        if (Failed()) return 0;
        free_table_.v_SetAt(&rest, static_cast<int>(position));
        return entry.offset;
    }
    if (!RemoveEntry(position)) return 0;
    if (entry.offset == held_.offset) held_ = {};
    return entry.offset;
}

// The table's last entry fills the place of another one. When it is the chain's head, the chain's
// first block does, and the chain starts at its next one.
bool CT_RecordManager::RemoveEntry(unsigned int position) {
    const unsigned int count = free_table_.n_GetCount();
    FreeEntry last = FreeEntries()[count - 1];
    FreeEntry chain{0, 0};
    if (position != count && count == Get(format::kCapacityAt) && last.size == 0) {
        ChainBlock first;
        if (!ReadChainBlock(last.offset, &first)) return false;
        last.size = first.size;
        chain.offset = first.link;
        if (!chain_end_seen_) chain_bound_ = kUnknownBound;
    }
    free_table_.v_RemoveAt(count);
    if (position != count) free_table_.v_SetAt(&last, static_cast<int>(position));
    if (chain.offset != 0) free_table_.v_Insert(&chain);
    Put(format::kFreeCountAt, free_table_.n_GetCount());
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
    if (previous == held_.offset) {
        held_.words.link = next;
    } else {
        v_Write(previous + format::kFreeLinkAt, next);
        if (Failed()) {
            Mend(previous + format::kFreeLinkAt, offset);
            return 0;
        }
    }
    if (!chain_end_seen_) chain_bound_ = kUnknownBound;
    return offset;
}

bool CT_RecordManager::ReadChainBlock(unsigned int offset, ChainBlock* block) {
    std::byte words[2 * format::kWord]{};
    if (!IsBlock(offset, sizeof words)) {
        v_SetError(format::kCorrupt);
        return false;
    }
    if (offset == held_.offset) {
        *block = held_.words;
        return true;
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

// At the data end, or behind what the file held behind that.
unsigned int CT_RecordManager::TakeAtEnd(unsigned int need) {
    std::uint64_t offset = n_GetSize();
    if (offset < opened_size_) {
        const unsigned int loose = LooseEnd();
        if (Failed()) return 0;
        if (loose > offset) offset = Round(loose);
    }
    if (need + offset > format::kLargestFile) {
        SystemFailure(platform::kErrorFileTooLarge);
        return 0;
    }
    Put(format::kDataEndAt, static_cast<unsigned int>(offset) + need);
    return static_cast<unsigned int>(offset);
}

// ---- Giving back --------------------------------------------------------------------------------

void CT_RecordManager::v_PutFreeBlock(int /*kind*/, unsigned int offset, unsigned int size) {
    if (GiveBack(offset, size)) Settle();
}

// The block is free space from now on, but its bytes stay as they are until Settle().
bool CT_RecordManager::GiveBack(unsigned int offset, unsigned int size) {
    const std::uint64_t rounded = Round(size);
    if (!IsBlock(offset, rounded)) {
        v_SetError(format::kCorrupt);
        return false;
    }
    const FreeEntry freed{offset, static_cast<unsigned int>(rounded)};
    Add(format::kFreeCounterAt, 1);
    const unsigned int capacity = Get(format::kCapacityAt);
    if (free_table_.n_GetCount() < capacity) {
        free_table_.v_Insert(&freed);
        Put(format::kFreeCountAt, free_table_.n_GetCount());
        held_ = {offset, {freed.size, 0}, false};
        return true;
    }
    const FreeEntry last = FreeEntries()[capacity - 1];
    if (last.size != 0) {
        if (IsBlock(last.offset, last.size)) {
            v_Write(last.offset + format::kFreeLinkAt, 0u);
        } else {
            v_SetError(format::kCorrupt);
        }
        if (Failed()) return false;
        chain_bound_ = 0;
        chain_end_seen_ = true;
    }
    const FreeEntry head{offset, 0};
    free_table_.v_SetAt(&head, static_cast<int>(capacity));
    held_ = {offset, {freed.size, last.offset}, true};
    chain_bound_ = std::max({chain_bound_, last.size, freed.size});
    return true;
}

// Writes the words of the block that was given back, if they are still due. When that fails it
// stays out of free space, but a scan is to pass it.
bool CT_RecordManager::Settle() {
    const Held held = held_;
    if (held.offset == 0) return true;
    if (held.linked) {
        WritePair(held.offset, held.words.size, held.words.link);
    } else {
        v_Write(held.offset, held.words.size);
    }
    if (Failed()) {
        Withdraw();
        Mend(held.offset, held.words.size);
        return false;
    }
    held_ = {};
    return true;
}

// Takes the block that was given back, or what was not used of it, out of free space again.
void CT_RecordManager::Withdraw() {
    const Held held = held_;
    const InSpiteOfError tried;
    for (unsigned int i = free_table_.n_GetCount(); held.offset != 0 && i != 0; --i) {
        const FreeEntry entry = FreeEntries()[i - 1];
        if (entry.offset != held.offset) continue;
        const FreeEntry head{held.words.link, 0};
        if (entry.size == 0 && head.offset != 0) {
            free_table_.v_SetAt(&head, static_cast<int>(i));
        } else if (!RemoveEntry(i)) {
            RemoveEntry(free_table_.n_GetCount());  // the chain cannot be read: it is lost
            RemoveEntry(i);
        }
        break;
    }
    held_ = {};
}
