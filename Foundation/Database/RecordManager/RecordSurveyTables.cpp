// RecordSurvey: the resource directory, the free table and the overflow chain.
#include <algorithm>

#include "Foundation/Database/RecordManager/Internal/RecordSurveyorDetail.h"

namespace zelkor::detail {

namespace format = record_format;

void Surveyor::Resources() {
    const std::uint64_t at = format::DirectoryAt(survey_.layout.capacity);
    const std::uint32_t count = Field(format::kResourceCountAt);
    if (count > survey_.layout.resource_max_count ||
        !file_.Has(at, std::uint64_t{count} * format::kEntrySize)) {
        if (count != 0)
            survey_.Report(CT_RecordCheck::kResourceCount, format::kResourceCountAt, 4, count);
    }
    std::uint64_t before = 0;
    std::uint32_t seen = 0;
    for (std::uint32_t i = 0; i < std::min(count, survey_.layout.resource_max_count); ++i) {
        const std::uint64_t entry = at + std::uint64_t{i} * format::kEntrySize;
        if (!file_.Has(entry, format::kEntrySize)) break;
        ++seen;
        RecordSurvey::Resource resource{.key = file_.Word(entry),
                                        .offset = file_.Word(entry + format::kWord),
                                        .length = 0,
                                        .readable = false,
                                        .shared = false};
        if (i != 0 && resource.key <= before) {
            survey_.Report(CT_RecordCheck::kDirectoryOrder, entry, format::kEntrySize,
                           resource.key);
        }
        before = resource.key;
        resource.length = file_.Word(resource.offset);
        resource.readable = IsCounted(resource.offset, resource.length);
        if (!resource.readable) {
            survey_.Report(CT_RecordCheck::kResource, entry, format::kEntrySize, resource.key);
        } else if (!IsSuspect(resource.offset)) {
            ClaimResource(resource);
        }
        survey_.resources.push_back(resource);
    }
    if (survey_.header) survey_.missing_resources = count - seen;
}

void Surveyor::ClaimResource(RecordSurvey::Resource& resource) {
    resource.shared = !Claim(resource.offset, resource.length, CT_RecordCheck::kResourceOwner);
}

void Surveyor::FreeTable() {
    const std::uint32_t count = Field(format::kFreeCountAt);
    const std::uint32_t capacity = survey_.layout.capacity;
    if (count > capacity ||
        !file_.Has(format::kFreeTableAt, std::uint64_t{count} * format::kEntrySize)) {
        if (count != 0) survey_.Report(CT_RecordCheck::kFreeCount, format::kFreeCountAt, 4, count);
    }
    for (std::uint32_t i = 0; i < std::min(count, capacity); ++i) {
        const std::uint64_t entry = format::kFreeTableAt + std::uint64_t{i} * format::kEntrySize;
        if (!file_.Has(entry, format::kEntrySize)) break;
        const std::uint32_t offset = file_.Word(entry);
        const std::uint32_t size = file_.Word(entry + format::kWord);
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
    if (file_.Word(offset) != size) {
        survey_.Report(CT_RecordCheck::kFreeSize, offset, size, file_.Word(offset));
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
        const std::uint32_t size = file_.Word(offset);
        if (size == 0 || size % survey_.layout.block_size != 0 || !IsBlock(offset, size)) {
            return survey_.Report(CT_RecordCheck::kFreeSize, offset, survey_.layout.block_size,
                                  size);
        }
        if (survey_.owners[Index(offset)] == CT_RecordCheck::kFreeOwner) {
            return survey_.Report(CT_RecordCheck::kFreeTwice, offset, size);
        }
        if (!Claim(offset, size, CT_RecordCheck::kFreeOwner)) return;
        from = std::uint64_t{offset} + format::kFreeLinkAt;
        offset = file_.Word(from);
    }
}

}  // namespace zelkor::detail
