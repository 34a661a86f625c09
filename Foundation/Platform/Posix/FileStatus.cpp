// What is known of a file beside its content: attributes, kind, size and times.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <string_view>

#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Posix/Internal/Errno.h"
#include "Foundation/Platform/Posix/Internal/FileFaults.h"
#include "Foundation/Platform/Posix/Internal/FileInternals.h"

namespace zelkor::platform {

namespace posix {

namespace {

// The extended attribute: the bits in hexadecimal, like "22". Absent, it stands for the archive
// bit.
constexpr char kAttributeName[] = "user.zelkor.attributes";
constexpr std::uint32_t kStoredBits = kFileHidden | kFileSystem | kFileArchive | kFileTemporary;

constexpr mode_t kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

std::uint32_t ParseStored(const char* text, ssize_t length) {
    if (length <= 0) return kDefaultAttributes;
    std::uint32_t bits = 0;
    const auto [end, error] = std::from_chars(text, text + length, bits, 16);
    return error == std::errc{} ? bits & kStoredBits : kDefaultAttributes;
}

FILETIME FileTime(const timespec& time) {
    constexpr std::int64_t kSecondsBefore1970 = 11'644'473'600;
    const auto ticks = static_cast<std::uint64_t>((time.tv_sec + kSecondsBefore1970) * 10'000'000 +
                                                  time.tv_nsec / 100);
    return {static_cast<std::uint32_t>(ticks), static_cast<std::uint32_t>(ticks >> 32)};
}

// Attributes are set through a descriptor for reading, which a read-only file allows too.
bool Apply(int descriptor, std::uint32_t attributes) {
    struct stat status;
    if (fstat(descriptor, &status) != 0) return FailWithErrno();
    const bool folder = S_ISDIR(status.st_mode);
    // Owners other than root may store extended attributes only while they may write.
    const mode_t writable = status.st_mode & 07777u;
    if (!folder && IsReadOnly(status)) {
        if (fchmod(descriptor, writable | S_IWUSR) != 0) return FailWithErrno();
    }
    StoreAttributes(descriptor, attributes);
    if (folder) return true;
    const bool read_only = (attributes & kFileReadOnly) != 0;
    const mode_t wanted = read_only                      ? writable & ~kWriteBits
                          : (writable & kWriteBits) != 0 ? writable
                                                         : writable | S_IWUSR;
    return fchmod(descriptor, wanted) == 0 || FailWithErrno();
}

std::uint32_t ModeOf(mode_t mode) {
    std::uint32_t kind = 0;
    if (S_ISDIR(mode)) kind = kModeFolder;
    if (S_ISFIFO(mode)) kind = kModePipe;
    if (S_ISREG(mode)) kind = kModeFile;
    if (S_ISCHR(mode) || S_ISBLK(mode)) kind = kModeDevice;
    return kind | (mode & 0700u);
}

}  // namespace

bool IsReadOnly(const struct stat& status) noexcept {
    return !S_ISDIR(status.st_mode) && (status.st_mode & kWriteBits) == 0;
}

std::uint32_t StoredAttributes(int descriptor) noexcept {
    char text[16];
    return ParseStored(text, fgetxattr(descriptor, kAttributeName, text, sizeof text));
}

void StoreAttributes(int descriptor, std::uint32_t attributes) noexcept {
    const std::uint32_t bits = attributes & kStoredBits;
    if (bits == kDefaultAttributes) {
        fremovexattr(descriptor, kAttributeName);
        return;
    }
    char text[16];
    const auto [end, error] = std::to_chars(text, text + sizeof text, bits, 16);
    fsetxattr(descriptor, kAttributeName, text, static_cast<std::size_t>(end - text), 0);
}

std::uint32_t AttributeWord(const struct stat& status, std::uint32_t stored) noexcept {
    std::uint32_t word = stored;
    if (S_ISDIR(status.st_mode)) return kFileFolder | (stored & (kFileHidden | kFileSystem));
    if (IsReadOnly(status)) word |= kFileReadOnly;
    return word == 0 ? std::uint32_t{kFileNormal} : word;
}

Times TimesOf(const struct stat& status, const timespec& birth) noexcept {
    return {FileTime(birth), FileTime(status.st_atim), FileTime(status.st_mtim)};
}

bool Inspect(int folder, const char* path, struct stat* status, timespec* birth) noexcept {
    struct statx found;
    const int flags = *path == 0 ? AT_EMPTY_PATH : 0;
    if (statx(folder, path, flags, STATX_BASIC_STATS | STATX_BTIME, &found) != 0) return false;
    const auto time = [](const struct statx_timestamp& stamp) {
        return timespec{static_cast<time_t>(stamp.tv_sec), static_cast<long>(stamp.tv_nsec)};
    };
    *status = {};
    status->st_dev = makedev(found.stx_dev_major, found.stx_dev_minor);
    status->st_ino = found.stx_ino;
    status->st_mode = found.stx_mode;
    status->st_nlink = found.stx_nlink;
    status->st_size = static_cast<off_t>(found.stx_size);
    status->st_atim = time(found.stx_atime);
    status->st_mtim = time(found.stx_mtime);
    status->st_ctim = time(found.stx_ctime);
    *birth = (found.stx_mask & STATX_BTIME) != 0 ? time(found.stx_btime) : status->st_ctim;
    return true;
}

std::uint32_t AttributesOf(int folder, const char* path, const struct stat& status) noexcept {
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) return AttributeWord(status, 0);
    char full[kMaxNativePath];
    const char* named = path;
    if (folder != AT_FDCWD) {
        std::snprintf(full, sizeof full, "/proc/self/fd/%d/%s", folder, path);
        named = full;
    }
    char text[16];
    const ssize_t length = getxattr(named, kAttributeName, text, sizeof text);
    return AttributeWord(status, ParseStored(text, length));
}

}  // namespace posix

std::uint32_t QueryAttributes(const char16_t* given) noexcept {
    const posix::NativeName name(given);
    if (!name.ok() || posix::Strikes(FileCall::kAttributes)) return kInvalidAttributes;
    struct stat status;
    if (stat(name.c_str(), &status) != 0) {
        name.Fail(errno);
        return kInvalidAttributes;
    }
    return posix::AttributesOf(AT_FDCWD, name.c_str(), status);
}

bool SetAttributes(const char16_t* given, std::uint32_t attributes) noexcept {
    const posix::NativeName name(given);
    if (!name.ok() || posix::Strikes(FileCall::kAttributes)) return false;
    const int descriptor = posix::Retry(
        [&] { return open(name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY); });
    if (descriptor < 0) return name.Fail(errno);
    const bool done = posix::Apply(descriptor, attributes);
    close(descriptor);
    return done;
}

int QueryStatus(const char16_t* given, FileStatus* status) noexcept {
    *status = {};
    const std::uint32_t error_before = LastError();
    const posix::NativeName name(given);
    if (!name.ok() || posix::Strikes(FileCall::kStatus)) {
        const bool denied = LastError() == kErrorAccessDenied;
        SetLastError(error_before);
        return denied ? 13 : 2;
    }
    struct stat found;
    timespec birth;
    if (!posix::Inspect(AT_FDCWD, name.c_str(), &found, &birth)) {
        return posix::RuntimeFromErrno(errno);
    }
    *status = {
        .mode = posix::ModeOf(found.st_mode),
        .links = static_cast<std::uint32_t>(found.st_nlink),
        .device = static_cast<std::uint32_t>(found.st_dev),
        .index = found.st_ino,
        .size = static_cast<std::uint64_t>(found.st_size),
        .access = found.st_atim.tv_sec,
        .modification = found.st_mtim.tv_sec,
        .creation = birth.tv_sec,
    };
    return 0;
}

bool Exists(const char16_t* name) noexcept {
    FileStatus status;
    return QueryStatus(name, &status) == 0;
}

}  // namespace zelkor::platform
