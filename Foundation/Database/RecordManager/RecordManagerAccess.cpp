// CT_RecordManager: reading from and writing to the file, with the checks that damage cannot pass.
#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>

#include "Foundation/Core/Error/DatabaseError.h"
#include "Foundation/Database/RecordManager/Internal/RecordManagerDetail.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/System/SysInfo/SysInfo.h"

namespace platform = zelkor::platform;

namespace format = zelkor::record_format;
using format::Failed;
using format::InSpiteOfError;

namespace {

constexpr unsigned int kMessageSize = 256;
// Room for more than this is made only when the file is known to hold as much.
constexpr unsigned int kUncheckedRoom = 0x10000;

}  // namespace

// ---- Reading ------------------------------------------------------------------------------------

void CT_RecordManager::v_Read(void* out, unsigned int offset, unsigned int count) {
    if (count == 0) return;
    if (offset != 0 && !InsideData(offset, count)) return v_SetError(format::kCorrupt);
    const unsigned int read = ReadAt(out, offset, count);
    if (Failed()) return;
    if (read < count && offset != 0) v_SetError(format::kCorrupt);
}

void CT_RecordManager::v_Read(CT_Buffer* out, unsigned int offset, unsigned int count) {
    out->v_SetUsedSize(0);
    v_ReadAppend(out, offset, count);
    Failed();
}

void CT_RecordManager::v_ReadAppend(CT_Buffer* out, unsigned int offset, unsigned int count) {
    if (count == 0) return;
    const unsigned int used = out->n_GetUsedSize();
    if (!Room(out, std::uint64_t{used} + count)) return;
    v_Read(static_cast<std::byte*>(out->qv_Get()) + used, offset, count);
    if (Failed()) out->v_SetUsedSize(used);
}

unsigned int CT_RecordManager::n_Read(unsigned int offset) {
    std::byte word[format::kWord];
    v_Read(word, offset, format::kWord);
    return Failed() ? 0 : format::LoadU32(word);
}

// Gives the buffer that used size, the bytes up to its former one kept.
bool CT_RecordManager::Room(CT_Buffer* out, std::uint64_t size) {
    if (size > out->n_GetMaximumSize() || out->n_GetUseCount() != 1) {
        if (size > kUncheckedRoom && size > std::max(MappedSize(), vn_GetSize())) {
            v_SetError(format::kCorrupt);
            return false;
        }
        out->v_SetMinSize(static_cast<unsigned int>(size), TRUE);
    }
    out->v_SetUsedSize(static_cast<unsigned int>(size));
    return true;
}

// The bytes without reading the file: in its mapping or in what was read ahead. Null: not there.
const std::byte* CT_RecordManager::AtHand(unsigned int offset, unsigned int count) const {
    const std::uint64_t end = std::uint64_t{offset} + count;
    if (b_GetMapping()) {
        return end <= MappedSize() ? static_cast<const std::byte*>(pv_GetMapping()) + offset
                                   : nullptr;
    }
    if (offset < window_offset_ || end > std::uint64_t{window_offset_} + window_.n_GetUsedSize()) {
        return nullptr;
    }
    return static_cast<const std::byte*>(window_.qcv_Get()) + (offset - window_offset_);
}

// What the file has of these bytes; how many that are.
unsigned int CT_RecordManager::ReadAt(void* out, unsigned int offset, unsigned int count) {
    if (const std::byte* const there = AtHand(offset, count)) {
        std::memcpy(out, there, count);
        return count;
    }
    SeekTo(offset);
    if (Failed()) return 0;
    const unsigned int read = vn_Read(out, count);
    if (Failed()) return 0;
    ShowDebts(static_cast<std::byte*>(out), offset, read);
    return read;
}

// Reads inside the data area. Bytes behind the first `required` ones read as zero where the file
// ends before the data end: the unused rest of its last block was never written.
bool CT_RecordManager::ReadSome(void* out, unsigned int offset, unsigned int count,
                                unsigned int required) {
    if (!InsideData(offset, count)) {
        v_SetError(format::kCorrupt);
        return false;
    }
    const unsigned int read = ReadAt(out, offset, count);
    if (Failed()) return false;
    if (read < required) {
        v_SetError(format::kCorrupt);
        return false;
    }
    std::memset(static_cast<std::byte*>(out) + read, 0, count - read);
    return true;
}

// Distances from the start reach 2 GiB only.
void CT_RecordManager::SeekTo(unsigned int offset) {
    constexpr unsigned int kFar = std::numeric_limits<int>::max();
    const unsigned int first = std::min(offset, kFar);
    vv_SetOffset(kFromStart, static_cast<int>(first));
    for (unsigned int rest = offset - first; rest != 0 && !Failed();) {
        const unsigned int step = std::min(rest, kFar);
        vv_SetOffset(kFromCurrent, static_cast<int>(step));
        rest -= step;
    }
}

// ---- Writing ------------------------------------------------------------------------------------

void CT_RecordManager::v_Write(unsigned int offset, const void* data, unsigned int count) {
    Store(offset, data, count);
}

// False, with an error, unless all of it was written. Heeds what the calls answer, not only the
// error: one that is being ignored hides those that follow.
bool CT_RecordManager::Store(unsigned int offset, const void* data, unsigned int count) {
    if (count == 0) return true;
    changed_ = true;
    const std::uint64_t end = std::uint64_t{offset} + count;
    if (b_GetMapping() && end <= MappedSize()) {
        // a store counts at once, whatever becomes of this process: so they keep their order
        std::atomic_signal_fence(std::memory_order_seq_cst);
        std::memcpy(static_cast<std::byte*>(pv_GetMapping()) + offset, data, count);
        return true;
    }
    SeekTo(offset);
    const bool there = !Failed() && vn_GetOffset() == offset;
    if (!there || vn_Write(data, count) < count || Failed()) {
        window_.v_SetUsedSize(0);
        if (there && !Failed()) SystemFailure(platform::kErrorWriteFault);
        return false;
    }
    const std::uint64_t window_end = std::uint64_t{window_offset_} + window_.n_GetUsedSize();
    const std::uint64_t from = std::max(offset, window_offset_);
    const std::uint64_t to = std::min(end, window_end);
    if (from < to) {
        std::memcpy(static_cast<std::byte*>(window_.qv_Get()) + (from - window_offset_),
                    static_cast<const std::byte*>(data) + (from - offset), to - from);
    }
    return true;
}

void CT_RecordManager::v_Write(unsigned int offset, unsigned int value) {
    std::byte word[format::kWord];
    format::StoreU32(word, value);
    v_Write(offset, word, sizeof word);
}

void CT_RecordManager::WritePair(unsigned int offset, unsigned int first, unsigned int second) {
    std::byte words[2 * format::kWord];
    format::StoreU32(words, first);
    format::StoreU32(words + format::kWord, second);
    v_Write(offset, words, sizeof words);
}

// ---- After a failed write -----------------------------------------------------------------------

// Undoes a failed write, or marks what it left; the error that is set stays. What cannot be written
// now is read as if it were, and is written before anything else is. What the file does not hold
// needs no mending, but may be marked for those who look.
void CT_RecordManager::Mend(unsigned int offset, const void* data, unsigned int count, bool mark) {
    const InSpiteOfError tried;
    const auto held_here = [this] { return std::max(MappedSize(), vn_GetSize()); };
    if (offset >= held_here() && !mark) return;
    if (Store(offset, data, count)) return;
    const unsigned int size = held_here();
    if (offset >= size) return;
    const unsigned int held = std::min(count, std::max(size - offset, format::kWord));
    window_.v_SetUsedSize(0);  // it shows none
    debts_.v_Append(&offset, sizeof offset);
    debts_.v_Append(&held, sizeof held);
    debts_.v_Append(data, held);
}

void CT_RecordManager::Mend(unsigned int offset, unsigned int word, bool mark) {
    std::byte bytes[format::kWord];
    format::StoreU32(bytes, word);
    Mend(offset, bytes, sizeof bytes, mark);
}

// False with the error set, and nothing forgotten.
bool CT_RecordManager::PayDebts() {
    const auto* const debts = static_cast<const std::byte*>(debts_.qcv_Get());
    for (unsigned int at = 0; at < debts_.n_GetUsedSize();) {
        unsigned int where[2];  // offset and count
        std::memcpy(where, debts + at, sizeof where);
        at += sizeof where;
        if (!Store(where[0], debts + at, where[1])) return false;
        at += where[1];
    }
    debts_.v_SetSize(0, FALSE);
    return true;
}

// Puts the debts into what was read.
void CT_RecordManager::ShowDebts(std::byte* out, unsigned int offset, unsigned int count) const {
    const auto* const debts = static_cast<const std::byte*>(debts_.qcv_Get());
    const std::uint64_t end = std::uint64_t{offset} + count;
    for (unsigned int at = 0; at < debts_.n_GetUsedSize();) {
        unsigned int where[2];
        std::memcpy(where, debts + at, sizeof where);
        at += sizeof where;
        const std::uint64_t from = std::max(offset, where[0]);
        const std::uint64_t to = std::min(end, std::uint64_t{where[0]} + where[1]);
        if (from < to)
            std::memcpy(out + (from - offset), debts + at + (from - where[0]), to - from);
        at += where[1];
    }
}

// ---- Sizes, errors ------------------------------------------------------------------------------

unsigned int CT_RecordManager::n_AlignBlockSize(unsigned int size) const {
    return n_GetBlockSize() == 0 ? 0 : static_cast<unsigned int>(Round(size));
}

void CT_RecordManager::v_SetError(unsigned int code, unsigned int line) {
    const char16_t* const name = pcco_GetFullName()->qcuz_Get();
    char16_t text[kMessageSize];
    CT_DatabaseError::sv_FormatError(text, kMessageSize, code, name != nullptr ? name : u"");
    // the text is no format: the name in it may hold a percent sign
    zelkor::detail::Record({code, u"%s", format::kSource, line}, text);
}

void CT_RecordManager::SystemFailure(unsigned int error, unsigned int line) {
    platform::SetLastError(error);
    zelkor::detail::RecordSystemError(pcco_GetFullName()->qcuz_Get(), format::kSource, line);
}

bool CT_RecordManager::b_CanMap() const {
    return vn_GetSize() < CT_SysInfo::sn_GetPhysicalMemoryTotal() / 2;
}

// The first step of every change.
bool CT_RecordManager::MayChange() {
    if (Failed()) return false;
    if (!b_IsOpen() || open_mode_ != kModeReadWrite) {
        SystemFailure(platform::kErrorAccessDenied);
    } else if (!changeable_) {
        v_SetError(format::kCorrupt);
    } else {
        PayDebts();
    }
    return !Failed();
}

bool CT_RecordManager::Given(const void* argument, unsigned int line) {
    if (argument != nullptr) return true;
    if (!Failed(line)) SystemFailure(platform::kErrorInvalidParameter, line);
    return false;
}
