// What the sources of CT_RecordManager share; never included by callers.
#ifndef FOUNDATION_DATABASE_RECORDMANAGER_INTERNAL_RECORDMANAGERDETAIL_H
#define FOUNDATION_DATABASE_RECORDMANAGER_INTERNAL_RECORDMANAGERDETAIL_H

#include <cstring>

#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Database/RecordManager/RecordManager.h"
#include "Foundation/Platform/Prefetch.h"

namespace zelkor::record_format {

inline constexpr unsigned int kCorrupt = 31005;
inline constexpr unsigned int kWrongFormat = 31050;
inline constexpr unsigned int kBadReference = 31051;
inline constexpr unsigned int kDirectoryFull = 31052;
inline constexpr unsigned int kNoResource = 31053;
inline constexpr unsigned int kResourceExists = 31054;

inline constexpr std::uint64_t kLargestFile = 0xFFFFFFFF;

// Locations name the class, whichever of its sources holds the line.
inline constexpr char kSource[] = "Foundation/Database/RecordManager/RecordManager.cpp";

inline bool Failed(unsigned int line = __builtin_LINE()) noexcept {
    return zelkor::detail::Failed(kSource, line);
}

// What is tried although an error is set; that error stays.
class InSpiteOfError {
public:
    InSpiteOfError() { CT_ErrorManager::spco_Get()->v_SetIgnoreError(TRUE); }
    ~InSpiteOfError() { CT_ErrorManager::spco_Get()->v_SetIgnoreError(FALSE); }
    InSpiteOfError(const InSpiteOfError&) = delete;
    InSpiteOfError& operator=(const InSpiteOfError&) = delete;
};

inline constexpr unsigned int kLine = 64;  // bytes that a processor reads from memory together

// Copies in pieces that end where a reader's words do: a record is looked at as soon as it is got,
// and a word that was stored in two pieces is slow to read back.
inline void CopyOut(std::byte* to, const std::byte* from, unsigned int count) {
    constexpr unsigned int kShort = 256;
    if (count > kShort) {
        std::memcpy(to, from, count);
        return;
    }
    for (; count >= 16; count -= 16, to += 16, from += 16) std::memcpy(to, from, 16);
    for (const unsigned int piece : {8u, 4u}) {
        if ((count & piece) == 0) continue;
        std::memcpy(to, from, piece);
        to += piece;
        from += piece;
    }
    for (count &= 3; count != 0; --count) *to++ = *from++;
}

}  // namespace zelkor::record_format

// Holds a small run of bytes itself, or points into the mapping or the window; good until the next
// write or read ahead.
class CT_RecordManager::Piece {
public:
    static constexpr unsigned int kSize = 512;

    Piece() = default;
    Piece(const Piece&) = delete;
    Piece& operator=(const Piece&) = delete;

    // Null unless all of it is here.
    [[nodiscard]] const std::byte* Find(std::uint64_t offset, std::uint64_t count) const {
        return offset >= offset_ && offset + count <= offset_ + std::uint64_t{size_}
                   ? at_ + (offset - offset_)
                   : nullptr;
    }
    void PointTo(const std::byte* at, unsigned int offset, unsigned int size) {
        at_ = at;
        offset_ = offset;
        size_ = size;
    }
    // Own storage for at most kSize bytes.
    [[nodiscard]] std::byte* Own() { return own_; }

private:
    const std::byte* at_ = nullptr;
    unsigned int offset_ = 0;
    unsigned int size_ = 0;
    std::byte own_[kSize];
};

// Bytes that are about to be written over, to be put back when that fails. A mapping needs none of
// this: storing into it does not fail.
class CT_RecordManager::Former {
public:
    explicit Former(CT_RecordManager& manager) : manager_(manager) {}
    Former(const Former&) = delete;
    Former& operator=(const Former&) = delete;

    // The bytes, which the piece may have. False with the error set.
    bool Keep(unsigned int offset, unsigned int count, const Piece& piece) {
        if (manager_.b_GetMapping() || count == 0) return true;
        offset_ = offset;
        std::byte* to = small_;
        if (count > sizeof small_) {
            large_.v_SetMinSize(count, FALSE);
            to = static_cast<std::byte*>(large_.qv_Get());
        }
        if (const std::byte* const there = piece.Find(offset, count)) {
            std::memcpy(to, there, count);
        } else if (!manager_.ReadSome(to, offset, count, 0)) {
            return false;
        }
        count_ = count;
        return true;
    }
    // The error that is set stays.
    void PutBack() {
        if (count_ == 0) return;
        manager_.Mend(offset_, count_ > sizeof small_ ? large_.qcv_Get() : small_, count_);
    }

private:
    CT_RecordManager& manager_;
    unsigned int offset_ = 0;
    unsigned int count_ = 0;
    std::byte small_[Piece::kSize];
    CT_Buffer large_;
};

// Takes back what was given back and not settled.
class CT_RecordManager::Giving {
public:
    explicit Giving(CT_RecordManager& manager) : manager_(manager) {}
    ~Giving() {
        if (manager_.held_.offset != 0) manager_.Withdraw();
    }
    Giving(const Giving&) = delete;
    Giving& operator=(const Giving&) = delete;

private:
    CT_RecordManager& manager_;
};

// A scan over the data area. Without footing it looks at every block.
struct CT_RecordManager::Scan {
    std::uint64_t at;
    bool footing;
};

// ---- The short way through a mapping ------------------------------------------------------------

// Whether the mapping has a sound live record there; its body is then known. What is not as it
// should be is left to the long way round, which tells.
inline bool CT_RecordManager::InMapping(std::uint64_t head, Body* body) const {
    namespace format = zelkor::record_format;
    const std::byte* const base = MappedBytes();
    const std::uint64_t reach = Reach();
    const std::uint64_t head_end =
        head + format::kHeadDataAt + std::uint64_t{n_GetRecordHeaderSize()};
    if (base == nullptr || head < data_start_ || head_end > reach) return false;
    const std::byte* const words = base + head;
    zelkor::platform::Prefetch(words + format::kLine);  // of a new record, which its body follows
    if (format::LoadU32(words) != format::kLive) return false;
    *body = {format::LoadU32(words + format::kBodyLinkAt), 0};
    if (body->offset == 0) return true;
    if (!IsBlock(body->offset, format::kWord) ||
        body->offset + std::uint64_t{format::kWord} > reach) {
        return false;
    }
    body->length = format::LoadU32(base + body->offset);
    const std::uint64_t length = body->length;
    return length >= format::kWord && body->offset + length <= reach &&
           n_GetRecordHeaderSize() + length <= reach;
}

// The record that InMapping found, into a buffer that nobody shares.
inline void CT_RecordManager::CopyMapped(std::uint64_t head, const Body& body, CT_Buffer* out,
                                         unsigned int maximum) {
    namespace format = zelkor::record_format;
    const unsigned int header = n_GetRecordHeaderSize();
    const unsigned int rest = body.offset == 0 ? 0 : body.length - format::kWord;
    if (body.offset != 0 && maximum != 0 && body.length >= maximum) return out->v_SetUsedSize(0);
    if (header + rest > out->n_GetMaximumSize()) out->v_SetMinSize(header + rest, FALSE);
    auto* const to = static_cast<std::byte*>(out->qv_Get());
    if (out->n_GetUsedSize() != header + rest) out->v_SetUsedSize(header + rest);
    format::CopyOut(to, MappedBytes() + head + format::kHeadDataAt, header);
    format::CopyOut(to + header, MappedBytes() + body.offset + format::kBodyDataAt, rest);
}

#endif
