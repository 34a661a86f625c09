// Both string classes under one name, so that one table of cases serves the two.
#ifndef TESTS_CORE_STRING_STRINGTEXTS_H
#define TESTS_CORE_STRING_STRINGTEXTS_H

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"
#include "Support/Errors.h"
#include "Support/Text.h"

namespace test {

inline constexpr std::uint32_t kAll = 0xFFFFFFFF;

struct Narrow {
    using String = CT_CString;
    using Unit = char;
    static std::string Text(std::string_view ascii) { return std::string(ascii); }
    static std::string Ascii(const CT_CString& text) { return text.qccz_Get(); }
    static const char* Get(const CT_CString& text) { return text.qccz_Get(); }
    static char At(const CT_CString& text, std::uint32_t index) { return text.c_GetAt(index); }
};

struct Wide {
    using String = CT_UString;
    using Unit = char16_t;
    static std::u16string Text(std::string_view ascii) { return Utf16(ascii); }
    static std::string Ascii(const CT_UString& text) { return Utf8(text.qcuz_Get()); }
    static const char16_t* Get(const CT_UString& text) { return text.qcuz_Get(); }
    static char16_t At(const CT_UString& text, std::uint32_t index) { return text.u_GetAt(index); }
};

inline int Sign(long long value) {
    return (value > 0) - (value < 0);
}

using BothKinds = testing::Types<Narrow, Wide>;

// A string of the kind, made from ASCII.
template <typename Kind>
typename Kind::String Make(std::string_view ascii) {
    return typename Kind::String(Kind::Text(ascii).c_str());
}

// The zero-terminated text; fails the test when the length disagrees with it.
template <typename Kind>
std::string Ascii(const typename Kind::String& text) {
    const std::string ascii = Kind::Ascii(text);
    EXPECT_EQ(text.vn_GetLength(), ascii.size());
    EXPECT_EQ(text.n_GetLength(), ascii.size());
    return ascii;
}

}  // namespace test

#endif
