#include "Foundation/Platform/Posix/Internal/ShareLocks.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <bit>
#include <cstdio>
#include <mutex>

#include "Foundation/Platform/Posix/Internal/Errno.h"

namespace zelkor::platform::posix {

namespace {

// Areas of lock offsets, none of which meets a byte of a file or another area.
constexpr std::uint64_t kRanges = std::uint64_t{1} << 62;
constexpr std::uint64_t kMapped = kRanges + (std::uint64_t{1} << 60);
constexpr std::uint64_t kMarks = kRanges + (std::uint64_t{1} << 61);

struct flock Span(short type, std::uint64_t start, std::uint64_t length) {
    struct flock span = {};
    span.l_type = type;
    span.l_whence = SEEK_SET;
    span.l_start = static_cast<off_t>(start);
    span.l_len = static_cast<off_t>(length);
    return span;
}

// False only when somebody else's lock is in the way.
bool SetLock(int descriptor, short type, std::uint64_t start, std::uint64_t length) {
    struct flock span = Span(type, start, length);
    const int result = Retry([&] { return fcntl(descriptor, F_OFD_SETLK, &span); });
    return result == 0 || (errno != EAGAIN && errno != EACCES);
}

bool IsHeld(int descriptor, std::uint64_t start, std::uint64_t length) {
    struct flock span = Span(F_WRLCK, start, length);
    return fcntl(descriptor, F_OFD_GETLK, &span) == 0 && span.l_type != F_UNLCK;
}

// Calls `use(first, count)` for each run of neighbouring bits; stops and answers false when it
// does.
template <typename Use>
bool ForEachRun(unsigned bits, Use use) {
    while (bits != 0) {
        const int first = std::countr_zero(bits);
        const int count = std::countr_one(bits >> first);
        if (!use(static_cast<std::uint64_t>(first), static_cast<std::uint64_t>(count)))
            return false;
        bits &= ~0u << (first + count);
    }
    return true;
}

constexpr std::int64_t kLongestWait = 2'000'000'000;

std::int64_t Nanoseconds() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

// The table of lock counts: one page in shared memory for all processes of the user.
constexpr std::size_t kCounts = 1024;
using Counts = std::atomic<std::uint32_t>[kCounts];
static_assert(std::atomic<std::uint32_t>::is_always_lock_free);

void* MapCounts() {
    char name[64];
    std::snprintf(name, sizeof name, "/zelkor-foundation-locks-%u",
                  static_cast<unsigned>(geteuid()));
    const int descriptor = shm_open(name, O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
    if (descriptor < 0) return nullptr;
    void* memory = MAP_FAILED;
    struct stat status;
    // Somebody else's object could be cut under us.
    const bool ours = fstat(descriptor, &status) == 0 && status.st_uid == geteuid() &&
                      (status.st_mode & 077) == 0;
    if (ours && ftruncate(descriptor, sizeof(Counts)) == 0) {
        memory = mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    }
    close(descriptor);
    return memory == MAP_FAILED ? nullptr : memory;
}

constinit std::once_flag counts_once;
constinit Counts* counts = nullptr;

}  // namespace

Gate::Gate(int descriptor) noexcept : descriptor_(descriptor) {
    constexpr int kShortAttempts = 32;
    std::int64_t begin = 0;
    for (int attempt = 0;; ++attempt) {
        held_ = Retry([&] { return flock(descriptor, LOCK_EX | LOCK_NB); }) == 0;
        if (held_ || errno != EWOULDBLOCK) return;
        if (attempt < kShortAttempts) {
            sched_yield();
            continue;
        }
        const std::int64_t now = Nanoseconds();
        if (begin == 0) begin = now;
        if (now - begin >= kLongestWait) return;
        const timespec pause = {0, 100'000};
        nanosleep(&pause, nullptr);
    }
}

Gate::~Gate() {
    if (held_) flock(descriptor_, LOCK_UN);
}

bool Mark(int descriptor, unsigned marks, unsigned conflicts) noexcept {
    const auto set = [descriptor](std::uint64_t first, std::uint64_t count) {
        return SetLock(descriptor, F_RDLCK, kMarks + first, count);
    };
    // Marked first and asked then: even without the gate two that exclude each other never both
    // win.
    if (ForEachRun(marks, set) && !IsMarked(descriptor, conflicts)) return true;
    Unmark(descriptor);
    return false;
}

bool IsMarked(int descriptor, unsigned marks) noexcept {
    return !ForEachRun(marks, [descriptor](std::uint64_t first, std::uint64_t count) {
        return !IsHeld(descriptor, kMarks + first, count);
    });
}

void Unmark(int descriptor) noexcept {
    SetLock(descriptor, F_UNLCK, kMarks, kMarkCount);
}

bool LockRange(int descriptor, bool readable, std::uint64_t offset, std::uint64_t length) noexcept {
    // A read lock does for an exclusive one, because asking finds either kind.
    const short type = readable ? F_RDLCK : F_WRLCK;
    if (!SetLock(descriptor, type, kRanges + offset, length)) return false;
    if (!IsRangeLocked(descriptor, offset, length)) return true;
    UnlockRange(descriptor, offset, length);
    return false;
}

void UnlockRange(int descriptor, std::uint64_t offset, std::uint64_t length) noexcept {
    SetLock(descriptor, F_UNLCK, kRanges + offset, length);
}

bool IsRangeLocked(int descriptor, std::uint64_t offset, std::uint64_t length) noexcept {
    return IsHeld(descriptor, kRanges + offset, length);
}

void MarkMapped(int descriptor, std::uint64_t size) noexcept {
    SetLock(descriptor, F_RDLCK, kMapped, size);
}

void UnmarkMapped(int descriptor, std::uint64_t left) noexcept {
    SetLock(descriptor, F_UNLCK, kMapped + left, kLockableEnd - left);
}

bool IsMappedBeyond(int descriptor, std::uint64_t size) noexcept {
    return size < kLockableEnd && IsHeld(descriptor, kMapped + size, kLockableEnd - size);
}

std::atomic<std::uint32_t>* LockCount(const FileIdentity& identity) noexcept {
    std::call_once(counts_once, [] { counts = static_cast<Counts*>(MapCounts()); });
    if (counts == nullptr) return nullptr;
    const std::uint64_t mixed = (identity.index * 0x9E3779B97F4A7C15u) ^ identity.device;
    return &(*counts)[(mixed >> 20) % kCounts];
}

}  // namespace zelkor::platform::posix
