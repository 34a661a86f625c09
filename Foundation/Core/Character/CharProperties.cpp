#include "Foundation/Core/Character/CharProperties.h"

#include <algorithm>
#include <iterator>

#include "Foundation/Core/Base/OS.h"
#include "Foundation/Core/Character/Internal/Tables/CodePageMembership.h"
#include "Foundation/Core/Character/Internal/Tables/NumericTable.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/Text/TextDetection.h"

namespace platform = zelkor::platform;

namespace {

// ASCII16, statistics, controls and marks in both orders, odd length, illegal characters.
constexpr std::uint32_t kTextTests = 0x3FF;

bool IsNtFamily() {
    return CT_OS::seo_GetVersion() >= CT_OS::WindowsNT;
}

bool BeginsWithMark(const unsigned char* bytes) {
    return (bytes[0] == 0xFF && bytes[1] == 0xFE) || (bytes[0] == 0xFE && bytes[1] == 0xFF);
}

// By converting there and back; a page without conversion holds nothing.
bool SurvivesRoundTrip(char16_t character, unsigned int code_page) {
    char bytes[8];
    char16_t units[8];
    BOOL used_default = FALSE;
    const int count = platform::WideCharToMultiByte(code_page, 0, &character, 1, bytes,
                                                    std::size(bytes), nullptr, &used_default);
    if (count == 0) return false;
    return platform::MultiByteToWideChar(code_page,
                                         platform::kPrecomposed | platform::kErrorOnInvalidChars,
                                         bytes, count, units, std::size(units)) == 1 &&
           units[0] == character;
}

}  // namespace

const char16_t* CT_CharProperties::sqcuz_GetCharacterName(char16_t) {
    return nullptr;
}

void CT_CharProperties::sv_NumericValue(char16_t unit, short& numerator, short& denominator) {
    using namespace zelkor::detail;
    const auto* const end = std::end(kNumericValues);
    const auto* const value =
        std::ranges::lower_bound(kNumericValues, unit, {}, &NumericValue::code);
    const bool found = value != end && value->code == unit;
    numerator = found ? value->numerator : short{0};
    denominator = found ? value->denominator : short{0};
}

BOOL CT_CharProperties::sb_IsSequenceOf(const char16_t* text, CharacterTest test,
                                        std::uint32_t start, std::uint32_t count) {
    if (text == nullptr || count == 0) return FALSE;
    for (std::uint32_t i = 0; i < start; ++i) {
        if (text[i] == 0) return FALSE;
    }
    text += start;
    if (*text == 0) return FALSE;
    for (; count != 0 && *text != 0; --count, ++text) {
        if (!test(*text)) return FALSE;
    }
    return TRUE;
}

BOOL CT_CharProperties::sb_IsSequenceOf(const CT_UString* text, CharacterTest test,
                                        std::uint32_t start, std::uint32_t count) {
    return sb_IsSequenceOf(text == nullptr ? nullptr : text->qcuz_Get(), test, start, count);
}

BOOL CT_CharProperties::sb_IsTextUnicode(const void* data, unsigned int size) {
    if (data == nullptr || size < 2) return FALSE;
    if (IsNtFamily()) return platform::IsTextUnicode(data, size, kTextTests);
    return size % 2 == 0 && BeginsWithMark(static_cast<const unsigned char*>(data));
}

BOOL CT_CharProperties::sb_IsTextLikelyUnicode(const void* data, unsigned int size) {
    if (data == nullptr || size < 2) return FALSE;
    if (sb_IsTextUnicode(data, size)) return TRUE;
    if (IsNtFamily()) return platform::IsTextUnicode(data, size, platform::kUnicodeAllTests);
    const auto* bytes = static_cast<const unsigned char*>(data);
    return size % 2 == 0 && std::find(bytes, bytes + size, 0) != bytes + size;
}

BOOL CT_CharProperties::sb_IsInCodepage(char16_t character, unsigned int code_page) {
    using namespace zelkor::detail;
    if (code_page == 0 || code_page == 1200 || code_page >= 65000) return TRUE;
    if (code_page < kFirstListedPage || code_page > kLastListedPage) {
        return SurvivesRoundTrip(character, code_page);
    }
    const auto page = code_page - kFirstListedPage;
    const auto first = kMembership.begin() + kMembershipStart[page];
    const auto last = kMembership.begin() + kMembershipStart[page + 1];
    const auto range = std::ranges::lower_bound(first, last, character, {}, &UnitRange::last);
    return range != last && range->first <= character;
}
