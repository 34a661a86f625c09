// Numbers by the conventions of locales.
#include "Foundation/Core/String/FormatString.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "Core/String/StringTexts.h"
#include "Foundation/Platform/Nls/Locales.h"

namespace {

std::string Formatted(auto value, LCID locale, std::uint32_t decimals, auto grouping) {
    CT_UString out(u"before");
    const BOOL done = CT_FormatString::sb_FormatNumber(&out, value, locale, decimals, grouping);
    EXPECT_EQ(done, out.n_GetLength() != 0);
    return test::Ascii<test::Wide>(out);
}

TEST(FormatStringTest, FollowsTheLocale) {
    platform::SetDefaultLocales(0x0407, 0x0409);
    EXPECT_EQ(Formatted(1234567u, 0, 2, 3u), "1.234.567,00");
    EXPECT_EQ(Formatted(-1234.5f, 0, 1, u"3;0"), "-1.234,5");
    platform::SetDefaultLocales(0, 0);
    EXPECT_EQ(Formatted(4294967295u, 0x0409, 0, u"3;2;0"), "4,29,49,67,295");
    EXPECT_EQ(Formatted(1234567u, 0x0409, 1, u"3"), "1234,567.0");
    EXPECT_EQ(Formatted(-0.125f, 0x0409, 2, 3u), "-0.13");
    EXPECT_EQ(Formatted(-0.0f, 0x0409, 2, 3u), "0.00");
    EXPECT_EQ(Formatted(0.5f, 0x043A, 1, 3u), "0,5");  // Maltese, from the library's own list
    using Limits = std::numeric_limits<float>;
    EXPECT_EQ(Formatted(Limits::lowest(), 0x0409, 9, 1u).size(), 1u + 39 + 38 + 10);
    for (const float value : {Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()}) {
        EXPECT_EQ(Formatted(value, 0x0409, 2, 3u), "");
    }
    EXPECT_EQ(Formatted(5u, 0x0409, 10, 3u), "");
    EXPECT_EQ(Formatted(5u, 0x0409, 0, u"3;"), "");
    EXPECT_EQ(Formatted(5u, 0xFFFF, 0, 3u), "");
}

}  // namespace
