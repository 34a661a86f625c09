// CT_RecordManager: finding records by scanning the data area.
#include <algorithm>

#include "Foundation/Database/RecordManager/Internal/RecordManagerDetail.h"

namespace format = zelkor::record_format;
using format::Failed;

namespace {

constexpr unsigned int kWindow = 0x10000;
constexpr unsigned int kLongestSkip = 65536;
constexpr unsigned int kRobustMaximum = 102400;

}  // namespace

// Reads ahead from the offset on; the window is then empty only at the end of the file.
bool CT_RecordManager::FillWindow(unsigned int offset) {
    window_.v_SetMinSize(kWindow, FALSE);
    window_.v_SetUsedSize(0);  // nothing is at hand while reading
    const unsigned int count = std::min(kWindow, n_GetSize() - offset);
    const unsigned int read = ReadAt(window_.qv_Get(), offset, count);
    if (Failed()) return false;
    window_.v_SetUsedSize(read);
    window_offset_ = offset;
    return true;
}

// The word at an offset inside the data area. False at the end of the file and after a failure.
bool CT_RecordManager::WordAt(unsigned int offset, unsigned int* word) {
    const std::byte* at = AtHand(offset, format::kWord);
    if (at == nullptr) {
        if (b_GetMapping() || !FillWindow(offset)) return false;
        at = AtHand(offset, format::kWord);
        if (at == nullptr) return false;
    }
    *word = format::LoadU32(at);
    return true;
}

// Behind a head of several blocks the scan goes on behind all of them.
inline std::uint64_t CT_RecordManager::StartOf(unsigned int cursor) {
    const unsigned int block = n_GetBlockSize();
    const std::uint64_t start = data_start_;
    if (cursor == 0) return start;
    const std::uint64_t at = std::uint64_t{cursor} * block;
    if (head_size_ == block || at < start + block || at - block >= n_GetSize()) return at;
    unsigned int word = 0;
    return WordAt(static_cast<unsigned int>(at - block), &word) && word == format::kLive
               ? at - block + head_size_
               : at;
}

// Moves the scan to the next live head, which may be where it stands.
inline bool CT_RecordManager::FindHead(Scan* scan) {
    const unsigned int block = n_GetBlockSize();
    const std::byte* const mapped = MappedBytes();
    const std::uint64_t end = mapped != nullptr ? Reach() : n_GetSize();
    while (scan->at + format::kWord <= end) {
        unsigned int word = 0;
        if (mapped != nullptr) {
            word = format::LoadU32(mapped + scan->at);
        } else if (!WordAt(static_cast<unsigned int>(scan->at), &word)) {
            return false;
        }
        if (word == format::kLive) return true;
        std::uint64_t step = block;
        if (scan->footing) {
            const std::uint64_t size = Round(word);
            scan->footing = word != 0 && size <= kLongestSkip;
            if (scan->footing) step = size;
        }
        scan->at += step;
    }
    return false;
}

unsigned int CT_RecordManager::NextRecord(unsigned int cursor, CT_Buffer* out, bool robust) {
    if (Failed()) return 0;
    const unsigned int block = n_GetBlockSize();
    Scan scan{StartOf(cursor), !robust};
    while (FindHead(&scan)) {
        const auto reference = Reference(scan.at);
        if (out == nullptr) return reference + 1;
        Body body;
        if (out->n_GetUseCount() == 1 && InMapping(scan.at, &body)) {
            CopyMapped(scan.at, body, out, robust ? kRobustMaximum : 0);
            return reference + 1;
        }
        v_GetRecord(reference, out, robust ? kRobustMaximum : 0);
        if (!zelkor::detail::ErrorIsSet()) return reference + 1;
        zelkor::detail::ClearError();
        scan.at += block;
    }
    Failed();
    return 0;
}

unsigned int CT_RecordManager::n_GetNextRecord(unsigned int cursor, CT_Buffer* out) {
    return NextRecord(cursor, out, false);
}

unsigned int CT_RecordManager::n_GetNextRecordRobust(unsigned int cursor, CT_Buffer* out) {
    return NextRecord(cursor, out, true);
}

BOOL CT_RecordManager::b_IsCorrupt() {
    if (Failed() || open_mode_ == kModeRead) return FALSE;
    const unsigned int block = n_GetBlockSize();
    CT_Buffer record(0, CT_Buffer::kDefaultGrowth);
    unsigned int count = 0;
    Scan scan{data_start_, true};
    while (FindHead(&scan)) {
        v_GetRecord(Reference(scan.at), &record, 0);
        const bool read = !zelkor::detail::ErrorIsSet();
        if (!read) zelkor::detail::ClearError();
        count += read ? 1 : 0;
        scan.at += read ? head_size_ : block;
    }
    if (Failed()) return FALSE;
    return count != n_GetRecordCount() ? TRUE : FALSE;
}
