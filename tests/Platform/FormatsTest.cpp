// Numbers in the conventions of a locale.
#include "Foundation/Platform/Locales/Formats.h"

#include <gtest/gtest.h>

#include <string>

#include "Foundation/Platform/LastError.h"
#include "Support/Text.h"

namespace platform = zelkor::platform;

namespace {

using platform::FormatNumber;
using platform::NumberFormat;

std::string Formatted(std::u16string_view number, const NumberFormat& format) {
    char16_t area[600];
    platform::SetLastError(0);
    const int length = FormatNumber(number, format, area, 600);
    EXPECT_EQ(FormatNumber(number, format, nullptr, 0), length);
    if (length == 0) return "error " + std::to_string(platform::LastError());
    EXPECT_EQ(FormatNumber(number, format, area, length - 1), 0);
    EXPECT_EQ(platform::LastError(), platform::kErrorInsufficientBuffer);
    EXPECT_EQ(area[length - 1], 0);
    return test::Utf8(std::u16string_view(area, static_cast<std::size_t>(length - 1)));
}

// Number, digits, leading zero, grouping, negative order, text.
TEST(FormatsTest, FollowsTheConventionsGiven) {
    for (const auto& fields :
         test::Table(R"(1234567|0|1|3|1|1,234,567 / 123456789|2|1|32|1|12,34,56,789.00
123456789|2|1|30|1|123456,789.00 / 123456789|0|1|0|1|123456789
123456789|0|1|1234|1|123,456,78,9 / 123456789|0|1|120|1|123456,78,9 / -123|1|1|3|0|(123.0)
-123|1|1|3|1|-123.0 / -123|1|1|3|2|- 123.0 / -123|1|1|3|3|123.0- / -123|1|1|3|4|123.0 -
0.5|1|0|3|1|.5 / -.5|1|1|3|1|-0.5 / .5|0|0|3|1|1 / .4|0|0|3|1|0 / 0|2|0|3|1|.00
007.|0|1|3|1|7 / -0.004|2|1|3|0|0.00 / -0.005|2|1|3|0|(0.01) / 999.995|2|1|3|1|1,000.00
0.95|1|0|3|1|1.0 / 1.25|9|1|3|1|1.250000000 / 1.2349999|2|1|3|1|1.23 / |0|1|3|1|
-|0|1|3|1| / .|0|1|3|1| / --1|0|1|3|1| / 1-|0|1|3|1| / 1.2.3|0|1|3|1| / +1|0|1|3|1|
 1|0|1|3|1| / 1e3|0|1|3|1| / 1,5|0|1|3|1| / ١|0|1|3|1| / 1|10|1|3|1| / 1|0|2|3|1|
1|0|1|3|5|)")) {
        SCOPED_TRACE(testing::PrintToString(fields));
        const auto number = [&](std::size_t field) {
            return static_cast<std::uint32_t>(std::stoul(fields[field]));
        };
        const NumberFormat format{.digits = number(1),
                                  .leading_zero = number(2),
                                  .grouping = number(3),
                                  .negative_order = number(4)};
        const std::string wanted = fields[5].empty() ? "error 87" : fields[5];
        EXPECT_EQ(Formatted(test::Utf16(fields[0]), format), wanted);
    }
    const NumberFormat words{3, 1, 3, u" point ", u"' ", 4, u"minus"};
    EXPECT_EQ(Formatted(u"-1234.5678", words), "1' 234 point 568 minus");
}

// Thousandths as a decimal number, cut behind some digits.
std::string Decimal(int thousandths, std::size_t digits) {
    std::string fraction = std::to_string(1000 + thousandths % 1000);
    fraction[0] = '.';
    return std::to_string(thousandths / 1000) + fraction.substr(0, digits == 0 ? 0 : digits + 1);
}

TEST(FormatsTest, RoundsHalfAwayFromZero) {
    for (int number = 0; number <= 20000; ++number) {
        int unit = 1000;
        for (std::uint32_t digits = 0; digits <= 3; ++digits, unit /= 10) {
            const int rounded = (number + unit / 2) / unit * unit;
            const std::string text = Decimal(number, 3);
            ASSERT_EQ(Formatted(test::Utf16(text), {.digits = digits}), Decimal(rounded, digits));
        }
    }
}

// Text and grouping; 99: none.
TEST(FormatsTest, ReadsTheGroupingsOfLocales) {
    for (
        const auto& fields : test::Table(
            R"(3;0|3 / 3;2;0|32 / 3|30 / 3;2|320 / 0|0 / |0 / 0;0|0 / 4;0|4 / 1;2;3;4;5;6;7;8;9;0|123456789
;|99 / 3;|99 / x|99 / 33|99 / 3,0|99 / 1;2;3;4;5;6;7;8;9;1;0|99 / 1;2;3;4;5;6;7;8;9;1|99)")) {
        std::uint32_t grouping = 99;
        const bool read = platform::ReadGrouping(test::Utf16(fields[0]), &grouping);
        EXPECT_EQ(read, grouping != 99) << fields[0];
        EXPECT_EQ(std::to_string(grouping), fields[1]) << fields[0];
    }
}

}  // namespace
