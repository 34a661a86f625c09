#include "Foundation/Core/String/StringConvert.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/Internal/StringCore.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Text/Utf.h"

namespace platform = zelkor::platform;

using platform::kUtf8Page;
using zelkor::detail::RecordSystemError;
using zelkor::detail::StringCore;

namespace {

// Results of up to this many elements are made on the stack and copied into the kept block.
constexpr std::size_t kShort = 512;
constexpr std::size_t kLongest = std::numeric_limits<int>::max();

constexpr std::uint32_t kUtf16Page = 1200;
constexpr std::uint32_t kWesternPage = 1252;

// Assigns what `convert(area, capacity)` writes. `bound` elements hold any result, so that one pass
// does and its size need not be asked for first. Answers the number of elements; 0 is a failure,
// which changes nothing.
template <typename Unit, typename Assign, typename Convert>
int ConvertInto(CT_String* out, std::size_t bound, const Convert& convert, const Assign& assign) {
    if (bound <= kShort) {
        std::array<Unit, kShort> area;
        const int length = convert(area.data(), static_cast<int>(kShort));
        if (length > 0) assign(area.data(), static_cast<std::uint32_t>(length));
        return length;
    }
    const std::size_t capacity = std::min(bound, kLongest);
    CT_Buffer fresh(0u, out->pcco_GetBuffer()->n_GetGrowth());
    StringCore<Unit>::SetSize(fresh, static_cast<std::uint32_t>(capacity), false);
    const int length = convert(static_cast<Unit*>(fresh.qv_Get()), static_cast<int>(capacity));
    if (length > 0) {
        StringCore<Unit>::SetLength(fresh, static_cast<std::uint32_t>(length));
        StringCore<Unit>::SetSize(fresh, static_cast<std::uint32_t>(length), true);
        out->vv_Init(&fresh);
    }
    return length;
}

// Words and short lines of well-formed UTF-8, by far the most frequent texts, straight through the
// kernels. False: nothing is done, the general way decides.
bool DecodeShortUtf8(CT_UString* out, std::string_view text) {
    if (text.size() > kShort) return false;
    std::array<char16_t, kShort> area;
    const platform::UtfProgress done =
        platform::Utf8ToUtf16(text.data(), text.size(), area.data(), area.size());
    if (done.taken != text.size() || (done.written == 1 && area[0] == 0)) return false;
    out->vv_Init(area.data(), static_cast<std::uint32_t>(done.written));
    return true;
}

bool EncodeShortUtf8(CT_CString* out, std::u16string_view text) {
    if (text.size() > kShort / 3) return false;
    std::array<char, kShort> area;
    const platform::UtfProgress done =
        platform::Utf16ToUtf8(text.data(), text.size(), area.data(), area.size());
    if (done.taken != text.size()) return false;
    out->vv_Init(area.data(), static_cast<std::uint32_t>(done.written), kUtf8Page);
    return true;
}

// Records why a conversion gave nothing. Its error is told from an older one of the thread by
// converting once more. Bytes that give no character at all, such as half of a shift, are a failure
// that the platform has no number for.
template <typename Convert>
void Fail(CT_String* out, const Convert& convert) {
    platform::SetLastError(platform::kErrorSuccess);
    (void)convert(nullptr, 0);
    if (platform::LastError() == platform::kErrorSuccess) {
        platform::SetLastError(platform::kErrorNoUnicodeTranslation);
    }
    RecordSystemError();
    out->v_Set(0u, TRUE);
}

}  // namespace

int CT_StringConvert::si_MultiToWide(CT_UString* out, const char* text, std::uint32_t length,
                                     std::uint32_t code_page) {
    if (out == nullptr) return 0;
    const auto source = StringCore<char>::Of(text, length);
    if (source.empty()) {
        out->v_Set(0u, TRUE);
        return 0;
    }
    if (code_page == kUtf8Page && DecodeShortUtf8(out, source)) {
        return static_cast<int>(out->n_GetLength());
    }
    const auto convert = [&](char16_t* area, int capacity) {
        if (source.size() > kLongest) {
            platform::SetLastError(platform::kErrorInvalidParameter);
            return 0;
        }
        const std::uint32_t flags =
            platform::TakesTableFlags(code_page) ? std::uint32_t{platform::kPrecomposed} : 0;
        const int written = platform::MultiByteToWideChar(
            code_page, flags, source.data(), static_cast<int>(source.size()), area, capacity);
        if (written == 1 && capacity != 0 && area[0] == 0) area[0] = u'?';
        return written;
    };
    const int converted = ConvertInto<char16_t>(
        out, source.size(), convert,
        [out](const char16_t* area, std::uint32_t count) { out->vv_Init(area, count); });
    if (converted == 0) Fail(out, convert);
    return converted;
}

int CT_StringConvert::si_MultiToWide(CT_UString* out, const CT_CString* text) {
    if (text == nullptr) return si_MultiToWide(out, nullptr, 0, 0);
    return si_MultiToWide(out, text->qccz_Get(), text->n_GetLength(), text->n_GetCodePage());
}

int CT_StringConvert::si_WideToMulti(CT_CString* out, const char16_t* text, std::uint32_t length,
                                     std::uint32_t code_page, const char* default_character,
                                     BOOL* used_default) {
    if (out == nullptr) return 0;
    const std::uint32_t page = code_page == kUtf16Page ? kWesternPage : code_page;
    const auto source = StringCore<char16_t>::Of(text, length);
    if (source.empty()) {
        if (used_default != nullptr) *used_default = FALSE;
        out->v_Set(0u, TRUE);
        out->v_SetCodePage(page);
        return 0;
    }
    const bool plain = default_character == nullptr && used_default == nullptr;
    if (page == kUtf8Page && plain && EncodeShortUtf8(out, source)) {
        return static_cast<int>(out->n_GetLength());
    }
    const auto convert = [&](char* area, int capacity) {
        if (source.size() > kLongest) {
            platform::SetLastError(platform::kErrorInvalidParameter);
            return 0;
        }
        return platform::WideCharToMultiByte(page, 0, source.data(),
                                             static_cast<int>(source.size()), area, capacity,
                                             default_character, used_default);
    };
    const int converted = ConvertInto<char>(
        out, platform::MaxBytes(page, source.size()), convert,
        [out, page](const char* area, std::uint32_t count) { out->vv_Init(area, count, page); });
    if (converted == 0) Fail(out, convert);
    out->v_SetCodePage(page);
    return converted;
}

int CT_StringConvert::si_WideToMulti(CT_CString* out, const CT_UString* text,
                                     std::uint32_t code_page, const char* default_character,
                                     BOOL* used_default) {
    if (text == nullptr) {
        return si_WideToMulti(out, nullptr, 0, code_page, default_character, used_default);
    }
    return si_WideToMulti(out, text->qcuz_Get(), text->n_GetLength(), code_page, default_character,
                          used_default);
}
