// Share modes and byte-range locks on top of the system's open-file-description locks.
//
// A handle marks what it does and what it denies by read locks on single bytes far behind any
// file's end; a marker is found by asking who holds it. Marking and asking happen behind a short
// `flock` gate on the file. A mapping marks its length, a locked range its bytes, in areas of their
// own. All of it belongs to the description and vanishes with the process.
#ifndef FOUNDATION_PLATFORM_POSIX_INTERNAL_SHARELOCKS_H
#define FOUNDATION_PLATFORM_POSIX_INTERNAL_SHARELOCKS_H

#include <atomic>
#include <cstdint>

#include "Foundation/Platform/Posix/Internal/Handles.h"

namespace zelkor::platform::posix {

// Marks of one handle, as bits. Their order keeps those that occur together beside each other.
enum Marks : unsigned {
    kDeletes = 1,
    kWrites = 2,
    kReads = 4,
    kDeniesWrite = 8,
    kDeniesDelete = 16,
    kDeniesRead = 32,
    kMarkCount = 6,
};

// Held while share modes of one file are looked at or changed. Waits for others for at most two
// seconds (somebody else may use flock for longer) and then goes on without.
class Gate {
public:
    explicit Gate(int descriptor) noexcept;
    ~Gate();
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

private:
    int descriptor_;
    bool held_ = false;
};

// Sets the marks and answers true; sets none and answers false when another description holds one
// of `conflicts`. Where the file system knows no such locks everything succeeds.
[[nodiscard]] bool Mark(int descriptor, unsigned marks, unsigned conflicts) noexcept;
[[nodiscard]] bool IsMarked(int descriptor, unsigned marks) noexcept;
void Unmark(int descriptor) noexcept;

// Ranges locked by handles. LockRange answers false when another description has locked part of it.
[[nodiscard]] bool LockRange(int descriptor, bool readable, std::uint64_t offset,
                             std::uint64_t length) noexcept;
void UnlockRange(int descriptor, std::uint64_t offset, std::uint64_t length) noexcept;
[[nodiscard]] bool IsRangeLocked(int descriptor, std::uint64_t offset,
                                 std::uint64_t length) noexcept;
inline constexpr std::uint64_t kLockableEnd = std::uint64_t{1} << 60;

// Mappings: their length, what is left of it, and whether other descriptions map more than `size`
// bytes.
void MarkMapped(int descriptor, std::uint64_t size) noexcept;
void UnmarkMapped(int descriptor, std::uint64_t left) noexcept;
[[nodiscard]] bool IsMappedBeyond(int descriptor, std::uint64_t size) noexcept;

// The number of range locks in all of this user's processes on files that share a place in a small
// table with this one: 0 means that nobody has locked anything, without asking the system. Null
// when no such table can be had.
[[nodiscard]] std::atomic<std::uint32_t>* LockCount(const FileIdentity& identity) noexcept;

}  // namespace zelkor::platform::posix

#endif
