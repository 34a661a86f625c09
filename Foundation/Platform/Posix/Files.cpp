#include "Foundation/Platform/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Posix/Internal/Errno.h"
#include "Foundation/Platform/Posix/Internal/FileFaults.h"
#include "Foundation/Platform/Posix/Internal/FileInternals.h"
#include "Foundation/Platform/Posix/Internal/ShareLocks.h"

namespace zelkor::platform {

namespace posix {

namespace {

constexpr std::uint32_t kGenericAll = 0x10000000;
constexpr int kAttempts = 100;  // at a file that others remove and make again all the time

// A request with everything that follows from it.
struct Plan {
    OpenRequest request;
    bool read = false, write = false, remove = false;  // access
    bool truncates = false;
    unsigned marks = 0, conflicts = 0;
};

Plan PlanOf(const OpenRequest& request) {
    Plan plan{request};
    const bool all = (request.access & kGenericAll) != 0;
    plan.read = all || (request.access & kAccessRead) != 0;
    plan.write = all || (request.access & kAccessWrite) != 0;
    plan.remove = all || (request.access & kAccessDelete) != 0 ||
                  (request.flags_and_attributes & kFlagDeleteOnClose) != 0;
    plan.truncates =
        request.disposition == kCreateAlways || request.disposition == kTruncateExisting;
    const auto when = [](bool condition, unsigned mark) { return condition ? mark : 0u; };
    plan.conflicts = when(plan.read, kDeniesRead) |
                     when(plan.write || plan.truncates, kDeniesWrite) |
                     when(plan.remove, kDeniesDelete);
    if (plan.read || plan.write || plan.remove) {
        const unsigned denied = ~request.share & 7u;
        plan.marks = when(plan.read, kReads) | when(plan.write, kWrites) |
                     when(plan.remove, kDeletes) | when(denied & kShareRead, kDeniesRead) |
                     when(denied & kShareWrite, kDeniesWrite) |
                     when(denied & kShareDelete, kDeniesDelete);
        plan.conflicts |= when(denied & kShareRead, kReads) | when(denied & kShareWrite, kWrites) |
                          when(denied & kShareDelete, kDeletes);
    }
    return plan;
}

// What one attempt came to. kAgain: the name meant another file meanwhile.
enum class Outcome { kOpened, kFailed, kAgain };

int OpenDescriptor(const char* path, const Plan& plan, const struct stat& status) {
    const bool direct = (plan.request.flags_and_attributes & kFlagWriteThrough) != 0;
    const int common = O_CLOEXEC | O_NOCTTY | (direct ? O_DSYNC : 0);
    const auto attempt = [path, common](int mode) {
        return Retry([=] { return open(path, mode | common); });
    };
    if (!plan.write && !plan.truncates) return attempt(O_RDONLY);
    // A pipe opened for both would never see its other end go.
    if (!S_ISREG(status.st_mode)) return attempt(plan.read ? O_RDWR : O_WRONLY);
    // Marks of share modes are set through a readable descriptor.
    const int descriptor = attempt(O_RDWR);
    if (descriptor >= 0 || errno != EACCES || plan.read) return descriptor;
    return attempt(O_WRONLY);
}

// 0, or the error of opening what exists under the name before it is touched.
std::uint32_t Refusal(const NativeName& name, const Plan& plan, const struct stat& status) {
    const std::uint32_t disposition = plan.request.disposition;
    if (disposition == kCreateNew) return kErrorFileExists;
    if (S_ISDIR(status.st_mode)) {
        if ((plan.request.flags_and_attributes & kFlagFolders) == 0) return kErrorAccessDenied;
        return plan.truncates ? kErrorFileExists : 0;
    }
    if (name.EndsInSeparator()) return kErrorInvalidName;
    const bool changes = plan.write || plan.truncates || plan.remove;
    if (changes && S_ISREG(status.st_mode) && IsReadOnly(status)) return kErrorAccessDenied;
    return 0;
}

// A hidden or system file is made anew only by those who know that it is one.
bool HidesFrom(int descriptor, const Plan& plan) {
    if (plan.request.disposition != kCreateAlways) return false;
    const std::uint32_t stored = StoredAttributes(descriptor) & (kFileHidden | kFileSystem);
    return (stored & ~plan.request.flags_and_attributes) != 0;
}

bool IsDeletePending(const FileIdentity& identity) {
    return FindFile([&](const Object& file) {
               return file.delete_pending && file.identity == identity;
           }) != nullptr;
}

Outcome Failed(std::uint32_t error) {
    SetLastError(error);
    return Outcome::kFailed;
}

Outcome FailedWithErrno(const NativeName& name) {
    name.Fail(errno);
    return Outcome::kFailed;
}

// Share modes, deletion under way, and cutting the file: behind the gate.
Outcome Claim(Object* file, const Plan& plan, struct stat* status) {
    const Gate gate(file->descriptor);
    if (fstat(file->descriptor, status) != 0) return Failed(Win32FromErrno(errno));
    if (status->st_nlink == 0) return Outcome::kAgain;
    if (IsDeletePending(file->identity) || HidesFrom(file->descriptor, plan)) {
        return Failed(kErrorAccessDenied);
    }
    if (!Mark(file->descriptor, plan.marks, plan.conflicts)) return Failed(kErrorSharingViolation);
    if (!plan.truncates || status->st_size == 0) return Outcome::kOpened;
    if (MappingForbidsSize(*file, 0)) return Failed(kErrorUserMappedFile);
    if (Retry([&] { return ftruncate(file->descriptor, 0); }) != 0) {
        return Failed(Win32FromErrno(errno));
    }
    return Outcome::kOpened;
}

void Advise(const Object& file, std::uint32_t flags) {
    if ((flags & kFlagSequentialScan) != 0) {
        posix_fadvise(file.descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    } else if ((flags & kFlagRandomAccess) != 0) {
        posix_fadvise(file.descriptor, 0, 0, POSIX_FADV_RANDOM);
    }
}

// Fills the object from an open descriptor and claims the file.
Outcome Settle(Object* file, const NativeName& name, const Plan& plan) {
    struct stat status;
    if (fstat(file->descriptor, &status) != 0) return Failed(Win32FromErrno(errno));
    const OpenRequest& request = plan.request;
    file->readable = plan.read;
    file->writable = plan.write;
    file->regular = S_ISREG(status.st_mode);
    file->overlapped = (request.flags_and_attributes & kFlagOverlapped) != 0;
    file->shares_delete = (request.share & kShareDelete) != 0;
    file->identity = IdentityOf(status);
    if (!file->regular) return Outcome::kOpened;
    const Outcome outcome = Claim(file, plan, &status);
    if (outcome != Outcome::kOpened) return outcome;
    if ((request.flags_and_attributes & kFlagDeleteOnClose) != 0) {
        file->path = AbsolutePath(name.c_str());
        if (file->path == nullptr) return Outcome::kFailed;
        file->delete_on_close = true;
    }
    const bool others = (request.share & (kShareRead | kShareWrite)) != 0;
    if (others && (plan.read || plan.write)) {
        static constinit const std::atomic<std::uint32_t> unknown{1};
        const std::atomic<std::uint32_t>* count = LockCount(file->identity);
        file->locks = count == nullptr ? &unknown : count;
    }
    Advise(*file, request.flags_and_attributes);
    return Outcome::kOpened;
}

Outcome OpenExisting(Object* file, const NativeName& name, const Plan& plan,
                     const struct stat& status) {
    const std::uint32_t refusal = Refusal(name, plan, status);
    if (refusal != 0) return Failed(refusal);
    if (S_ISDIR(status.st_mode)) {
        file->descriptor =
            Retry([&] { return open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    } else {
        file->descriptor = OpenDescriptor(name.c_str(), plan, status);
    }
    if (file->descriptor < 0 && errno == ENOENT) return Outcome::kAgain;
    if (file->descriptor < 0) return FailedWithErrno(name);
    return Settle(file, name, plan);
}

// Whether the name is a link to something that does not exist: its target is what is created.
bool LeadsNowhere(const NativeName& name) {
    struct stat status;
    const bool link = lstat(name.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    const bool nowhere = link && stat(name.c_str(), &status) != 0;
    errno = EEXIST;
    return nowhere;
}

Outcome Create(Object* file, const NativeName& name, const Plan& plan) {
    if (plan.request.disposition == kOpenExisting ||
        plan.request.disposition == kTruncateExisting) {
        return FailedWithErrno(name);
    }
    if (!name.MayBeCreated() || name.EndsInSeparator()) {
        const std::uint32_t missing = name.MissingError();
        return Failed(missing == kErrorPathNotFound ? missing : kErrorInvalidName);
    }
    const std::uint32_t attributes = plan.request.flags_and_attributes;
    const bool direct = (attributes & kFlagWriteThrough) != 0;
    const mode_t mode = plan.request.mode & ((attributes & kFileReadOnly) != 0 ? 0444u : 07777u);
    const int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY | (direct ? O_DSYNC : 0);
    file->descriptor = Retry([&] { return open(name.c_str(), flags, mode); });
    if (file->descriptor < 0 && errno == EEXIST && LeadsNowhere(name)) {
        if (plan.request.disposition == kCreateNew) return Failed(kErrorFileExists);
        file->descriptor = Retry([&] { return open(name.c_str(), flags & ~O_EXCL, mode); });
    }
    if (file->descriptor < 0 && errno == EEXIST) return Outcome::kAgain;
    if (file->descriptor < 0) return FailedWithErrno(name);
    StoreAttributes(file->descriptor, attributes | kFileArchive);
    return Settle(file, name, plan);
}

// A name with a separator behind it that is no folder.
std::uint32_t SeparatorError(NativeName name, const Plan& plan) {
    name.DropSeparators();
    struct stat status;
    const bool exists = stat(name.c_str(), &status) == 0;
    if (!exists && name.MissingError() == kErrorPathNotFound) return kErrorPathNotFound;
    const bool taken = exists && plan.request.disposition == kCreateNew;
    return taken ? kErrorFileExists : kErrorInvalidName;
}

Outcome Attempt(Object* file, const NativeName& name, const Plan& plan) {
    struct stat status;
    if (stat(name.c_str(), &status) == 0) {
        const Outcome outcome = OpenExisting(file, name, plan, status);
        if (outcome == Outcome::kOpened) {
            const bool created = plan.request.disposition == kCreateAlways ||
                                 plan.request.disposition == kOpenAlways;
            SetLastError(created ? kErrorAlreadyExists : kErrorSuccess);
        }
        return outcome;
    }
    if (name.EndsInSeparator() && (errno == ENOENT || errno == ENOTDIR)) {
        return Failed(SeparatorError(name, plan));
    }
    if (errno != ENOENT) return FailedWithErrno(name);
    const Outcome outcome = Create(file, name, plan);
    if (outcome == Outcome::kOpened) SetLastError(kErrorSuccess);
    return outcome;
}

// Undoes an attempt that did not end in an open file.
void Undo(Object* file) {
    if (file->descriptor >= 0) close(file->descriptor);
    file->descriptor = -1;
}

}  // namespace

HANDLE Open(const char16_t* given, const OpenRequest& request) noexcept {
    const NativeName name(given);
    if (!name.ok()) return INVALID_HANDLE_VALUE;
    if (request.disposition < kCreateNew || request.disposition > kTruncateExisting) {
        SetLastError(kErrorInvalidParameter);
        return INVALID_HANDLE_VALUE;
    }
    const Plan plan = PlanOf(request);
    Object* file = NewObject(Kind::kFile);
    if (file == nullptr) return INVALID_HANDLE_VALUE;
    Outcome outcome = Outcome::kAgain;
    for (int attempt = 0; attempt < kAttempts && outcome == Outcome::kAgain; ++attempt) {
        outcome = Attempt(file, name, plan);
        if (outcome != Outcome::kOpened) Undo(file);
    }
    if (outcome == Outcome::kOpened) return Publish(file);
    // Never settled.
    if (outcome == Outcome::kAgain) SetLastError(kErrorFileNotFound);
    Release(file);
    return INVALID_HANDLE_VALUE;
}

}  // namespace posix

HANDLE OpenFile(const char16_t* name, std::uint32_t access, std::uint32_t share,
                std::uint32_t disposition, std::uint32_t flags_and_attributes) noexcept {
    if (posix::Strikes(FileCall::kOpen)) return INVALID_HANDLE_VALUE;
    return posix::Open(name, {access, share, disposition, flags_and_attributes});
}

bool CloseHandle(HANDLE handle) noexcept {
    posix::Object* object = posix::FindAny(handle);
    if (object == nullptr || posix::Strikes(FileCall::kClose)) return false;
    switch (object->kind) {
        case posix::Kind::kFile:
            return posix::CloseFile(object);
        case posix::Kind::kMapping:
            return posix::CloseMapping(object);
        case posix::Kind::kThread:
            posix::Release(object);
            return true;
        default:
            return posix::Fail(kErrorInvalidHandle);
    }
}

}  // namespace zelkor::platform
