#include "Foundation/Platform/Posix/Internal/Handles.h"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <new>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Posix/Internal/Errno.h"

namespace zelkor::platform::posix {

namespace {

// The first block is part of the library, so that a program with few files needs no more.
constexpr std::uint32_t kFirstBlock = 64;
constexpr std::uint32_t kBlock = 1024;
constexpr std::uint32_t kBlocks = 1023;
constexpr int kIndexBits = 20;
static_assert(kFirstBlock + kBlock * kBlocks < 1u << kIndexBits);
constexpr std::uintptr_t kIndexMask = (std::uintptr_t{1} << kIndexBits) - 1;
constexpr std::uint32_t kNoPlace = 0xFFFFFFFF;

constinit std::array<Object, kFirstBlock> first_block;
constinit std::array<std::atomic<Object*>, kBlocks> blocks;

// Guarded by table_lock.
constinit std::uint32_t places = 0;  // ever used
constinit std::uint32_t first_free = kNoPlace;

// Null when the block was never made.
Object* PlaceIfMade(std::uint32_t index) noexcept {
    if (index < kFirstBlock) return &first_block[index];
    index -= kFirstBlock;
    if (index / kBlock >= kBlocks) return nullptr;
    Object* block = blocks[index / kBlock].load(std::memory_order_acquire);
    return block == nullptr ? nullptr : block + index % kBlock;
}

// Straight from the system: the table lasts as long as the process.
bool MakeBlock(std::uint32_t index) noexcept {
    if (index < kFirstBlock || (index - kFirstBlock) % kBlock != 0) return true;
    const std::uint32_t number = (index - kFirstBlock) / kBlock;
    if (number >= kBlocks) return false;
    void* memory = mmap(nullptr, kBlock * sizeof(Object), PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return false;
    auto* block = static_cast<Object*>(memory);
    for (std::uint32_t i = 0; i < kBlock; ++i) new (block + i) Object;
    blocks[number].store(block, std::memory_order_release);
    return true;
}

std::uint32_t IndexOf(std::uintptr_t handle) {
    return static_cast<std::uint32_t>((handle >> 2 & kIndexMask) - 1);
}

// What a place starts with; the count of its uses goes on.
void Reset(Object* object, Kind kind) {
    const std::uint32_t uses = object->uses + 1;
    const std::uint32_t next_free = object->next_free;
    object->~Object();
    new (object) Object;
    object->uses = uses;
    object->next_free = next_free;
    object->kind = kind;
    object->owner = getpid();
}

}  // namespace

constinit std::mutex table_lock;

std::uint32_t PlacesInUse() noexcept {
    return places;
}

Object* Place(std::uint32_t index) noexcept {
    return PlaceIfMade(index);
}

Object* NewObject(Kind kind) noexcept {
    const std::lock_guard guard(table_lock);
    Object* object = nullptr;
    std::uint32_t index = first_free;
    if (index != kNoPlace) {
        object = PlaceIfMade(index);
        first_free = object->next_free;
    } else if (MakeBlock(places)) {
        index = places++;
        object = PlaceIfMade(index);
    } else {
        SetLastError(kErrorTooManyOpenFiles);
        return nullptr;
    }
    Reset(object, kind);
    object->next_free = index;  // while in use: its own index
    return object;
}

HANDLE Publish(Object* object) noexcept {
    const std::uintptr_t handle =
        (std::uintptr_t{object->uses} << kIndexBits | (object->next_free + 1)) << 2;
    const std::lock_guard guard(table_lock);
    object->handle.store(handle, std::memory_order_release);
    return reinterpret_cast<HANDLE>(handle);
}

Object* FindAny(HANDLE handle) noexcept {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    if (value != 0 && (value & 3) == 0) {
        Object* object = PlaceIfMade(IndexOf(value));
        const bool open =
            object != nullptr && object->handle.load(std::memory_order_acquire) == value;
        if (open) return object;
    }
    SetLastError(kErrorInvalidHandle);
    return nullptr;
}

Object* Find(HANDLE handle, Kind kind) noexcept {
    Object* object = FindAny(handle);
    if (object == nullptr || object->kind == kind) return object;
    SetLastError(kErrorInvalidHandle);
    return nullptr;
}

std::uintptr_t Retire(Object* object) noexcept {
    const std::lock_guard guard(table_lock);
    return object->handle.exchange(0, std::memory_order_acq_rel);
}

void Revive(Object* object, std::uintptr_t handle) noexcept {
    const std::lock_guard guard(table_lock);
    object->handle.store(handle, std::memory_order_release);
}

void Release(Object* object) noexcept {
    const std::lock_guard guard(table_lock);
    object->handle.store(0, std::memory_order_release);
    const std::uint32_t index = object->next_free;
    object->kind = Kind::kNone;
    object->next_free = first_free;
    first_free = index;
}

}  // namespace zelkor::platform::posix
