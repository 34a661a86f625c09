// Reading, writing and all else that works at a file's handle, except locks and mappings.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <limits>

#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Posix/Internal/Errno.h"
#include "Foundation/Platform/Posix/Internal/FileFaults.h"
#include "Foundation/Platform/Posix/Internal/FileInternals.h"
#include "Foundation/Platform/Posix/Internal/ShareLocks.h"

namespace zelkor::platform {

namespace {

using posix::Fail;
using posix::FailWithErrno;
using posix::Kind;
using posix::Object;
using posix::Retry;

constexpr std::uint32_t kLargestCall = 0x7FFF0000;  // Linux moves no more bytes at once

// The file of a handle that may transfer now; null with the last error set.
Object* Transferable(HANDLE handle, bool Object::*allowed, std::uint32_t count) {
    Object* file = posix::Find(handle, Kind::kFile);
    if (file == nullptr) return nullptr;
    std::uint32_t error = 0;
    if (!(file->*allowed)) {
        error = kErrorAccessDenied;
    } else if (file->overlapped) {
        error = kErrorInvalidParameter;
    } else if (count != 0 && file->locks != nullptr &&
               file->locks->load(std::memory_order_relaxed) != 0 &&
               posix::IsRangeLocked(file->descriptor, file->position, count)) {
        error = kErrorLockViolation;
    }
    if (error == 0) return file;
    SetLastError(error);
    return nullptr;
}

// One call of the system, repeated when a signal interrupts it before anything moved.
ssize_t ReadSome(const Object& file, void* buffer, std::uint32_t count) {
    const auto at = static_cast<off_t>(file.position);
    return Retry([&] {
        return file.regular ? pread(file.descriptor, buffer, count, at)
                            : read(file.descriptor, buffer, count);
    });
}

ssize_t WriteSome(const Object& file, const void* data, std::uint32_t count) {
    const auto at = static_cast<off_t>(file.position);
    return Retry([&] {
        return file.regular ? pwrite(file.descriptor, data, count, at)
                            : write(file.descriptor, data, count);
    });
}

}  // namespace

bool ReadFile(HANDLE handle, void* buffer, std::uint32_t count, std::uint32_t* done) noexcept {
    *done = 0;
    if (posix::Strikes(FileCall::kRead)) return false;
    bool full = false;
    posix::Limit(FileCall::kRead, &count, &full);
    Object* file = Transferable(handle, &Object::readable, count);
    if (file == nullptr) return false;
    auto* next = static_cast<std::byte*>(buffer);
    while (*done < count) {
        const std::uint32_t part = std::min(count - *done, kLargestCall);
        const ssize_t moved = ReadSome(*file, next, part);
        if (moved < 0) return FailWithErrno();
        file->position += static_cast<std::uint64_t>(moved);
        *done += static_cast<std::uint32_t>(moved);
        next += moved;
        if (static_cast<std::uint32_t>(moved) < part) break;  // the end, or what a pipe had
    }
    return true;
}

bool WriteFile(HANDLE handle, const void* data, std::uint32_t count, std::uint32_t* done) noexcept {
    *done = 0;
    if (posix::Strikes(FileCall::kWrite)) return false;
    bool full = false;
    posix::Limit(FileCall::kWrite, &count, &full);
    Object* file = Transferable(handle, &Object::writable, count);
    if (file == nullptr) return false;
    const auto* next = static_cast<const std::byte*>(data);
    while (*done < count) {
        const ssize_t moved = WriteSome(*file, next, std::min(count - *done, kLargestCall));
        if (moved < 0) return FailWithErrno();
        file->position += static_cast<std::uint64_t>(moved);
        *done += static_cast<std::uint32_t>(moved);
        next += moved;
    }
    return !full || Fail(kErrorDiskFull);
}

bool SetFilePosition(HANDLE handle, std::int64_t distance, std::uint32_t origin,
                     std::uint64_t* position) noexcept {
    Object* file = posix::Find(handle, Kind::kFile);
    if (file == nullptr || posix::Strikes(FileCall::kSeek)) return false;
    std::int64_t base = 0;
    if (origin == kSeekCurrent) {
        base = static_cast<std::int64_t>(file->position);
    } else if (origin == kSeekEnd) {
        struct stat status;
        if (fstat(file->descriptor, &status) != 0) return FailWithErrno();
        // A pipe ends where it stands.
        base = file->regular ? status.st_size : static_cast<std::int64_t>(file->position);
    } else if (origin != kSeekBegin) {
        return Fail(kErrorInvalidParameter);
    }
    if (distance > 0 && base > std::numeric_limits<std::int64_t>::max() - distance) {
        return Fail(kErrorInvalidParameter);
    }
    if (base + distance < 0) return Fail(kErrorNegativeSeek);
    const bool moves = static_cast<std::uint64_t>(base + distance) != file->position;
    if (moves && !file->regular && lseek(file->descriptor, base + distance, SEEK_SET) < 0) {
        return FailWithErrno();
    }
    file->position = static_cast<std::uint64_t>(base + distance);
    if (position != nullptr) *position = file->position;
    return true;
}

bool SetEndOfFile(HANDLE handle) noexcept {
    Object* file = posix::Find(handle, Kind::kFile);
    if (file == nullptr || posix::Strikes(FileCall::kSetEnd)) return false;
    if (!file->writable) return Fail(kErrorAccessDenied);
    if (posix::MappingForbidsSize(*file, file->position)) return Fail(kErrorUserMappedFile);
    const auto end = static_cast<off_t>(file->position);
    if (Retry([&] { return ftruncate(file->descriptor, end); }) != 0) return FailWithErrno();
    return true;
}

bool FlushFile(HANDLE handle) noexcept {
    Object* file = posix::Find(handle, Kind::kFile);
    if (file == nullptr || posix::Strikes(FileCall::kFlush)) return false;
    if (!file->writable) return Fail(kErrorAccessDenied);
    if (!file->regular) return true;
    return Retry([file] { return fdatasync(file->descriptor); }) == 0 || FailWithErrno();
}

bool QueryFileSize(HANDLE handle, std::uint64_t* size) noexcept {
    const Object* file = posix::Find(handle, Kind::kFile);
    if (file == nullptr || posix::Strikes(FileCall::kSize)) return false;
    struct stat status;
    if (fstat(file->descriptor, &status) != 0) return FailWithErrno();
    *size = static_cast<std::uint64_t>(status.st_size);
    return true;
}

bool QueryFileInformation(HANDLE handle, BY_HANDLE_FILE_INFORMATION* information) noexcept {
    const Object* file = posix::Find(handle, Kind::kFile);
    if (file == nullptr || posix::Strikes(FileCall::kInformation)) return false;
    struct stat status;
    timespec birth;
    if (!posix::Inspect(file->descriptor, "", &status, &birth)) return FailWithErrno();
    const std::uint32_t stored = posix::StoredAttributes(file->descriptor);
    const posix::Times times = posix::TimesOf(status, birth);
    const auto size = static_cast<std::uint64_t>(status.st_size);
    *information = {
        .dwFileAttributes = posix::AttributeWord(status, stored),
        .ftCreationTime = times.creation,
        .ftLastAccessTime = times.access,
        .ftLastWriteTime = times.write,
        .dwVolumeSerialNumber = static_cast<std::uint32_t>(status.st_dev),
        .nFileSizeHigh = static_cast<std::uint32_t>(size >> 32),
        .nFileSizeLow = static_cast<std::uint32_t>(size),
        .nNumberOfLinks = static_cast<std::uint32_t>(status.st_nlink),
        .nFileIndexHigh = static_cast<std::uint32_t>(status.st_ino >> 32),
        .nFileIndexLow = static_cast<std::uint32_t>(status.st_ino),
    };
    return true;
}

std::uint32_t SetHandleCount(std::uint32_t count) noexcept {
    rlimit limit;
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return count;
    if (limit.rlim_cur < count) {
        limit.rlim_cur = std::min<rlim_t>(count, limit.rlim_max);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    return static_cast<std::uint32_t>(std::min<rlim_t>(count, limit.rlim_cur));
}

}  // namespace zelkor::platform
