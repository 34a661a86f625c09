#include "Foundation/Core/Text/FormatString.h"

#include <array>

#include "Foundation/Core/Language/LocaleInfo.h"
#include "Foundation/Platform/Locales/Formats.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

namespace {

// A locale's text, cut to a number of units; empty when the locale does not tell.
class LocaleText {
public:
    LocaleText(LCID locale, CT_LocaleInfo::et_Type type) {
        static_cast<void>(CT_LocaleInfo::sb_GetLocaleInfo(locale, type, text_.data(), kLongest));
    }
    operator std::u16string_view() const { return {text_.data()}; }

private:
    static constexpr unsigned int kLongest = 8;
    std::array<char16_t, kLongest + 1> text_{};
};

// `number` is the decimal text of the value.
BOOL Format(CT_UString* out, const char16_t* number, LCID locale, std::uint32_t decimals,
            std::uint32_t grouping) {
    if (out == nullptr) return FALSE;
    const LCID lcid = locale == 0 ? CT_LocaleInfo::sn_GetUserDefaultLCID() : locale;
    platform::NumberFormat format;
    const LocaleText decimal(lcid, CT_LocaleInfo::kDecimalSeparator);
    const LocaleText thousands(lcid, CT_LocaleInfo::kThousandSeparator);
    const LocaleText negative(lcid, CT_LocaleInfo::kNegativeSign);
    unsigned int leading_zero = 0;
    unsigned int negative_order = format.negative_order;
    const bool known =
        CT_LocaleInfo::sb_GetLocaleInfo(lcid, CT_LocaleInfo::kLeadingZero, &leading_zero) != FALSE;
    CT_LocaleInfo::sb_GetLocaleInfo(lcid, CT_LocaleInfo::kNegativeOrder, &negative_order);
    format.digits = decimals;
    format.leading_zero = leading_zero;
    format.grouping = grouping;
    format.decimal_separator = decimal;
    format.thousands_separator = thousands;
    format.negative_order = negative_order;
    if (const std::u16string_view sign = negative; !sign.empty()) format.negative_sign = sign;

    // 309 digits of the largest double, a separator of 8 units before each of them, and the rest.
    std::array<char16_t, 3072> text;
    const int length =
        known ? platform::FormatNumber(number, format, text.data(), static_cast<int>(text.size()))
              : 0;
    out->vv_Init(text.data(), length == 0 ? 0 : static_cast<std::uint32_t>(length - 1));
    return length != 0;
}

}  // namespace

BOOL CT_FormatString::sb_FormatNumber(CT_UString* out, std::uint32_t value, LCID locale,
                                      std::uint32_t decimals, std::uint32_t grouping) {
    return FormatInteger(out, false, value, locale, decimals, grouping);
}

BOOL CT_FormatString::FormatInteger(CT_UString* out, bool negative, std::uint64_t magnitude,
                                    LCID locale, std::uint32_t decimals, std::uint32_t grouping) {
    std::array<char16_t, 24> number;
    platform::PrintText(number.data(), number.size(), negative ? u"-%I64u" : u"%I64u", magnitude);
    return Format(out, number.data(), locale, decimals, grouping);
}

BOOL CT_FormatString::sb_FormatNumber(CT_UString* out, float value, LCID locale,
                                      std::uint32_t decimals, std::uint32_t grouping) {
    return sb_FormatNumber(out, static_cast<double>(value), locale, decimals, grouping);
}

// The runtime writes a period in every locale, as the number formatting reads it.
BOOL CT_FormatString::sb_FormatNumber(CT_UString* out, double value, LCID locale,
                                      std::uint32_t decimals, std::uint32_t grouping) {
    std::array<char16_t, 320> number;  // the largest double: 309 digits and six more
    platform::PrintText(number.data(), number.size(), u"%f", value);
    return Format(out, number.data(), locale, decimals, grouping);
}

bool CT_FormatString::ReadGrouping(const char16_t* text, std::uint32_t* digits) {
    return text != nullptr && platform::ReadGrouping(text, digits);
}
