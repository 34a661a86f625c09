#!/usr/bin/env python3
"""Makes the locale tables in Foundation/Platform/Locales/Internal/Tables from the Unicode CLDR.

    locales.py CLDR            writes the tables
    locales.py --check CLDR    compares the committed tables with what would be written

CLDR is a folder that holds the packages cldr-core, cldr-dates-full, cldr-numbers-full, cldr-misc-full,
cldr-localenames-full, cldr-cal-islamic-full and cldr-cal-hebrew-full, all of one version
(cldr-core/package.json names it, and the tables carry it), as JSON. What the platform settles itself
(numbers and abbreviations of languages, code pages, telephone codes, and conventions that differ from
CLDR's) is in locales/*.tsv beside this script.

Python 3.9, standard library only; the output depends on nothing but the input.
"""
import argparse
import functools
import json
import pathlib
import sys

import locale_patterns as lp
import locale_signatures

HERE = pathlib.Path(__file__).resolve().parent
TABLES = HERE.parents[1] / "Foundation/Platform/Locales/Internal/Tables"

# The columns of a row: the types 0x0001 to 0x005A and 0x1001 to 0x1014 in the order of their numbers
# under the names they have in public (without LOCALE_), then what no such type asks for.
COLUMNS = """ILANGUAGE SLANGUAGE SABBREVLANGNAME SNATIVELANGNAME ICOUNTRY SCOUNTRY SABBREVCTRYNAME
    SNATIVECTRYNAME IDEFAULTLANGUAGE IDEFAULTCOUNTRY IDEFAULTCODEPAGE SLIST IMEASURE SDECIMAL STHOUSAND
    SGROUPING IDIGITS ILZERO SNATIVEDIGITS SCURRENCY SINTLSYMBOL SMONDECIMALSEP SMONTHOUSANDSEP
    SMONGROUPING ICURRDIGITS IINTLCURRDIGITS ICURRENCY INEGCURR SDATE STIME SSHORTDATE SLONGDATE IDATE
    ILDATE ITIME ICENTURY ITLZERO IDAYLZERO IMONLZERO S1159 S2359""".split()
COLUMNS += [f"SDAYNAME{n}" for n in range(1, 8)] + [f"SABBREVDAYNAME{n}" for n in range(1, 8)]
COLUMNS += [f"SMONTHNAME{n}" for n in range(1, 13)] + [f"SABBREVMONTHNAME{n}" for n in range(1, 13)]
COLUMNS += """SPOSITIVESIGN SNEGATIVESIGN IPOSSIGNPOSN INEGSIGNPOSN IPOSSYMPRECEDES IPOSSEPBYSPACE
    INEGSYMPRECEDES INEGSEPBYSPACE FONTSIGNATURE SISO639LANGNAME SISO3166CTRYNAME""".split()
assert len(COLUMNS) == 0x5A
COLUMNS += """SENGLANGUAGE SENGCOUNTRY STIMEFORMAT IDEFAULTANSICODEPAGE ITIMEMARKPOSN SYEARMONTH
    SENGCURRNAME SNATIVECURRNAME ICALENDARTYPE IPAPERSIZE IOPTIONALCALENDAR IFIRSTDAYOFWEEK
    IFIRSTWEEKOFYEAR SMONTHNAME13 SABBREVMONTHNAME13 INEGNUMBER IDEFAULTMACCODEPAGE
    IDEFAULTEBCDICCODEPAGE SSORTNAME IDIGITSUBSTITUTION""".split()
assert len(COLUMNS) == 0x5A + 0x14
COLUMNS += [f"GENITIVE{n}" for n in range(1, 13)]
COLUMNS += ["ERANAME", "ERASHORTDATE", "ERALONGDATE", "ERAYEARMONTH"]
COLUMNS += [f"CALENDAR{n}" for n in range(1, 9)]

# The months of calendars that are not the locale's own: those of the Hijri calendar (in a locale that
# counts by it, the Gregorian ones), and of the Hebrew one.
MONTHS = [f"{kind}{n}" for kind, count in (("OTHER", 12), ("SHORTOTHER", 12), ("HEBREW", 13),
                                           ("SHORTHEBREW", 13)) for n in range(1, count + 1)]
# Names whose letters the signature must cover.
OWN_WORDS = [name for name in COLUMNS if "DAYNAME" in name or "MONTHNAME" in name or "GENITIVE" in name]
HIJRI = "6"
INVARIANT = 0x7F
# The Hebrew year begins with Tishri; 6 is Adar, and 7 the second Adar of leap years.
HEBREW_KEYS = ["1", "2", "3", "4", "5", "7", "7-yeartype-leap", "8", "9", "10", "11", "12", "13"]
DAYS = ["mon", "tue", "wed", "thu", "fri", "sat", "sun"]
CALENDARS = ["gregorian", "gregorian", "japanese", "roc", "dangi", "islamic", "buddhist", "hebrew"]


def tsv(name):
    for line in (HERE / "locales" / name).read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            yield line.split("\t")


class Cldr:
    def __init__(self, folder):
        self.folder = folder
        self.version = self.load("cldr-core/package.json")["version"]
        for package in ("dates-full", "numbers-full", "misc-full", "localenames-full",
                        "cal-islamic-full", "cal-hebrew-full"):
            version = self.load(f"cldr-{package}/package.json")["version"]
            assert version == self.version, f"cldr-{package} is {version}, not {self.version}"

    @functools.lru_cache(maxsize=None)
    def load(self, path):
        return json.loads((self.folder / path).read_text(encoding="utf-8"))

    def supplemental(self, name):
        return self.load(f"cldr-core/supplemental/{name}.json")["supplemental"]

    # The file of the locale, or of the nearest one above it that has a folder.
    def main(self, package, tag, file):
        while not (self.folder / f"cldr-{package}-full/main/{tag}").is_dir():
            tag = tag.rpartition("-")[0] or "en"
        return self.load(f"cldr-{package}-full/main/{tag}/{file}.json")["main"][tag]

    # Names of one kind in the language of the locale; those that it lacks are missing.
    def names(self, tag, kind):
        try:
            data = self.main("localenames", tag, kind)["localeDisplayNames"]
        except FileNotFoundError:
            return {}
        return data.get("types", {}).get("calendar", {}) if kind == "localeDisplayNames" else data[kind]

    def calendar(self, package, tag, name):
        return self.main(package, tag, "ca-" + name)["dates"]["calendars"][name]


def value(entry):
    return entry if isinstance(entry, str) else entry["_value"]


# The currency that is tender in the territory today: the one introduced last.
def currency_of(cldr, territory):
    regions = cldr.supplemental("currencyData")["currencyData"]["region"]
    if territory not in regions:
        return "USD"
    current = [(use["_from"], code) for entry in regions[territory] for code, use in entry.items()
               if "_to" not in use and use.get("_tender") != "false"]
    return max(current)[1]


def names(cldr, row, out):
    tag, territory = row["tag"], row["territory"]
    language = tag.split("-")[0]
    native, languages = cldr.names(tag, "territories"), cldr.names(tag, "languages")
    mappings = cldr.supplemental("codeMappings")["codeMappings"]
    phone, home, *special = row["place"]
    country = special[0] if special and special[0] else cldr.names("en", "territories")[territory]
    out["ILANGUAGE"] = row["lcid"]
    out["SLANGUAGE"], out["SENGLANGUAGE"] = row["full"], row["language"]
    out["SABBREVLANGNAME"] = row["abbreviation"]
    out["SNATIVELANGNAME"] = languages.get(language, row["language"])
    out["ICOUNTRY"] = out["IDEFAULTCOUNTRY"] = phone
    out["SCOUNTRY"] = out["SENGCOUNTRY"] = country
    out["SNATIVECTRYNAME"] = lp.tidy(native.get(territory, country))
    out["SABBREVCTRYNAME"] = special[1] if len(special) > 1 else mappings[territory]["_alpha3"]
    out["IDEFAULTLANGUAGE"] = home
    out["SISO639LANGNAME"], out["SISO3166CTRYNAME"] = language, territory
    out["SSORTNAME"] = "Default"
    for key, page in zip(("IDEFAULTANSICODEPAGE", "IDEFAULTCODEPAGE", "IDEFAULTMACCODEPAGE",
                          "IDEFAULTEBCDICCODEPAGE"), row["pages"]):
        out[key] = "037" if page == "37" else page


def numbers(cldr, row, out):
    tag = row["tag"]
    data = cldr.main("numbers", tag, "numbers")["numbers"]
    symbols = data["symbols-numberSystem-latn"]
    money = data["currencyFormats-numberSystem-latn"]["standard"]
    out["SDECIMAL"] = symbols["decimal"]
    out["STHOUSAND"] = symbols["group"].translate(lp.SEPARATORS)
    out["SMONDECIMALSEP"] = symbols.get("currencyDecimal", out["SDECIMAL"])
    out["SMONTHOUSANDSEP"] = symbols.get("currencyGroup", symbols["group"]).translate(lp.SEPARATORS)
    out["SGROUPING"] = lp.grouping(data["decimalFormats-numberSystem-latn"]["standard"])
    out["IDIGITS"], out["ILZERO"], out["INEGNUMBER"] = "2", "1", "1"
    out["SPOSITIVESIGN"], out["SNEGATIVESIGN"] = "", "-"
    systems = cldr.supplemental("numberingSystems")["numberingSystems"]
    native = systems[data["otherNumberingSystems"]["native"]]["_digits"]
    plain = len(native) == 10 and all(c.isdecimal() and ord(c) < 0x10000 for c in native)
    out["SNATIVEDIGITS"] = native if plain else "0123456789"
    out["IDIGITSUBSTITUTION"] = "0" if data["defaultNumberingSystem"].startswith("arab") else "1"

    code = currency_of(cldr, row["territory"])
    own = cldr.main("numbers", tag, "currencies")["numbers"]["currencies"][code]
    english = cldr.main("numbers", "en", "currencies")["numbers"]["currencies"][code]
    fractions = cldr.supplemental("currencyData")["currencyData"]["fractions"]
    digits = fractions.get(code, fractions["DEFAULT"])["_digits"]
    out["SINTLSYMBOL"], out["SCURRENCY"] = code, lp.tidy(own.get("symbol", code))
    out["SENGCURRNAME"] = english["displayName"]
    out["SNATIVECURRNAME"] = lp.tidy(own.get("displayName", english["displayName"]))
    out["ICURRDIGITS"] = out["IINTLCURRDIGITS"] = digits
    order, negative = lp.currency_orders(money, out["SCURRENCY"])
    out["ICURRENCY"], out["INEGCURR"] = str(order), str(negative)
    territory = row["territory"]
    measures = cldr.supplemental("measurementData")["measurementData"]
    out["IMEASURE"] = "1" if measures["measurementSystem"].get(territory) == "US" else "0"
    out["IPAPERSIZE"] = "1" if measures["paperSize"].get(territory) == "US-Letter" else "9"


def dates(cldr, row, out):
    tag, territory = row["tag"], row["territory"]
    data = cldr.calendar("dates", tag, "gregorian")
    weeks = cldr.supplemental("weekData")["weekData"]
    first = weeks["firstDay"].get(territory, weeks["firstDay"]["001"])
    minimum = weeks["minDays"].get(territory, weeks["minDays"]["001"])
    out["IFIRSTDAYOFWEEK"] = str(DAYS.index(first))
    out["IFIRSTWEEKOFYEAR"] = "2" if minimum == "4" else "0"
    out["ICALENDARTYPE"], out["IOPTIONALCALENDAR"] = "1", "0"
    for n, day in enumerate(DAYS, 1):
        out[f"SDAYNAME{n}"] = lp.plain(data["days"]["stand-alone"]["wide"][day])
        out[f"SABBREVDAYNAME{n}"] = lp.plain(data["days"]["stand-alone"]["abbreviated"][day])
    for n in range(1, 13):
        out[f"SMONTHNAME{n}"] = lp.plain(data["months"]["stand-alone"]["wide"][str(n)])
        out[f"GENITIVE{n}"] = lp.plain(data["months"]["format"]["wide"][str(n)])
        short = lp.plain(data["months"]["stand-alone"]["abbreviated"][str(n)])
        out[f"SABBREVMONTHNAME{n}"] = "Sep" if short == "Sept" and tag[:2] == "en" else short
    out["SMONTHNAME13"] = out["SABBREVMONTHNAME13"] = ""
    out["SSHORTDATE"] = lp.picture(value(data["dateFormats"]["short"]))
    out["SLONGDATE"] = lp.picture(value(data["dateFormats"][row["long"]]))
    out["SYEARMONTH"] = lp.picture(data["dateTimeFormats"]["availableFormats"]["yMMMM"])
    out["STIMEFORMAT"] = lp.picture(value(data["timeFormats"]["medium"]))
    periods = data["dayPeriods"]["format"]["abbreviated"]
    foreign = periods["am"] == "AM" and "t" not in out["STIMEFORMAT"]
    out["S1159"], out["S2359"] = ("" if foreign else lp.plain(periods[key]) for key in ("am", "pm"))
    out["ERANAME"] = lp.plain(data["eras"]["eraAbbr"]["1"])
    kinds = {**cldr.names("en", "localeDisplayNames"), "dangi": "Korean Calendar",
             **cldr.names(tag, "localeDisplayNames")}
    for n, kind in enumerate(CALENDARS, 1):
        out[f"CALENDAR{n}"] = lp.plain(kinds[kind])
    out["CALENDAR2"] += " (English)"


def months(cldr, row, out):
    for kind, keys in (("islamic", [str(n) for n in range(1, 13)]), ("hebrew", HEBREW_KEYS)):
        data = cldr.calendar(f"cal-{kind}", row["tag"], kind)["months"]["format"]
        for prefix, width in (("", "wide"), ("SHORT", "abbreviated")):
            for n, key in enumerate(keys, 1):
                name = "OTHER" if kind == "islamic" else "HEBREW"
                out[f"{prefix}{name}{n}"] = lp.plain(data[width][key])


# A locale that counts by the Hijri calendar names that one's months where others name the Gregorian ones.
def own_months(out):
    if out["ICALENDARTYPE"] != HIJRI:
        return
    for n in range(1, 13):
        for gregorian, hijri in (("SMONTHNAME", "OTHER"), ("SABBREVMONTHNAME", "SHORTOTHER")):
            out[f"{gregorian}{n}"], out[f"{hijri}{n}"] = out[f"{hijri}{n}"], out[f"{gregorian}{n}"]
        out[f"GENITIVE{n}"] = out[f"SMONTHNAME{n}"]


# What follows from other values of the row.
def derived(out):
    short, long, time = (lp.tokens(out[key]) for key in ("SSHORTDATE", "SLONGDATE", "STIMEFORMAT"))
    orders = {"Mdy": "0", "dMy": "1", "yMd": "2", "ydM": "2"}

    def order(tokens):
        return orders["".join(t[0] for t in tokens if t[0] in "yM" or t in ("d", "dd"))]

    comma = out["SDECIMAL"] == ","
    arabic = out["ILANGUAGE"][2:] in ("01", "20", "29")
    swiss = out["SISO3166CTRYNAME"] in ("CH", "LI")
    positive, negative, *rest = lp.signs(int(out["ICURRENCY"]), int(out["INEGCURR"]))
    return {
        "SLIST": ";" if comma or arabic or swiss else ",",
        "SDATE": lp.separator(out["SSHORTDATE"], "dMy", "dMy"),
        "STIME": lp.separator(out["STIMEFORMAT"], "hH", "m"),
        "IDATE": order(short), "ILDATE": order(long),
        "ITIME": str(int(any(t[0] == "H" for t in time))),
        "ITIMEMARKPOSN": str(int(time[0][0] == "t")),
        "ICENTURY": str(int("yyyy" in short)),
        "ITLZERO": str(int("HH" in time or "hh" in time)),
        "IDAYLZERO": str(int("dd" in short)), "IMONLZERO": str(int("MM" in short)),
        "IPOSSIGNPOSN": str(positive), "INEGSIGNPOSN": str(negative),
        "IPOSSYMPRECEDES": str(rest[0]), "IPOSSEPBYSPACE": str(rest[1]),
        "INEGSYMPRECEDES": str(rest[2]), "INEGSEPBYSPACE": str(rest[3]),
        "SMONGROUPING": out["SGROUPING"],
        "ERASHORTDATE": lp.with_era(out["SSHORTDATE"]), "ERALONGDATE": lp.with_era(out["SLONGDATE"]),
        "ERAYEARMONTH": lp.with_era(out["SYEARMONTH"]), "FONTSIGNATURE": "",
    }


def no_break(text):
    return text.replace("U+00A0", "\u00a0")


# What conventions.tsv has, by locale. Separators of numbers go for amounts as well, and so do digits.
def conventions():
    columns, *rows = tsv("conventions.tsv")
    also = {"SDECIMAL": "SMONDECIMALSEP", "STHOUSAND": "SMONTHOUSANDSEP",
            "ICURRDIGITS": "IINTLCURRDIGITS"}
    table = {}
    for lcid, *cells in rows:
        assert lcid not in table and len(cells) < len(columns), f"conventions.tsv: {lcid}"
        given = {key: no_break(text) if text != "none" else ""
                 for key, text in zip(columns[1:], cells) if text}
        table[lcid] = given | {also[key]: text for key, text in given.items() if key in also}
    return table


# What overrides.tsv has for the locale; names with a star for one value after the other.
def overrides(lcid):
    fitting, out = [row for row in tsv("overrides.tsv") if row[0] in (lcid[2:], lcid)], {}
    for _, key, text in sorted(fitting, key=lambda row: len(row[0])):
        names = [key]
        if key.endswith("*"):
            names = [key[:-1] + str(n) for n in range(1, text.count("|") + 2)]
        out.update(zip(names, no_break(text).split("|") if key.endswith("*") else [no_break(text)]))
    return out


def read(cldr):
    places = {code: rest for code, *rest in tsv("territories.tsv")}
    habits, table = conventions(), []
    for lcid, tag, abbreviation, language, full, *pages, long in tsv("rows.tsv"):
        territory = tag.rpartition("-")[2]
        row = {"lcid": lcid, "tag": tag, "abbreviation": abbreviation, "language": language,
               "full": full, "pages": pages, "long": long, "territory": territory,
               "place": places[territory]}
        out = {}
        for fill in (names, numbers, dates, months):
            fill(cldr, row, out)
        special = {**habits.get(lcid, {}), **overrides(lcid)}
        for n in range(1, 13):  # a language with one form of a month has one with other words too
            if f"SMONTHNAME{n}" in special and out[f"SMONTHNAME{n}"] == out[f"GENITIVE{n}"]:
                special.setdefault(f"GENITIVE{n}", special[f"SMONTHNAME{n}"])
        if special.pop("GENITIVE", None) == "SMONTHNAME":
            special.update({f"GENITIVE{n}": special.get(f"SMONTHNAME{n}", out[f"SMONTHNAME{n}"])
                            for n in range(1, 13)})
        out.update(special)
        out = {**out, **derived(out), **special}
        own_months(out)
        assert not set(special) - set(COLUMNS + MONTHS), f"unknown names for {lcid}"
        if pages[0] != "0":
            out = {key: locale_signatures.fitted(text, int(pages[0])) for key, text in out.items()}
        characters = cldr.main("misc", tag, "characters")["characters"]["exemplarCharacters"]
        signature = locale_signatures.signature(lp.exemplars(characters), pages[:2])
        letters = [ord(c) for name in OWN_WORDS for c in out[name] if c.isalpha()]
        assert not set(locale_signatures.missing(letters, signature)), f"letters of {lcid}"
        table.append((int(lcid, 16), out, signature))
    return sorted(table, key=lambda row: (row[0] == INVARIANT, row[0] & 0x3FF, row[0] >> 10))


class Pool:
    """Texts with a zero after each; a text that ends another one lies inside it."""

    def __init__(self, texts):
        self.kept, self.start, length = [], {}, 0
        size = {}
        backwards = sorted((text[::-1] for text in set(texts)), reverse=True)
        for at, text in enumerate(backwards):
            before = backwards[at - 1] if at else ""
            host = size.get(before)
            if host is not None and before.startswith(text):
                size[text] = host  # ends where its host ends
            else:
                size[text] = text
                self.kept.append(text[::-1])
        self.kept.sort()
        ends = {}
        for text in self.kept:
            length += len(text.encode("utf-16-le")) // 2
            ends[text[::-1]] = length
            length += 1
        for text, host in size.items():
            self.start[text[::-1]] = ends[host] - len(text.encode("utf-16-le")) // 2
        self.length = length
        assert length <= 0x10000, f"{length} units do not fit 16-bit offsets"


def literal(text):
    """A source literal: letters as they are, what cannot be seen or combines as \\u."""
    out = ""
    for c in text:
        if c in '"\\':
            out += "\\" + c
        elif c.isascii() or c.isalpha():
            out += c
        else:
            out += f"\\u{ord(c):04X}"
    return f'u"{out}\\0"'


def heading(version, *lines):
    return [f"// Generated by scripts/generate/locales.py from the Unicode CLDR {version} (see docs/locales.md).",
            "// Do not edit; run `cmake --build build --target gen_tables`."] + ["// " + line for line in lines]


def cells(numbers, width):
    for i in range(0, len(numbers), width):
        yield "    " + ", ".join(numbers[i:i + width]) + ","


def table_file(version, name, columns, table, pool, *lines):
    out = heading(version, *lines)
    out += ['#include "Foundation/Platform/Locales/Internal/Tables/LocaleTables.h"', "", "namespace zelkor::platform::nls {", "",
            f"constinit const std::uint16_t k{name}Offsets[kTableRows][{len(columns)}] = {{"]
    for lcid, row, _ in table:
        out.append(f"    {{  // {lcid:04X} {row['SLANGUAGE']}")
        out += ["    " + line for line in cells([str(pool.start[row[c]]) for c in columns], 16)]
        out.append("    },")
    out += ["};", "", f"constinit const char16_t k{name}Texts[{pool.length + 1}] ="]
    out += ["    " + literal(text) for text in pool.kept]
    out[-1] += ";"
    return "\n".join(out + ["", "}  // namespace zelkor::platform::nls", ""])


def signature_file(version, table):
    out = heading(version, "What the letters of each locale need of a font, and the code pages of it.")
    out += ['#include "Foundation/Platform/Locales/Internal/Tables/LocaleTables.h"', "", "namespace zelkor::platform::nls {", "",
            "constinit const char16_t kLocaleSignatures[kTableRows][16] = {"]
    for _, _, words in table:
        units = [f"0x{word >> shift & 0xFFFF:04X}" for word in words for shift in (0, 16)]
        out.append("    {" + ", ".join(units) + "},")
    return "\n".join(out + ["};", "", "}  // namespace zelkor::platform::nls", ""])


def header(version, table, pools):
    *languages, last = [lcid for lcid, _, _ in table]
    assert last == INVARIANT
    count = max(lcid & 0x3FF for lcid in languages) + 1
    first = [sum(lcid & 0x3FF < primary for lcid in languages) for primary in range(count + 1)]
    assert all(row - first[lcid & 0x3FF] + 1 == lcid >> 10 for row, lcid in enumerate(languages))
    out = heading(version, "The rows stand in the order of the primary languages and, within one, of the",
                  "sub-languages, which count from 1 without a hole.")
    out += ["#ifndef FOUNDATION_PLATFORM_NLS_TABLES_LOCALETABLES_H",
            "#define FOUNDATION_PLATFORM_NLS_TABLES_LOCALETABLES_H", "", "#include <cstdint>", "",
            "namespace zelkor::platform::nls {", "",
            f"inline constexpr std::uint32_t kLocaleRows = {len(languages)};",
            f"inline constexpr std::uint32_t kPrimaryLanguages = {count};",
            "// Behind them, the invariant locale.",
            f"inline constexpr std::uint32_t kInvariantRow = {len(languages)};",
            f"inline constexpr std::uint32_t kTableRows = {len(table)};", "",
            "inline constexpr std::uint16_t kRowLanguages[kTableRows] = {"]
    out += list(cells([f"0x{lcid:04X}" for lcid, _, _ in table], 12)) + ["};", "",
            "// Row of each primary language's sub-language 1; its rows end where the next one's begin.",
            "inline constexpr std::uint8_t kFirstRows[kPrimaryLanguages + 1] = {"]
    out += list(cells([str(row) for row in first], 20)) + ["};", "",
            "// Columns behind those of the types 0x0001 to 0x005A and 0x1001 to 0x1014."]
    for name, key in (("GenitiveMonth", "GENITIVE1"), ("EraName", "ERANAME"),
                      ("EraShortDate", "ERASHORTDATE"), ("EraLongDate", "ERALONGDATE"),
                      ("EraYearMonth", "ERAYEARMONTH"), ("CalendarName", "CALENDAR1")):
        out.append(f"inline constexpr std::uint32_t k{name}Column = {COLUMNS.index(key)};")
    out += ["", "// Columns of the other table: months of the Hijri calendar (the Gregorian ones where the locale",
            "// itself counts by Hijri) and of the Hebrew calendar, in the order of years that begin with",
            "// Muharram and with Tishri."]
    for name in ("Other", "ShortOther", "Hebrew", "ShortHebrew"):
        out.append(f"inline constexpr std::uint32_t k{name}Column = {MONTHS.index(name.upper() + '1')};")
    out += ["", "// Starts of the texts, each of which ends in a zero."]
    for name, columns, pool in zip(("Locale", "Month"), (COLUMNS, MONTHS), pools):
        out += [f"extern const std::uint16_t k{name}Offsets[kTableRows][{len(columns)}];",
                f"extern const char16_t k{name}Texts[{pool.length + 1}];"]
    out += ["", "// The words of a LocaleSignature, low halves first.",
            "extern const char16_t kLocaleSignatures[kTableRows][16];", "",
            "}  // namespace zelkor::platform::nls", "", "#endif", ""]
    return "\n".join(out)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true")
    parser.add_argument("cldr", type=pathlib.Path)
    arguments = parser.parse_args()
    cldr = Cldr(arguments.cldr)
    table = read(cldr)
    pools = [Pool(row[c] for _, row, _ in table for c in columns) for columns in (COLUMNS, MONTHS)]
    files = {
        "LocaleTables.h": header(cldr.version, table, pools),
        "LocaleTexts.cpp": table_file(cldr.version, "Locale", COLUMNS, table, pools[0],
                                  "One row a locale, one column a type."),
        "LocaleMonths.cpp": table_file(cldr.version, "Month", MONTHS, table, pools[1],
                                   "The months of the Hijri and Hebrew calendars in each locale."),
        "LocaleSignatures.cpp": signature_file(cldr.version, table),
    }
    for name, text in files.items():
        if not arguments.check:
            (TABLES / name).write_text(text, encoding="utf-8")
        elif (TABLES / name).read_text(encoding="utf-8") != text:
            sys.exit(f"{name} differs from what its inputs give")


if __name__ == "__main__":
    main()
