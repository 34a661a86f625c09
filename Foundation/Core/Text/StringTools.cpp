#include "Foundation/Core/Text/StringTools.h"

#include <algorithm>
#include <array>

#include "Foundation/Core/Character/CharMappings.h"
#include "Foundation/Core/String/Internal/StringCore.h"
#include "Foundation/Platform/Scan.h"
#include "Foundation/Platform/UnitSet.h"

namespace platform = zelkor::platform;

using zelkor::detail::StringCore;
using zelkor::detail::View;

namespace {

using WideView = std::u16string_view;

constexpr std::uint32_t kNotFound = CT_StringTools::kNotFound;
constexpr std::uint32_t kWholeNumber = 0xFFFFFFFF;  // as a field width
constexpr std::uint32_t kWholeNumberField = 16;

// From `from` to before `end`, which is the text's length, or backwards to kNotFound: the position
// before the first one.
std::uint32_t Search(WideView text, WideView characters, std::uint32_t from, std::uint32_t end,
                     bool member) {
    const platform::UnitSet set(characters);
    if (end == kNotFound) {
        const WideView part = text.substr(0, from + 1);
        const std::size_t hit = member ? set.LastMember(part) : set.LastOther(part);
        return hit == platform::kNoHit ? kNotFound : static_cast<std::uint32_t>(hit);
    }
    if (from >= end) return kNotFound;
    const WideView part = text.substr(from);
    const std::size_t hit = member ? set.FirstMember(part) : set.FirstOther(part);
    return hit == part.size() ? kNotFound : from + static_cast<std::uint32_t>(hit);
}

int Difference(char16_t a, char16_t b, bool case_sensitive) {
    if (case_sensitive || a == b) return a - b;
    return CT_CharMappings::su_ToLower(a) - CT_CharMappings::su_ToLower(b);
}

// A zero follows each view.
int CompareViews(WideView a, WideView b, bool case_sensitive, std::uint32_t count) {
    const std::size_t shared = std::min(a.size(), b.size()) + 1;
    const std::size_t limit = count == 0 ? shared : std::min<std::size_t>(shared, count);
    for (std::size_t at = 0; at < limit; ++at) {
        // Where case differs it mostly goes on differing: only behind equal characters is the run
        // worth measuring.
        if (a.data()[at] == b.data()[at]) {
            at += platform::CommonLength(a.data() + at, b.data() + at, limit - at);
            if (at == limit) return 0;
        }
        const int difference = Difference(a.data()[at], b.data()[at], case_sensitive);
        if (difference != 0 || a.data()[at] == 0) return difference;
    }
    return 0;
}

// 8-bit text of the default page as far as `count` characters (0: all) from `offset` reach.
CT_UString WidenUpTo(const char* text, std::uint32_t offset, std::uint32_t count) {
    const std::uint64_t characters =
        count == 0 ? std::uint64_t{CT_String::kToEnd} : std::uint64_t{offset} + count;
    const std::string_view part = zelkor::detail::DefaultPageText(text, characters);
    const std::size_t most = std::min<std::size_t>(part.size(), CT_String::kToEnd - 1);
    return CT_UString(part.data(), static_cast<std::uint32_t>(most));
}

// A string as far as that.
CT_UString WidenUpTo(const CT_String* text, std::uint32_t offset, std::uint32_t count) {
    if (count == 0 || text == nullptr) return CT_UString(text);
    const auto* const narrow = zelkor::detail::As<CT_CString>(text);
    if (narrow == nullptr) return CT_UString(text);
    return zelkor::detail::WidenSome(View(*narrow), std::uint64_t{offset} + count,
                                     narrow->n_GetCodePage());
}

char16_t* Units(CT_UString& text) {
    return text.quz_Get();
}
char* Units(CT_CString& text) {
    return text.qcz_Get();
}

// The digits of the value as a signed number, without the sign.
template <typename Unit>
struct Digits {
    explicit Digits(std::uint32_t value) : negative(value > 0x7FFFFFFF) {
        std::uint32_t magnitude = negative ? 0 - value : value;
        do {
            text[--begin] = static_cast<Unit>('0' + magnitude % 10);
            magnitude /= 10;
        } while (magnitude != 0);
    }
    // The last digit not taken yet.
    [[nodiscard]] bool AtEnd() const { return begin == end; }
    Unit Take() { return text[--end]; }

    std::array<Unit, 10> text;
    std::size_t begin = 10;
    std::size_t end = 10;
    bool negative;
};

template <typename Unit, typename String>
void FormatFixed(String* out, std::uint32_t value, std::uint32_t width, Unit group_separator,
                 Unit decimal_separator, std::uint32_t decimals) {
    if (out == nullptr) return;
    const std::uint32_t field = width == kWholeNumber ? kWholeNumberField : width;
    if (field == 0) return out->vv_Init();
    String result(*out);  // for its growth and code page
    result.vv_Init();
    result.vv_Replace(Unit{' '}, field, 0);
    Unit* const units = Units(result);
    std::uint32_t at = field;
    const auto put = [&](Unit unit) {
        if (at != 0) units[--at] = unit;
    };
    Digits<Unit> digits(value);
    if (decimals != 0) {
        for (std::uint32_t i = 0; i < decimals && at != 0; ++i) {
            put(digits.AtEnd() ? Unit{'0'} : digits.Take());
        }
        if (decimal_separator != 0) put(decimal_separator);
        if (digits.AtEnd()) put(Unit{'0'});
    }
    for (int written = 0; !digits.AtEnd(); ++written) {
        if (written != 0 && written % 3 == 0 && group_separator != 0) put(group_separator);
        put(digits.Take());
    }
    if (digits.negative) put(Unit{'-'});
    if (width == kWholeNumber) result.vv_Remove(at, 0);
    *out = std::move(result);
}

}  // namespace

std::uint32_t CT_StringTools::sn_FindAny(Text characters, Text text, std::uint32_t from,
                                         int direction) {
    const WideView searched = text.Get();
    const auto length = static_cast<std::uint32_t>(searched.size());
    return Search(searched, characters.Get(), from, sv_CheckOffset(length, direction), true);
}

std::uint32_t CT_StringTools::sn_FindNot(Text characters, Text text, std::uint32_t from,
                                         int direction) {
    const WideView searched = text.Get();
    const auto length = static_cast<std::uint32_t>(searched.size());
    return Search(searched, characters.Get(), from, sv_CheckOffset(length, direction), false);
}

int CT_StringTools::si_CompareStrings(const char16_t* a, const char16_t* b, int case_sensitive,
                                      std::uint32_t count, std::uint32_t offset_a,
                                      std::uint32_t offset_b) {
    const char16_t* const left = a == nullptr ? u"" : a + offset_a;
    const char16_t* const right = b == nullptr ? u"" : b + offset_b;
    // Measuring the texts first would read behind the characters compared.
    for (std::size_t at = 0; count == 0 || at < count; ++at) {
        if (left[at] != right[at]) {
            const int difference = Difference(left[at], right[at], case_sensitive != 0);
            if (difference != 0) return difference;
        } else if (left[at] == 0) {
            return 0;
        }
    }
    return 0;
}

int CT_StringTools::si_CompareStrings(const char* a, const char* b, int case_sensitive,
                                      std::uint32_t count, std::uint32_t offset_a,
                                      std::uint32_t offset_b) {
    const CT_UString left = WidenUpTo(a, offset_a, count);
    const CT_UString right = WidenUpTo(b, offset_b, count);
    return si_CompareStrings(&left, &right, case_sensitive, count, offset_a, offset_b);
}

int CT_StringTools::si_CompareStrings(const CT_String* a, const CT_String* b, int case_sensitive,
                                      std::uint32_t count, std::uint32_t offset_a,
                                      std::uint32_t offset_b) {
    using Core = StringCore<char16_t>;
    const CT_UString left = WidenUpTo(a, offset_a, count);
    const CT_UString right = WidenUpTo(b, offset_b, count);
    return CompareViews(Core::Tail(View(left), offset_a), Core::Tail(View(right), offset_b),
                        case_sensitive != 0, count);
}

void CT_StringTools::sv_FormatNumber(CT_UString* out, std::uint32_t value, std::uint32_t width,
                                     char16_t group_separator, char16_t decimal_separator,
                                     std::uint32_t decimals) {
    FormatFixed(out, value, width, group_separator, decimal_separator, decimals);
}

void CT_StringTools::sv_FormatNumber(CT_CString* out, std::uint32_t value, std::uint32_t width,
                                     char group_separator, char decimal_separator,
                                     std::uint32_t decimals) {
    FormatFixed(out, value, width, group_separator, decimal_separator, decimals);
}

std::uint32_t CT_StringTools::sv_CheckOffset(std::uint32_t length, int direction) {
    return direction < 0 ? kNotFound : length;
}
