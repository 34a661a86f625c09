// Removing, renaming and copying files by name.
#include <fcntl.h>
#include <linux/fs.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <optional>
#include <utility>

#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Posix/Internal/Errno.h"
#include "Foundation/Platform/Posix/Internal/FileFaults.h"
#include "Foundation/Platform/Posix/Internal/FileInternals.h"
#include "Foundation/Platform/Posix/Internal/ShareLocks.h"

namespace zelkor::platform {

namespace posix {

namespace {

// A descriptor that is closed at the end of its scope.
class Descriptor {
public:
    explicit Descriptor(int value) noexcept : value_(value) {}
    ~Descriptor() {
        if (value_ >= 0) close(value_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    [[nodiscard]] int get() const noexcept { return value_; }
    // Closes now; false when the last data could not be stored.
    bool Close() noexcept {
        const int value = value_;
        value_ = -1;
        return close(value) == 0 || errno == EINTR;
    }

private:
    int value_;
};

int OpenToAsk(const char* path) {
    return Retry([path] { return open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY); });
}

// Leaves the removal to a handle of this process that shares it, so that the name stays taken.
bool LeaveToHandle(const NativeName& name, const FileIdentity& identity) {
    const auto is_file = [&](const Object& file) {
        return file.regular && file.identity == identity;
    };
    if (FindFile(is_file) == nullptr) return false;
    char* path = AbsolutePath(name.c_str());
    if (path == nullptr) return false;
    const Object* taker = FindFile([&](Object& file) {
        if (!is_file(file)) return false;
        file.delete_on_close = true;
        file.delete_pending = true;
        if (file.path == nullptr) std::swap(file.path, path);
        return true;
    });
    Free(path);
    return taker != nullptr;
}

bool RemoveNative(const NativeName& name) {
    struct stat status;
    if (lstat(name.c_str(), &status) != 0) return name.Fail(errno);
    if (S_ISDIR(status.st_mode)) return Fail(kErrorAccessDenied);
    if (S_ISREG(status.st_mode)) {
        if (IsReadOnly(status)) return Fail(kErrorAccessDenied);
        const Descriptor descriptor(OpenToAsk(name.c_str()));
        if (descriptor.get() >= 0) {
            const Gate gate(descriptor.get());
            if (IsMarked(descriptor.get(), kDeniesDelete)) return Fail(kErrorSharingViolation);
            if (LeaveToHandle(name, IdentityOf(status))) return true;
            return unlink(name.c_str()) == 0 || name.Fail(errno);
        }
    }
    return unlink(name.c_str()) == 0 || name.Fail(errno);
}

// 0, or why the target may not be replaced. `descriptor` is open on it, if it can be opened.
std::uint32_t TargetRefusal(const NativeName& to, int descriptor, bool replace) {
    struct stat status;
    if (lstat(to.c_str(), &status) != 0) return to.MayBeCreated() ? 0u : kErrorInvalidName;
    if (!replace) return kErrorAlreadyExists;
    if (S_ISDIR(status.st_mode)) return kErrorAccessDenied;
    if (!S_ISREG(status.st_mode)) return 0;
    if (IsReadOnly(status)) return kErrorAccessDenied;
    const bool in_use = descriptor >= 0 && IsMarked(descriptor, kDeniesDelete);
    return in_use ? kErrorAccessDenied : 0u;
}

// Renames in one step; where the file system cannot refuse a taken target, by a second name.
int RenameInOneStep(const char* from, const char* to, bool replace) {
    if (replace) return rename(from, to);
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return -1;
    if (link(from, to) == 0) return unlink(from);
    if (errno != EPERM && errno != EOPNOTSUPP) return -1;
    struct stat status;
    if (lstat(to, &status) != 0) return rename(from, to);
    errno = EEXIST;
    return -1;
}

bool CopyBySystem(int from, int to, bool* copied) {
    *copied = false;
    for (;;) {
        constexpr std::size_t kPart = std::size_t{1} << 30;
        const ssize_t moved =
            Retry([=] { return copy_file_range(from, nullptr, to, nullptr, kPart, 0); });
        if (moved == 0) return true;
        if (moved < 0) {
            const bool unsuited = errno == EXDEV || errno == EINVAL || errno == ENOSYS ||
                                  errno == EOPNOTSUPP || errno == EBADF;
            return unsuited && !*copied;
        }
        *copied = true;
    }
}

bool CopyByHand(int from, int to) {
    std::array<char, 65536> block;
    for (;;) {
        const ssize_t got = Retry([&] { return read(from, block.data(), block.size()); });
        if (got <= 0) return got == 0;
        for (ssize_t stored = 0; stored < got;) {
            const auto rest = static_cast<std::size_t>(got - stored);
            const ssize_t moved = Retry([&] { return write(to, block.data() + stored, rest); });
            if (moved < 0) return false;
            stored += moved;
        }
    }
}

// Content, attributes and time of last change, from one open file to another; false with errno.
bool CopyContent(int from, int to) {
    struct stat status;
    bool copied = false;
    if (fstat(from, &status) != 0 || !CopyBySystem(from, to, &copied)) return false;
    // Special files may look empty to the system's own copying.
    if (!copied && !CopyByHand(from, to)) return false;
    StoreAttributes(to, StoredAttributes(from));
    const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, status.st_mtim};
    if (futimens(to, times) != 0) return false;
    return !IsReadOnly(status) || fchmod(to, status.st_mode & 0777u) == 0;
}

// A new file under a passing name beside the target, whose name it takes in one step once it is
// complete; until then the target is as it was.
class PassingFile {
public:
    explicit PassingFile(const NativeName& target) : target_(target), file_(Make(target)) {}
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;
    ~PassingFile() {
        if (file_.get() >= 0) unlink(name_);
    }
    [[nodiscard]] int get() const { return file_.get(); }

    // A full copy of the source with these permissions; false with errno.
    bool TakeContent(int source, mode_t permissions) {
        return CopyContent(source, get()) && fchmod(get(), permissions & 07777u) == 0;
    }
    // Takes the target's name; false with the last error set.
    bool Arrive(bool replace) {
        const bool done =
            fsync(get()) == 0 && RenameInOneStep(name_, target_.c_str(), replace) == 0;
        if (done) file_.Close();
        return done || target_.Fail(errno);
    }

private:
    int Make(const NativeName& target) {
        std::snprintf(name_, sizeof name_, "%s.XXXXXX", target.c_str());
        return mkostemp(name_, O_CLOEXEC);
    }

    char name_[kMaxNativePath + 16];
    const NativeName& target_;
    Descriptor file_;
};

// A move to another file system; the source goes last.
bool MoveByCopy(const NativeName& from, const NativeName& to, bool replace) {
    const Descriptor source(OpenToAsk(from.c_str()));
    struct stat status;
    if (source.get() < 0 || fstat(source.get(), &status) != 0) return from.Fail(errno);
    if (!S_ISREG(status.st_mode)) return Fail(kErrorNotSameDevice);
    PassingFile file(to);
    if (file.get() < 0 || !file.TakeContent(source.get(), status.st_mode)) return to.Fail(errno);
    if (!file.Arrive(replace)) return false;
    return unlink(from.c_str()) == 0 || from.Fail(errno);
}

bool RenameNative(const NativeName& from, const NativeName& to, bool replace, bool copy) {
    struct stat status;
    if (lstat(from.c_str(), &status) != 0) return from.Fail(errno);
    if (from.view() == to.view()) return true;
    const Descriptor descriptor(S_ISREG(status.st_mode) ? OpenToAsk(from.c_str()) : -1);
    const bool asked = descriptor.get() >= 0;
    if (asked && IsMarked(descriptor.get(), kDeniesDelete)) return Fail(kErrorSharingViolation);
    // The gate keeps others from opening the old target while the new one takes its name: they
    // would write into a file that nobody finds again.
    const Descriptor target(replace ? OpenToAsk(to.c_str()) : -1);
    std::optional<Gate> gate;
    if (target.get() >= 0) gate.emplace(target.get());
    const std::uint32_t refusal = TargetRefusal(to, target.get(), replace);
    if (refusal != 0) return Fail(refusal);
    if (RenameInOneStep(from.c_str(), to.c_str(), replace) == 0) return true;
    if (errno == EXDEV && copy) return MoveByCopy(from, to, replace);
    // The source is there: what is missing is the target's folder.
    if (errno == ENOENT || errno == ENOTDIR) return Fail(kErrorPathNotFound);
    return FailWithErrno();
}

constexpr std::uint32_t kShareAll = kShareRead | kShareWrite | kShareDelete;

// Whether a new file can take the place of an existing target without anybody noticing more than
// its new content: it has one name and no view, its owner and access lists can be kept.
bool MayBeSupplanted(const Object& target, const Object& source, const struct stat& status) {
    char lists[256];
    const std::uint32_t hidden = kFileHidden | kFileSystem;
    return status.st_nlink == 1 && !MappingForbidsSize(target, 0) &&
           fgetxattr(target.descriptor, "system.posix_acl_access", lists, sizeof lists) < 0 &&
           (errno == ENODATA || errno == EOPNOTSUPP) &&
           (StoredAttributes(target.descriptor) & ~StoredAttributes(source.descriptor) & hidden) ==
               0;
}

// Copies onto an existing file that nobody else has open, so that a failure leaves it as it was.
// No value: it must be written in place.
std::optional<bool> CopyOver(const Object& source, const char16_t* to, const NativeName& name) {
    struct stat status;
    if (lstat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
    if (IdentityOf(status) == source.identity) return {};
    const HANDLE handle = Open(to, {kAccessWrite, kShareNone, kOpenExisting, 0});
    if (handle == INVALID_HANDLE_VALUE) return {};
    Object* target = Find(handle, Kind::kFile);
    std::optional<bool> done;
    if (MayBeSupplanted(*target, source, status)) {
        PassingFile file(name);
        if (file.get() >= 0 && fchown(file.get(), status.st_uid, status.st_gid) == 0) {
            struct stat given;
            fstat(source.descriptor, &given);
            const mode_t permissions = IsReadOnly(given) ? given.st_mode : status.st_mode;
            done = file.TakeContent(source.descriptor, permissions) ? file.Arrive(true)
                                                                    : FailWithErrno();
        }
    }
    const std::uint32_t error = LastError();
    CloseFile(target);
    SetLastError(error);
    return done;
}

// The target's handle, or INVALID_HANDLE_VALUE with the last error set.
HANDLE OpenCopyTarget(const Object& source, const char16_t* to, bool replace) {
    struct stat status, target;
    const NativeName name(to);
    if (!name.ok()) return INVALID_HANDLE_VALUE;
    if (fstat(source.descriptor, &status) != 0) {
        FailWithErrno();
        return INVALID_HANDLE_VALUE;
    }
    const bool exists = replace && stat(name.c_str(), &target) == 0;
    if (exists && IdentityOf(target) == source.identity) {
        SetLastError(kErrorSharingViolation);
        return INVALID_HANDLE_VALUE;
    }
    return Open(to, {.access = kAccessWrite,
                     .share = kShareRead | kShareWrite,
                     .disposition = replace ? kCreateAlways : kCreateNew,
                     .flags_and_attributes = StoredAttributes(source.descriptor),
                     .mode = (status.st_mode & 0777u) | S_IRUSR | S_IWUSR});
}

bool CopyToTarget(const Object& source, HANDLE handle, const NativeName& name) {
    Object* target = Find(handle, Kind::kFile);
    bool done = CopyContent(source.descriptor, target->descriptor) || FailWithErrno();
    const std::uint32_t error = LastError();
    const bool closed = CloseFile(target);
    if (done && closed) return true;
    unlink(name.c_str());
    return Fail(done ? LastError() : error);
}

bool CopyNative(const char16_t* from, const char16_t* to, bool replace) {
    const std::uint32_t error_before = LastError();
    const HANDLE source = Open(from, {kAccessRead, kShareAll, kOpenExisting, 0});
    if (source == INVALID_HANDLE_VALUE) return false;
    Object* file = Find(source, Kind::kFile);
    const NativeName name(to);
    std::optional<bool> over;
    if (replace && name.ok()) over = CopyOver(*file, to, name);
    bool done = over.value_or(false);
    if (!over.has_value()) {
        const HANDLE target = OpenCopyTarget(*file, to, replace);
        done = target != INVALID_HANDLE_VALUE && CopyToTarget(*file, target, name);
    }
    const std::uint32_t error = LastError();
    CloseFile(file);
    SetLastError(done ? error_before : error);
    return done;
}

}  // namespace

}  // namespace posix

bool RemoveFile(const char16_t* given) noexcept {
    const posix::NativeName name(given);
    return name.ok() && !posix::Strikes(FileCall::kRemove) && posix::RemoveNative(name);
}

bool RenameFile(const char16_t* given_from, const char16_t* given_to, bool replace,
                bool copy) noexcept {
    const posix::NativeName from(given_from);
    if (!from.ok()) return false;
    const posix::NativeName to(given_to);
    if (!to.ok() || posix::Strikes(FileCall::kRename)) return false;
    return posix::RenameNative(from, to, replace, copy);
}

bool DuplicateFile(const char16_t* from, const char16_t* to, bool replace) noexcept {
    return !posix::Strikes(FileCall::kCopy) && posix::CopyNative(from, to, replace);
}

}  // namespace zelkor::platform
