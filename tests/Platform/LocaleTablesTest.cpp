// The whole locale table: every value has its form, and what follows from other values agrees.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "Foundation/Core/Character/CharMappings.h"
#include "Foundation/Core/Character/CharProperties.h"
#include "Foundation/Core/Language/LocaleInfo.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/Locales/Locales.h"
#include "tests/Support/Text.h"

namespace {

using namespace zelkor::platform;
using Text = std::u16string;

Text Value(LCID lcid, std::uint32_t type) {
    const auto text = LocaleText(lcid, type);
    EXPECT_TRUE(text.has_value()) << std::hex << type;
    return Text(text.value_or(u""));
}

int Number(LCID lcid, std::uint32_t type) {
    return static_cast<int>(LocaleNumber(lcid, type).value_or(99999));
}

constexpr LCID kInvariant = 0x007F;

template <typename Check>
void EachLocale(Check check) {
    for (std::uint32_t index = 0; index <= LocaleCount(); ++index) {
        const LCID lcid = index == LocaleCount() ? kInvariant : LocaleAt(index);
        SCOPED_TRACE(test::Utf8(Value(lcid, kLocaleLanguage)));
        check(lcid);
    }
}

bool Within(char16_t unit, std::u16string_view set) {
    return set.find(unit) != std::u16string_view::npos;
}

// A picture as its runs of picture letters, each between bars; "?" where a letter is neither quoted
// nor one of them, or a quote is not closed.
Text Runs(const Text& picture, std::u16string_view letters) {
    Text runs = u"|";
    bool quoted = false;
    char16_t before = 0;
    for (const char16_t unit : picture) {
        if (unit != before && runs.back() != u'|') runs += u'|';
        before = unit;
        if (unit == u'\'') {
            quoted = !quoted;
        } else if (!quoted && Within(unit, letters)) {
            runs += unit;
        } else if (!quoted && IsCharAlpha(unit)) {
            return u"?";
        }
    }
    return quoted ? u"?" : runs.back() == u'|' ? runs : runs + u'|';
}

bool Has(const Text& runs, std::u16string_view one) {
    return runs.find(u'|' + Text(one) + u'|') != Text::npos;
}

// 0 month first, 1 day first, 2 year first; 9 when a part is missing.
int OrderOf(const Text& runs) {
    const std::size_t year = runs.find(u"|yyyy|"), month = runs.find(u"|M");
    const std::size_t day = std::min(runs.find(u"|d|"), runs.find(u"|dd|"));
    if (std::max({year, month, day}) == Text::npos) return 9;
    return year < std::min(month, day) ? 2 : day < month ? 1 : 0;
}

// Every text in the locale's language, by its type; those of calendars by their type in the high
// half.
std::multimap<std::uint32_t, Text> Texts(LCID lcid) {
    std::multimap<std::uint32_t, Text> texts;
    for (std::uint32_t type = 1; type <= 0x1014; type = type == 0x5A ? 0x1001 : type + 1) {
        if (type != kLocaleFontSignature) texts.emplace(type, Value(lcid, type));
    }
    for (std::uint32_t i = 0; i < 12; ++i) {
        texts.emplace(0x38, Value(lcid, (0x38 + i) | kLocaleGenitiveNames));
    }
    for (std::uint32_t i = 0; i < kCalendarCount * 0x2F; ++i) {
        const std::uint32_t type = 1 + i % 0x2F;
        if (type == kCalendarEraName) continue;  // in the calendar's own language
        texts.emplace(type << 16, *CalendarText(lcid, 1 + i / 0x2F, type));
    }
    return texts;
}

// Callers of old ask in 8-bit text, so the ANSI page should hold what it can: all but the signs of
// currencies, which are often newer, and languages of more letters than their page.
TEST(LocaleTablesTest, TextsAreWellFormedAndWrittenInTheAnsiPage) {
    const std::set<std::uint32_t> may_be_empty{0x28, 0x29, 0x50, 0x100E, 0x100F};
    const std::set<std::uint32_t> may_end_in_a_blank{0x0F, 0x17, 0x1D};
    const std::set<LCID> more_letters{0x0420, 0x0429, 0x042C, 0x082C, 0x042E,
                                      0x043F, 0x0440, 0x0444, 0x0450, 0x0459};
    EachLocale([&](LCID lcid) {
        const auto page = static_cast<std::uint32_t>(Number(lcid, kLocaleAnsiCodePage));
        bool complete = true;
        for (const auto& [type, text] : Texts(lcid)) {
            SCOPED_TRACE(testing::Message() << std::hex << type << " " << test::Utf8(text));
            EXPECT_LT(text.size(), 80u);
            EXPECT_TRUE(text == test::Utf16(test::Utf8(text))) << "no half of a surrogate pair";
            EXPECT_EQ(text.find_first_of(u"\u200E\u200F\u202F\u2009\u2212\uFFFD|"), Text::npos);
            EXPECT_TRUE(!text.empty() || may_be_empty.contains(type) || type > 0xFFFF);
            if (text.empty()) continue;
            EXPECT_TRUE(may_end_in_a_blank.contains(type) ||
                        !(Within(text.front(), u" \u00A0") || Within(text.back(), u" \u00A0")));
            if (!IsValidCodePage(page) || type == 0x14 || type == kLocaleNativeDigits) continue;
            BOOL lost = FALSE;
            EXPECT_GT(WideCharToMultiByte(page, 0, text.data(), static_cast<int>(text.size()),
                                          nullptr, 0, nullptr, &lost),
                      0);
            complete = complete && lost == FALSE;
            EXPECT_TRUE(lost == FALSE || more_letters.contains(lcid));
        }
        EXPECT_NE(complete, more_letters.contains(lcid));
    });
}

TEST(LocaleTablesTest, NamesIdentifyTheLocale) {
    std::set<Text> full, abbreviations;
    EachLocale([&](LCID lcid) {
        EXPECT_EQ(Number(lcid, 0x01), static_cast<int>(lcid));
        EXPECT_TRUE(full.insert(Value(lcid, 0x02)).second);
        EXPECT_TRUE(abbreviations.insert(Value(lcid, 0x03)).second);
        for (const std::uint32_t type : {0x03u, 0x07u, 0x15u}) {
            EXPECT_EQ(Value(lcid, type).size(), 3u) << std::hex << type;
        }
        EXPECT_EQ(Value(lcid, 0x5A).size(), 2u);
        EXPECT_EQ(Value(lcid, 0x59).size() / 2, 1u) << "two letters or three";
        // The language of the territory is a row, and one of the same territory.
        const LCID home = LocaleNumber(lcid, 0x09).value_or(0);
        EXPECT_EQ(ResolveLocale(home), home);
        EXPECT_TRUE(lcid == kInvariant || Value(home, 0x5A) == Value(lcid, 0x5A));
    });
}

TEST(LocaleTablesTest, NamesOfDaysAndMonthsAreDistinct) {
    const struct {
        std::uint32_t calendar, type, count;
    } lists[] = {
        {1, 0x07, 7},        {1, 0x15, 12}, {1, 0x22, 12},
        {1, 0x10000015, 12}, {6, 0x15, 13},  // the thirteenth is empty
        {8, 0x15, 13},
    };
    EachLocale([&](LCID lcid) {
        for (const auto& [calendar, type, count] : lists) {
            std::set<Text> found;
            for (std::uint32_t i = 0; i < count; ++i) {
                found.insert(Text(*CalendarText(lcid, calendar, type + i)));
            }
            EXPECT_EQ(found.size(), count) << calendar << " " << std::hex << type;
            EXPECT_EQ(found.contains(u""), calendar == 6);
        }
        // The locale's own types have the months of its calendar.
        for (std::uint32_t i = 0; i < 24; ++i) {
            EXPECT_EQ(Value(lcid, kLocaleMonthName1 + i),
                      CalendarText(lcid, static_cast<std::uint32_t>(Number(lcid, 0x1009)),
                                   (i < 12 ? 0x15 : 0x22) + i % 12));
        }
        // The form beside a day number begins alike, and does not bring what the picture brings.
        const Text picture = Value(lcid, kLocaleLongDate);
        const std::size_t behind = picture.find(u"MMMM'");
        const Text brought =
            behind == Text::npos
                ? Text(u"?")
                : picture.substr(behind + 5, picture.find_first_of(u" '", behind + 5) - behind - 5);
        for (std::uint32_t type = kLocaleMonthName1; type < kLocaleMonthName1 + 12; ++type) {
            const Text alone = Value(lcid, type), beside = Value(lcid, type | kLocaleGenitiveNames);
            EXPECT_EQ(CT_CharMappings::su_ToLower(alone[0]),
                      CT_CharMappings::su_ToLower(beside[0]));
            EXPECT_TRUE(alone == beside || brought.empty() || !beside.ends_with(brought));
        }
    });
}

TEST(LocaleTablesTest, PicturesAndTheirNumbersAgree) {
    EachLocale([](LCID lcid) {
        const Text short_date = Value(lcid, kLocaleShortDate),
                   clock = Value(lcid, kLocaleTimeFormat);
        const Text brief = Runs(short_date, u"dMyg"), time = Runs(clock, u"hHmst");
        SCOPED_TRACE(test::Utf8(brief + u" " + time));
        const bool late = Has(time, u"H") || Has(time, u"HH");
        const std::pair<std::uint32_t, int> numbers[] = {
            {0x21, OrderOf(brief)},
            {0x22, OrderOf(Runs(Value(lcid, kLocaleLongDate), u"dMyg"))},
            {0x24, Has(brief, u"yyyy")},
            {0x26, Has(brief, u"dd")},
            {0x27, Has(brief, u"MM")},
            {0x23, late},
            {0x25, Has(time, u"HH") || Has(time, u"hh")},
            {0x1005, time.starts_with(u"|tt|")}};
        for (const auto& [type, number] : numbers) EXPECT_EQ(Number(lcid, type), number) << type;
        EXPECT_NE(Has(brief, u"M"), Has(brief, u"MM"));
        EXPECT_NE(late, Has(time, u"h") || Has(time, u"hh"));
        EXPECT_NE(late, Has(time, u"tt"));
        EXPECT_TRUE(Has(time, u"mm") && Has(time, u"ss"));
        const Text month = Runs(Value(lcid, kLocaleYearMonth), u"dMyg");
        EXPECT_TRUE(Has(month, u"yyyy") && std::ranges::count(month, u'|') == 3);
        EXPECT_TRUE(late || !Value(lcid, kLocaleBeforeNoon).empty());
        EXPECT_EQ(Value(lcid, kLocaleBeforeNoon).empty(), Value(lcid, kLocaleAfterNoon).empty());

        // What divides the first two elements is the separator.
        const auto divides = [](const Text& picture, std::u16string_view letters,
                                const Text& sign) {
            const std::size_t first = picture.find_first_of(letters);
            return picture.find(sign, first) == picture.find_first_not_of(picture[first], first);
        };
        EXPECT_TRUE(divides(short_date, u"dMy", Value(lcid, 0x1D)));
        EXPECT_TRUE(divides(clock, u"hH", Value(lcid, 0x1E)));
        for (std::uint32_t i = 0; i < kCalendarCount * 3; ++i) {
            const std::uint32_t type = i % 3 == 2 ? kCalendarYearMonth : kCalendarShortDate + i % 3;
            const Text runs = Runs(Text(*CalendarText(lcid, 1 + i / 3, type)), u"dMyg");
            EXPECT_EQ(Has(runs, u"gg") && Has(runs, u"y"), i / 3 >= 2 && i / 3 <= 4) << i;
        }
    });
}

TEST(LocaleTablesTest, NumbersLieInTheirRanges) {
    // Types and their largest values.
    const unsigned last[] = {0x0D,   1, 0x11,   3,  0x12,   1, 0x19,   3, 0x1A,   3,
                             0x1B,   3, 0x1C,   15, 0x52,   4, 0x1009, 8, 0x100B, 8,
                             0x100C, 6, 0x100D, 2,  0x1010, 4, 0x1014, 2};
    EachLocale([&](LCID lcid) {
        for (std::size_t i = 0; i < std::size(last); i += 2) {
            EXPECT_LE(LocaleNumber(lcid, last[i]), last[i + 1]) << std::hex << last[i];
        }
        EXPECT_EQ(Number(lcid, 0x1004) == 0, Number(lcid, 0x0B) == 1);
        EXPECT_EQ(Number(lcid, 0x1004) == 0, Number(lcid, 0x1011) == 2);
        for (const std::uint32_t page : {0x0Bu, 0x1004u, 0x1011u}) {
            const int number = Number(lcid, page);
            EXPECT_TRUE(number <= 2 || IsValidCodePage(static_cast<std::uint32_t>(number)));
        }
        for (const std::uint32_t decimal : {0x0Eu, 0x16u}) {  // with the thousands' sign behind it
            EXPECT_NE(Value(lcid, decimal), Value(lcid, decimal + 1));
            EXPECT_NE(Value(lcid, decimal), Value(lcid, kLocaleList));
            const Text grouping = Value(lcid, decimal + 2);
            EXPECT_TRUE(grouping == u"3;0" || grouping == u"3;2;0");
        }
        EXPECT_NE(Number(lcid, 0x1009), Number(lcid, 0x100B)) << "the optional calendar is another";
        const Text digits = Value(lcid, kLocaleNativeDigits);
        ASSERT_EQ(digits.size(), 10u);
        for (unsigned i = 0; i < 10; ++i) EXPECT_EQ(digits[i], digits[0] + i);
    });
}

// The signs' places follow from the two orders, written out here as a person would write them.
TEST(LocaleTablesTest, PlacesOfSignsFollowFromTheOrders) {
    const std::u16string_view positive[] = {u"$1", u"1$", u"$ 1", u"1 $"};
    const std::u16string_view negative[] = {u"($1)", u"-$1",  u"$-1",   u"$1-",  u"(1$)", u"-1$",
                                            u"1-$",  u"1$-",  u"-1 $",  u"-$ 1", u"1 $-", u"$ 1-",
                                            u"$ -1", u"1- $", u"($ 1)", u"(1 $)"};
    EachLocale([&](LCID lcid) {
        const auto plus = positive[Number(lcid, 0x1B)];
        const auto minus = negative[Number(lcid, 0x1C)];
        EXPECT_EQ(Number(lcid, 0x54), plus[0] == u'$');
        EXPECT_EQ(Number(lcid, 0x55), Within(u' ', plus));
        EXPECT_EQ(Number(lcid, 0x52), plus[0] == u'$' ? 3 : 1);
        EXPECT_EQ(Number(lcid, 0x56), minus.find(u'$') < minus.find(u'1'));
        EXPECT_EQ(Number(lcid, 0x57), Within(u' ', minus));
        EXPECT_EQ(Number(lcid, 0x53) == 0, Within(u'(', minus));
        EXPECT_EQ(Number(lcid, 0x53) == 1, minus[0] == u'-' && minus[1] == u'1');
        EXPECT_EQ(Number(lcid, 0x54), Number(lcid, 0x56)) << "both put the symbol on one side";
    });
}

constexpr unsigned kRightToLeft = 123, kAlways = 127;

TEST(LocaleTablesTest, SignaturesNameTheScriptAndTheCodePages) {
    const std::map<int, unsigned> page_bits{
        {1252, 0},  {1250, 1}, {1251, 2}, {1253, 3}, {1254, 4}, {1255, 5}, {1256, 6},
        {1257, 7},  {1258, 8}, {874, 16}, {932, 17}, {936, 18}, {949, 19}, {950, 20},
        {1361, 21}, {866, 49}, {862, 53}, {857, 56}, {855, 57}, {852, 58}, {775, 59},
        {737, 60},  {720, 61}, {850, 62}, {437, 63}, {0, 64},   {1, 64}};
    // Locales and the bits of their blocks from 6 on.
    std::map<LCID, std::set<unsigned>> found,
        wanted{{0x0407, {}}, {0x0409, {}}, {0x040E, {}}, {0x0413, {}}, {0x0813, {}}};
    std::istringstream blocks(
        "408 7 419 9 40D 11 401 13 439 15 41E 24 412 56 804 59 465 72 437 26 411 48 411 49 411 50 "
        "411 59 42A 6 42A 29");
    unsigned needed;
    for (LCID lcid; blocks >> std::hex >> lcid >> std::dec >> needed;) wanted[lcid].insert(needed);
    EachLocale([&](LCID lcid) {
        const LocaleSignature signature = GetLocaleSignature(lcid).value();
        const auto has = [&signature](unsigned bit) {
            return (signature.unicode_ranges[bit / 32] >> bit % 32 & 1) != 0;
        };
        EXPECT_TRUE(has(0) && has(kAlways));
        EXPECT_EQ(has(kRightToLeft), CT_LocaleInfo::sb_IsRTL(lcid) != FALSE);
        for (const int i : {0, 1}) {
            EXPECT_EQ(signature.default_code_pages[i] & ~signature.code_pages[i], 0u);
        }
        const auto bit_of = [&](std::uint32_t type) { return page_bits.at(Number(lcid, type)); };
        // Vietnamese has one page for both, with a bit for each use.
        const unsigned oem = lcid == 0x042A ? 47 : bit_of(kLocaleOemCodePage);
        for (unsigned bit = 0; bit < 64; ++bit) {
            EXPECT_EQ(signature.default_code_pages[bit / 32] >> bit % 32 & 1,
                      bit == bit_of(kLocaleAnsiCodePage) || bit == oem)
                << bit;
        }
        if (!wanted.contains(lcid)) return;
        found[lcid] = {};
        for (unsigned bit = 6; bit < kRightToLeft; ++bit) {
            if (has(bit)) found[lcid].insert(bit);
        }
    });
    EXPECT_EQ(found, wanted);
}

// The text-processing types mark the same letters as the character types.
TEST(LocaleTablesTest, LettersAgreeWithTheCharacterTables) {
    for (std::uint32_t unit = 0; unit < 0x10000; ++unit) {
        const auto letter = static_cast<char16_t>(unit);
        ASSERT_EQ(IsCharAlpha(letter), CT_CharProperties::sb_IsTPAlpha(letter) != FALSE)
            << std::hex << unit;
    }
}

}  // namespace
