#include "Foundation/Database/RecordManager/RecordSurveyDetail.h"

#include <algorithm>
#include <cstring>

#include "Foundation/Core/Error/Failure.h"

namespace foundation::detail {

namespace format = record_format;

namespace {

using Kind = CT_RecordCheck::et_Finding;
using Owner = CT_RecordCheck::et_Owner;

constexpr unsigned int kWholeFile = 0xFFFFFFFF;

// One look at a file. The order matters: heads that a scan meets own their blocks first, then their
// bodies, the resources and the free blocks; what is left may hide more heads, and leaks.
class Surveyor {
public:
    Surveyor(const RecordImage& image, RecordSurvey& survey) : image_(image), survey_(survey) {}

    void Header(const RecordLayout* layout);
    void Heads();
    void Resources();
    void FreeTable();
    void HiddenHeads();
    void CountAndLeaks();

private:
    [[nodiscard]] std::uint32_t Field(std::uint32_t at) const { return image_.Word(at); }
    [[nodiscard]] std::uint64_t Round(std::uint64_t size) const {
        return format::Round(size, survey_.layout.block_size);
    }
    [[nodiscard]] std::uint64_t HeadSize() const {
        return Round(std::uint64_t{survey_.layout.record_header_size} + format::kHeadDataAt);
    }
    [[nodiscard]] std::size_t Index(std::uint64_t offset) const {
        return static_cast<std::size_t>((offset - survey_.start) / survey_.layout.block_size);
    }
    [[nodiscard]] bool IsBlock(std::uint64_t offset, std::uint64_t size) const {
        return offset % survey_.layout.block_size == 0 && offset >= survey_.start &&
               offset + Round(size) <= survey_.end;
    }
    std::uint64_t FindOwner(std::uint64_t offset, std::uint64_t size) const;
    void Own(std::uint64_t offset, std::uint64_t size, Owner owner);
    bool Claim(std::uint64_t offset, std::uint64_t size, Owner owner);
    void Body(RecordSurvey::Record& record);
    bool Unowned(const RecordSurvey::Record& record) const;
    void FreeBlock(std::uint64_t entry, std::uint32_t offset, std::uint32_t size);
    void Chain(std::uint64_t entry, std::uint32_t offset);

    const RecordImage& image_;
    RecordSurvey& survey_;
};

void Surveyor::Header(const RecordLayout* given) {
    RecordLayout& layout = survey_.layout;
    survey_.file_size = image_.Size();
    if (!image_.Has(0, format::kHeaderSize))
        survey_.Report(CT_RecordCheck::kShort, 0, image_.Size());
    if (!image_.Has(0, format::kText.size()) ||
        std::memcmp(image_.At(0), format::kText.data(), format::kText.size()) != 0) {
        survey_.Report(CT_RecordCheck::kText, format::kTextAt);
    }
    const bool stamp = Field(format::kStampAt) == format::kStamp;
    const bool number = Field(format::kFormatAt) <= format::kFormat;
    if (!stamp)
        survey_.Report(CT_RecordCheck::kStamp, format::kStampAt, 4, Field(format::kStampAt));
    if (!number) {
        survey_.Report(CT_RecordCheck::kFormat, format::kFormatAt, 4, Field(format::kFormatAt));
    }
    layout = {.block_size = Field(format::kBlockSizeAt),
              .record_header_size = Field(format::kRecordHeaderSizeAt),
              .capacity = Field(format::kCapacityAt),
              .resource_max_count = Field(format::kResourceMaxCountAt),
              .data_end = Field(format::kDataEndAt)};
    if (given != nullptr) {
        layout = *given;
    } else if (!stamp || !number) {
        return;
    }
    if (layout.block_size < format::kSmallestBlock) {
        return survey_.Report(CT_RecordCheck::kLayout, format::kBlockSizeAt, 4, layout.block_size);
    }
    survey_.start =
        format::DataStart(layout.capacity, layout.resource_max_count, layout.block_size);
    // of a head only the record's bytes are written, so the last one may lack whole blocks
    const std::uint64_t held = Round(std::max<std::uint64_t>(survey_.file_size, 1)) +
                               std::min<std::uint64_t>(HeadSize(), survey_.file_size) -
                               std::min<std::uint64_t>(layout.block_size, survey_.file_size);
    survey_.end = std::min<std::uint64_t>(layout.data_end, held);
    survey_.end -= survey_.end % layout.block_size;
    if (layout.data_end % layout.block_size != 0 || layout.data_end < survey_.start) {
        survey_.Report(CT_RecordCheck::kLayout, format::kDataEndAt, 4, layout.data_end);
    }
    // a new file is its header alone; its tables and blocks are written when there are any
    const bool none = layout.data_end == survey_.start;
    if (layout.data_end > held && !none) {
        survey_.Report(CT_RecordCheck::kTruncated, survey_.file_size,
                       layout.data_end - survey_.file_size);
    }
    survey_.usable = true;
    if (survey_.end <= survey_.start) survey_.end = survey_.start;
    survey_.owners.assign(Index(survey_.end), CT_RecordCheck::kNobody);
}

// ---- Ownership ----------------------------------------------------------------------------------

// The first block of the range that has an owner; `end` when there is none.
std::uint64_t Surveyor::FindOwner(std::uint64_t offset, std::uint64_t size) const {
    const auto first = survey_.owners.begin() + static_cast<std::ptrdiff_t>(Index(offset));
    const auto last = first + static_cast<std::ptrdiff_t>(Round(size) / survey_.layout.block_size);
    const auto found =
        std::find_if(first, last, [](Owner o) { return o != CT_RecordCheck::kNobody; });
    if (found == last) return survey_.end;
    return survey_.BlockOffset(static_cast<std::size_t>(found - survey_.owners.begin()));
}

void Surveyor::Own(std::uint64_t offset, std::uint64_t size, Owner owner) {
    const auto first = survey_.owners.begin() + static_cast<std::ptrdiff_t>(Index(offset));
    const auto count = static_cast<std::ptrdiff_t>(Round(size) / survey_.layout.block_size);
    std::fill(first, first + count, owner);
}

bool Surveyor::Claim(std::uint64_t offset, std::uint64_t size, Owner owner) {
    const std::uint64_t taken = FindOwner(offset, size);
    if (taken != survey_.end) {
        survey_.Report(CT_RecordCheck::kOverlap, taken, survey_.layout.block_size,
                       static_cast<std::uint32_t>(offset));
        return false;
    }
    Own(offset, size, owner);
    return true;
}

// ---- Records ------------------------------------------------------------------------------------

// As a scan with sure footing meets them: every block that is no head is passed by its size word.
void Surveyor::Heads() {
    const std::uint64_t head_size = HeadSize();
    for (std::uint64_t at = survey_.start; at < survey_.end;) {
        const std::uint32_t word = image_.Word(at);
        std::uint64_t step = survey_.layout.block_size;
        if (word == format::kLive || word == format::kUnfinished) {
            const bool whole = at + head_size <= survey_.end;
            if (!whole) {
                survey_.Report(CT_RecordCheck::kBody, at, survey_.end - at);
            } else {
                const bool live = word == format::kLive;
                Own(at, head_size,
                    live ? CT_RecordCheck::kHeadOwner : CT_RecordCheck::kUnfinishedOwner);
                if (live) {
                    survey_.records.push_back({.head = static_cast<std::uint32_t>(at),
                                               .body = 0,
                                               .length = 0,
                                               .readable = false,
                                               .hidden = false,
                                               .shared = false});
                } else {
                    survey_.Report(CT_RecordCheck::kUnfinished, at, head_size);
                }
                step = head_size;
            }
        } else if (word != 0 && Round(word) <= survey_.end - at) {
            step = Round(word);
        }
        at += step;
    }
    for (RecordSurvey::Record& record : survey_.records) Body(record);
}

// Reads a head's link and claims the body.
void Surveyor::Body(RecordSurvey::Record& record) {
    record.body = image_.Word(record.head + std::uint64_t{format::kBodyLinkAt});
    if (record.body == 0) {
        record.readable = true;
        return;
    }
    record.length = image_.Word(record.body);
    const bool good = IsBlock(record.body, 1) && image_.Has(record.body, format::kWord) &&
                      record.length >= format::kWord && record.length < format::kUnfinished &&
                      IsBlock(record.body, record.length) && image_.Has(record.body, record.length);
    if (!good) {
        survey_.Report(CT_RecordCheck::kBody, record.head, HeadSize(), record.body);
        return;
    }
    // which of two owners is the right one cannot be told
    record.readable = true;
    record.shared = !Claim(record.body, record.length, CT_RecordCheck::kBodyOwner);
}

// Live heads among the blocks that nothing owns, with a body that nothing owns.
void Surveyor::HiddenHeads() {
    const std::uint64_t head_size = HeadSize();
    for (std::uint64_t at = survey_.start; at + head_size <= survey_.end;
         at += survey_.layout.block_size) {
        if (survey_.owners[Index(at)] != CT_RecordCheck::kNobody) continue;
        if (image_.Word(at) != format::kLive || FindOwner(at, head_size) != survey_.end) continue;
        RecordSurvey::Record record{.head = static_cast<std::uint32_t>(at),
                                    .body = image_.Word(at + format::kBodyLinkAt),
                                    .length = 0,
                                    .readable = true,
                                    .hidden = true,
                                    .shared = false};
        record.length = record.body == 0 ? 0 : image_.Word(record.body);
        Own(at, head_size, CT_RecordCheck::kHeadOwner);
        if (!Unowned(record)) {
            Own(at, head_size, CT_RecordCheck::kNobody);
            continue;
        }
        if (record.body != 0) Own(record.body, record.length, CT_RecordCheck::kBodyOwner);
        survey_.Report(CT_RecordCheck::kHidden, at, head_size);
        survey_.records.push_back(record);
    }
}

bool Surveyor::Unowned(const RecordSurvey::Record& record) const {
    if (record.body == 0) return true;
    return IsBlock(record.body, 1) && record.length >= format::kWord &&
           record.length < format::kUnfinished && IsBlock(record.body, record.length) &&
           image_.Has(record.body, record.length) &&
           FindOwner(record.body, record.length) == survey_.end;
}

// ---- Resources and free space -------------------------------------------------------------------

void Surveyor::Resources() {
    const std::uint64_t at = format::DirectoryAt(survey_.layout.capacity);
    const std::uint32_t count = Field(format::kResourceCountAt);
    if (count > survey_.layout.resource_max_count ||
        !image_.Has(at, std::uint64_t{count} * format::kEntrySize)) {
        if (count != 0)
            survey_.Report(CT_RecordCheck::kResourceCount, format::kResourceCountAt, 4, count);
    }
    std::uint64_t before = 0;
    for (std::uint32_t i = 0; i < std::min(count, survey_.layout.resource_max_count); ++i) {
        const std::uint64_t entry = at + std::uint64_t{i} * format::kEntrySize;
        if (!image_.Has(entry, format::kEntrySize)) break;
        RecordSurvey::Resource resource{.key = image_.Word(entry),
                                        .offset = image_.Word(entry + format::kWord),
                                        .length = 0,
                                        .readable = false};
        if (i != 0 && resource.key <= before) {
            survey_.Report(CT_RecordCheck::kDirectoryOrder, entry, format::kEntrySize,
                           resource.key);
        }
        before = resource.key;
        resource.length = image_.Word(resource.offset);
        const bool good = IsBlock(resource.offset, 1) && resource.length >= format::kWord &&
                          IsBlock(resource.offset, resource.length) &&
                          image_.Has(resource.offset, resource.length);
        if (good) {
            resource.readable =
                Claim(resource.offset, resource.length, CT_RecordCheck::kResourceOwner);
        } else {
            survey_.Report(CT_RecordCheck::kResource, entry, format::kEntrySize, resource.key);
        }
        survey_.resources.push_back(resource);
    }
}

void Surveyor::FreeTable() {
    const std::uint32_t count = Field(format::kFreeCountAt);
    const std::uint32_t capacity = survey_.layout.capacity;
    if (count > capacity ||
        !image_.Has(format::kFreeTableAt, std::uint64_t{count} * format::kEntrySize)) {
        if (count != 0) survey_.Report(CT_RecordCheck::kFreeCount, format::kFreeCountAt, 4, count);
    }
    for (std::uint32_t i = 0; i < std::min(count, capacity); ++i) {
        const std::uint64_t entry = format::kFreeTableAt + std::uint64_t{i} * format::kEntrySize;
        if (!image_.Has(entry, format::kEntrySize)) break;
        const std::uint32_t offset = image_.Word(entry);
        const std::uint32_t size = image_.Word(entry + format::kWord);
        if (size == 0 && i + 1 == capacity) {
            Chain(entry, offset);
        } else {
            FreeBlock(entry, offset, size);
        }
    }
}

void Surveyor::FreeBlock(std::uint64_t entry, std::uint32_t offset, std::uint32_t size) {
    if (size == 0 || size % survey_.layout.block_size != 0 || !IsBlock(offset, size)) {
        return survey_.Report(CT_RecordCheck::kFreeEntry, entry, format::kEntrySize, offset);
    }
    if (image_.Word(offset) != size) {
        survey_.Report(CT_RecordCheck::kFreeSize, offset, size, image_.Word(offset));
    }
    if (survey_.owners[Index(offset)] == CT_RecordCheck::kFreeOwner) {
        return survey_.Report(CT_RecordCheck::kFreeTwice, offset, size);
    }
    Claim(offset, size, CT_RecordCheck::kFreeOwner);
}

// Every block is claimed once, so a chain that runs in a circle ends too.
void Surveyor::Chain(std::uint64_t entry, std::uint32_t offset) {
    std::uint64_t from = entry;
    while (offset != 0) {
        if (!IsBlock(offset, 1)) {
            return survey_.Report(CT_RecordCheck::kChainLink, from, format::kWord, offset);
        }
        const std::uint32_t size = image_.Word(offset);
        if (size == 0 || size % survey_.layout.block_size != 0 || !IsBlock(offset, size)) {
            return survey_.Report(CT_RecordCheck::kFreeSize, offset, survey_.layout.block_size,
                                  size);
        }
        if (survey_.owners[Index(offset)] == CT_RecordCheck::kFreeOwner) {
            return survey_.Report(CT_RecordCheck::kFreeTwice, offset, size);
        }
        if (!Claim(offset, size, CT_RecordCheck::kFreeOwner)) return;
        from = std::uint64_t{offset} + format::kFreeLinkAt;
        offset = image_.Word(from);
    }
}

void Surveyor::CountAndLeaks() {
    const auto readable = std::ranges::count_if(
        survey_.records, [](const auto& record) { return record.readable && !record.hidden; });
    const std::uint32_t expected = Field(format::kRecordCountAt);
    if (expected != static_cast<std::uint64_t>(readable)) {
        survey_.Report(CT_RecordCheck::kRecordCount, format::kRecordCountAt, expected,
                       static_cast<std::uint32_t>(readable));
    }
    const auto& owners = survey_.owners;
    for (std::size_t i = 0; i < owners.size();) {
        const std::size_t first = i;
        while (i < owners.size() && owners[i] == CT_RecordCheck::kNobody) ++i;
        if (i > first) {
            survey_.Report(CT_RecordCheck::kLeak, survey_.BlockOffset(first),
                           (i - first) * std::uint64_t{survey_.layout.block_size});
        } else {
            ++i;
        }
    }
}

}  // namespace

bool RecordImage::Open() {
    vv_Open(kReadAccess, kOpenExisting, kShareRead, kAttributeNormal, kFlagRandomAccess);
    if (Failed()) return false;
    if (vn_GetSize() != 0) v_CreateMap(kWholeFile);
    return !Failed();
}

void RecordSurvey::Report(Kind kind, std::uint64_t offset, std::uint64_t size,
                          std::uint32_t other) {
    ++finding_count;
    if (findings.size() >= CT_RecordCheck::kMaxFindings) return;
    findings.push_back(
        {kind, static_cast<unsigned int>(offset), static_cast<unsigned int>(size), other});
}

void RecordSurvey::Take(const RecordImage& image, const RecordLayout* given) {
    Surveyor surveyor(image, *this);
    surveyor.Header(given);
    if (!usable) return;
    surveyor.Heads();
    surveyor.Resources();
    surveyor.FreeTable();
    surveyor.HiddenHeads();
    std::ranges::sort(records, {}, &Record::head);
    surveyor.CountAndLeaks();
}

}  // namespace foundation::detail
