// Searching a folder for names that match a pattern.
//
// Pattern: drive and folder name a folder (see Paths.h), what follows the last separator is matched
// whole and without regard to case against every name in it, "." and ".." included:
//   *   any run of units             ?   one unit; nothing before a period or at the end
//   *.  (at the end) names without a period; elsewhere "*." stops at the name's last period
//   .   before * or ? also the end of the name ("abc.*" finds "abc"); "*.*" finds every name
// Periods and blanks at the end of a pattern do not count.
// Order: by name, without regard to case. The names are those of the moment the search began;
// one that is gone when its turn comes is left out.
// Errors: as last error; exhausted memory throws as platform::Allocator does.
// Threads: one search, one thread.
#ifndef FOUNDATION_PLATFORM_FINDFILES_H
#define FOUNDATION_PLATFORM_FINDFILES_H

#include <cstdint>
#include <string_view>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Paths.h"
#include "Foundation/Platform/Types.h"

namespace zelkor::platform {

struct FoundFile {
    std::uint32_t attributes;  // as QueryAttributes (Files.h); a plain file is 0x20 or 0x80
    FILETIME creation, access, write;
    std::uint64_t size;
    char16_t name[kMaxPath];  // zero-terminated
};

// Begins a search and delivers its first entry. INVALID_HANDLE_VALUE on failure: 2 nothing matches,
// 3 no such folder or an empty pattern.
[[nodiscard]] ZELKOR_API HANDLE FindFirst(const char16_t* pattern, FoundFile* found);

// The next entry; false with 18 when there is none.
ZELKOR_API bool FindNext(HANDLE search, FoundFile* found);

// Ends a search; 6 when there is none of that handle.
ZELKOR_API bool FindClose(HANDLE search) noexcept;

// Whether a name matches a pattern without folder, by the rules above.
[[nodiscard]] ZELKOR_API bool MatchesPattern(std::u16string_view name,
                                             std::u16string_view pattern) noexcept;

}  // namespace zelkor::platform

#endif
