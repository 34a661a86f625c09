// Surveyor: one look at a record file; never included by callers.
#ifndef FOUNDATION_DATABASE_RECORDMANAGER_INTERNAL_RECORDSURVEYORDETAIL_H
#define FOUNDATION_DATABASE_RECORDMANAGER_INTERNAL_RECORDSURVEYORDETAIL_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "Foundation/Database/RecordManager/Internal/RecordSurveyDetail.h"

namespace zelkor::detail {

// The order matters: heads that a scan meets own their blocks first, then their
// bodies, the resources and the free blocks; what is left may hide more heads, and leaks. Bodies
// and resources under suspicion, given by their offsets in ascending order, come last.
class Surveyor {
public:
    using Offsets = RecordSurvey::List<std::uint32_t>;

    Surveyor(const RecordBytes& file, RecordSurvey& survey, const Offsets& suspects)
        : file_(file), survey_(survey), suspects_(suspects) {}

    void Header(const RecordLayout* given);
    void Look();
    [[nodiscard]] Offsets Suspects() const;

private:
    [[nodiscard]] std::uint32_t Field(std::uint32_t at) const { return file_.Word(at); }
    [[nodiscard]] std::uint64_t Round(std::uint64_t size) const {
        return record_format::Round(size, survey_.layout.block_size);
    }
    [[nodiscard]] std::uint64_t HeadSize() const {
        return Round(std::uint64_t{survey_.layout.record_header_size} + record_format::kHeadDataAt);
    }
    [[nodiscard]] std::size_t Index(std::uint64_t offset) const {
        return static_cast<std::size_t>((offset - survey_.start) / survey_.layout.block_size);
    }
    [[nodiscard]] bool IsBlock(std::uint64_t offset, std::uint64_t size) const {
        return offset % survey_.layout.block_size == 0 && offset >= survey_.start &&
               offset + Round(size) <= survey_.end;
    }
    // Whether a body or resource of that length may lie there.
    [[nodiscard]] bool IsCounted(std::uint64_t offset, std::uint32_t length) const {
        return IsBlock(offset, 1) && length >= record_format::kWord &&
               length < record_format::kUnfinished && IsBlock(offset, length) &&
               file_.Has(offset, length);
    }
    [[nodiscard]] bool IsSuspect(std::uint32_t offset) const {
        return std::ranges::binary_search(suspects_, offset);
    }
    void Area();
    std::uint64_t FindOwner(std::uint64_t offset, std::uint64_t size) const;
    void Own(std::uint64_t offset, std::uint64_t size, RecordSurvey::Owner owner);
    bool Claim(std::uint64_t offset, std::uint64_t size, RecordSurvey::Owner owner);
    void Heads();
    void Body(RecordSurvey::Record& record);
    void HiddenHeads();
    [[nodiscard]] bool CoversHead(std::uint32_t offset, std::uint32_t length) const;
    void Resources();
    void ClaimResource(RecordSurvey::Resource& resource);
    void FreeTable();
    void FreeBlock(std::uint64_t entry, std::uint32_t offset, std::uint32_t size);
    void Chain(std::uint64_t entry, std::uint32_t offset);
    void Shared();
    void Counts();
    void Leaks();
    [[nodiscard]] bool IsZero(std::uint64_t offset, std::uint64_t size) const;

    const RecordBytes& file_;
    RecordSurvey& survey_;
    const Offsets suspects_;
    RecordSurvey::List<RecordSurvey::Run> contested_;  // claimed by one who was not the first
};

}  // namespace zelkor::detail

#endif
