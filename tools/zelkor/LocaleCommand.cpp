// zelkor locale: what the library knows of languages and locales.
#include <Foundation/Core/Language/Codepage.h>
#include <Foundation/Core/Language/Locale.h>
#include <Foundation/Core/Language/LocaleInfo.h>
#include <Foundation/Core/Text/FormatString.h>
#include <Foundation/Platform/Locales/Locales.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Columns.h"
#include "Commands.h"
#include "Console.h"
#include "LocaleNames.h"

namespace zelkor::cli {

namespace {

using Info = CT_LocaleInfo;
using Text = std::u16string;
using Rows = std::vector<std::vector<Text>>;

constexpr unsigned int kSortName = 0x1013;  // of the platform's types

// ---- What is known ----------------------------------------

struct Item {
    const char* label;
    const char* key;  // of the JSON form
    Text value;
    bool is_number = false;
};

struct Sheet {
    LCID lcid;
    std::vector<Item> items;
    std::vector<Text> days, short_days, months, short_months;
    std::vector<Text> months_in_dates;  // beside a day
};

std::vector<Text> Values(LCID lcid, unsigned int first, unsigned int last) {
    std::vector<Text> values;
    for (unsigned int type = first; type <= last; ++type) values.push_back(Value(lcid, type));
    return values;
}

// "1252 windows-1252"
Text PageOf(unsigned int number) {
    const char16_t* name = CT_Codepage(number).qcuz_Get();
    return ToText(std::to_string(number)) + (name == nullptr ? Text() : u' ' + Text(name));
}

Text NumberOf(LCID lcid, float value) {
    CT_UString number;
    const Text grouping = Value(lcid, Info::kGrouping);
    CT_FormatString::sb_FormatNumber(&number, value, lcid, 2, grouping.c_str());
    return ToText(number);
}

unsigned int Number(LCID lcid, Info::et_Type type) {
    unsigned int number = 0;
    Info::sb_GetLocaleInfo(lcid, type, &number);
    return number;
}

// The digits in groups, by the locale's text for them: "3;0", "3;2;0", "3".
Text InGroups(const Text& digits, const Text& grouping, const Text& separator) {
    Text grouped;
    std::size_t end = digits.size();
    std::size_t rule = 0;
    while (rule < grouping.size() && grouping[rule] > u'0' && grouping[rule] <= u'9') {
        const std::size_t size = grouping[rule] - u'0';
        if (end <= size) break;
        end -= size;
        grouped.insert(0, separator + digits.substr(end, size));
        const bool repeats = grouping.substr(rule + 1) == u";0";
        if (!repeats) rule += 2;
    }
    return digits.substr(0, end) + grouped;
}

// 1234567.50 as an amount of money: the sign of the currency and the negative one in their places.
Text AmountOf(LCID lcid, bool negative) {
    // by the platform's numbers for the orders; 1 stands for the number, $ for the currency
    constexpr const char16_t* kPositive[] = {u"$1", u"1$", u"$ 1", u"1 $"};
    constexpr const char16_t* kNegative[] = {u"($1)", u"-$1",  u"$-1",   u"$1-",  u"(1$)", u"-1$",
                                             u"1-$",  u"1$-",  u"-1 $",  u"-$ 1", u"1 $-", u"$ 1-",
                                             u"$ -1", u"1- $", u"($ 1)", u"(1 $)"};
    const unsigned int order =
        Number(lcid, negative ? Info::kNegativeCurrencyOrder : Info::kPositiveCurrencyOrder);
    const Text symbol = Value(lcid, Info::kCurrencySymbol);
    if (symbol.empty() || order >= (negative ? std::size(kNegative) : std::size(kPositive))) {
        return {};
    }
    const unsigned int decimals = Number(lcid, Info::kCurrencyDigits);
    Text number =
        InGroups(decimals == 0 ? u"1234568" : u"1234567", Value(lcid, Info::kMonetaryGrouping),
                 Value(lcid, Info::kMonetaryThousandSeparator));
    if (decimals != 0) {
        number += Value(lcid, Info::kMonetaryDecimalSeparator) + u'5' + Text(decimals - 1, u'0');
    }
    Text amount;
    for (const char16_t mark : Text(negative ? kNegative[order] : kPositive[order])) {
        amount += mark == u'1'   ? number
                  : mark == u'$' ? symbol
                  : mark == u'-' ? Value(lcid, Info::kNegativeSign)
                                 : Text(1, mark);
    }
    return amount;
}

// The name of a calendar, in the locale's language where it has one.
Text CalendarOf(LCID lcid, Info::et_Type type) {
    const unsigned int calendar = Number(lcid, type);
    if (calendar == 0) return {};
    const auto name = platform::CalendarText(lcid, calendar, platform::kCalendarName);
    if (name && !name->empty()) return Text(*name);
    return calendar == 1 ? u"Gregorian" : ToText(std::to_string(calendar));
}

Text FirstWeek(LCID lcid) {
    constexpr const char16_t* kRules[] = {u"the one with 1 January", u"the first whole one",
                                          u"the first with four days"};
    const unsigned int rule = Number(lcid, Info::kFirstWeekOfYear);
    return rule < std::size(kRules) ? kRules[rule] : Text();
}

Text OwnDigits(LCID lcid) {
    const Text digits = Value(lcid, Info::kNativeDigits);
    return digits == u"0123456789" ? Text() : digits;
}

Text FirstDay(LCID lcid) {
    unsigned int day = 0;
    if (!Info::sb_GetLocaleInfo(lcid, Info::kFirstDayOfWeek, &day) || day > 6) return {};
    return Value(lcid, Info::kDayName1 + day);
}

std::vector<Item> ItemsOf(LCID lcid) {
    const auto page = [lcid](Info::et_Type type) {
        unsigned int number = 0;
        return Info::sb_GetLocaleInfo(lcid, type, &number) && number > 2 ? PageOf(number) : Text();
    };
    const Text charset = ToText(std::to_string(Info::sn_GetDefaultCharset(lcid)));
    return {
        {"language", "language", Value(lcid, Info::kEnglishLanguage)},
        {"  own name", "ownLanguage", Value(lcid, Info::kNativeLanguage)},
        {"  ISO 639", "isoLanguage", Value(lcid, Info::kIso639Language)},
        {"  abbreviation", "languageAbbreviation", Value(lcid, Info::kAbbrevLanguage)},
        {"country", "country", Value(lcid, Info::kEnglishCountry)},
        {"  own name", "ownCountry", Value(lcid, Info::kNativeCountry)},
        {"  ISO 3166", "isoCountry", Value(lcid, Info::kIso3166Country)},
        {"  telephone", "countryCode", Value(lcid, Info::kCountryCode), true},
        {"ANSI page", "ansiPage", PageOf(Info::sn_GetDefaultANSICodePage(lcid))},
        {"OEM page", "oemPage", page(Info::kOemCodePage)},
        {"Macintosh page", "macintoshPage",
         PageOf(CT_Locale::sn4_DefaultMacCodepageFromLocale(lcid))},
        {"character set", "charset", charset, true},
        {"written", "direction", Info::sb_IsRTL(lcid) ? u"right to left" : u"left to right"},
        {"numbers", "number", NumberOf(lcid, 1234567.5F)},
        {"  negative", "negativeNumber", NumberOf(lcid, -1234567.5F)},
        {"  grouping", "grouping", Value(lcid, Info::kGrouping)},
        {"  own digits", "ownDigits", OwnDigits(lcid)},
        {"  list separator", "listSeparator", Value(lcid, Info::kListSeparator)},
        {"currency", "currency", Value(lcid, Info::kCurrencySymbol)},
        {"  ISO 4217", "isoCurrency", Value(lcid, Info::kIntlCurrencySymbol)},
        {"  amount", "amount", AmountOf(lcid, false)},
        {"  negative", "negativeAmount", AmountOf(lcid, true)},
        {"measures", "measure",
         Number(lcid, Info::kMeasure) == 0 ? u"metric" : u"of the United States"},
        {"calendar", "calendar", CalendarOf(lcid, Info::kCalendarType)},
        {"  or", "optionalCalendar", CalendarOf(lcid, Info::kOptionalCalendar)},
        {"short date", "shortDate", Value(lcid, Info::kShortDate)},
        {"long date", "longDate", Value(lcid, Info::kLongDate)},
        {"time", "time", Value(lcid, Info::kTimeFormat)},
        {"  morning", "morning", Value(lcid, Info::kMorningMark)},
        {"  afternoon", "afternoon", Value(lcid, Info::kAfternoonMark)},
        {"week begins", "firstDay", FirstDay(lcid)},
        {"  first week", "firstWeek", FirstWeek(lcid)},
        {"sort order", "sortOrder", Value(lcid, kSortName)},
        {"data", "data",
         Info::sb_IsProprietary(lcid) ? u"the library's own list"
         : Info::sb_IsSupported(lcid) ? u""
                                      : u"none beyond the catalogue"},
    };
}

// Empty when they are the same as elsewhere.
std::vector<Text> MonthsInDates(LCID lcid) {
    std::vector<Text> months;
    bool differ = false;
    for (unsigned int type = Info::kMonthName1; type <= Info::kMonthName12; ++type) {
        months.push_back(Value(lcid, type | platform::kLocaleGenitiveNames));
        differ = differ || (!months.back().empty() && months.back() != Value(lcid, type));
    }
    return differ ? months : std::vector<Text>();
}

Sheet SheetOf(LCID lcid) {
    return {lcid,
            ItemsOf(lcid),
            Values(lcid, Info::kDayName1, Info::kDayName7),
            Values(lcid, Info::kAbbrevDayName1, Info::kAbbrevDayName7),
            Values(lcid, Info::kMonthName1, Info::kMonthName12),
            Values(lcid, Info::kAbbrevMonthName1, Info::kAbbrevMonthName12),
            MonthsInDates(lcid)};
}

// ---- Showing it ----------------------------------------

void Print(const Sheet& sheet) {
    std::fputs(Aligned({{NameOf(sheet.lcid), CodeOf(sheet.lcid), Hexadecimal(sheet.lcid),
                         ToText(std::to_string(sheet.lcid))}},
                       "")
                   .c_str(),
               stdout);
    Rows rows;
    for (const Item& item : sheet.items) {
        if (!item.value.empty()) rows.push_back({ToText(item.label), item.value});
    }
    std::fputs(Aligned(rows, "  ").c_str(), stdout);
    if (sheet.months[0].empty()) return;
    Rows names;
    for (std::size_t i = 0; i < sheet.months.size(); ++i) {
        const bool day = i < sheet.days.size();
        names.push_back({ToText(std::to_string(i + 1)), sheet.short_months[i], sheet.months[i]});
        if (!sheet.months_in_dates.empty()) names.back().push_back(sheet.months_in_dates[i]);
        names.back().push_back(day ? sheet.short_days[i] : Text());
        names.back().push_back(day ? sheet.days[i] : Text());
    }
    std::fputs(("\n" + Aligned(names, "  ")).c_str(), stdout);
}

std::string JsonList(const std::vector<Text>& texts) {
    std::string list;
    for (const Text& text : texts) list += (list.empty() ? "" : ", ") + JsonText(text);
    return "[" + list + "]";
}

std::string JsonHead(LCID lcid) {
    return "{\"code\": " + JsonText(CodeOf(lcid)) + ", \"lcid\": " + std::to_string(lcid) +
           ", \"name\": " + JsonText(NameOf(lcid));
}

std::string Json(const Sheet& sheet) {
    std::string object = JsonHead(sheet.lcid);
    for (const Item& item : sheet.items) {
        if (item.value.empty()) continue;
        object += ",\n  \"" + std::string(item.key) + "\": ";
        object += item.is_number ? std::string(item.value.begin(), item.value.end())
                                 : JsonText(item.value);
    }
    return object + ",\n  \"days\": " + JsonList(sheet.days) +
           ",\n  \"shortDays\": " + JsonList(sheet.short_days) +
           ",\n  \"months\": " + JsonList(sheet.months) + ",\n  \"monthsInDates\": " +
           JsonList(sheet.months_in_dates.empty() ? sheet.months : sheet.months_in_dates) +
           ",\n  \"shortMonths\": " + JsonList(sheet.short_months) + "}";
}

void PrintArray(const std::vector<std::string>& objects) {
    const char* separator = "[\n";
    for (const std::string& object : objects) {
        std::printf("%s%s", separator, object.c_str());
        separator = ",\n";
    }
    std::puts("\n]");
}

void Show(const std::vector<std::string>& words, bool json) {
    std::vector<LCID> locales;
    for (const std::string& word : words) locales.push_back(ParseLocale(word));
    std::vector<std::string> objects;
    const char* separator = "";
    for (const LCID lcid : locales) {
        const Sheet sheet = SheetOf(lcid);
        if (json) {
            objects.push_back(Json(sheet));
        } else {
            std::fputs(std::exchange(separator, "\n"), stdout);
            Print(sheet);
        }
    }
    if (json) PrintArray(objects);
}

// ---- The whole catalogue ----------------------------------------

// Of the words given, each entry mentions one.
void List(const std::vector<std::string>& words, bool json) {
    Rows rows;
    std::vector<std::string> objects;
    for (const LocaleEntry& entry : Catalogue()) {
        if (!words.empty() && std::ranges::none_of(words, [&entry](const std::string& word) {
                return Mentions(entry, word);
            })) {
            continue;
        }
        rows.push_back({entry.code, Hexadecimal(entry.lcid), entry.name});
        objects.push_back("{\"code\": " + JsonText(entry.code) + ", \"lcid\": " +
                          std::to_string(entry.lcid) + ", \"name\": " + JsonText(entry.name) + "}");
    }
    if (rows.empty()) throw Failure("no language is called or coded so");
    if (json) return PrintArray(objects);
    std::fputs(Aligned(rows, "").c_str(), stdout);
}

}  // namespace

void AddLocaleCommand(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "locale", "Tell what is known of languages and locales: names, code pages, forms.");
    auto words = std::make_shared<std::vector<std::string>>();
    auto list = std::make_shared<bool>(false);
    auto json = std::make_shared<bool>(false);
    command->add_option(
        "LOCALE", *words,
        "A code (DE-CH), a name of the environment (de_CH.UTF-8, zh), a language's "
        "name (\"German (Switzerland)\", Deutsch) or a locale number (2055, 0x0807)");
    command->add_flag("--list", *list,
                      "Every language and sub-language: code, number, name; with words, those that "
                      "have one of them in code or name");
    command->add_flag("--json", *json, "As JSON");
    command->callback([words, list, json] {
        if (*list) return List(*words, *json);
        if (words->empty()) throw Failure("give a locale, or --list to see all", 2);
        Show(*words, *json);
    });
}

}  // namespace zelkor::cli
