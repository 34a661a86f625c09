// The rules of the questions about locales, and answers that are known for certain.
#include "Foundation/Platform/Locales/Locales.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/LastError.h"
#include "tests/Support/Text.h"

namespace {

using namespace zelkor::platform;

LCID Hexadecimal(const std::string& text) {
    return text.empty() ? 0 : static_cast<LCID>(std::stoul(text, nullptr, 16));
}

// The user's locale is German (Austria), the system's Japanese, whatever the environment says.
class LocalesTest : public testing::Test {
protected:
    LocalesTest() { SetDefaultLocales(0x0C07, 0x0411); }
    ~LocalesTest() override {
        TakeEnvironment();
        SetThreadLocale(0);
        SetLastError(0);
    }
};

// Checks answers given one subject a row: its hexadecimal number, then types and their texts, in
// which "_" is the no-break space.
template <typename Lookup>
void CheckRows(const char* table, Lookup lookup) {
    for (const auto& cells : test::Table(table)) {
        const std::uint32_t subject = Hexadecimal(cells[0]);
        for (std::size_t i = 1; i < cells.size(); ++i) {
            const std::size_t sign = cells[i].find('=');
            std::u16string text(
                lookup(subject, Hexadecimal(cells[i].substr(0, sign))).value_or(u"none"));
            std::ranges::replace(text, u'\u00A0', u'_');
            EXPECT_EQ(test::Utf8(text), cells[i].substr(sign + 1)) << cells[0] << " " << cells[i];
        }
    }
}

TEST_F(LocalesTest, TellingRows) {
    CheckRows(R"(
409|1F=M/d/yyyy|20=dddd, MMMM dd, yyyy|1006=MMMM, yyyy|1003=h:mm:ss tt|14=$|1C=0|D=1|C=,|100C=6|100A=1
409|2=English (United States)|3=ENU|7=USA|5=1|1004=1252|B=437|1011=10000|1012=037|2A=Monday|31=Mon|44=Jan
809|1F=dd/MM/yyyy|20=dd MMMM yyyy|1003=HH:mm:ss|14=£|1C=1|D=0|100C=0|3=ENG|7=GBR|5=44|B=850|1012=20285
407|1F=dd.MM.yyyy|20=dddd, d. MMMM yyyy|1003=HH:mm:ss|28=|1B=3|1C=8|E=,|F=.|C=;|8=Deutschland|1012=20273
407|2A=Montag|31=Mo|3A=März|46=Mrz|5=49|2=German (Germany)
807|3=DES|F='|15=CHF|14=Fr.|1B=2|1C=2|C=;|9=0807
C07|38=Jänner|46=Mär|F=.|1B=2|1C=9
408|46=Μάρ|49=Ιούν|4E=Νοέ|28=πμ
40C|1F=dd/MM/yyyy|20=dddd d MMMM yyyy|1003=HH:mm:ss|F=_|1C=8|C=;|38=janvier|2A=lundi|31=lun.|1012=20297
C0C|1F=yyyy-MM-dd|1B=3|1C=15|100C=6|9=1009
410|1F=dd/MM/yyyy|1B=2|1C=9|F=.|C=;|2A=lunedì|31=lun|38=gennaio|5=39|1012=20280|9=0410
C0A|1F=dd/MM/yyyy|20=dddd, dd' de 'MMMM' de 'yyyy|1003=H:mm:ss|1C=8|C=;|2A=lunes|38=enero|5=34|3=ESN|9=0C0A
416|1F=dd/MM/yyyy|20=dddd, d' de 'MMMM' de 'yyyy|14=R$|1B=2|1C=9|2A=segunda-feira|31=seg|100C=6|5=55|C=;
411|1F=yyyy/MM/dd|20=yyyy'年'M'月'd'日'|1003=H:mm:ss|28=午前|14=¥|19=0|1C=1|100B=3|2A=月曜日|100C=6
411|1004=932|1011=10001|1012=20290|44=1|3=JPN|5=81
412|1F=yyyy-MM-dd|20=yyyy'년' M'월' d'일' dddd|1003=tt h:mm:ss|1005=1|28=오전|19=0|1C=1|1004=949|1012=20833|100B=5
804|1F=yyyy/M/d|20=yyyy'年'M'月'd'日'|1003=H:mm:ss|1B=0|1C=2|1004=936|1011=10008|3=CHS|5=86|2A=星期一|44=一月
404|1F=yyyy/M/d|1003=tt hh:mm:ss|14=NT$|1C=1|1004=950|1011=10002|3=CHT|5=886|100B=4|38=一月
419|1F=dd.MM.yyyy|20=d MMMM yyyy 'г.'|1003=H:mm:ss|F=_|1004=1251|B=866|1011=10007|1012=20880|38=Январь|10000038=января|14=₽|1B=3|1C=8|55=1
422|14=₴|1B=3|1C=8
43F|14=₸|1B=3|1C=8
401|1F=dd/MM/yyyy|1003=hh:mm:ss tt|28=ص|1009=6|100B=1|38=محرم|40=رمضان|10000038=محرم|4C=رمضان|100E=|1010=3|1C=3|1004=1256|B=720|1011=10004|13=٠١٢٣٤٥٦٧٨٩|C=;
40D|1F=dd/MM/yyyy|1003=HH:mm:ss|14=₪|1B=2|1C=2|1004=1255|B=862|1011=10005|100B=8|59=he|5=972|C=,
41E|1F=d/M/yyyy|1003=H:mm:ss|14=฿|1C=1|1009=7|1004=874|1011=10021|1012=20838|13=๐๑๒๓๔๕๖๗๘๙|2A=จันทร์
41D|1F=yyyy-MM-dd|20='den 'd MMMM yyyy|1003=HH:mm:ss|14=kr|1C=8|F=_|17=_|28=fm|29=em|2A=måndag|31=må|44=jan|5=46
406|1F=dd-MM-yyyy|20=d. MMMM yyyy|14=kr.|1B=2|1C=12|2A=mandag|31=ma|44=jan|1012=20277|5=45
415|1F=yyyy-MM-dd|20=d MMMM yyyy|14=zł|1C=8|1004=1250|B=852|38=styczeń|10000038=stycznia|1012=20880
40E|1F=yyyy.MM.dd.|20=yyyy. MMMM d.|1003=H:mm:ss|28=de.|14=Ft|1C=8|2A=hétfő|38=január|1012=500|21=2
405|1F=d.M.yyyy|20=d. MMMM yyyy|1003=H:mm:ss|28=dop.|14=Kč|1C=8|F=_|1004=1250|B=852|1012=500
41B|1F=d. M. yyyy|1D=. |1003=H:mm:ss
41F|1F=dd.MM.yyyy|20=dd MMMM yyyy dddd|1B=3|1004=1254|B=857|1011=10081|1012=20905|2A=Pazartesi|38=Ocak|5=90
439|1F=dd-MM-yyyy|20=dd MMMM yyyy|1003=HH:mm:ss|10=3;2;0|1C=12|1004=0|B=1|1011=2|1012=500|13=०१२३४५६७८९
816|38=janeiro|44=jan|10000043=dezembro
465|1009=6|38=މުޙައްރަމް|44=މުޙައްރަމް
812|1004=1361
7F|1=007F|2=Invariant Language (Invariant Country)|7=IVC|E=.|14=¤|15=XDR|1F=MM/dd/yyyy|1003=HH:mm:ss|B=437
10407|1013=Phone Book|2=German (Germany)
)",
              LocaleText);
}

TEST_F(LocalesTest, WhichLocalesAnswerAndWithWhichRow) {
    // Locales and their rows.
    std::istringstream cases(
        "409 409  9 409  809 809  2 402  802 0  C02 0  0 C07  400 C07  800 411  C00 0  7F 7F "
        "47F 0  860 0  820 0  850 0  844 0  4 404  7C04 0  1007F 0 "
        "10407 10407  10409 0  20804 20804  100407 0  80000407 0  43A 0  464 0  43B 0  430 0 "
        "434 0  435 0  3A 0  481 481  482 0  FC09 0  2C09 2C09  3009 0");
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

// An answer belongs to one of the defaults, never to the row of one and the sort order of the
// other.
TEST_F(LocalesTest, DefaultsMayChangeWhileThreadsAsk) {
    const auto is_default = [](LCID lcid) { return lcid == 0x0C07 || lcid == 0x00010407; };
    std::vector<std::thread> threads;
    std::atomic<int> asking = 2;
    for (const LCID own : {0x0411u, 0u}) {
        threads.emplace_back([own, &asking, &is_default] {
            EXPECT_TRUE(SetThreadLocale(own));
            for (int i = 0; i < 1'000'000; ++i) {
                EXPECT_PRED1(is_default, ResolveLocale(0));
                EXPECT_TRUE(own == 0 ? is_default(GetThreadLocale()) : GetThreadLocale() == own);
            }
            --asking;
        });
    }
    for (LCID user = 0x0C07; asking != 0; user ^= 0x0C07 ^ 0x00010407) {
        SetDefaultLocales(user, 0x0411);
    }
    for (std::thread& thread : threads) thread.join();
}

std::map<std::string, std::string> variables;  // what the function below gives

const char* Variable(const char* name) {
    const auto variable = variables.find(name);
    return variable == variables.end() ? nullptr : variable->second.c_str();
}

TEST_F(LocalesTest, TheEnvironmentNamesTheDefaults) {
    // Names and values, divided by blanks, "-" for an empty value; user, system, ANSI page.
    for (const auto& fields : test::Table(R"(|409|409|1252 / LANG C|409|409|1252
LANG de_CH.UTF-8|807|807|1252 / LANG tlh_KL|409|409|1252 / LC_CTYPE ja_JP|409|411|932
LANG pl_PL LC_ALL ru_RU LC_TIME de_DE LC_CTYPE fr_FR|419|419|1251
LANG pl_PL LC_ALL - LC_TIME de_DE|407|415|1250 / LANG de_DE LC_TIME C|409|407|1252
LANG pl_PL LC_NUMERIC de_DE LC_MONETARY en_GB|407|415|1250 / LANG mt_MT|43A|43A|1252
LANG pl_PL LC_MONETARY en_GB LC_MESSAGES de_DE|809|415|1250)")) {
        SCOPED_TRACE(fields[0]);
        const LCID user = Hexadecimal(fields[1]), system = Hexadecimal(fields[2]);
        variables.clear();
        std::istringstream cells(fields[0]);
        for (std::string name, value; cells >> name >> value;) {
            variables[name] = value == "-" ? "" : value;
        }
        TakeEnvironment(Variable);
        SetDefaultLocales(0x0C07, 0);
        EXPECT_EQ(GetUserDefaultLCID(), 0x0C07u);
        SetDefaultLocales(0, 0);  // back to what was found
        EXPECT_EQ(GetUserDefaultLCID(), user);
        EXPECT_EQ(GetThreadLocale(), user);
        EXPECT_EQ(GetSystemDefaultLangID(), system);
        EXPECT_EQ(std::to_string(AnsiCodePage()), fields[3]);
        EXPECT_EQ(LocaleText(0, kLocaleDecimal).has_value(), user != 0x043A);
    }
}

TEST_F(LocalesTest, NamesOfTheEnvironmentStandForLocales) {
    std::istringstream cases(
        "de_CH.UTF-8 807  de 407  C 0  C.UTF-8 0  POSIX 0  tlh_KL 0  _US 0  .UTF-8 0  en_DK 409 "
        "es_MX@euro 80A  nn 814  no_NO 414  sr_RS C1A  sr_RS@latin 81A  sr_RS.UTF-8@latin 81A "
        "sr_BA@latin 181A  uz_UZ@cyrillic 843  zh_HK C04  zh 804  zh_TW 404  iw_IL 40D  cy_GB 452 "
        "gd_GB C3C  hsb_DE 42E  ne_NP 461  ne 461  kok_IN 457  iv 0  mt_MT 43A  xh_ZA 434 "
        "zu_ZA.UTF-8 435  st_ZA 430  se_NO 43B  se_FI 43B  tl_PH 464  fil_PH 464  tn_ZA 432 "
        "nso_ZA 46C  DE-ch 807  ZH-hk C04  SR_rs@Latin 81A  d\u00E4 0  de_CH@ 807");
    for (std::string name, lcid; cases >> name >> lcid;) {
        EXPECT_EQ(LocaleOfName(name), Hexadecimal(lcid)) << name;
    }
    EXPECT_EQ(LocaleOfName(""), 0u);
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
    ASSERT_EQ(installed.size(), LocaleCount());
    for (std::uint32_t i = 0; i < LocaleCount(); ++i) {
        EXPECT_EQ(Hexadecimal(installed[i]), LocaleAt(i));
        EXPECT_EQ(installed[i].size(), 8u);
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
60401|15=محرم|22=محرم
10401|15=يناير|10000015=يناير|22=يناير|21=
20401|15=January
70465|15=ޖަނަވަރީ
80401|21=أيلول
1007F|15=January|5=MM/dd/yyyy
80409|15=Tishri|1B=Adar II|21=Elul
7041E|4=พ.ศ.
10419|15=Январь|10000015=января
)",
              [](std::uint32_t subject, std::uint32_t type) {
                  return CalendarText(subject & 0xFFFF, subject >> 16, type);
              });
    for (std::uint32_t calendar = 1; calendar <= kCalendarCount; ++calendar) {
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
