// The record file on disk: where everything lies and how its words are read and written.
//
// docs/formats/record-file.md describes the same. The values are persistent: none may change.
// All numbers are unsigned 32-bit little-endian; offsets count bytes from the start of the file.
//
//   0                              header, 256 bytes
//   256                            free table, capacity entries of 8 bytes
//   256 + capacity * 8             resource directory, maximum count entries of 8 bytes
//   D, the next block boundary     data area, up to the data end
#ifndef FOUNDATION_DATABASE_RECORDMANAGER_RECORDFORMAT_H
#define FOUNDATION_DATABASE_RECORDMANAGER_RECORDFORMAT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zelkor::record_format {

[[nodiscard]] constexpr std::uint32_t LoadU32(const std::byte* from) noexcept {
    return std::to_integer<std::uint32_t>(from[0]) | std::to_integer<std::uint32_t>(from[1]) << 8 |
           std::to_integer<std::uint32_t>(from[2]) << 16 |
           std::to_integer<std::uint32_t>(from[3]) << 24;
}

constexpr void StoreU32(std::byte* to, std::uint32_t value) noexcept {
    to[0] = static_cast<std::byte>(value);
    to[1] = static_cast<std::byte>(value >> 8);
    to[2] = static_cast<std::byte>(value >> 16);
    to[3] = static_cast<std::byte>(value >> 24);
}

// ---- Header -------------------------------------------------------------------------------------

inline constexpr std::uint32_t kHeaderSize = 256;
using HeaderImage = std::array<std::byte, kHeaderSize>;

inline constexpr std::string_view kText = "ZELKOR RecordManager";
inline constexpr std::byte kTextEnd{0x1A};           // behind the text; a zero byte follows it
inline constexpr std::uint32_t kStamp = 0xA1B2C3D4;  // bytes D4 C3 B2 A1
inline constexpr std::uint32_t kFormat = 1;          // what is written; 0 is read as well
inline constexpr std::uint32_t kCapacity = 128;      // of the free table in new files

inline constexpr std::uint32_t kTextAt = 0;
inline constexpr std::uint32_t kTextEndAt = 20;
inline constexpr std::uint32_t kReservedAt = 22;
inline constexpr std::uint32_t kStampAt = 32;
inline constexpr std::uint32_t kFormatAt = 36;
inline constexpr std::uint32_t kBlockSizeAt = 40;
inline constexpr std::uint32_t kRecordHeaderSizeAt = 44;
inline constexpr std::uint32_t kCapacityAt = 48;
inline constexpr std::uint32_t kFreeCountAt = 52;
inline constexpr std::uint32_t kResourceMaxCountAt = 56;
inline constexpr std::uint32_t kResourceCountAt = 60;
inline constexpr std::uint32_t kHeaderCounterAt = 64;
inline constexpr std::uint32_t kResourceCounterAt = 68;
inline constexpr std::uint32_t kFreeCounterAt = 72;
inline constexpr std::uint32_t kRecordCountAt = 76;
inline constexpr std::uint32_t kDataEndAt = 80;
inline constexpr std::uint32_t kZeroAt = 84;

// Every field with its size, in file order.
struct Field {
    std::string_view name;
    std::uint32_t offset, size;
};
inline constexpr auto kHeaderFields = std::to_array<Field>({
    {"text", kTextAt, 20},
    {"text end", kTextEndAt, 2},
    {"reserved", kReservedAt, 10},
    {"byte-order stamp", kStampAt, 4},
    {"format number", kFormatAt, 4},
    {"block size", kBlockSizeAt, 4},
    {"record header size", kRecordHeaderSizeAt, 4},
    {"free-table capacity", kCapacityAt, 4},
    {"free-table count", kFreeCountAt, 4},
    {"resource maximum count", kResourceMaxCountAt, 4},
    {"resource count", kResourceCountAt, 4},
    {"header change counter", kHeaderCounterAt, 4},
    {"resource change counter", kResourceCounterAt, 4},
    {"free-table change counter", kFreeCounterAt, 4},
    {"record count", kRecordCountAt, 4},
    {"data end", kDataEndAt, 4},
    {"zero", kZeroAt, 172},
});

constexpr bool FieldsFillTheHeader() {
    std::uint32_t next = 0;
    for (const Field& field : kHeaderFields) {
        if (field.offset != next) return false;
        next += field.size;
    }
    return next == kHeaderSize;
}
static_assert(FieldsFillTheHeader(), "each field starts where the one before ends");
static_assert(kText.size() == kTextEndAt && kStampAt == 32 && kBlockSizeAt == 40);
static_assert(kHeaderCounterAt == 64 && kResourceCounterAt == 68 && kFreeCounterAt == 72);
static_assert(kRecordCountAt == 76 && kDataEndAt == 80 && kZeroAt == 84);

// ---- Tables -------------------------------------------------------------------------------------

// An entry is two words: of the free table offset and size, of the directory key and offset. A free
// size of 0, allowed at position capacity alone, marks the head of the overflow chain.
inline constexpr std::uint32_t kEntrySize = 8;
inline constexpr std::uint32_t kFreeTableAt = kHeaderSize;

[[nodiscard]] constexpr std::uint64_t DirectoryAt(std::uint32_t capacity) noexcept {
    return kFreeTableAt + std::uint64_t{capacity} * kEntrySize;
}
static_assert(DirectoryAt(kCapacity) == 1280);

// The smallest multiple of the block size that is at least `size`; one block for 0. Of blocks of
// size 0 no number is enough: the answer lies outside of every file.
[[nodiscard]] constexpr std::uint64_t Round(std::uint64_t size, std::uint32_t block) noexcept {
    if (block == 0) return std::uint64_t{1} << 40;
    return size <= block ? block : (size - 1) / block * block + block;
}

// D, where the data area starts.
[[nodiscard]] constexpr std::uint64_t DataStart(std::uint32_t capacity, std::uint32_t resources,
                                                std::uint32_t block) noexcept {
    return Round(DirectoryAt(capacity) + std::uint64_t{resources} * kEntrySize, block);
}
static_assert(DataStart(kCapacity, 100, 64) == 2112);

// ---- Blocks -------------------------------------------------------------------------------------

// The first word of a block: one of these states, or the byte count of a body, a resource or a free
// block, which counts itself.
inline constexpr std::uint32_t kLive = 0xFFFFFFFF;
inline constexpr std::uint32_t kUnfinished = 0xFFFFFFFE;

inline constexpr std::uint32_t kWord = 4;
inline constexpr std::uint32_t kBodyLinkAt = 4;     // in a head: offset of the body, 0 for none
inline constexpr std::uint32_t kHeadDataAt = 8;     // in a head: record header size bytes
inline constexpr std::uint32_t kBodyDataAt = 4;     // in a body or resource
inline constexpr std::uint32_t kFreeLinkAt = 4;     // in a free block of the overflow chain
inline constexpr std::uint32_t kSmallestBlock = 8;  // holds a free block's two words

}  // namespace zelkor::record_format

#endif
