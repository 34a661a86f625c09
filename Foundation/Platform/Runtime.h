// Text routines of the platform's C runtime, in its default locale, for 16-bit and for 8-bit text:
// formatted output, comparison, case, white space and number reading.
//
// Texts are zero-terminated and not null unless a view or a count says otherwise. Case is that of
// the letters A to Z alone: no other letter folds. Nothing here allocates, records an error or
// sets the last error. Threads: everything may be called from any thread.
#ifndef FOUNDATION_PLATFORM_RUNTIME_H
#define FOUNDATION_PLATFORM_RUNTIME_H

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// ---- Formatted output -------------------------------------------------------------------------
//
// A directive is %[flags][width][.precision][size]letter; flags are - + blank # 0, width and
// precision are decimal numbers or * (an int argument; a negative width aligns left, a negative
// precision counts as none). What differs from the C++ library's own formatting:
//
//   %s %c       text and characters as wide as the format itself
//   %S %C       the other width: 8-bit in a 16-bit format, 16-bit in an 8-bit one
//   %hs %hc     8-bit in both (%hS and %hC too); %ls %ws %lc %wc: 16-bit in both
//   %d %i %u %o %x %X
//               int; h: the low 16 bits of it (hh counts as h); l, I32 and none: 32 bits; ll and
//               I64: 64 bits; I: as wide as a pointer
//   %ld %lu %lx take 32-bit values: the library's "long" is std::int32_t or std::uint32_t. A
//               caller's 64-bit `long` is read safely, but only its low half is printed; write
//               such values with %lld or %I64d
//   %p          16 hexadecimal digits in upper case, as many as a pointer has
//   %e %g       at least three digits of exponent: 1.000000e+000
//   %f %e %g    round half away from zero on the 17 significant digits that tell doubles apart;
//               digits beyond the 17th are 0
//   %a          13 hexadecimal digits unless a precision is given
//   infinity and not-a-number: 1.#INF -1.#INF 1.#QNAN -1.#IND, followed by 0 up to the precision
//   0           pads every directive on the left with zeros, text too; ignored with a precision
//               for integers
//   null text   prints (null), cut by a precision as any text
//   width crossing: 8-bit text widens byte by byte (0x80 is U+0080); of 16-bit text units up to
//               U+00FF narrow likewise and all others become '?'
//   %n          consumes its pointer and does nothing: output is never a way to write to memory
//
// Bad directives cannot do harm: one cut off by the end of the format prints nothing, an unknown
// letter prints itself and consumes no argument, widths and precisions beyond 2,147,483,647 count
// as that. What remains the caller's duty: arguments that match the directives.
//
// `out` may be null when `capacity` is 0. The argument list is used up (copy it to format twice).

// As the runtime's _vsnwprintf and _vsnprintf: the number of units written without the terminator,
// or -1 when they do not fit; `out` then holds the first `capacity` units. A terminator follows the
// text when there is room for it: a text of exactly `capacity` units has none.
ZELKOR_API int FormatText(char16_t* out, std::size_t capacity, const char16_t* format,
                          std::va_list arguments) noexcept;
ZELKOR_API int FormatText(char* out, std::size_t capacity, const char* format,
                          std::va_list arguments) noexcept;

// Writes what fits as above and answers how long the whole text is, so that one pass is enough
// when it fits and a second always is. The answer can be as large as the widths ask for; the work
// is bounded by the format and `capacity`.
[[nodiscard]] ZELKOR_API std::size_t FormatWhole(char16_t* out, std::size_t capacity,
                                                 const char16_t* format,
                                                 std::va_list arguments) noexcept;
[[nodiscard]] ZELKOR_API std::size_t FormatWhole(char* out, std::size_t capacity,
                                                 const char* format,
                                                 std::va_list arguments) noexcept;

// FormatText with the arguments in the call, for fixed formats of the library.
ZELKOR_API int PrintText(char16_t* out, std::size_t capacity, const char16_t* format, ...);
ZELKOR_API int PrintText(char* out, std::size_t capacity, const char* format, ...);

// ---- Comparing --------------------------------------------------------------------------------

// By unit, 8-bit texts as unsigned bytes: -1, 0 or 1 (wcscmp, strcmp).
[[nodiscard]] ZELKOR_API int CompareText(const char16_t* a, const char16_t* b) noexcept;
[[nodiscard]] ZELKOR_API int CompareText(const char* a, const char* b) noexcept;
// At most `count` units of each (wcsncmp, strncmp).
[[nodiscard]] ZELKOR_API int CompareText(const char16_t* a, const char16_t* b,
                                         std::size_t count) noexcept;
[[nodiscard]] ZELKOR_API int CompareText(const char* a, const char* b, std::size_t count) noexcept;

// Without regard to case (_wcsicmp, _stricmp): 0, or the first differing unit of `a` in lower case
// minus that of `b`.
[[nodiscard]] ZELKOR_API int CompareNoCase(const char16_t* a, const char16_t* b) noexcept;
[[nodiscard]] ZELKOR_API int CompareNoCase(const char* a, const char* b) noexcept;
// At most `count` units of each (_wcsnicmp, _strnicmp).
[[nodiscard]] ZELKOR_API int CompareNoCase(const char16_t* a, const char16_t* b,
                                           std::size_t count) noexcept;
[[nodiscard]] ZELKOR_API int CompareNoCase(const char* a, const char* b,
                                           std::size_t count) noexcept;
// For texts of known length, which is faster: they compare as if a zero unit followed each. A zero
// inside both ends the comparison, as it does above.
[[nodiscard]] ZELKOR_API int CompareNoCase(std::u16string_view a, std::u16string_view b) noexcept;
[[nodiscard]] ZELKOR_API int CompareNoCase(std::string_view a, std::string_view b) noexcept;

// Units before the terminator (wcslen).
[[nodiscard]] ZELKOR_API std::size_t TextLength(const char16_t* text) noexcept;

// ---- Case and white space ---------------------------------------------------------------------

[[nodiscard]] constexpr char16_t ToLower(char16_t unit) noexcept {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}
[[nodiscard]] constexpr char16_t ToUpper(char16_t unit) noexcept {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
}
[[nodiscard]] constexpr char ToLower(char byte) noexcept {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
}
[[nodiscard]] constexpr char ToUpper(char byte) noexcept {
    return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 32) : byte;
}

// In place over `length` units (_wcslwr, _wcsupr, _strlwr, _strupr).
ZELKOR_API void LowerText(char16_t* text, std::size_t length) noexcept;
ZELKOR_API void UpperText(char16_t* text, std::size_t length) noexcept;
ZELKOR_API void LowerText(char* text, std::size_t length) noexcept;
ZELKOR_API void UpperText(char* text, std::size_t length) noexcept;

// The byte test (isspace): tabulator to carriage return, and blank.
[[nodiscard]] constexpr bool IsSpace(char byte) noexcept {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}
// The wide test (iswspace): those, the no-break space, U+2000 to U+200B, the ideographic space and
// the zero-width no-break space.
[[nodiscard]] constexpr bool IsSpace(char16_t unit) noexcept {
    if (unit < 0x80) return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
    return unit == 0x00A0 || (unit >= 0x2000 && unit <= 0x200B) || unit == 0x3000 || unit == 0xFEFF;
}

// ---- Reading numbers --------------------------------------------------------------------------
//
// Leading white space, one sign, then as many digits as there are. 16-bit text may use the decimal
// digits of other scripts as well.

// _wtoi and atoi (and _wtol, atol): base 10, 0 when there is no number; values outside the range
// become the nearest limit.
[[nodiscard]] ZELKOR_API std::int32_t ReadInteger(const char16_t* text) noexcept;
[[nodiscard]] ZELKOR_API std::int32_t ReadInteger(const char* text) noexcept;
// _wtoi64 and _atoi64.
[[nodiscard]] ZELKOR_API std::int64_t ReadInteger64(const char16_t* text) noexcept;
[[nodiscard]] ZELKOR_API std::int64_t ReadInteger64(const char* text) noexcept;

struct ReadNumber {
    std::int32_t value;
    std::size_t consumed;  // units up to the first one not read; 0 when there is no number
    bool out_of_range;     // the value is the nearest limit
};
// wcstol and strtol: base 2 to 36; base 0 takes 0x for 16, a leading 0 for 8, else 10.
[[nodiscard]] ZELKOR_API ReadNumber ReadLong(const char16_t* text, int base) noexcept;
[[nodiscard]] ZELKOR_API ReadNumber ReadLong(const char* text, int base) noexcept;

struct ReadReal {
    double value;
    std::size_t consumed;
};
// wcstod and strtod: digits with a period, then an exponent after e, E, d or D when digits follow
// it. Too large a number is infinite, too small a one 0. No hexadecimal form, no "inf" or "nan".
[[nodiscard]] ZELKOR_API ReadReal ReadDouble(const char16_t* text) noexcept;
[[nodiscard]] ZELKOR_API ReadReal ReadDouble(const char* text) noexcept;

}  // namespace zelkor::platform

#endif
