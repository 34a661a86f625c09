// Numbers by the conventions of locales.
#include "Foundation/Core/String/FormatString.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "Core/String/StringTexts.h"
#include "Foundation/Platform/Nls/Locales.h"
#include "Support/Memory.h"

namespace {

// LCID, value, decimals, grouping, text; nothing for failure. Values with a period are floats.
TEST(FormatStringTest, FollowsTheLocale) {
    platform::SetDefaultLocales(0x0407, 0x0409);  // 0: German
    for (const auto& row : test::Table(R"(0|1234567|2|3|1.234.567,00 / 0|1234567.5|0|0|1234568
1033|1234567|0|3|1,234,567 / 1033|1234567|0|32|12,34,567 / 1033|1234567|1|30|1234,567.0
1033|4294967295|0|3;0|4,294,967,295 / 1033|1234567|0|3;2;0|12,34,567 / 1033|1234567|0|3|1,234,567
1033|-0.125|2|3|-0.13 / 1033|-0.0|2|3|0.00 / 1033|16777216.0|9|3|16,777,216.000000000
1031|-1234.5|1|3|-1.234,5 / 1033|5|10|3| / 1033|5|0|3;| / 65535|5|0|3| / 1082|0.5|1|3|0,5)")) {
        SCOPED_TRACE(testing::PrintToString(row));
        const auto number = [](const std::string& text) {
            return static_cast<std::uint32_t>(std::stoul(text));
        };
        const LCID lcid = number(row[0]);
        const bool real = row[1].find('.') != std::string::npos,
                   text = row[3].find(';') != row[3].npos;
        const std::u16string grouping = test::Utf16(row[3]);
        CT_UString out(u"before");
        BOOL done = FALSE;
        const auto format = [&](auto value) {
            done = text ? CT_FormatString::sb_FormatNumber(&out, value, lcid, number(row[2]),
                                                           grouping.c_str())
                        : CT_FormatString::sb_FormatNumber(&out, value, lcid, number(row[2]),
                                                           number(row[3]));
        };
        if (real) {
            format(std::stof(row[1]));
        } else {
            format(number(row[1]));
        }
        EXPECT_EQ(done, !row[4].empty());
        EXPECT_EQ(test::Ascii<test::Wide>(out), row[4]);
    }
    platform::SetDefaultLocales(0, 0);
}

TEST(FormatStringTest, RefusesWhatIsNoNumberAndWritesTheLargest) {
    using Limits = std::numeric_limits<float>;
    CT_UString out(u"before");
    for (const float value : {Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()}) {
        EXPECT_FALSE(CT_FormatString::sb_FormatNumber(&out, value, 0x0409, 2, 3u));
        EXPECT_EQ(out.n_GetLength(), 0u);
    }
    EXPECT_TRUE(CT_FormatString::sb_FormatNumber(&out, Limits::lowest(), 0x0409, 9, 1u));
    EXPECT_EQ(out.n_GetLength(), 1u + 39 + 38 + 10);
    EXPECT_GT(test::ExpectUnchangedWithoutMemory([] { return CT_UString(u"before"); },
                                                 [](CT_UString& text) {
                                                     CT_FormatString::sb_FormatNumber(
                                                         &text, 1234567u, 0x0409, 2, 3u);
                                                 },
                                                 test::Ascii<test::Wide>),
              0u);
}

}  // namespace
