// Closing a file's handle, and removing a file that its last handle was to take along.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <string_view>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Posix/Internal/Errno.h"
#include "Foundation/Platform/Posix/Internal/FileInternals.h"
#include "Foundation/Platform/Posix/Internal/ShareLocks.h"

namespace zelkor::platform::posix {

namespace {

// The memory manager's handler may throw; here exhausted memory is error 8.
char* AllocateText(std::size_t size) noexcept {
    try {
        return static_cast<char*>(Allocate(size));
    } catch (...) {
        return nullptr;
    }
}

void ReleaseRanges(Object* file) {
    while (file->ranges != nullptr) {
        LockedRange* range = file->ranges;
        file->ranges = range->next;
        if (std::atomic<std::uint32_t>* count = LockCount(file->identity)) {
            count->fetch_sub(1, std::memory_order_relaxed);
        }
        Free(range);
    }
}

// A mapping made through the handle, or a forked child, keeps the description, and with it what is
// marked there.
void ReleaseMarks(const Object& file, bool had_ranges) {
    if (!file.regular) return;
    Unmark(file.descriptor);
    if (had_ranges) UnlockRange(file.descriptor, 0, kLockableEnd);
}

// Hands path and task over to another open handle of the file.
bool HandOver(Object* from) noexcept {
    Object* heir = FindFile([from](Object& file) {
        if (&file == from || file.identity != from->identity) return false;
        file.delete_on_close = true;
        file.delete_pending = true;
        if (file.path == nullptr) std::swap(file.path, from->path);
        return true;
    });
    return heir != nullptr;
}

void Remove(const char* path, const FileIdentity& identity) noexcept {
    struct stat status;
    if (lstat(path, &status) == 0 && IdentityOf(status) == identity) unlink(path);
}

}  // namespace

char* AbsolutePath(const char* path) noexcept {
    char folder[kMaxNativePath] = "";
    if (*path != '/' && getcwd(folder, sizeof folder) == nullptr) {
        FailWithErrno();
        return nullptr;
    }
    const std::size_t folder_length = std::strlen(folder);
    const std::size_t path_length = std::strlen(path);
    char* kept = AllocateText(folder_length + path_length + 2);
    if (kept == nullptr) {
        SetLastError(kErrorNotEnoughMemory);
        return nullptr;
    }
    std::memcpy(kept, folder, folder_length);
    kept[folder_length] = '/';
    std::memcpy(kept + folder_length + 1, path, path_length + 1);
    return kept;
}

bool CloseFile(Object* file) noexcept {
    // From here on nobody finds the file among the open ones: its marks are about to vanish.
    const std::uintptr_t handle = Retire(file);
    int result = 0;
    if (!file->broken) {
        // What was marked, locked or to be deleted is its owner's, not a forked child's.
        if (file->owner == getpid()) {
            const bool had_ranges = file->ranges != nullptr;
            ReleaseRanges(file);
            ReleaseMarks(*file, had_ranges);
        } else {
            file->delete_on_close = false;
        }
        result = close(file->descriptor);
    }
    if (result != 0 && errno != EINTR) {
        // The descriptor is gone all the same. The handle stays for one more closing.
        file->broken = true;
        file->readable = file->writable = false;
        file->descriptor = -1;
        const int error = errno;
        Revive(file, handle);
        return FailWithErrno(error);
    }
    if (file->delete_on_close && !HandOver(file)) Remove(file->path, file->identity);
    Free(file->path);
    file->path = nullptr;
    Release(file);
    return true;
}

}  // namespace zelkor::platform::posix
