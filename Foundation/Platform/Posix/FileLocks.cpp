// Byte-range locks of handles: between handles by the system, within one by its list.
#include <new>

#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Posix/Internal/Errno.h"
#include "Foundation/Platform/Posix/Internal/FileFaults.h"
#include "Foundation/Platform/Posix/Internal/Handles.h"
#include "Foundation/Platform/Posix/Internal/ShareLocks.h"

namespace zelkor::platform {

namespace {

using posix::Fail;
using posix::LockedRange;
using posix::Object;

bool IsInside(std::uint64_t offset, std::uint64_t length) {
    return offset <= posix::kLockableEnd && length <= posix::kLockableEnd - offset;
}

bool Overlaps(const LockedRange* ranges, std::uint64_t offset, std::uint64_t length) {
    for (; ranges != nullptr; ranges = ranges->next) {
        const bool apart =
            ranges->offset + ranges->length <= offset || offset + length <= ranges->offset;
        if (!apart && length != 0 && ranges->length != 0) return true;
    }
    return false;
}

LockedRange* NewRange(std::uint64_t offset, std::uint64_t length, LockedRange* next) noexcept {
    try {
        void* memory = Allocate(sizeof(LockedRange));
        return memory == nullptr ? nullptr : new (memory) LockedRange{offset, length, next};
    } catch (...) {
        return nullptr;  // the memory manager's handler threw
    }
}

// Counts a lock in or out, so that transfers through other handles look for it.
void Count(const Object& file, bool in) {
    std::atomic<std::uint32_t>* count = posix::LockCount(file.identity);
    if (count == nullptr) return;
    if (in) {
        count->fetch_add(1, std::memory_order_seq_cst);
    } else {
        count->fetch_sub(1, std::memory_order_seq_cst);
    }
}

bool TakeRange(const Object& file, std::uint64_t offset, std::uint64_t length) {
    // Nothing to hold, or nobody to hold it against.
    if (length == 0 || !file.regular) return true;
    const posix::Gate gate(file.descriptor);
    return posix::LockRange(file.descriptor, file.readable, offset, length);
}

}  // namespace

bool LockFile(HANDLE handle, std::uint64_t offset, std::uint64_t length) noexcept {
    Object* file = posix::Find(handle, posix::Kind::kFile);
    if (file == nullptr || posix::Strikes(FileCall::kLock)) return false;
    if (!file->readable && !file->writable) return Fail(kErrorAccessDenied);
    if (!IsInside(offset, length)) return Fail(kErrorInvalidParameter);
    if (Overlaps(file->ranges, offset, length)) return Fail(kErrorLockViolation);
    LockedRange* range = NewRange(offset, length, file->ranges);
    if (range == nullptr) return Fail(kErrorNotEnoughMemory);
    Count(*file, true);
    if (!TakeRange(*file, offset, length)) {
        Count(*file, false);
        Free(range);
        return Fail(kErrorLockViolation);
    }
    file->ranges = range;
    return true;
}

bool UnlockFile(HANDLE handle, std::uint64_t offset, std::uint64_t length) noexcept {
    Object* file = posix::Find(handle, posix::Kind::kFile);
    if (file == nullptr || posix::Strikes(FileCall::kUnlock)) return false;
    for (LockedRange** link = &file->ranges; *link != nullptr; link = &(*link)->next) {
        LockedRange* range = *link;
        if (range->offset != offset || range->length != length) continue;
        *link = range->next;
        if (length != 0) posix::UnlockRange(file->descriptor, offset, length);
        Count(*file, false);
        Free(range);
        return true;
    }
    return Fail(kErrorNotLocked);
}

}  // namespace zelkor::platform
