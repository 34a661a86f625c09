#include <algorithm>
#include <cstring>

#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Database/RecordManager/Internal/RecordSurveyorDetail.h"

namespace zelkor::detail {

namespace format = record_format;

namespace {

constexpr unsigned int kWholeFile = 0xFFFFFFFF;

}  // namespace

void Surveyor::Header(const RecordLayout* given) {
    RecordLayout& layout = survey_.layout;
    survey_.file_size = file_.size;
    if (!file_.Has(0, format::kHeaderSize)) survey_.Report(CT_RecordCheck::kShort, 0, file_.size);
    if (!file_.Has(0, format::kText.size()) ||
        std::memcmp(file_.At(0), format::kText.data(), format::kText.size()) != 0) {
        survey_.Report(CT_RecordCheck::kText, format::kTextAt);
    }
    const bool stamp = Field(format::kStampAt) == format::kStamp;
    const bool number = Field(format::kFormatAt) <= format::kFormat;
    if (!stamp) {
        survey_.Report(CT_RecordCheck::kStamp, format::kStampAt, 4, Field(format::kStampAt));
    }
    if (!number) {
        survey_.Report(CT_RecordCheck::kFormat, format::kFormatAt, 4, Field(format::kFormatAt));
    }
    survey_.header = stamp && number && file_.Has(0, format::kHeaderSize);
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
    Area();
}

void Surveyor::Area() {
    const RecordLayout& layout = survey_.layout;
    const std::uint64_t size = survey_.file_size;
    survey_.start =
        format::DataStart(layout.capacity, layout.resource_max_count, layout.block_size);
    // of a head only the record's bytes are written, so the last one may lack whole blocks
    const std::uint64_t held = Round(std::max<std::uint64_t>(size, 1)) +
                               std::min<std::uint64_t>(HeadSize(), size) -
                               std::min<std::uint64_t>(layout.block_size, size);
    survey_.data_end = std::min<std::uint64_t>(layout.data_end, held);
    survey_.data_end -= survey_.data_end % layout.block_size;
    survey_.end = std::max(survey_.data_end, Round(std::max<std::uint64_t>(size, 1)));
    if (layout.data_end % layout.block_size != 0 || layout.data_end < survey_.start) {
        survey_.Report(CT_RecordCheck::kLayout, format::kDataEndAt, 4, layout.data_end);
    }
    survey_.usable = true;
    survey_.data_end = std::max(survey_.data_end, survey_.start);
    survey_.end = std::max(survey_.end, survey_.start);
    survey_.owners.assign(Index(survey_.end), CT_RecordCheck::kNobody);
}

void Surveyor::Look() {
    Heads();
    Resources();
    FreeTable();
    HiddenHeads();
    for (RecordSurvey::Record& record : survey_.records) {
        if (record.readable && IsSuspect(record.body)) {
            record.shared = !Claim(record.body, record.length, CT_RecordCheck::kBodyOwner);
        }
    }
    for (RecordSurvey::Resource& resource : survey_.resources) {
        if (resource.readable && IsSuspect(resource.offset)) ClaimResource(resource);
    }
    std::ranges::sort(survey_.records, {}, &RecordSurvey::Record::head);
    Shared();
    Counts();
    Leaks();
}

// ---- Ownership ----------------------------------------------------------------------------------

// The first block of the range that has an owner; `end` when there is none.
std::uint64_t Surveyor::FindOwner(std::uint64_t offset, std::uint64_t size) const {
    const auto first = survey_.owners.begin() + static_cast<std::ptrdiff_t>(Index(offset));
    const auto last = first + static_cast<std::ptrdiff_t>(Round(size) / survey_.layout.block_size);
    const auto found = std::find_if(
        first, last, [](RecordSurvey::Owner o) { return o != CT_RecordCheck::kNobody; });
    if (found == last) return survey_.end;
    return survey_.BlockOffset(static_cast<std::size_t>(found - survey_.owners.begin()));
}

void Surveyor::Own(std::uint64_t offset, std::uint64_t size, RecordSurvey::Owner owner) {
    const auto first = survey_.owners.begin() + static_cast<std::ptrdiff_t>(Index(offset));
    const auto count = static_cast<std::ptrdiff_t>(Round(size) / survey_.layout.block_size);
    std::fill(first, first + count, owner);
}

bool Surveyor::Claim(std::uint64_t offset, std::uint64_t size, RecordSurvey::Owner owner) {
    const std::uint64_t taken = FindOwner(offset, size);
    if (taken != survey_.end) {
        survey_.Report(CT_RecordCheck::kOverlap, taken, survey_.layout.block_size,
                       static_cast<std::uint32_t>(offset));
        if (IsSuspect(static_cast<std::uint32_t>(offset))) {
            if (taken > offset) Own(offset, taken - offset, owner);
        } else {
            contested_.push_back({offset, Round(size)});
        }
        return false;
    }
    Own(offset, size, owner);
    return true;
}

// ---- What follows -------------------------------------------------------------------------------

// Whoever was first where another one claims blocks too may be the wrong one.
void Surveyor::Shared() {
    std::ranges::sort(contested_, {}, &RecordSurvey::Run::offset);
    std::uint64_t reach = 0;  // of all up to here, so that the last run before a place tells
    for (RecordSurvey::Run& run : contested_) {
        reach = std::max(reach, run.offset + run.size);
        run.size = reach - run.offset;
    }
    const auto contested = [&](std::uint64_t offset, std::uint64_t size) {
        const auto next =
            std::ranges::lower_bound(contested_, offset + size, {}, &RecordSurvey::Run::offset);
        return next != contested_.begin() && (next - 1)->offset + (next - 1)->size > offset;
    };
    for (auto& record : survey_.records) {
        record.shared =
            record.shared || contested(record.head, HeadSize()) ||
            (record.readable && record.body != 0 && contested(record.body, Round(record.length)));
    }
    for (auto& resource : survey_.resources) {
        resource.shared = resource.shared ||
                          (resource.readable && contested(resource.offset, Round(resource.length)));
    }
}

void Surveyor::Counts() {
    const auto scanned = std::ranges::count_if(
        survey_.records, [](const auto& record) { return record.readable && !record.hidden; });
    const std::uint32_t expected = Field(format::kRecordCountAt);
    if (expected != static_cast<std::uint64_t>(scanned)) {
        survey_.Report(CT_RecordCheck::kRecordCount, format::kRecordCountAt, expected,
                       static_cast<std::uint32_t>(scanned));
    }
    if (survey_.header && expected > survey_.records.size()) {
        survey_.missing_records = expected - static_cast<std::uint32_t>(survey_.records.size());
    }
    // a new file is its header alone, and an addition that failed may have left nothing of what it
    // took; but when anything is missing, the end of the file is
    const RecordLayout& layout = survey_.layout;
    if (layout.data_end <= survey_.end || layout.data_end == survey_.start) return;
    const bool missing = survey_.missing_records != 0 || survey_.missing_resources != 0 ||
                         !std::ranges::all_of(survey_.records, &RecordSurvey::Record::readable) ||
                         !std::ranges::all_of(survey_.resources, &RecordSurvey::Resource::readable);
    survey_.Report(missing ? CT_RecordCheck::kTruncated : CT_RecordCheck::kLeak, survey_.file_size,
                   layout.data_end - survey_.file_size);
}

bool Surveyor::IsZero(std::uint64_t offset, std::uint64_t size) const {
    const std::uint64_t end = std::min(offset + size, survey_.file_size);
    return offset >= end || std::all_of(file_.At(offset), file_.At(end),
                                        [](std::byte one) { return one == std::byte{0}; });
}

// Blocks that nothing owns; behind the data end only those that hold anything.
void Surveyor::Leaks() {
    auto& owners = survey_.owners;
    const std::uint64_t block = survey_.layout.block_size;
    for (std::size_t i = 0; i < owners.size();) {
        const std::size_t first = i;
        const bool behind = survey_.BlockOffset(first) >= survey_.data_end;
        bool zero = true;
        for (; i < owners.size() && owners[i] == CT_RecordCheck::kNobody &&
               (survey_.BlockOffset(i) >= survey_.data_end) == behind;
             ++i) {
            zero = zero && IsZero(survey_.BlockOffset(i), block);
        }
        const std::uint64_t offset = survey_.BlockOffset(first);
        if (i == first) {
            ++i;
        } else if (!zero || !behind) {
            survey_.Report(CT_RecordCheck::kLeak, offset, (i - first) * block);
            if (!zero) survey_.leaks.push_back({offset, (i - first) * block});
        } else if (i == owners.size()) {
            owners.resize(first);
            return;
        }
    }
}

namespace {

// The layouts that a damaged size of the tables may have been made from.
RecordSurvey::List<RecordLayout> OtherLayouts(const RecordBytes& file, const RecordLayout& layout) {
    RecordSurvey::List<RecordLayout> others;
    RecordLayout other = layout;
    other.capacity = format::kCapacity;
    if (layout.capacity != format::kCapacity) others.push_back(other);
    other = layout;
    other.resource_max_count = file.Word(format::kResourceCountAt);
    if (other.resource_max_count < layout.resource_max_count) others.push_back(other);
    return others;
}

// Looks again when records are missing and bodies may have swallowed them.
RecordSurvey Examine(const RecordBytes& file, const RecordLayout* layout) {
    RecordSurvey first;
    Surveyor surveyor(file, first, {});
    surveyor.Header(layout);
    if (!first.usable) return first;
    surveyor.Look();
    if (first.missing_records == 0) return first;
    const RecordSurvey::List<std::uint32_t> suspects = surveyor.Suspects();
    if (suspects.empty()) return first;
    RecordSurvey second;
    Surveyor wary(file, second, suspects);
    wary.Header(layout);
    wary.Look();
    return second.Found() > first.Found() ? second : first;
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

std::size_t RecordSurvey::Found() const {
    const auto sure = [](const auto& one) { return one.readable && !one.shared; };
    return static_cast<std::size_t>(std::ranges::count_if(records, sure) +
                                    std::ranges::count_if(resources, sure));
}

void RecordSurvey::Take(const RecordBytes& file, const RecordLayout* given) {
    *this = Examine(file, given);
    if (missing_records == 0 && missing_resources == 0) return;
    const RecordLayout told = layout;
    for (const RecordLayout& other : OtherLayouts(file, told)) {
        RecordSurvey again = Examine(file, &other);
        if (again.Found() <= Found()) continue;
        if (other.capacity != told.capacity) {
            again.Report(CT_RecordCheck::kLayout, format::kCapacityAt, 4, told.capacity);
        } else {
            again.Report(CT_RecordCheck::kLayout, format::kResourceMaxCountAt, 4,
                         told.resource_max_count);
        }
        *this = std::move(again);
    }
}

}  // namespace zelkor::detail
