// Mappings of files and the views into them.
//
// A mapping has a descriptor of its own on the file's description, so that it outlives the handle;
// its object lives until the handle and the last view are gone.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <new>

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

struct View {
    void* start;
    std::uint64_t size;
    std::uint64_t room;  // addresses that belong to the view, to grow into
    Object* mapping;
    View* next;
};

// Addresses taken for a view to write, so that it can grow where it is and keeps its pages. They
// cost nothing until the file is as long; where so many cannot be had, the view does not grow.
constexpr std::uint64_t kRoom = sizeof(void*) > 4 ? std::uint64_t{1} << 32 : 0;

constinit std::mutex mappings_lock;
// Guarded by mappings_lock, as every mapping's references are.
constinit Object* mappings = nullptr;
constinit View* views = nullptr;

View* NewView() noexcept {
    try {
        void* memory = Allocate(sizeof(View));
        return memory == nullptr ? nullptr : new (memory) View{};
    } catch (...) {
        return nullptr;  // the memory manager's handler threw
    }
}

bool IsMapped(const FileIdentity& identity, std::uint64_t size) {
    for (const Object* mapping = mappings; mapping != nullptr; mapping = mapping->next_mapping) {
        if (mapping->identity == identity && mapping->size > size) return true;
    }
    return false;
}

// The size of the largest mapping made through a handle.
std::uint64_t MappedThrough(std::uintptr_t file) {
    std::uint64_t size = 0;
    for (const Object* mapping = mappings; mapping != nullptr; mapping = mapping->next_mapping) {
        if (mapping->file == file) size = std::max(size, mapping->size);
    }
    return size;
}

void Unlink(Object* mapping) {
    Object** link = &mappings;
    while (*link != mapping) link = &(*link)->next_mapping;
    *link = mapping->next_mapping;
}

// Drops one reference; the last one ends the mapping. Called with mappings_lock held.
void Drop(Object* mapping) {
    if (--mapping->references != 0) return;
    Unlink(mapping);
    // Another mapping may stand on the same description: its mark stays then. So does the mark of a
    // forked child's parent.
    if (mapping->owner == getpid()) UnmarkMapped(mapping->descriptor, MappedThrough(mapping->file));
    close(mapping->descriptor);
    Release(mapping);
}

// A file that grows by no more than this is filled with zeros: that brings the new pages into
// memory together, four times cheaper on ext4 than having each of them faulted in. A file that
// grows by more may stay untouched for the most part and is only given its room on the disk.
constexpr std::uint64_t kFilledGrowth = std::uint64_t{64} << 20;

int StoreZeros(int descriptor, std::uint64_t from, std::uint64_t to) {
    static const std::array<char, 65536> zeros{};
    constexpr std::size_t kParts = 16;
    std::array<iovec, kParts> parts;
    while (from < to) {
        std::uint64_t rest = to - from;
        std::size_t count = 0;
        for (; count < kParts && rest > 0; ++count) {
            const std::uint64_t length = std::min<std::uint64_t>(rest, zeros.size());
            parts[count] = {const_cast<char*>(zeros.data()), static_cast<std::size_t>(length)};
            rest -= length;
        }
        const ssize_t moved = Retry([&] {
            return pwritev(descriptor, parts.data(), static_cast<int>(count),
                           static_cast<off_t>(from));
        });
        if (moved < 0) return errno;
        from += static_cast<std::uint64_t>(moved);
    }
    return 0;
}

int ReserveOnDisk(int descriptor, std::uint64_t from, std::uint64_t to) {
    const int result = Retry([=] {
        return fallocate(descriptor, 0, static_cast<off_t>(from), static_cast<off_t>(to - from));
    });
    return result == 0 ? 0 : errno;
}

// Room for every byte up to `size`, whether the file is to grow or has holes. What a failed attempt
// added is cut off again.
bool Reserve(int descriptor, const struct stat& status, std::uint64_t size) {
    const auto old_size = static_cast<std::uint64_t>(status.st_size);
    const bool holes = static_cast<std::uint64_t>(status.st_blocks) * 512 < old_size;
    if (size <= old_size && !holes) return true;
    int error = EOPNOTSUPP;
    if (holes || size - old_size > kFilledGrowth) {
        error = ReserveOnDisk(descriptor, holes ? 0 : old_size, std::max(size, old_size));
    }
    // Where the file system reserves nothing, holes of before stay.
    if (error == EOPNOTSUPP) error = StoreZeros(descriptor, old_size, size);
    if (error == 0) return true;
    if (size > old_size) Retry([&] { return ftruncate(descriptor, status.st_size); });
    return FailWithErrno(error);
}

// Checks what CreateMapping was asked for, and extends the file; *size is then the mapping's.
bool Prepare(const Object& file, bool writable, std::uint64_t* size) {
    if (!file.readable || (writable && !file.writable)) return Fail(kErrorAccessDenied);
    struct stat status;
    if (fstat(file.descriptor, &status) != 0) return FailWithErrno();
    const auto file_size = static_cast<std::uint64_t>(status.st_size);
    if (!S_ISREG(status.st_mode)) return Fail(kErrorBadFileType);
    if (*size == 0) *size = file_size;
    if (*size == 0) return Fail(kErrorFileInvalid);
    if (!writable) return *size <= file_size || Fail(kErrorNotEnoughMemory);
    return Reserve(file.descriptor, status, *size);
}

View* FindView(const void* start) {
    for (View* view = views; view != nullptr; view = view->next) {
        if (view->start == start) return view;
    }
    return nullptr;
}

bool Map(View& view, bool writable) {
    const int protection = writable ? PROT_READ | PROT_WRITE : PROT_READ;
    const auto map = [&](std::uint64_t room) {
        view.room = room;
        view.start = mmap(nullptr, room, protection, MAP_SHARED, view.mapping->descriptor, 0);
        return view.start != MAP_FAILED;
    };
    return (writable && view.size < kRoom && map(kRoom)) || map(view.size);
}

}  // namespace

bool IsMappedHere(const FileIdentity& identity, std::uint64_t size) noexcept {
    const std::lock_guard guard(mappings_lock);
    return IsMapped(identity, size);
}

bool MappingForbidsSize(const Object& file, std::uint64_t size) noexcept {
    return file.regular &&
           (IsMappedHere(file.identity, size) || IsMappedBeyond(file.descriptor, size));
}

bool CloseMapping(Object* mapping) noexcept {
    Retire(mapping);
    const std::lock_guard guard(mappings_lock);
    Drop(mapping);
    return true;
}

}  // namespace posix

using posix::Fail;
using posix::FailWithErrno;
using posix::Kind;
using posix::Object;
using posix::View;

HANDLE CreateMapping(HANDLE handle, bool writable, std::uint64_t size) noexcept {
    Object* file = posix::Find(handle, Kind::kFile);
    if (file == nullptr || posix::Strikes(FileCall::kCreateMapping)) return nullptr;
    if (!posix::Prepare(*file, writable, &size)) return nullptr;
    Object* mapping = posix::NewObject(Kind::kMapping);
    if (mapping == nullptr) return nullptr;
    mapping->descriptor = fcntl(file->descriptor, F_DUPFD_CLOEXEC, 0);
    if (mapping->descriptor < 0) {
        FailWithErrno();
        posix::Release(mapping);
        return nullptr;
    }
    mapping->writable = writable;
    mapping->identity = file->identity;
    mapping->file = file->handle.load(std::memory_order_relaxed);
    mapping->size = size;
    mapping->references = 1;
    const std::lock_guard guard(posix::mappings_lock);
    posix::MarkMapped(mapping->descriptor, size);
    mapping->next_mapping = posix::mappings;
    posix::mappings = mapping;
    return posix::Publish(mapping);
}

void* MapView(HANDLE handle, bool writable, std::uint64_t size) noexcept {
    Object* mapping = posix::Find(handle, Kind::kMapping);
    if (mapping == nullptr || posix::Strikes(FileCall::kMapView)) return nullptr;
    if (size == 0) size = mapping->size;
    if (size > mapping->size || (writable && !mapping->writable)) {
        SetLastError(kErrorAccessDenied);
        return nullptr;
    }
    View* view = posix::NewView();
    if (view != nullptr) *view = {nullptr, size, 0, mapping, nullptr};
    if (view == nullptr || !posix::Map(*view, writable)) {
        SetLastError(view == nullptr ? kErrorNotEnoughMemory : posix::Win32FromErrno(errno));
        Free(view);
        return nullptr;
    }
    const std::lock_guard guard(posix::mappings_lock);
    view->next = posix::views;
    posix::views = view;
    ++mapping->references;
    return view->start;
}

bool GrowView(HANDLE handle, void* start, std::uint64_t size) noexcept {
    Object* mapping = posix::Find(handle, Kind::kMapping);
    if (mapping == nullptr || posix::Strikes(FileCall::kGrowView)) return false;
    const std::lock_guard guard(posix::mappings_lock);
    View* view = posix::FindView(start);
    if (view == nullptr || view->mapping != mapping) return Fail(kErrorInvalidAddress);
    if (!mapping->writable || size > view->room) return Fail(kErrorNotEnoughMemory);
    struct stat status;
    if (fstat(mapping->descriptor, &status) != 0) return FailWithErrno();
    if (!posix::Reserve(mapping->descriptor, status, size)) return false;
    posix::MarkMapped(mapping->descriptor, size);
    mapping->size = std::max(mapping->size, size);
    view->size = std::max(view->size, size);
    return true;
}

bool UnmapView(void* start) noexcept {
    if (posix::Strikes(FileCall::kUnmapView)) return false;
    const std::lock_guard guard(posix::mappings_lock);
    for (View** link = &posix::views; *link != nullptr; link = &(*link)->next) {
        View* view = *link;
        if (view->start != start) continue;
        if (munmap(view->start, view->room) != 0) return FailWithErrno();
        *link = view->next;
        posix::Drop(view->mapping);
        Free(view);
        return true;
    }
    return Fail(kErrorInvalidAddress);
}

bool FlushView(const void* start, std::uint64_t size) noexcept {
    if (posix::Strikes(FileCall::kFlushView)) return false;
    std::uint64_t length = 0;
    {
        const std::lock_guard guard(posix::mappings_lock);
        const View* view = posix::FindView(start);
        if (view == nullptr) return Fail(kErrorInvalidAddress);
        length = size == 0 || size > view->size ? view->size : size;
    }
    return msync(const_cast<void*>(start), length, MS_SYNC) == 0 || FailWithErrno();
}

}  // namespace zelkor::platform
