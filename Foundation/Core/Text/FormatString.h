// CT_FormatString: numbers as text by the conventions of a locale.
//
// The locale (0: the user's default locale) gives the separators, the negative sign and its place,
// and the leading-zero rule; decimals and grouping come from the caller.
// Grouping is given as digits from the decimal separator on: 0 none, 3 for 1,234,567, 32 for
// 12,34,567 and 30 for a single group, 1234,567; or as the locale's own text for it, "3;0",
// "3;2;0" and "3". Decimals are 0 to 9; digits beyond are rounded half away from zero, and what
// rounds to zero has no sign.
// Errors: records none; running out of memory throws CT_SmartHeapException and changes nothing.
// Threads: any.
#ifndef FOUNDATION_CORE_TEXT_FORMATSTRING_H
#define FOUNDATION_CORE_TEXT_FORMATSTRING_H

#include <concepts>
#include <cstdint>

#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_FormatString {
public:
    CT_FormatString() = delete;

    // FALSE and an empty result without a string to write to, when the locale is not known, when
    // there are more than 9 decimals and, for floats, when the value is infinite or not a number.
    // Floats show at most six decimals of their own, the digits of %f.
    static BOOL sb_FormatNumber(CT_UString* out, std::uint32_t value, LCID locale,
                                std::uint32_t decimals, std::uint32_t grouping);
    static BOOL sb_FormatNumber(CT_UString* out, float value, LCID locale, std::uint32_t decimals,
                                std::uint32_t grouping);
    static BOOL sb_FormatNumber(CT_UString* out, double value, LCID locale, std::uint32_t decimals,
                                std::uint32_t grouping);
    // Every other integer, with its sign.
    template <std::integral Integer>
    static BOOL sb_FormatNumber(CT_UString* out, Integer value, LCID locale, std::uint32_t decimals,
                                std::uint32_t grouping) {
        const auto number = static_cast<std::uint64_t>(value);
        const bool negative = value < Integer{};
        return FormatInteger(out, negative, negative ? 0 - number : number, locale, decimals,
                             grouping);
    }
    // The same with the grouping as text, FALSE too when that is not one.
    template <typename Value, std::same_as<const char16_t*> Grouping>
    static BOOL sb_FormatNumber(CT_UString* out, Value value, LCID locale, std::uint32_t decimals,
                                Grouping grouping) {
        std::uint32_t digits = 0;
        if (ReadGrouping(grouping, &digits)) {
            return sb_FormatNumber(out, value, locale, decimals, digits);
        }
        if (out != nullptr) out->vv_Init();
        return FALSE;
    }

private:
    static BOOL FormatInteger(CT_UString* out, bool negative, std::uint64_t magnitude, LCID locale,
                              std::uint32_t decimals, std::uint32_t grouping);
    [[nodiscard]] static bool ReadGrouping(const char16_t* text, std::uint32_t* digits);
};

#endif
