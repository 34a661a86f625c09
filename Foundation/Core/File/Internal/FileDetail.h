// What the file classes share: views of names, assignment from a view, far offsets, times of the
// platform.
#ifndef FOUNDATION_CORE_FILE_INTERNAL_FILEDETAIL_H
#define FOUNDATION_CORE_FILE_INTERNAL_FILEDETAIL_H

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

#include "Foundation/Core/String/UString.h"

class CT_File;

namespace zelkor::detail {

inline constexpr std::u16string_view kSeparators = u"/\\";

// Null is empty.
inline std::u16string_view View(const char16_t* text) {
    return text == nullptr ? std::u16string_view() : std::u16string_view(text);
}

// The view may lie in a string that shares its block with `out`.
inline void Assign(CT_UString& out, std::u16string_view text) {
    out.v_Set(text.data(), static_cast<unsigned int>(text.size()));
}

// Positions a file from its start, also where a signed distance does not reach. Errors are those of
// vv_SetOffset, for the caller to locate; the offset then stays.
void SeekTo(CT_File& file, unsigned int offset);

// Seconds since 1970 in 32 bits, the nearest that there are.
inline int Seconds(std::int64_t time) {
    return static_cast<int>(std::clamp<std::int64_t>(time, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
}

}  // namespace zelkor::detail

#endif
