// The handles of files, mappings, searches and threads: numbers that stay invalid once closed, so
// that a handle used too late answers 6 and never reaches another object.
//
// Objects live in blocks that are never given back, found by the index in the handle's low bits;
// the bits above count how often the place was used.
// Threads: looking up takes no lock. Opening and closing, and the walk over all, take one.
#ifndef FOUNDATION_PLATFORM_POSIX_INTERNAL_HANDLES_H
#define FOUNDATION_PLATFORM_POSIX_INTERNAL_HANDLES_H

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <mutex>

#include "Foundation/Platform/Types.h"

namespace zelkor::platform::posix {

enum class Kind : std::uint8_t { kNone, kFile, kMapping, kSearch, kThread };

struct LockedRange {
    std::uint64_t offset, length;
    LockedRange* next;
};

struct FileIdentity {
    dev_t device = 0;
    ino_t index = 0;
    bool operator==(const FileIdentity&) const = default;
};

// One place. A file uses the first group, a mapping the second (with descriptor and identity), a
// search only its list, a thread only its number.
struct Object {
    std::atomic<std::uintptr_t> handle{0};  // 0: closed, or not yet open
    Kind kind = Kind::kNone;
    std::uint32_t next_free = 0;
    std::uint32_t uses = 0;

    int descriptor = -1;
    bool readable = false;  // what the handle's access allows
    bool writable = false;
    bool regular = false;     // has share modes, locks and positioned transfers
    bool overlapped = false;  // transfers fail
    bool shares_delete = false;
    bool delete_on_close = false;
    bool delete_pending = false;  // removed by name while open: nobody opens it again
    bool broken = false;          // closing failed; only the handle is left
    pid_t owner = 0;              // the process that opened it; a forked child has it too
    FileIdentity identity;
    std::uint64_t position = 0;
    char* path = nullptr;                               // absolute, only for delete_on_close
    const std::atomic<std::uint32_t>* locks = nullptr;  // zero: no range of the file is locked
    LockedRange* ranges = nullptr;                      // of this handle

    std::uint64_t size = 0;
    std::uintptr_t file = 0;       // the handle that a mapping was made through
    std::uint32_t references = 0;  // the handle and the views
    Object* next_mapping = nullptr;

    void* search = nullptr;
    std::uint32_t thread = 0;
};

// A fresh place (null with the last error 4 when there is none), and its handle once it is filled.
[[nodiscard]] Object* NewObject(Kind kind) noexcept;
HANDLE Publish(Object* object) noexcept;

// The object of a handle; null with the last error 6 when it is not open or of another kind.
[[nodiscard]] Object* Find(HANDLE handle, Kind kind) noexcept;
[[nodiscard]] Object* FindAny(HANDLE handle) noexcept;

// Makes the handle invalid and answers it; the place is free again only with Release. Revive undoes
// it.
std::uintptr_t Retire(Object* object) noexcept;
void Revive(Object* object, std::uintptr_t handle) noexcept;
void Release(Object* object) noexcept;

// The first open file that `wanted` accepts, asked under the table's lock; null when none is.
template <typename Wanted>
[[nodiscard]] Object* FindFile(Wanted wanted) noexcept;

// ---- For FindFile -------------------------------------------------------------------------------

extern std::mutex table_lock;
[[nodiscard]] std::uint32_t PlacesInUse() noexcept;
[[nodiscard]] Object* Place(std::uint32_t index) noexcept;

template <typename Wanted>
Object* FindFile(Wanted wanted) noexcept {
    const std::lock_guard guard(table_lock);
    for (std::uint32_t index = 0; index < PlacesInUse(); ++index) {
        Object* object = Place(index);
        const bool open = object->handle.load(std::memory_order_relaxed) != 0;
        if (open && object->kind == Kind::kFile && wanted(*object)) return object;
    }
    return nullptr;
}

}  // namespace zelkor::platform::posix

#endif
