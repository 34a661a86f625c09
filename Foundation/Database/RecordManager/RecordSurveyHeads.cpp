// RecordSurvey: heads and their bodies.
#include <algorithm>

#include "Foundation/Database/RecordManager/Internal/RecordSurveyorDetail.h"

namespace zelkor::detail {

namespace format = record_format;

// As a scan with sure footing meets them: every block that is no head is passed by its size word.
void Surveyor::Heads() {
    const std::uint64_t head_size = HeadSize();
    for (std::uint64_t at = survey_.start; at < survey_.data_end;) {
        const std::uint32_t word = file_.Word(at);
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
        } else if (word != 0 && Round(word) <= survey_.data_end - at &&
                   !IsSuspect(static_cast<std::uint32_t>(at))) {
            step = Round(word);
        }
        at += step;
    }
    for (RecordSurvey::Record& record : survey_.records) Body(record);
}

// Reads a head's link and claims the body.
void Surveyor::Body(RecordSurvey::Record& record) {
    record.body = file_.Word(record.head + std::uint64_t{format::kBodyLinkAt});
    record.readable = record.body == 0;
    if (record.readable) return;
    record.length = file_.Word(record.body);
    record.readable = IsCounted(record.body, record.length);
    if (!record.readable) {
        survey_.Report(CT_RecordCheck::kBody, record.head, HeadSize(), record.body);
    } else if (!IsSuspect(record.body)) {
        // which of two owners is the right one cannot be told
        record.shared = !Claim(record.body, record.length, CT_RecordCheck::kBodyOwner);
    }
}

// Live heads among the blocks that nothing owns, also behind the data end.
void Surveyor::HiddenHeads() {
    const std::uint64_t head_size = HeadSize();
    for (std::uint64_t at = survey_.start; at + head_size <= survey_.end;
         at += survey_.layout.block_size) {
        if (survey_.owners[Index(at)] != CT_RecordCheck::kNobody) continue;
        if (file_.Word(at) != format::kLive || FindOwner(at, head_size) != survey_.end) continue;
        const bool behind = at >= survey_.data_end;
        survey_.Report(behind ? CT_RecordCheck::kBehindEnd : CT_RecordCheck::kHidden, at,
                       head_size);
        Own(at, head_size, CT_RecordCheck::kHeadOwner);
        RecordSurvey::Record record{.head = static_cast<std::uint32_t>(at),
                                    .body = 0,
                                    .length = 0,
                                    .readable = false,
                                    .hidden = true,
                                    .shared = false};
        Body(record);
        survey_.records.push_back(record);
    }
}

// Whether live heads with a possible body start in what would be the body's or resource's blocks.
bool Surveyor::CoversHead(std::uint32_t offset, std::uint32_t length) const {
    const std::uint64_t end = offset + Round(length);
    for (std::uint64_t at = std::uint64_t{offset} + survey_.layout.block_size; at < end;
         at += survey_.layout.block_size) {
        if (file_.Word(at) != format::kLive || !IsBlock(at, HeadSize())) continue;
        const std::uint32_t body = file_.Word(at + format::kBodyLinkAt);
        if (body == 0 || IsCounted(body, file_.Word(body))) return true;
    }
    return false;
}

// When records are missing: the bodies and resources that may have swallowed them.
Surveyor::Offsets Surveyor::Suspects() const {
    Offsets suspects;
    const auto look = [&](bool readable, std::uint32_t offset, std::uint32_t length) {
        if (readable && offset != 0 && CoversHead(offset, length)) {
            suspects.push_back(offset);
        }
    };
    for (const auto& record : survey_.records) look(record.readable, record.body, record.length);
    for (const auto& one : survey_.resources) look(one.readable, one.offset, one.length);
    std::ranges::sort(suspects);
    return suspects;
}

}  // namespace zelkor::detail
