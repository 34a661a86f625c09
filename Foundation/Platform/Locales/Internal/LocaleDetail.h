// The rows of the locale tables, for the sources that answer from them. Not for callers outside
// this room and CodePages.
#ifndef FOUNDATION_PLATFORM_LOCALES_INTERNAL_LOCALEDETAIL_H
#define FOUNDATION_PLATFORM_LOCALES_INTERNAL_LOCALEDETAIL_H

#include <cstdint>
#include <optional>
#include <string_view>

#include "Foundation/Platform/Locales/Internal/Tables/LocaleTables.h"
#include "Foundation/Platform/Locales/Locales.h"

namespace zelkor::platform::nls {

// The flags of a type, and what is left of it.
inline constexpr std::uint32_t kTypeFlags = 0xF0000000;

// Row of the locale, by the rules of ResolveLocale.
[[nodiscard]] std::optional<std::uint32_t> FindRow(LCID lcid) noexcept;

// Column of a type without flags.
[[nodiscard]] constexpr std::optional<std::uint32_t> ColumnOf(std::uint32_t type) noexcept {
    if (type >= 0x0001 && type <= 0x005A) return type - 0x0001;
    if (type >= 0x1001 && type <= 0x1014) return type - 0x1001 + 0x5A;
    return std::nullopt;
}

[[nodiscard]] inline std::u16string_view TextAt(std::uint32_t row, std::uint32_t column) noexcept {
    return &kLocaleTexts[kLocaleOffsets[row][column]];
}

// Copies the text with its zero by the rules of GetLocaleInfo.
[[nodiscard]] int CopyText(std::u16string_view text, char16_t* out, int capacity) noexcept;

// The number that a text of decimal digits, perhaps behind a minus sign, stands for; base 16 on
// demand.
[[nodiscard]] std::uint32_t NumberOf(std::u16string_view text, std::uint32_t base = 10) noexcept;

// Makes the pages of the system's default locale the configured ones.
void TakeSystemPages(LCID system) noexcept;

}  // namespace zelkor::platform::nls

#endif
