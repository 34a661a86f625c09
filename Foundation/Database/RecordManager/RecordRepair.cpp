#include "Foundation/Database/RecordManager/RecordRepair.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "Foundation/Core/Error/DatabaseError.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Database/RecordManager/Internal/RecordSurveyDetail.h"
#include "Foundation/Database/RecordManager/RecordManager.h"
#include "Foundation/Platform/LastError.h"

namespace platform = zelkor::platform;

namespace format = zelkor::record_format;
using zelkor::detail::Failed;
using zelkor::detail::RecordBytes;
using zelkor::detail::RecordImage;
using zelkor::detail::RecordLayout;
using zelkor::detail::RecordSurvey;

struct zelkor::detail::RepairReport {
    RecordSurvey::List<CT_RecordRepair::st_Moved> moved;
    RecordSurvey::List<CT_RecordRepair::st_Lost> lost;
};

using zelkor::detail::RepairReport;

namespace {

constexpr unsigned int kWrongFormat = 31050;
constexpr unsigned int kMessageSize = 256;

// Gives the buffer the bytes; those behind the end of the file are zero.
void Fill(CT_Buffer& out, std::uint32_t used, const RecordBytes& image, std::uint64_t offset,
          std::uint32_t count) {
    out.v_SetMinSize(used + count, TRUE);
    out.v_SetUsedSize(used + count);
    if (count == 0) return;
    auto* const to = static_cast<std::byte*>(out.qv_Get()) + used;
    const std::uint64_t held = image.size > offset ? image.size - offset : 0;
    const auto there = static_cast<std::size_t>(std::min<std::uint64_t>(held, count));
    if (there != 0) std::memcpy(to, image.At(offset), there);
    std::memset(to + there, 0, count - there);
}

}  // namespace

CT_RecordRepair::CT_RecordRepair(const CT_WinFile* file)
    : file_(zelkor::detail::OrNone(file)),
      report_(new (platform::Allocate(sizeof(RepairReport))) RepairReport()) {}

CT_RecordRepair::~CT_RecordRepair() {
    report_->~RepairReport();
    platform::Free(report_);
}

void* CT_RecordRepair::operator new(std::size_t size) {
    return platform::Allocate(size);
}

void CT_RecordRepair::operator delete(void* block) {
    platform::Free(block);
}

void CT_RecordRepair::v_SetLayout(unsigned int record_header_size, unsigned int block_size,
                                  unsigned int resource_max_count) {
    has_layout_ = true;
    record_header_size_ = record_header_size;
    block_size_ = block_size;
    resource_max_count_ = resource_max_count;
}

BOOL CT_RecordRepair::b_Repair(const CT_WinFile* target) {
    *report_ = {};
    if (Failed()) return FALSE;
    if (target == nullptr) {
        platform::SetLastError(platform::kErrorInvalidParameter);
        zelkor::detail::RecordSystemError();
        return FALSE;
    }
    RecordImage file(file_);
    if (!file.Open()) {
        Failed();
        return FALSE;
    }
    const RecordBytes image = file.Bytes();
    // with the header lost, the data area reaches to the end of the file
    const RecordLayout given{.block_size = block_size_,
                             .record_header_size = record_header_size_,
                             .resource_max_count = resource_max_count_,
                             .data_end = 0xFFFFFFFF};
    RecordSurvey survey;
    survey.Take(image, has_layout_ ? &given : nullptr);
    if (!survey.usable) {
        char16_t text[kMessageSize];
        CT_DatabaseError::sv_FormatError(text, kMessageSize, kWrongFormat,
                                         file_.pcco_GetFullName()->qcuz_Get());
        zelkor::detail::Record({kWrongFormat, u"%s"}, text);
        return FALSE;
    }
    CT_RecordManager out(target);
    out.v_Create(survey.layout.record_header_size, survey.layout.block_size,
                 survey.layout.resource_max_count);
    if (!Failed()) CopyRecords(image, survey, out);
    if (!Failed()) CopyResources(image, survey, out);
    if (!Failed()) ListMissing(survey);
    if (!Failed()) out.v_Close(TRUE);
    return Failed() || !report_->lost.empty() ? FALSE : TRUE;
}

void CT_RecordRepair::CopyRecords(const RecordBytes& image, const RecordSurvey& survey,
                                  CT_RecordManager& target) {
    CT_Buffer data;
    std::uint64_t shared = 0;  // bytes that went over twice
    const std::uint32_t block = survey.layout.block_size;
    const std::uint32_t header = survey.layout.record_header_size;
    for (const RecordSurvey::Record& record : survey.records) {
        const unsigned int reference = record.head / block;
        const bool copied =
            record.readable && (!record.shared || shared + record.length <= survey.file_size);
        if (!copied || record.shared) {
            const auto kind = record.readable ? CT_RecordCheck::kOverlap : CT_RecordCheck::kBody;
            report_->lost.push_back({kind, copied ? TRUE : FALSE, reference, 0, 1});
        }
        if (!copied) continue;
        if (record.shared) shared += record.length;
        Fill(data, 0, image, record.head + std::uint64_t{format::kHeadDataAt}, header);
        if (record.body != 0) {
            Fill(data, header, image, record.body + std::uint64_t{format::kBodyDataAt},
                 record.length - format::kWord);
        }
        const unsigned int added = target.n_AddRecord(&data);
        if (Failed()) return;
        report_->moved.push_back({reference, added});
    }
}

void CT_RecordRepair::CopyResources(const RecordBytes& image, const RecordSurvey& survey,
                                    CT_RecordManager& target) {
    using Resource = RecordSurvey::Resource;
    const auto place = [](const Resource& one) { return std::pair(one.key, one.offset); };
    RecordSurvey::List<Resource> copied;
    std::uint64_t shared = 0;
    for (const Resource& resource : survey.resources) {
        if (!resource.readable || target.b_ResourceExists(resource.key) != 0) continue;
        if (resource.shared && (shared += resource.length) > survey.file_size) continue;
        CT_Buffer data;
        Fill(data, 0, image, resource.offset + std::uint64_t{format::kBodyDataAt},
             resource.length - format::kWord);
        target.v_AddResource(resource.key, &data);
        if (Failed()) return;
        copied.push_back(resource);
    }
    std::ranges::sort(copied, {}, place);
    // an entry that is there twice, as a killed process may leave it, is no loss
    for (const Resource& resource : survey.resources) {
        const bool went = std::ranges::binary_search(copied, place(resource), {}, place);
        if (went && !resource.shared) continue;
        const bool twice = !went && target.b_ResourceExists(resource.key) != 0;
        const auto kind = went    ? CT_RecordCheck::kOverlap
                          : twice ? CT_RecordCheck::kDirectoryOrder
                                  : CT_RecordCheck::kResource;
        report_->lost.push_back({kind, went ? TRUE : FALSE, 0, resource.key, 1});
    }
}

void CT_RecordRepair::ListMissing(const RecordSurvey& survey) {
    auto& lost = report_->lost;
    if (!survey.header) lost.push_back({CT_RecordCheck::kStamp, TRUE, 0, 0, 0});
    if (survey.missing_records != 0) {
        lost.push_back({CT_RecordCheck::kRecordCount, FALSE, 0, 0, survey.missing_records});
    }
    if (survey.missing_resources != 0) {
        lost.push_back({CT_RecordCheck::kResourceCount, FALSE, 0, 0, survey.missing_resources});
    }
    for (const RecordSurvey::Run& leak : survey.leaks) {
        const auto reference = static_cast<unsigned int>(leak.offset / survey.layout.block_size);
        lost.push_back({CT_RecordCheck::kLeak, TRUE, reference, 0, 1});
    }
}

unsigned int CT_RecordRepair::n_GetMovedCount() const {
    return static_cast<unsigned int>(report_->moved.size());
}

CT_RecordRepair::st_Moved CT_RecordRepair::so_GetMovedAt(unsigned int position) const {
    if (position == 0 || position > report_->moved.size()) return {};
    return report_->moved[position - 1];
}

unsigned int CT_RecordRepair::n_GetLostCount() const {
    return static_cast<unsigned int>(report_->lost.size());
}

CT_RecordRepair::st_Lost CT_RecordRepair::so_GetLostAt(unsigned int position) const {
    if (position == 0 || position > report_->lost.size()) return {};
    return report_->lost[position - 1];
}
