// CT_RecordManager: records.
#include <algorithm>
#include <cstring>

#include "Foundation/Database/RecordManager/Internal/RecordManagerDetail.h"
#include "Foundation/Platform/LastError.h"

namespace platform = zelkor::platform;

namespace format = zelkor::record_format;
using format::Failed;
using format::LoadU32;
using format::StoreU32;

namespace {

// What is put together in memory to be written in one go; longer data goes out by itself.
constexpr unsigned int kAssembled = 0x10000;

const std::byte* Bytes(const CT_Buffer& data) {
    return static_cast<const std::byte*>(data.qcv_Get());
}

}  // namespace

// ---- Reading ------------------------------------------------------------------------------------

// Fills the piece with up to `count` bytes from the offset on, or with all that is at hand.
bool CT_RecordManager::Load(Piece* piece, unsigned int offset, unsigned int count) {
    const unsigned int end = n_GetSize();
    if (b_GetMapping()) {
        piece->PointTo(static_cast<const std::byte*>(pv_GetMapping()), 0,
                       std::min(end, MappedSize()));
        return true;
    }
    if (AtHand(offset, format::kWord * 2) != nullptr) {
        piece->PointTo(Bytes(window_), window_offset_,
                       std::min(window_.n_GetUsedSize(), end - window_offset_));
        return true;
    }
    const unsigned int read =
        ReadAt(piece->Own(), offset, std::min({count, Piece::kSize, end - offset}));
    if (Failed()) return false;
    piece->PointTo(piece->Own(), offset, read);
    return true;
}

// The head and the body of a live record, for changing it.
bool CT_RecordManager::Locate(unsigned int reference, unsigned int* head, Body* body,
                              Piece* piece) {
    const std::uint64_t at = std::uint64_t{reference} * n_GetBlockSize();
    *head = static_cast<unsigned int>(at);
    if (InMapping(at, body)) return true;
    Piece more;
    return v_CheckReference(at, piece, Piece::kSize) && v_GetBody(*head, *piece, body, &more);
}

// Whether a live record's head starts there; the piece then holds its first two words.
bool CT_RecordManager::v_CheckReference(std::uint64_t head, Piece* piece, unsigned int count) {
    if (!IsBlock(head, format::kHeadDataAt)) {
        v_SetError(format::kBadReference);
        return false;
    }
    if (!Load(piece, static_cast<unsigned int>(head), count)) return false;
    const std::byte* const words = piece->Find(head, format::kHeadDataAt);
    if (words != nullptr && LoadU32(words) == format::kLive) return true;
    v_SetError(format::kBadReference);
    return false;
}

// The body of a head in the piece. Its length word may need a second piece.
bool CT_RecordManager::v_GetBody(unsigned int head, const Piece& piece, Body* body, Piece* more) {
    *body = {LoadU32(piece.Find(head, format::kHeadDataAt) + format::kBodyLinkAt), 0};
    if (body->offset == 0) return true;
    bool good = IsBlock(body->offset, format::kWord);
    if (good) {
        const std::byte* length = piece.Find(body->offset, format::kWord);
        if (length == nullptr) {
            if (!Load(more, body->offset, Piece::kSize)) return false;
            length = more->Find(body->offset, format::kWord);
        }
        good = length != nullptr;
        if (good) body->length = LoadU32(length);
        good = good && body->length < format::kLive && InsideData(body->offset, body->length);
    }
    if (good) return true;
    *body = {0, 0};
    v_SetError(format::kCorrupt);
    return false;
}

void CT_RecordManager::v_GetRecord(unsigned int reference, CT_Buffer* out, unsigned int maximum) {
    if (!Given(out)) return;
    if (out->n_GetUseCount() != 1) out->v_Set(0, CT_Buffer::kToEnd, FALSE);
    const std::uint64_t head = std::uint64_t{reference} * n_GetBlockSize();
    Body body;
    if (!zelkor::detail::ErrorIsSet() && InMapping(head, &body)) {
        return CopyMapped(head, body, out, maximum);
    }
    out->v_SetUsedSize(0);
    if (Failed()) return;
    Piece piece;
    Piece more;
    if (!v_CheckReference(head, &piece, Piece::kSize)) {
        Failed();
        return;
    }
    const auto at = static_cast<unsigned int>(head);
    if (!v_GetBody(at, piece, &body, &more)) {
        Failed();
        return;
    }
    const bool kept = body.offset == 0 ||
                      (body.length >= format::kWord && (maximum == 0 || body.length < maximum));
    if (kept && !CopyRecord(at, piece, more, body, out)) {
        out->v_SetUsedSize(0);
        Failed();
    }
}

bool CT_RecordManager::CopyRecord(unsigned int head, const Piece& piece, const Piece& more,
                                  const Body& body, CT_Buffer* out) {
    const unsigned int header = n_GetRecordHeaderSize();
    const unsigned int rest = body.offset == 0 ? 0 : body.length - format::kWord;
    const std::uint64_t head_data = std::uint64_t{head} + format::kHeadDataAt;
    if (!InsideData(head_data, header)) {
        v_SetError(format::kCorrupt);
        return false;
    }
    if (!Room(out, std::uint64_t{header} + rest)) return false;
    auto* const to = static_cast<std::byte*>(out->qv_Get());
    if (!CopyOut(piece, static_cast<unsigned int>(head_data), header, 0, to)) return false;
    if (rest == 0) return true;
    const unsigned int from = body.offset + format::kBodyDataAt;
    const Piece& near = piece.Find(from, rest) != nullptr ? piece : more;
    return CopyOut(near, from, rest, rest, to + header);
}

bool CT_RecordManager::CopyOut(const Piece& piece, unsigned int offset, unsigned int count,
                               unsigned int required, std::byte* to) {
    if (count == 0) return true;
    if (const std::byte* const there = piece.Find(offset, count)) {
        std::memcpy(to, there, count);
        return true;
    }
    return ReadSome(to, offset, count, required);
}

// ---- Adding -------------------------------------------------------------------------------------

// The length word of the body that the data needs; 0: none.
std::uint64_t CT_RecordManager::BodyLength(const CT_Buffer& data) const {
    const unsigned int header = n_GetRecordHeaderSize();
    const unsigned int length = data.n_GetUsedSize();
    return length > header ? std::uint64_t{length} - header + format::kWord : 0;
}

unsigned int CT_RecordManager::n_AddRecord(const CT_Buffer* data) {
    if (!Given(data) || !MayChange()) return 0;
    const std::uint64_t length = BodyLength(*data);
    if (length > format::kLargestFile) {
        SystemFailure(platform::kErrorFileTooLarge);
        return 0;
    }
    const unsigned int end = n_GetSize();
    const unsigned int head = n_GetFreeBlock(n_GetRecordHeaderSize() + format::kHeadDataAt);
    if (Failed()) return 0;
    HeaderChanged();  // also for a failed addition: its blocks stay taken
    unsigned int body = 0;
    if (length != 0) {
        body = n_GetFreeBlock(static_cast<unsigned int>(length));
        if (Failed()) {
            Mend(head, format::kUnfinished, true);
            return 0;
        }
    }
    if (!WriteRecord(head, body, *data, head >= end)) {
        Mend(head, format::kUnfinished, true);
        if (body != 0) Mend(body, static_cast<unsigned int>(length));
        Failed();
        return 0;
    }
    Add(format::kRecordCountAt, 1);
    return Reference(head);
}

// The head is written last and in one go, live: until then its block is no record. A head and a
// body that both lie behind what the file's own header knows of go out together.
bool CT_RecordManager::WriteRecord(unsigned int head, unsigned int body, const CT_Buffer& data,
                                   bool at_end) {
    const bool together = at_end && body == head + head_size_ && !b_GetMapping() &&
                          head_size_ + data.n_GetUsedSize() <= kAssembled;
    if (together) {
        WriteAtOnce(head, body, data);
        return !Failed();
    }
    if (body != 0) WriteBody(body, data);
    if (Failed()) return false;
    WriteHead(head, body, data);
    return !Failed();
}

void CT_RecordManager::WriteAtOnce(unsigned int head, unsigned int body, const CT_Buffer& data) {
    const unsigned int header = n_GetRecordHeaderSize();
    const unsigned int rest = data.n_GetUsedSize() - header;
    const unsigned int gap = body - head;
    scratch_.v_SetMinSize(gap + format::kBodyDataAt + rest, FALSE);
    scratch_.v_SetUsedSize(gap + format::kBodyDataAt + rest);
    auto* const image = static_cast<std::byte*>(scratch_.qv_Get());
    StoreU32(image, format::kLive);
    StoreU32(image + format::kBodyLinkAt, body);
    std::memcpy(image + format::kHeadDataAt, Bytes(data), header);
    std::memset(image + format::kHeadDataAt + header, 0, gap - format::kHeadDataAt - header);
    StoreU32(image + gap, rest + format::kWord);
    std::memcpy(image + gap + format::kBodyDataAt, Bytes(data) + header, rest);
    v_Write(head, image, gap + format::kBodyDataAt + rest);
}

void CT_RecordManager::WriteHead(unsigned int head, unsigned int body, const CT_Buffer& data) {
    const unsigned int part = std::min(data.n_GetUsedSize(), n_GetRecordHeaderSize());
    std::byte small[Piece::kSize];
    std::byte* image = small;
    if (format::kHeadDataAt + part > sizeof small) {
        scratch_.v_SetMinSize(format::kHeadDataAt + part, FALSE);
        image = static_cast<std::byte*>(scratch_.qv_Get());
    }
    StoreU32(image, format::kLive);
    StoreU32(image + format::kBodyLinkAt, body);
    if (part != 0) std::memcpy(image + format::kHeadDataAt, Bytes(data), part);
    if (!b_GetMapping()) return v_Write(head, image, format::kHeadDataAt + part);
    v_Write(head + format::kBodyLinkAt, image + format::kBodyLinkAt, format::kWord + part);
    if (!Failed()) v_Write(head, format::kLive);
}

// A body or resource: its length word and the data; `whole`: in one write.
void CT_RecordManager::WriteCounted(unsigned int offset, const std::byte* data, unsigned int length,
                                    bool whole) {
    if (b_GetMapping() || (length > kAssembled && !whole)) {
        v_Write(offset, length + format::kWord);
        if (!Failed()) v_Write(offset + format::kBodyDataAt, data, length);
        return;
    }
    scratch_.v_SetMinSize(format::kWord + length, FALSE);
    auto* const image = static_cast<std::byte*>(scratch_.qv_Get());
    StoreU32(image, length + format::kWord);
    if (length != 0) std::memcpy(image + format::kBodyDataAt, data, length);
    v_Write(offset, image, format::kBodyDataAt + length);
    if (length > kAssembled) scratch_.v_SetSize(0, FALSE);
}

void CT_RecordManager::WriteBody(unsigned int body, const CT_Buffer& data) {
    const unsigned int header = n_GetRecordHeaderSize();
    WriteCounted(body, Bytes(data) + header, data.n_GetUsedSize() - header);
}

// ---- Changing -----------------------------------------------------------------------------------

// What lies behind the old data's end goes first where it may need room on the disk: should that
// fail the old data is whole. `old` is the stored length.
bool CT_RecordManager::WriteTail(unsigned int offset, unsigned int old, const std::byte* data,
                                 unsigned int length) {
    const unsigned int from = std::max(old, format::kWord);
    if (b_GetMapping() || length + format::kWord <= from || offset + Round(old) < n_GetSize()) {
        return true;
    }
    v_Write(offset + from, data + (from - format::kWord), length + format::kWord - from);
    return !Failed();
}

// A resource's new data over the old, in one write.
bool CT_RecordManager::WriteOver(unsigned int offset, unsigned int old, const std::byte* data,
                                 unsigned int length) {
    Former former(*this);
    if (!former.Keep(offset, std::min(format::kWord + length, old), Piece())) return false;
    if (!WriteTail(offset, old, data, length)) return false;
    WriteCounted(offset, data, length, true);
    if (!Failed()) return true;
    former.PutBack();
    return false;
}

// A record's data over the old: in one write when head and body lie together.
bool CT_RecordManager::Rewrite(unsigned int head, const Body& old, const CT_Buffer& data,
                               const Piece& piece) {
    const unsigned int header = n_GetRecordHeaderSize();
    const std::byte* const bytes = Bytes(data);
    const unsigned int rest = data.n_GetUsedSize() - header;
    const unsigned int at = head + format::kHeadDataAt;
    const unsigned int gap = old.offset - at - header;  // wraps where the body lies before the head
    if (gap < head_size_) {
        if (const std::byte* const between = piece.Find(at + header, gap)) {
            const unsigned int size = header + gap + format::kBodyDataAt + rest;
            scratch_.v_SetMinSize(size, FALSE);
            auto* const image = static_cast<std::byte*>(scratch_.qv_Get());
            std::memcpy(image, bytes, header);
            std::memcpy(image + header, between, gap);
            StoreU32(image + header + gap, rest + format::kWord);
            std::memcpy(image + header + gap + format::kBodyDataAt, bytes + header, rest);
            Former former(*this);
            const unsigned int held = header + gap + std::max(old.length, format::kWord);
            if (!former.Keep(at, std::min(size, held), piece)) return false;
            if (!WriteTail(old.offset, old.length, bytes + header, rest)) return false;
            v_Write(at, image, size);
            if (size > kAssembled) scratch_.v_SetSize(0, FALSE);
            if (!Failed()) return true;
            former.PutBack();
            return false;
        }
    }
    Former former(*this);
    Former former_body(*this);
    if (!former.Keep(at, header, piece) ||
        !former_body.Keep(old.offset, std::min(old.length, rest + format::kWord), piece) ||
        !WriteTail(old.offset, old.length, bytes + header, rest)) {
        return false;
    }
    v_Write(at, bytes, header);
    if (!Failed()) WriteCounted(old.offset, bytes + header, rest, true);
    if (!Failed()) return true;
    former.PutBack();
    former_body.PutBack();
    return false;
}

void CT_RecordManager::v_UpdateRecord(unsigned int reference, const CT_Buffer* data) {
    if (!Given(data) || !MayChange()) return;
    unsigned int head = 0;
    Body old;
    Piece piece;
    if (!Locate(reference, &head, &old, &piece)) {
        Failed();
        return;
    }
    const std::uint64_t length = BodyLength(*data);
    if (length == 0 || old.length == 0 || Round(length) != Round(old.length)) {
        return MoveBody(head, old, *data, piece);
    }
    if (b_GetMapping() && old.offset + length <= Reach()) {
        const unsigned int header = n_GetRecordHeaderSize();
        auto* const base = static_cast<std::byte*>(pv_GetMapping());
        changed_ = true;
        StoreU32(base + old.offset, static_cast<unsigned int>(length));
        format::CopyOut(base + old.offset + format::kBodyDataAt, Bytes(*data) + header,
                        data->n_GetUsedSize() - header);
        format::CopyOut(base + head + format::kHeadDataAt, Bytes(*data), header);
    } else if (!Rewrite(head, old, *data, piece)) {
        Failed();
        return;
    }
    HeaderChanged();
}

// Gives the old body back, if any, and takes a new one, if needed. The old one is as it was until
// the head leads to the new one.
void CT_RecordManager::MoveBody(unsigned int head, const Body& old, const CT_Buffer& data,
                                const Piece& piece) {
    const std::uint64_t length = BodyLength(data);
    if (length > format::kLargestFile) return SystemFailure(platform::kErrorFileTooLarge);
    const unsigned int part = std::min(data.n_GetUsedSize(), n_GetRecordHeaderSize());
    Former former(*this);
    if (!former.Keep(head, format::kHeadDataAt + part, piece)) return;
    const Giving giving(*this);
    if (old.offset != 0 && !GiveBack(old.offset, old.length)) return;
    unsigned int body = 0;
    if (length != 0) {
        body = n_GetFreeBlock(static_cast<unsigned int>(length));
        if (Failed()) return;
    }
    HeaderChanged();
    if (body != 0 && body == old.offset) {
        if (Rewrite(head, old, data, piece)) Settle();
        Failed();
        return;
    }
    if (body != 0) WriteBody(body, data);
    if (!Failed()) {
        if (old.offset == 0 && body == 0) {
            v_Write(head + format::kHeadDataAt, Bytes(data), part);
        } else {
            WriteHead(head, body, data);
        }
        if (!Failed()) {
            Settle();
            return;
        }
        former.PutBack();
    }
    if (body != 0) Mend(body, static_cast<unsigned int>(length));
}

void CT_RecordManager::v_UpdateRecordHeader(unsigned int reference, const CT_Buffer* data) {
    if (!Given(data) || !MayChange()) return;
    Piece piece;
    const std::uint64_t head = std::uint64_t{reference} * n_GetBlockSize();
    if (!v_CheckReference(head, &piece, Piece::kSize)) {
        Failed();
        return;
    }
    const unsigned int at = static_cast<unsigned int>(head) + format::kHeadDataAt;
    const unsigned int part = std::min(data->n_GetUsedSize(), n_GetRecordHeaderSize());
    Former former(*this);
    if (!former.Keep(at, part, piece)) return;
    v_Write(at, Bytes(*data), part);
    if (Failed()) return former.PutBack();
    HeaderChanged();
}

void CT_RecordManager::v_DeleteRecord(unsigned int reference) {
    if (!MayChange()) return;
    unsigned int head = 0;
    Body body;
    Piece piece;
    if (!Locate(reference, &head, &body, &piece)) {
        Failed();
        return;
    }
    Former former(*this);
    if (!former.Keep(head, format::kHeadDataAt, piece)) return;
    v_PutFreeBlock(1, head, n_GetRecordHeaderSize() + format::kHeadDataAt);
    if (Failed()) return former.PutBack();
    Add(format::kRecordCountAt, -1);
    HeaderChanged();
    if (body.offset == 0) return;
    v_PutFreeBlock(0, body.offset, body.length);
    Failed();
}
