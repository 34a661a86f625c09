// Modules: the program and the shared libraries of the process, their paths, string tables
// and versions.
//
// A module is named by its handle; the program is named by null as well. Threads: any, at any time.
#ifndef FOUNDATION_PLATFORM_MODULES_H
#define FOUNDATION_PLATFORM_MODULES_H

#include <cstdint>
#include <span>
#include <string_view>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

namespace zelkor::platform {

// The module that holds the code or data at `address`; null when no module does.
[[nodiscard]] ZELKOR_API HINSTANCE ModuleOf(const void* address) noexcept;

// Writes the full path of the module's file, zero-terminated and cut to `capacity` units, and
// returns its length without the zero. On failure returns 0, leaves an empty text and sets the last
// error (126: no such module; 122: the path was cut, the length is then capacity - 1).
ZELKOR_API std::uint32_t ModuleFileName(HINSTANCE module, char16_t* path,
                                        std::uint32_t capacity) noexcept;

// One string resource. Texts are borrowed and stay valid while the table is registered.
struct StringResource {
    std::uint32_t id;
    const char16_t* text;
};

// Gives a module its string table (any order; the first entry of an id counts), in place of the one
// before; an empty table removes it. Records need not be copied: the table itself is borrowed.
// FALSE with the last error set when no further module can be registered.
ZELKOR_API bool RegisterStringTable(HINSTANCE module,
                                    std::span<const StringResource> table) noexcept;

// The module's text of that id; null data when it has none.
[[nodiscard]] ZELKOR_API std::u16string_view FindString(HINSTANCE module,
                                                        std::uint32_t id) noexcept;

// A module's version: the fixed part, and texts by name ("ProductVersion" and the like).
struct VersionText {
    const char16_t* name;
    const char16_t* text;
};
struct VersionResource {
    VS_FIXEDFILEINFO fixed;
    std::span<const VersionText> texts;
};

// Gives a module its version resource, which is borrowed, in place of the one before; null removes
// it. A module does so when it is loaded, and removes it when it goes. FALSE as above.
ZELKOR_API bool RegisterVersion(HINSTANCE module, const VersionResource* version) noexcept;

// The module's version resource; null when it has none.
[[nodiscard]] ZELKOR_API const VersionResource* FindVersion(HINSTANCE module) noexcept;

// Asks the loader not to tell the module of starting and ending threads. Answers whether the module
// exists; ThreadNotifications tells what was asked for last.
ZELKOR_API bool DisableThreadNotifications(HINSTANCE module) noexcept;
[[nodiscard]] ZELKOR_API bool ThreadNotifications(HINSTANCE module) noexcept;

}  // namespace zelkor::platform

#endif
