// What the sources of CT_RecordManager share; never included by callers.
#ifndef FOUNDATION_DATABASE_RECORDMANAGER_RECORDMANAGERDETAIL_H
#define FOUNDATION_DATABASE_RECORDMANAGER_RECORDMANAGERDETAIL_H

#include "Foundation/Database/RecordManager/RecordManager.h"

namespace foundation::record_format {

inline constexpr unsigned int kCorrupt = 31005;
inline constexpr unsigned int kWrongFormat = 31050;
inline constexpr unsigned int kBadReference = 31051;
inline constexpr unsigned int kDirectoryFull = 31052;
inline constexpr unsigned int kNoResource = 31053;
inline constexpr unsigned int kResourceExists = 31054;

inline constexpr std::uint64_t kLargestFile = 0xFFFFFFFF;

}  // namespace foundation::record_format

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

// A scan over the data area. Without footing it looks at every block.
struct CT_RecordManager::Scan {
    std::uint64_t at;
    bool footing;
};

#endif
