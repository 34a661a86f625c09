#include "Foundation/Database/RecordManager/RecordCheck.h"

#include <algorithm>
#include <new>

#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Database/RecordManager/Internal/RecordSurveyDetail.h"

namespace platform = zelkor::platform;

using zelkor::detail::Failed;
using zelkor::detail::RecordImage;
using zelkor::detail::RecordSurvey;

namespace {

RecordSurvey* NewSurvey() {
    return new (platform::Allocate(sizeof(RecordSurvey))) RecordSurvey();
}

}  // namespace

CT_RecordCheck::CT_RecordCheck(const CT_WinFile* file)
    : file_(zelkor::detail::OrNone(file)), survey_(NewSurvey()) {}

CT_RecordCheck::~CT_RecordCheck() {
    survey_->~RecordSurvey();
    platform::Free(survey_);
}

void* CT_RecordCheck::operator new(std::size_t size) {
    return platform::Allocate(size);
}

void CT_RecordCheck::operator delete(void* block) {
    platform::Free(block);
}

BOOL CT_RecordCheck::b_Check() {
    *survey_ = RecordSurvey();
    if (Failed()) return FALSE;
    RecordImage image(file_);
    if (!image.Open()) {
        Failed();
        return FALSE;
    }
    survey_->Take(image.Bytes(), nullptr);
    return survey_->finding_count == 0 ? TRUE : FALSE;
}

unsigned int CT_RecordCheck::n_GetFindingCount() const {
    return survey_->finding_count;
}

unsigned int CT_RecordCheck::n_GetListedCount() const {
    return static_cast<unsigned int>(survey_->findings.size());
}

CT_RecordCheck::st_Finding CT_RecordCheck::so_GetFindingAt(unsigned int position) const {
    if (position == 0 || position > survey_->findings.size()) return {};
    return survey_->findings[position - 1];
}

const char* CT_RecordCheck::sqccz_GetText(et_Finding kind) {
    switch (kind) {
        case kText:
            return "the text at the start is not that of a record file";
        case kShort:
            return "the file is shorter than its header";
        case kStamp:
            return "wrong byte-order stamp";
        case kFormat:
            return "unknown format number";
        case kLayout:
            return "impossible size in the header";
        case kTruncated:
            return "the file ends before its data end";
        case kFreeCount:
            return "impossible count of free blocks";
        case kResourceCount:
            return "impossible count of resources";
        case kRecordCount:
            return "wrong record count in the header";
        case kFreeEntry:
            return "impossible block in the free table";
        case kFreeSize:
            return "wrong size in a free block";
        case kFreeTwice:
            return "the block is free twice";
        case kChainLink:
            return "impossible link in the overflow chain";
        case kDirectoryOrder:
            return "the resource directory is out of order";
        case kResource:
            return "impossible resource block";
        case kBody:
            return "impossible body link or length in a record";
        case kUnfinished:
            return "a record that was never finished";
        case kHidden:
            return "a record where a scan does not look";
        case kOverlap:
            return "the block belongs to two owners";
        case kLeak:
            return "blocks that nothing owns";
        case kBehindEnd:
            return "a record behind the data end";
    }
    return "";
}

unsigned int CT_RecordCheck::n_GetMinReference() const {
    return survey_->usable ? static_cast<unsigned int>(survey_->start / survey_->layout.block_size)
                           : 0;
}

unsigned int CT_RecordCheck::n_GetBlockCount() const {
    return static_cast<unsigned int>(survey_->owners.size());
}

unsigned int CT_RecordCheck::n_GetBlockSize() const {
    return survey_->layout.block_size;
}

CT_RecordCheck::et_Owner CT_RecordCheck::eo_GetOwnerAt(unsigned int reference) const {
    const unsigned int first = n_GetMinReference();
    if (reference < first || reference - first >= survey_->owners.size()) return kNobody;
    return survey_->owners[reference - first];
}

unsigned int CT_RecordCheck::n_GetBlockCount(et_Owner owner) const {
    return static_cast<unsigned int>(std::ranges::count(survey_->owners, owner));
}

unsigned int CT_RecordCheck::n_GetRunCount(et_Owner owner) const {
    unsigned int runs = 0;
    bool inside = false;
    for (const et_Owner block : survey_->owners) {
        if (block == owner && !inside) ++runs;
        inside = block == owner;
    }
    return runs;
}

unsigned int CT_RecordCheck::n_GetRecordCount() const {
    return static_cast<unsigned int>(
        std::ranges::count(survey_->records, true, &RecordSurvey::Record::readable));
}

unsigned int CT_RecordCheck::n_GetNextReference(unsigned int reference) const {
    const std::uint64_t block = survey_->layout.block_size;
    auto next = std::ranges::upper_bound(survey_->records, reference * block, {},
                                         [](const auto& record) { return record.head; });
    next = std::ranges::find(next, survey_->records.end(), true, &RecordSurvey::Record::readable);
    return next == survey_->records.end() ? 0 : static_cast<unsigned int>(next->head / block);
}
