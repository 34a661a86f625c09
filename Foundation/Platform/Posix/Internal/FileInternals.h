// What the services of this backend share beyond handles and locks.
#ifndef FOUNDATION_PLATFORM_POSIX_INTERNAL_FILEINTERNALS_H
#define FOUNDATION_PLATFORM_POSIX_INTERNAL_FILEINTERNALS_H

#include <sys/stat.h>

#include <cstdint>

#include "Foundation/Platform/Posix/Internal/Handles.h"
#include "Foundation/Platform/Posix/Internal/NativeName.h"
#include "Foundation/Platform/Types.h"

namespace zelkor::platform::posix {

// How a file is to be opened; `mode` are the permissions of a new one.
struct OpenRequest {
    std::uint32_t access, share, disposition, flags_and_attributes;
    mode_t mode = 0666;
};

// The work of OpenFile and CloseHandle without the test seam.
[[nodiscard]] HANDLE Open(const char16_t* name, const OpenRequest& request) noexcept;
bool CloseFile(Object* file) noexcept;
bool CloseMapping(Object* mapping) noexcept;

[[nodiscard]] inline FileIdentity IdentityOf(const struct stat& status) noexcept {
    return {status.st_dev, status.st_ino};
}

// Whether a mapping of this process, or a mark of another's, holds the file longer than `size`.
[[nodiscard]] bool MappingForbidsSize(const Object& file, std::uint64_t size) noexcept;
[[nodiscard]] bool IsMappedHere(const FileIdentity& identity, std::uint64_t size) noexcept;

// Attributes: the bits kept beside the permissions, and the whole word.
inline constexpr std::uint32_t kDefaultAttributes = 0x20;
[[nodiscard]] bool IsReadOnly(const struct stat& status) noexcept;
[[nodiscard]] std::uint32_t StoredAttributes(int descriptor) noexcept;
void StoreAttributes(int descriptor, std::uint32_t attributes) noexcept;
[[nodiscard]] std::uint32_t AttributeWord(const struct stat& status, std::uint32_t stored) noexcept;

// The absolute form of the path as a block of its own; null with the last error set when memory is
// short.
[[nodiscard]] char* AbsolutePath(const char* path) noexcept;

struct Times {
    FILETIME creation, access, write;
};
[[nodiscard]] Times TimesOf(const struct stat& status, const timespec& birth) noexcept;
// Status with the time of birth, or of the last change of status where none is kept. An empty path
// means the descriptor itself. Leaves errno on failure.
[[nodiscard]] bool Inspect(int folder, const char* path, struct stat* status,
                           timespec* birth) noexcept;
// The attribute word of a name, relative to an open folder or to AT_FDCWD.
[[nodiscard]] std::uint32_t AttributesOf(int folder, const char* path,
                                         const struct stat& status) noexcept;

}  // namespace zelkor::platform::posix

#endif
