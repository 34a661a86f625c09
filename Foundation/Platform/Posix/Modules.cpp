#include "Foundation/Platform/Modules.h"

#include <dlfcn.h>
#include <limits.h>
#include <link.h>
#include <stdlib.h>
#include <sys/auxv.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <mutex>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Paths.h"

namespace zelkor::platform {

namespace {

constexpr std::uint32_t kErrorModuleNotFound = 126;

// What is known of a module beyond the loader's own knowledge.
struct Entry {
    HINSTANCE module = nullptr;
    std::span<const StringResource> strings;
    const VersionResource* version = nullptr;
    bool silent = false;  // asked not to be told of threads
    bool used = false;
};

// Nothing that asks the loader may be called under it: the loader holds a lock of its own while a
// library registers itself.
constinit std::mutex entries_mutex;
constinit std::array<Entry, 64> entries;

// Null stands for the program, which may as well be named by the handle that ModuleOf gives.
HINSTANCE Named(HINSTANCE module) noexcept {
    if (module != nullptr) return module;
    return ModuleOf(reinterpret_cast<const void*>(getauxval(AT_PHDR)));
}

// The module's entry; null when it has none. Needs the lock, as all that follow.
Entry* KnownEntry(HINSTANCE module) noexcept {
    const auto known = std::ranges::find_if(
        entries, [module](const Entry& entry) { return entry.used && entry.module == module; });
    return known != entries.end() ? &*known : nullptr;
}

// The module's entry, a new one when there is none; null when all are taken.
Entry* EntryOf(HINSTANCE module) noexcept {
    if (Entry* const known = KnownEntry(module)) return known;
    const auto free = std::ranges::find(entries, false, &Entry::used);
    if (free == entries.end()) return nullptr;
    *free = Entry{module, {}, nullptr, false, true};
    return &*free;
}

// Drops an entry that says nothing.
void Tidy(Entry& entry) noexcept {
    if (entry.strings.empty() && entry.version == nullptr && !entry.silent) entry.used = false;
}

// Changes the module's entry; false with the last error set when no further module can be had.
template <typename Change>
bool Register(HINSTANCE module, const Change& change) noexcept {
    module = Named(module);
    const std::lock_guard lock(entries_mutex);
    Entry* const entry = EntryOf(module);
    if (entry == nullptr) {
        SetLastError(kErrorNotEnoughMemory);
        return false;
    }
    change(*entry);
    Tidy(*entry);
    return true;
}

// The file of a module as the system names it; false when there is no such module.
bool NativeFile(HINSTANCE module, char (&file)[PATH_MAX]) noexcept {
    Dl_info info{};
    link_map* map = nullptr;
    if (module != nullptr &&
        dladdr1(module, &info, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) == 0) {
        return false;
    }
    const bool program = map == nullptr || map->l_name == nullptr || *map->l_name == '\0';
    return ::realpath(program ? "/proc/self/exe" : map->l_name, file) != nullptr;
}

}  // namespace

HINSTANCE ModuleOf(const void* address) noexcept {
    Dl_info info{};
    if (dladdr(address, &info) == 0) return nullptr;
    return static_cast<HINSTANCE>(info.dli_fbase);
}

std::uint32_t ModuleFileName(HINSTANCE module, char16_t* path, std::uint32_t capacity) noexcept {
    if (capacity == 0) {
        SetLastError(kErrorInsufficientBuffer);
        return 0;
    }
    *path = 0;
    char native[PATH_MAX];
    if (!NativeFile(module, native)) {
        SetLastError(kErrorModuleNotFound);
        return 0;
    }
    char16_t whole[kMaxNativePath];
    const std::size_t length = PathFromNative(native, whole);
    const std::size_t kept = std::min<std::size_t>(length, capacity - 1);
    std::copy_n(whole, kept, path);
    path[kept] = 0;
    if (kept < length) SetLastError(kErrorInsufficientBuffer);
    return static_cast<std::uint32_t>(kept);
}

bool RegisterStringTable(HINSTANCE module, std::span<const StringResource> table) noexcept {
    return Register(module, [table](Entry& entry) { entry.strings = table; });
}

std::u16string_view FindString(HINSTANCE module, std::uint32_t id) noexcept {
    module = Named(module);
    const std::lock_guard lock(entries_mutex);
    const Entry* const entry = KnownEntry(module);
    if (entry == nullptr) return {};
    const auto found = std::ranges::find(entry->strings, id, &StringResource::id);
    return found == entry->strings.end() ? std::u16string_view() : found->text;
}

bool RegisterVersion(HINSTANCE module, const VersionResource* version) noexcept {
    return Register(module, [version](Entry& entry) { entry.version = version; });
}

const VersionResource* FindVersion(HINSTANCE module) noexcept {
    module = Named(module);
    const std::lock_guard lock(entries_mutex);
    const Entry* const entry = KnownEntry(module);
    return entry != nullptr ? entry->version : nullptr;
}

bool DisableThreadNotifications(HINSTANCE module) noexcept {
    char native[PATH_MAX];
    module = Named(module);
    const bool exists = NativeFile(module, native);
    const std::lock_guard lock(entries_mutex);
    Entry* const entry = exists ? EntryOf(module) : nullptr;
    if (entry != nullptr) entry->silent = true;
    return entry != nullptr;
}

bool ThreadNotifications(HINSTANCE module) noexcept {
    module = Named(module);
    const std::lock_guard lock(entries_mutex);
    const Entry* const entry = KnownEntry(module);
    return entry == nullptr || !entry->silent;
}

}  // namespace zelkor::platform
