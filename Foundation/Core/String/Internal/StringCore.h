// The algorithms that both string classes share, over a CT_Buffer of zero-terminated units. For the
// sources of this folder and of System/String.
//
// Buffers without a block or with nothing used are empty texts. Views handed in may lie in the
// buffer that is changed. Positions lie within the length. Every operation has its memory before
// it changes anything.
#ifndef FOUNDATION_CORE_STRING_INTERNAL_STRINGCORE_H
#define FOUNDATION_CORE_STRING_INTERNAL_STRINGCORE_H

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <typeinfo>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/String/String.h"
#include "Foundation/Platform/Scan.h"

class CT_UString;

namespace zelkor::detail {

template <typename Unit>
struct StringCore {
    using View = std::basic_string_view<Unit>;

    // `length` units of a text, 0xFFFFFFFF: up to its zero; a null text is empty.
    [[nodiscard]] static View Of(const Unit* text, std::uint32_t length) noexcept;
    // The same, ending at a zero within `length` in any case; nothing behind that is read.
    [[nodiscard]] static View UpToZero(const Unit* text, std::uint32_t length) noexcept;
    // The buffer's text; a zero follows it.
    [[nodiscard]] static View Text(const CT_Buffer& buffer) noexcept {
        static constexpr Unit kEmpty[1] = {};
        const auto* const header = BufferAccess::Header(buffer);
        if (header == nullptr || header->used_size < sizeof(Unit)) return View(kEmpty, 0);
        return View(reinterpret_cast<const Unit*>(header + 1),
                    header->used_size / sizeof(Unit) - 1);
    }

    // The text from `at` on, empty behind its end; what follows the text follows the tail.
    [[nodiscard]] static View Tail(View text, std::uint32_t at) noexcept {
        return text.substr(std::min<std::size_t>(at, text.size()));
    }

    static void SetSize(CT_Buffer& buffer, std::uint32_t length, bool keep);
    static void SetLength(CT_Buffer& buffer, std::uint32_t length);
    static void Update(CT_Buffer& buffer);

    static void Assign(CT_Buffer& buffer, View text);
    static void Format(CT_Buffer& buffer, const Unit* format, std::va_list arguments);

    static void AppendUnit(CT_Buffer& buffer, Unit unit);
    static void Append(CT_Buffer& buffer, View text);
    static void Insert(CT_Buffer& buffer, View text, std::uint32_t at);
    static void Replace(CT_Buffer& buffer, View text, std::uint32_t at);
    static void Fill(CT_Buffer& buffer, Unit unit, std::uint32_t count, std::uint32_t at);
    static void SetAt(CT_Buffer& buffer, Unit unit, std::uint32_t index);
    static void Remove(CT_Buffer& buffer, std::uint32_t count, std::uint32_t at);
    static void StripLeft(CT_Buffer& buffer);
    static void StripRight(CT_Buffer& buffer);
    // `set` and the sets of Translate must not lie in an unshared block of the buffer.
    static void Strip(CT_Buffer& buffer, View set);
    static void Translate(CT_Buffer& buffer, View from, View to);

    [[nodiscard]] static std::uint32_t Find(View text, Unit unit, std::uint32_t from) noexcept;
    [[nodiscard]] static std::uint32_t Find(View text, View wanted, std::uint32_t from) noexcept;
    // By code over at most `limit` units, and not beyond a zero: -1, 0 or 1. A zero follows `left`,
    // and `right` when the limit reaches beyond it.
    [[nodiscard]] static int Compare(View left, View right, std::uint32_t limit) noexcept {
        using Code = std::make_unsigned_t<std::conditional_t<sizeof(Unit) == 1, char, short>>;
        const std::size_t count =
            std::min<std::size_t>(std::min(left.size(), right.size()) + 1,
                                  limit == CT_String::kToEnd ? View::npos : limit);
        const std::size_t common = platform::CommonLength(left.data(), right.data(), count);
        if (common == count) return 0;
        return static_cast<Code>(left.data()[common]) < static_cast<Code>(right.data()[common])
                   ? -1
                   : left.data()[common] != right.data()[common];
    }
    // The same of two whole texts.
    [[nodiscard]] static int Compare(const CT_Buffer& left, const CT_Buffer& right) noexcept {
        return Compare(Text(left), Text(right), CT_String::kToEnd);
    }
    // With a text of at most `limit` units or up to its zero, without measuring it first.
    [[nodiscard]] static int Compare(View left, const Unit* right, std::uint32_t limit) noexcept;
    [[nodiscard]] static bool Match(View text, View pattern) noexcept;
};

extern template struct StringCore<char>;
extern template struct StringCore<char16_t>;

// The first `count` characters (UTF-16 units when converted) of 8-bit text of the default code
// page, up to its zero; 0xFFFFFFFF: all. Nothing behind them is read.
[[nodiscard]] std::string_view DefaultPageText(const char* text, std::uint64_t count) noexcept;

// The UTF-16 form of 8-bit text, or of enough of it for its first `count` units.
[[nodiscard]] CT_UString Widen(std::string_view text, std::uint32_t code_page);
[[nodiscard]] CT_UString WidenSome(std::string_view text, std::uint64_t count,
                                   std::uint32_t code_page);

// The code page that UTF-16 text takes on its way into a string of a page: 1252 for 1200, which is
// UTF-16 itself, and the default one for 0xFFFFFFFF.
[[nodiscard]] constexpr std::uint32_t PageInUse(std::uint32_t page) noexcept {
    if (page == 1200) return 1252;
    return page == 0xFFFFFFFF ? 0 : page;
}

// Whether the string's class is this very one; a false "no" is possible and harmless.
template <typename String>
[[nodiscard]] bool IsExactly(const CT_String& text) noexcept {
    return &typeid(text) == &typeid(String);
}

// The part of class `String` of a string, null when it is of the other kind.
template <typename String>
[[nodiscard]] const String* As(const CT_String* text) {
    if (IsExactly<String>(*text)) return static_cast<const String*>(text);
    return static_cast<const String*>(text->vpv_IsKindOf(String::spcco_GetType()));
}

}  // namespace zelkor::detail

#endif
