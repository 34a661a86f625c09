// Paths: how names map to the system's own, and the path routines of the C runtime.
//
// One tree: "\" and "/" both separate; a drive prefix "X:" names the root of the tree, whatever the
// letter. "X:name" without a separator starts in the current folder when X is the current drive,
// else in the root. A leading "\\?\" or "\\.\" is skipped; "\\.\nul" is the null device and
// "\\.\con" the terminal. Everything else goes to the file system as it stands: letter case counts,
// and a trailing period or blank belongs to the name.
//
// Bytes of a file name are UTF-8. A byte that is not part of well-formed UTF-8 reads as U+DC80 to
// U+DCFF (0xDC00 + byte), a backslash inside a file's name as U+F05C; both map back, so that every
// name found can be opened. Any other unpaired surrogate has no file name (error 123).
// Errors: as last error where said. Threads: any.
#ifndef FOUNDATION_PLATFORM_PATHS_H
#define FOUNDATION_PLATFORM_PATHS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// Room for a path with its zero, as the platform counts; the system's own limit is higher.
inline constexpr std::size_t kMaxPath = 260;

// Drive with its colon, directory with its last separator, name, and extension with its period: the
// four parts as views into `path`, of any length. Together they are the path again, except that
// "\\?\" in front stays part of the directory.
struct PathParts {
    std::u16string_view drive, directory, name, extension;
};
[[nodiscard]] ZELKOR_API PathParts SplitPath(std::u16string_view path) noexcept;

// The inverse: the drive's first unit and a colon, a "\" behind the directory and a period before
// the extension where missing. Answers the length without the zero; the path is written, with its
// zero, only when it fits `out`, which may overlap none of the parts.
[[nodiscard]] ZELKOR_API std::size_t MakePath(std::span<char16_t> out,
                                              const PathParts& parts) noexcept;

// The absolute form of a path, zero-terminated: current folder in front, "\" throughout, ".", ".."
// and doubled separators resolved. Every other name stays as it is: periods and blanks at its end
// belong to it, and no name is a device's. A null or empty path is the current folder. Answers the
// length; 0 with the last error set (206) when it does not fit, or (2) there is no current folder.
[[nodiscard]] ZELKOR_API std::size_t FullPath(const char16_t* path,
                                              std::span<char16_t> out) noexcept;

// The system's own form of a path, as zero-terminated bytes, and the way back: an absolute path
// gets the current drive in front, and "\" throughout. Each answers the length without the zero, or
// 0 with the last error set (3: the path is empty or too long for `out`; 123: see above).
[[nodiscard]] ZELKOR_API std::size_t NativePath(const char16_t* path, std::span<char> out) noexcept;
[[nodiscard]] ZELKOR_API std::size_t PathFromNative(const char* native,
                                                    std::span<char16_t> out) noexcept;

// Longest native path with its zero that the services of the ground take.
inline constexpr std::size_t kMaxNativePath = 4096;

}  // namespace zelkor::platform

#endif
