// The rules of the questions about locales, and answers that are known for certain.
#include "Foundation/Platform/Nls/Locales.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "Foundation/Platform/LastError.h"
#include "tests/Support/Text.h"

namespace {

using namespace platform;

LCID Hexadecimal(const std::string& text) {
    return text.empty() ? 0 : static_cast<LCID>(std::stoul(text, nullptr, 16));
}

// The user's locale is German (Austria), the system's Japanese, whatever the environment says.
class LocalesTest : public testing::Test {
protected:
    LocalesTest() { SetDefaultLocales(0x0C07, 0x0411); }
    ~LocalesTest() override {
        SetDefaultLocales(0, 0);
        SetThreadLocale(0);
        SetLastError(0);
    }
};

// Checks answers given one subject a line: its hexadecimal number, then types and their texts.
template <typename Lookup>
void CheckRows(const char* table, Lookup lookup, int count) {
    std::istringstream rows(table);
    for (std::string row; std::getline(rows, row);) {
        std::istringstream cells(row);
        std::string cell;
        std::getline(cells, cell, '|');
        const std::uint32_t subject = Hexadecimal(cell);
        for (; std::getline(cells, cell, '|'); --count) {
            const std::size_t sign = cell.find('=');
            const auto text = lookup(subject, Hexadecimal(cell.substr(0, sign)));
            EXPECT_EQ(test::Utf8(text.value_or(u"none")), cell.substr(sign + 1)) << row;
        }
    }
    EXPECT_EQ(count, 0);
}

TEST_F(LocalesTest, TellingRows) {
    CheckRows(R"(
409|2=English (United States)|1F=M/d/yyyy|1003=h:mm:ss tt|1C=0|14=$|D=1|B=437|1012=037|100C=6|3=ENU|7=USA
809|1F=dd/MM/yyyy|14=£|1C=1|1003=HH:mm:ss|3=ENG|7=GBR|1001=English|1002=United Kingdom
407|1F=dd.MM.yyyy|20=dddd, d. MMMM yyyy|1003=HH:mm:ss|1C=8|E=,|F=.|C=;|2A=Montag|31=Mo|5=49|8=Deutschland
807|3=DES|F='|15=CHF|1C=2|9=0807
C07|38=Jänner|2=German (Austria)
40C|38=janvier|1003=HH:mm:ss|4=français
410|9=0410|1C=9|5A=IT
411|1F=yyyy/MM/dd|20=yyyy'年'M'月'd'日'|100B=3|1004=932|28=午前|1011=10001
419|38=январь|10000038=января|B=866|1004=1251|1F=dd.MM.yyyy
401|1009=6|1010=3|1004=1256|13=٠١٢٣٤٥٦٧٨٩
404|1004=950|3=CHT
804|1004=936|3=CHS|1C=2
40D|100B=8|1004=1255|59=he
415|20=d MMMM yyyy|1F=yyyy-MM-dd|10000038=stycznia
416|1C=9|14=R$
41D|1F=yyyy-MM-dd|14=kr
41E|1009=7|1004=874
41F|1011=10081|1004=1254
439|10=3;2;0|1004=0|B=1|13=०१२३४५६७८९
812|1004=1361
10407|1013=Phone Book|2=German (Germany)
)",
              LocaleText, 84);
}

TEST_F(LocalesTest, WhichLocalesAnswerAndWithWhichRow) {
    // Locales and their rows.
    std::istringstream cases(
        "409 409  9 409  809 809  2 402  802 402  C02 0  0 C07  400 C07  800 411  C00 0  7F 0 "
        "10407 10407  10409 0  20804 20804  100407 0  80000407 0  43A 0  464 0  43B 0  430 0  434 "
        "0 "
        "435 0  3A 0  481 481  482 0  FC09 0  2C09 2C09  3009 0");
    for (LCID asked, row; cases >> std::hex >> asked >> row;) {
        SCOPED_TRACE(testing::Message() << std::hex << asked);
        EXPECT_EQ(ResolveLocale(asked), row);
        EXPECT_EQ(IsValidLocale(asked, kLocaleInstalled), row != 0);
        EXPECT_EQ(IsValidLocale(asked, kLocaleSupported), row != 0);
        EXPECT_FALSE(IsValidLocale(asked, 3));
        EXPECT_EQ(LocaleText(asked, kLocaleDecimal).has_value(), row != 0);
    }
}

TEST_F(LocalesTest, CallsFollowTheSystemsRules) {
    // Locale and type in hexadecimal, capacity, result, error.
    std::istringstream cases(
        "407 2A 0 7 0  407 2A 7 7 0  407 2A 6 0 122  407 28 1 1 0  407 2A -1 0 87  43A 2A 20 0 87 "
        "407 5B 20 0 1004  407 1000 20 0 1004  407 1015 20 0 1004  407 0 20 0 1004 "
        "407 800002A 20 0 1004  407 C000002A 20 7 0  407 2000002A 20 0 1004  407 20000005 2 2 0 "
        "407 20000005 1 0 122  407 1000002A 20 0 1004  407 10000038 20 7 0  407 58 0 16 0 "
        "407 58 16 16 0  407 58 15 0 122");
    LCID lcid;
    std::uint32_t type, error;
    int capacity, result;
    while (cases >> std::hex >> lcid >> type >> std::dec >> capacity >> result >> error) {
        SCOPED_TRACE(testing::Message() << std::hex << lcid << " " << type << " " << capacity);
        SetLastError(0);
        std::vector<char16_t> out(static_cast<std::size_t>(std::max(capacity, 0)), u'~');
        EXPECT_EQ(GetLocaleInfo(lcid, type, out.data(), capacity), result);
        EXPECT_EQ(LastError(), error);
        EXPECT_EQ(std::ranges::count(out, u'~'), std::ssize(out) - (capacity > 0 ? result : 0));
    }
    EXPECT_EQ(GetLocaleInfo(0x0407, 0x2A, nullptr, 3), 0);
    char16_t number[2];
    EXPECT_EQ(GetLocaleInfo(0x0807, 0x01 | kLocaleReturnNumber, number, 2), 2);
    EXPECT_EQ(number[0], 0x0807);
    EXPECT_FALSE(LocaleNumber(0x0407, kLocaleDecimal).has_value());
}

TEST_F(LocalesTest, EachThreadHasItsLocale) {
    EXPECT_EQ(GetThreadLocale(), 0x0C07u);
    EXPECT_TRUE(SetThreadLocale(0x0009));
    EXPECT_EQ(GetThreadLocale(), 0x0409u);
    std::thread([] { EXPECT_EQ(GetThreadLocale(), 0x0C07u); }).join();
    EXPECT_FALSE(SetThreadLocale(0x043A));
    EXPECT_EQ(LastError(), kErrorInvalidParameter);
    EXPECT_TRUE(SetThreadLocale(0));
    SetDefaultLocales(0x0807, 0x0807);
    EXPECT_EQ(GetThreadLocale(), 0x0807u);
}

TEST_F(LocalesTest, TheEnvironmentNamesTheDefaults) {
    const char* kept = std::getenv("LC_ALL");
    const std::string before = kept == nullptr ? "" : kept;
    std::istringstream cases(
        "de_CH.UTF-8 807  de 407  C 409  C.UTF-8 409  POSIX 409  en_DK 409  es_MX@euro 80A  nn 814 "
        "no_NO 414  sr_RS C1A  sr_RS@latin 81A  sr_BA@latin 181A  uz_UZ@cyrillic 843  zh_HK C04 "
        "zh 804  zh_TW 404  iw_IL 40D  cy_GB 452  gd_GB C3C  mt_MT 409  hsb_DE 42E");
    for (std::string name, lcid; cases >> name >> lcid;) {
        setenv("LC_ALL", name.c_str(), 1);
        SetDefaultLocales(0, 0);
        EXPECT_EQ(GetUserDefaultLCID(), Hexadecimal(lcid)) << name;
        EXPECT_EQ(GetSystemDefaultLangID(), Hexadecimal(lcid)) << name;
    }
    before.empty() ? unsetenv("LC_ALL") : setenv("LC_ALL", before.c_str(), 1);
}

std::vector<std::string> seen;  // what the callback below was given
std::size_t enough;

template <typename Text>
BOOL Keep(Text* text) {
    seen.push_back(test::Utf8(text));
    return seen.size() < enough;
}

// What an enumeration hands over until it has given `limit` texts.
template <typename Enumerate, typename... Arguments>
std::vector<std::string> Seen(Enumerate enumerate, std::size_t limit, Arguments... arguments) {
    seen.clear();
    enough = limit;
    SetLastError(0);
    const bool done = enumerate(Keep, arguments...);
    EXPECT_EQ(done, LastError() == 0);
    return seen;
}

TEST_F(LocalesTest, EnumerationHandsOverEachLocaleOnce) {
    const auto installed = Seen(EnumSystemLocales, 1000, kLocaleInstalled);
    EXPECT_EQ(std::set<std::string>(installed.begin(), installed.end()).size(), LocaleCount());
    for (const std::string& text : installed) {
        EXPECT_EQ(ResolveLocale(Hexadecimal(text)), Hexadecimal(text));
        EXPECT_EQ(text.size(), 8u);
    }
    EXPECT_EQ(Seen(EnumSystemLocales, 1000, kLocaleAlternateSorts).at(1), "00010407");
    EXPECT_EQ(Seen(EnumSystemLocales, 1000, kLocaleSupported | kLocaleAlternateSorts).size(),
              LocaleCount() + 10);
    EXPECT_EQ(Seen(EnumSystemLocales, 3, kLocaleInstalled).size(), 3u);
    EXPECT_EQ(Seen(EnumSystemLocales, 1000, 8u).size(), 0u);
    EXPECT_EQ(LastError(), kErrorInvalidFlags);
}

TEST_F(LocalesTest, CalendarsAnswerInTheLanguageOfTheLocale) {
    // The calendar is in the high half of the number.
    CheckRows(R"(
10407|15=Januar|D=Sonntag|E=Mo
20407|15=January|5=M/d/yyyy
70407|30=2572
30411|5=gg y/MM/dd|2=和暦|4=令和|3=2019
60409|15=Muharram
80409|15=Tishri|1B=Adar II|21=Elul
7041E|4=พ.ศ.
10419|15=январь|10000015=января
)",
              [](std::uint32_t subject, std::uint32_t type) {
                  return CalendarText(subject & 0xFFFF, subject >> 16, type);
              },
              17);
    for (std::uint32_t calendar = 1; calendar <= kCalendarCount; ++calendar) {
        for (std::uint32_t type = 1; type <= 0x30; ++type) {
            EXPECT_TRUE(CalendarText(0x0409, calendar, type).has_value());
        }
        std::uint32_t number = 0;
        EXPECT_EQ(GetCalendarInfo(0x0409, calendar, 1 | kLocaleReturnNumber, nullptr, 0, &number),
                  2);
        EXPECT_EQ(number, calendar);
        for (std::uint32_t i = 0; i < CalendarEraCount(calendar); ++i) {
            const CalendarEra era = CalendarEraAt(calendar, i);
            EXPECT_TRUE(era.year == 0 || era.year == era.offset + 1);
            EXPECT_TRUE(i == 0 || era.year < CalendarEraAt(calendar, i - 1).year);
        }
    }
    EXPECT_FALSE(CalendarText(0x0409, 9, 1) || CalendarText(0x0409, 0, 1) ||
                 CalendarText(0x0409, 1, 0x31));
}

TEST_F(LocalesTest, CalendarEnumerationTakesTheLocalesCalendars) {
    using Texts = std::vector<std::string>;
    const auto all = [](std::size_t limit, LCID lcid, std::uint32_t calendar, std::uint32_t type) {
        return Seen(EnumCalendarInfo, limit, lcid, calendar, type);
    };
    EXPECT_EQ(all(9, 0x0411, kAllCalendars, kCalendarNumber), (Texts{"1", "3"}));
    EXPECT_EQ(all(9, 0x0407, kAllCalendars, kCalendarNumber), Texts{"1"});
    EXPECT_EQ(all(1, 0x0411, kAllCalendars, kCalendarNumber), Texts{"1"});
    EXPECT_EQ(all(9, 0x0411, 3, kCalendarEraName), (Texts{"令和", "平成", "昭和", "大正", "明治"}));
    EXPECT_EQ(all(2, 0x0411, 3, kCalendarEraOffset), (Texts{"2019", "1989"}));
    EXPECT_EQ(all(9, 0x043A, kAllCalendars, kCalendarNumber), Texts{});
    EXPECT_EQ(LastError(), kErrorInvalidParameter);
    EXPECT_EQ(all(9, 0x0411, 1, 0x31), Texts{});
    EXPECT_EQ(LastError(), kErrorInvalidFlags);
}

}  // namespace
