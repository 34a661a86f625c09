// The whole locale table: every value has its form, and what follows from other values agrees.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Foundation/Core/Character/CharProperties.h"
#include "Foundation/Platform/Nls/CodePages.h"
#include "Foundation/Platform/Nls/Locales.h"
#include "tests/Support/Text.h"

namespace {

using namespace platform;
using Text = std::u16string;

Text Value(LCID lcid, std::uint32_t type) {
    const auto text = LocaleText(lcid, type);
    EXPECT_TRUE(text.has_value()) << std::hex << type;
    return Text(text.value_or(u""));
}

int Number(LCID lcid, std::uint32_t type) {
    return static_cast<int>(LocaleNumber(lcid, type).value_or(99999));
}

template <typename Check>
void EachLocale(Check check) {
    for (std::uint32_t index = 0; index < LocaleCount(); ++index) {
        char name[16];
        std::snprintf(name, sizeof name, "%04X", LocaleAt(index));
        SCOPED_TRACE(name);
        check(LocaleAt(index));
    }
}

bool Within(char16_t unit, std::u16string_view set) {
    return set.find(unit) != std::u16string_view::npos;
}

// A picture cut into runs of one of the letters; other units and quoted texts are dropped. One "?"
// for a quote that is not closed or a letter that is neither quoted nor a picture letter.
std::vector<Text> Elements(const Text& picture, std::u16string_view letters) {
    std::vector<Text> found;
    for (std::size_t at = 0; at < picture.size(); ++at) {
        const char16_t unit = picture[at];
        if (unit == u'\'') {
            at = picture.find(u'\'', at + 1);
            if (at == Text::npos) return {u"?"};
        } else if (Within(unit, letters)) {
            const std::size_t end = std::min(picture.find_first_not_of(unit, at), picture.size());
            found.push_back(picture.substr(at, end - at));
            at = end - 1;
        } else if (IsCharAlpha(unit)) {
            return {u"?"};
        }
    }
    return found;
}

bool Has(const std::vector<Text>& elements, const Text& one) {
    return std::ranges::find(elements, one) != elements.end();
}

// 0 month first, 1 day first, 2 year first; 9 when a part is missing or comes twice.
int OrderOf(const std::vector<Text>& elements) {
    Text order;
    for (const Text& element : elements) {
        if (element[0] != u'd' || element.size() < 3) order += element[0];
    }
    return order == u"Mdy" ? 0 : order == u"dMy" ? 1 : order == u"yMd" || order == u"ydM" ? 2 : 9;
}

TEST(LocaleTablesTest, EveryTextIsWellFormed) {
    EachLocale([](LCID lcid) {
        for (std::uint32_t type = 1; type <= 0x1014; type = type == 0x5A ? 0x1001 : type + 1) {
            if (type == kLocaleFontSignature) continue;
            SCOPED_TRACE(testing::Message()
                         << std::hex << type << " " << test::Utf8(Value(lcid, type)));
            const Text text = Value(lcid, type);
            EXPECT_LT(text.size(), 80u);
            EXPECT_TRUE(text == test::Utf16(test::Utf8(text))) << "no half of a surrogate pair";
            EXPECT_EQ(text.find_first_of(u"\u200E\u200F\u202F\u2009\u2212\uFFFD"), Text::npos);
            if (type != 0x0F && type != 0x17 && !text.empty()) {
                EXPECT_FALSE(Within(text.front(), u" \u00A0") || Within(text.back(), u" \u00A0"));
            }
            const bool may_be_empty = type == 0x28 || type == 0x29 || type == 0x50 ||
                                      type == kLocaleMonthName13 || type == kLocaleShortMonthName13;
            EXPECT_TRUE(may_be_empty || !text.empty());
        }
    });
}

TEST(LocaleTablesTest, NamesIdentifyTheLocale) {
    std::map<Text, LCID> full, abbreviations;
    EachLocale([&](LCID lcid) {
        char16_t hexadecimal[5] = {};
        for (int i = 0; i < 4; ++i) hexadecimal[i] = u"0123456789ABCDEF"[lcid >> (12 - 4 * i) & 15];
        EXPECT_EQ(Value(lcid, 0x01), hexadecimal);
        EXPECT_EQ(Number(lcid, 0x01), static_cast<int>(lcid));
        EXPECT_TRUE(full.emplace(Value(lcid, 0x02), lcid).second);
        EXPECT_TRUE(abbreviations.emplace(Value(lcid, 0x03), lcid).second);
        EXPECT_EQ(Value(lcid, 0x03).size(), 3u);
        EXPECT_EQ(Value(lcid, 0x07).size(), 3u);
        EXPECT_EQ(Value(lcid, 0x06), Value(lcid, 0x1002));
        EXPECT_EQ(Value(lcid, 0x05), Value(lcid, 0x0A));
        EXPECT_EQ(Value(lcid, 0x15).size(), 3u);
        EXPECT_EQ(Value(lcid, 0x5A).size(), 2u);
        const Text language = Value(lcid, 0x59);
        EXPECT_TRUE(language.size() == 2 || language.size() == 3);
        // The language of the territory is a row, and one of the same territory.
        const LCID home = LocaleNumber(lcid, 0x09).value_or(0);
        EXPECT_EQ(ResolveLocale(home), home);
        EXPECT_EQ(Value(home, 0x5A), Value(lcid, 0x5A));
    });
}

TEST(LocaleTablesTest, NamesOfDaysAndMonthsAreDistinct) {
    EachLocale([](LCID lcid) {
        std::set<Text> days, months, genitives;
        for (std::uint32_t i = 0; i < 7; ++i) days.insert(Value(lcid, kLocaleDayName1 + i));
        for (std::uint32_t i = 0; i < 12; ++i) {
            months.insert(Value(lcid, kLocaleMonthName1 + i));
            genitives.insert(Value(lcid, (kLocaleMonthName1 + i) | kLocaleGenitiveNames));
        }
        EXPECT_EQ(days.size(), 7u);
        EXPECT_EQ(months.size(), 12u);
        EXPECT_EQ(genitives.size(), 12u);
        for (const std::uint32_t calendar : {6u, 8u}) {
            std::set<Text> names;
            for (std::uint32_t i = 0; i < 13; ++i) {
                names.insert(Text(*CalendarText(lcid, calendar, kCalendarMonthName1 + i)));
            }
            EXPECT_EQ(names.size(), 13u) << calendar;
            EXPECT_EQ(names.contains(u""), calendar == 6);
        }
    });
}

TEST(LocaleTablesTest, PicturesAndTheirNumbersAgree) {
    EachLocale([](LCID lcid) {
        const auto brief = Elements(Value(lcid, kLocaleShortDate), u"dMyg");
        const auto full = Elements(Value(lcid, kLocaleLongDate), u"dMyg");
        const auto month = Elements(Value(lcid, kLocaleYearMonth), u"dMyg");
        const auto time = Elements(Value(lcid, kLocaleTimeFormat), u"hHmst");
        EXPECT_EQ(Number(lcid, 0x21), OrderOf(brief));
        EXPECT_EQ(Number(lcid, 0x22), OrderOf(full));
        for (const auto& picture : {brief, full, month}) EXPECT_TRUE(Has(picture, u"yyyy"));
        EXPECT_EQ(Number(lcid, 0x24), 1);
        EXPECT_EQ(Number(lcid, 0x26), Has(brief, u"dd"));
        EXPECT_EQ(Number(lcid, 0x27), Has(brief, u"MM"));
        EXPECT_TRUE(Has(brief, u"d") || Has(brief, u"dd"));
        EXPECT_TRUE(Has(brief, u"M") || Has(brief, u"MM"));
        EXPECT_EQ(month.size(), 2u);

        const bool late = Has(time, u"H") || Has(time, u"HH");
        EXPECT_EQ(Number(lcid, 0x23), late);
        EXPECT_NE(late, Has(time, u"h") || Has(time, u"hh"));
        EXPECT_NE(late, Has(time, u"tt"));
        EXPECT_EQ(Number(lcid, 0x25), Has(time, u"HH") || Has(time, u"hh"));
        EXPECT_EQ(Number(lcid, 0x1005), time.front() == u"tt");
        EXPECT_TRUE(Has(time, u"mm") && Has(time, u"ss"));
        EXPECT_TRUE(late || !Value(lcid, kLocaleBeforeNoon).empty());
        EXPECT_EQ(Value(lcid, kLocaleBeforeNoon).empty(), Value(lcid, kLocaleAfterNoon).empty());

        EXPECT_NE(Value(lcid, kLocaleShortDate).find(Value(lcid, 0x1D)), Text::npos);
        EXPECT_NE(Value(lcid, kLocaleTimeFormat).find(Value(lcid, 0x1E)), Text::npos);
        for (std::uint32_t calendar = 1; calendar <= kCalendarCount; ++calendar) {
            for (const std::uint32_t type :
                 {kCalendarShortDate, kCalendarLongDate, kCalendarYearMonth}) {
                const Text picture(*CalendarText(lcid, calendar, type));
                const auto elements = Elements(picture, u"dMyg");
                EXPECT_EQ(Has(elements, u"gg") && Has(elements, u"y"),
                          calendar >= 3 && calendar <= 5)
                    << calendar << test::Utf8(picture);
            }
        }
    });
}

TEST(LocaleTablesTest, NumbersLieInTheirRanges) {
    const std::set<int> unserved{1, 2, 720, 737, 775, 852, 855, 857, 862, 866, 1361};
    // Types and their largest values.
    const unsigned last[] = {0x0D,   1, 0x11,   3,  0x12,   1, 0x19,   3,    0x1A,   3,
                             0x1B,   3, 0x1C,   15, 0x52,   4, 0x1009, 8,    0x100B, 8,
                             0x100C, 6, 0x100D, 2,  0x1010, 4, 0x1012, 21025};
    EachLocale([&](LCID lcid) {
        for (std::size_t i = 0; i < std::size(last); i += 2) {
            EXPECT_LE(LocaleNumber(lcid, last[i]), last[i + 1]) << std::hex << last[i];
        }
        for (const std::uint32_t type : {0x0Bu, 0x1004u, 0x1011u}) {
            const int page = Number(lcid, type);
            EXPECT_TRUE(page == 0 || unserved.contains(page) ||
                        IsValidCodePage(LocaleNumber(lcid, type).value()))
                << page;
        }
        EXPECT_EQ(Number(lcid, 0x1004) == 0, Number(lcid, 0x0B) == 1);
        for (const std::uint32_t type : {0x10u, 0x18u}) {
            EXPECT_TRUE(Value(lcid, type) == u"3;0" || Value(lcid, type) == u"3;2;0");
        }
        EXPECT_NE(Value(lcid, kLocaleDecimal), Value(lcid, kLocaleThousand));
        EXPECT_NE(Value(lcid, kLocaleDecimal), Value(lcid, kLocaleList));
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

TEST(LocaleTablesTest, SignaturesNameTheScriptAndTheCodePages) {
    const std::map<int, unsigned> page_bits{{1252, 0}, {1250, 1}, {1251, 2}, {1253, 3}, {1254, 4},
                                            {1255, 5}, {1256, 6}, {1257, 7}, {1258, 8}, {874, 16},
                                            {932, 17}, {936, 18}, {949, 19}, {950, 20}, {1361, 21}};
    const auto has = [](const auto& words, unsigned bit) {
        return (words[bit / 32] >> bit % 32 & 1) != 0;
    };
    EachLocale([&](LCID lcid) {
        const LocaleSignature signature = GetLocaleSignature(lcid).value();
        EXPECT_TRUE(has(signature.unicode_ranges, 0));
        for (const int i : {0, 1}) {
            EXPECT_EQ(signature.default_code_pages[i] & ~signature.code_pages[i], 0u);
        }
        const int page = Number(lcid, kLocaleAnsiCodePage);
        EXPECT_EQ(signature.default_code_pages[0], page == 0 ? 0 : 1u << page_bits.at(page));
    });
    // Locales and the bits that they need from 6 on.
    const unsigned blocks[] = {0x0408, 7,  0x0419, 9,  0x040D, 11, 0x0401, 13, 0x0439, 15,
                               0x041E, 24, 0x0412, 56, 0x0804, 59, 0x0411, 48, 0x0411, 49,
                               0x0411, 50, 0x0411, 59, 0x0465, 72, 0x0437, 26};
    std::map<LCID, std::set<unsigned>> wanted{{0x0409, {}}, {0x0407, {}}, {0x040E, {}}},
        found = wanted;
    for (std::size_t i = 0; i < std::size(blocks); i += 2) wanted[blocks[i]].insert(blocks[i + 1]);
    for (const auto& [lcid, bits] : wanted) {
        for (unsigned bit = 6; bit < 128; ++bit) {
            if (has(GetLocaleSignature(lcid)->unicode_ranges, bit)) found[lcid].insert(bit);
        }
    }
    EXPECT_EQ(found, wanted);
}

// The text-processing types mark the same letters as the character types.
TEST(LocaleTablesTest, LettersAgreeWithTheCharacterTables) {
    for (std::uint32_t unit = 0; unit < 0x10000; ++unit) {
        ASSERT_EQ(IsCharAlpha(static_cast<char16_t>(unit)),
                  CT_CharProperties::sb_IsTPAlpha(static_cast<char16_t>(unit)) != FALSE)
            << std::hex << unit;
    }
}

}  // namespace
