// Formats: numbers as the conventions of a locale write them.
//
// Texts are UTF-16 and borrowed. Failure answers 0 or false and sets the last error. Nothing here
// allocates. Threads: any.
#ifndef FOUNDATION_PLATFORM_LOCALES_FORMATS_H
#define FOUNDATION_PLATFORM_LOCALES_FORMATS_H

#include <cstdint>
#include <string_view>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

struct NumberFormat {
    std::uint32_t digits = 0;        // behind the decimal separator: 0 to 9
    std::uint32_t leading_zero = 1;  // 0 writes .7 and 1 writes 0.7
    // The sizes of the groups from the decimal separator on as decimal digits; the last one goes
    // for all others, and a 0 ends the grouping. 0: 1234567, 3: 1,234,567, 32: 12,34,567,
    // 30: 1234,567.
    std::uint32_t grouping = 0;
    std::u16string_view decimal_separator = u".";
    std::u16string_view thousands_separator = u",";
    std::uint32_t negative_order = 1;  // 0 (1)  1 -1  2 - 1  3 1-  4 1 -
    std::u16string_view negative_sign = u"-";
};

// As the system's GetNumberFormatW: formats a number given as digits with at most one period and at
// most a "-" before them, and at least one digit. Digits that are not shown round half away from
// zero. Zeros in front are left out; a number without digits before the separator shows one 0 there
// when the format has leading zeros or no digits behind it. What is zero as shown has no sign.
// Writes the text with a terminator into `out`, which holds `capacity` units, and answers the units
// written; capacity 0 asks for the units needed. 0 is failure:
//   87    another text than such a number, or a value outside the ranges of NumberFormat
//   122   the text does not fit
[[nodiscard]] ZELKOR_API int FormatNumber(std::u16string_view number, const NumberFormat& format,
                                          char16_t* out, int capacity) noexcept;

// The grouping that a locale's text for it means: "3;0" is 3, "3;2;0" is 32, and "3", which lacks
// the 0 for repetition, is 30; "0" and the empty text are 0. False with last error 87 for another
// text, and for one that takes more than nine digits.
[[nodiscard]] ZELKOR_API bool ReadGrouping(std::u16string_view text,
                                           std::uint32_t* grouping) noexcept;

}  // namespace zelkor::platform

#endif
