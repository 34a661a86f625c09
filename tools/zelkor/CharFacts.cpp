#include "CharFacts.h"

#include <Foundation/Core/Character/CharMappings.h>
#include <Foundation/Core/Character/CharProperties.h>

#include <cstdio>
#include <span>
#include <string_view>
#include <utility>

#include "Console.h"

namespace zelkor::cli {

namespace {

using Properties = CT_CharProperties;
using Mappings = CT_CharMappings;
using Values = std::vector<std::string>;

constexpr const char* kScripts[] = {"Latin and Greek",
                                    "phonetic letters",
                                    "East Asian",
                                    "Arabic",
                                    "surrogates and private use",
                                    "other alphabets and symbols",
                                    "East Asian and enclosed signs",
                                    "common"};
constexpr const char* kTypes[] = {"upper case", "lower case",        "decimal digit",
                                  "space",      "punctuation",       "control",
                                  "blank",      "hexadecimal digit", "alphabetic"};
constexpr const char* kLayouts[] = {
    "no direction",       "left to right",       "right to left", "European number",
    "European separator", "European terminator", "Arabic number", "common separator",
    "block separator",    "segment separator",   "white space",   "other neutral"};
constexpr const char* kProcessing[] = {
    "non-spacing", "diacritic",  "vowel mark", "symbol",    "katakana",
    "hiragana",    "half width", "full width", "ideograph", "kashida",
    "lexical",     "",           "",           "",          "",
    "alphabetic"};

struct PunctuationClass {
    const char* name;
    Properties::CharacterTest test;
};
constexpr PunctuationClass kPunctuation[] = {
    {"apostrophe", Properties::sb_IsApostrophe},
    {"brace", Properties::sb_IsBrace},
    {"closing bracket", Properties::sb_IsClosingBracket},
    {"closing parenthesis", Properties::sb_IsClosingParenthesis},
    {"closing quote", Properties::sb_IsClosingQuote},
    {"colon", Properties::sb_IsColon},
    {"comma", Properties::sb_IsComma},
    {"dot", Properties::sb_IsDot},
    {"double quote", Properties::sb_IsDoubleQuote},
    {"exclamation mark", Properties::sb_IsExclamation},
    {"hyphen", Properties::sb_IsHyphen},
    {"opening bracket", Properties::sb_IsOpeningBracket},
    {"opening parenthesis", Properties::sb_IsOpeningParenthesis},
    {"opening quote", Properties::sb_IsOpeningQuote},
    {"paragraph", Properties::sb_IsParagraph},
    {"percent", Properties::sb_IsPercent},
    {"question mark", Properties::sb_IsQuestion},
    {"quote", Properties::sb_IsQuote},
    {"semicolon", Properties::sb_IsSemicolon},
    {"single quote", Properties::sb_IsSingleQuote},
    {"stop", Properties::sb_IsStop},
    {"surrounder", Properties::sb_IsSurrounder},
    {"tabulator", Properties::sb_IsTabulator},
    {"vowel", Properties::sb_IsVowel},
};

// With rules of their own for where lines may break.
struct Writing {
    const char* name;
    unsigned int language_id;
};
constexpr Writing kWritings[] = {{"traditional Chinese", 0x0404},
                                 {"simplified Chinese", 0x0804},
                                 {"Japanese", 0x0411},
                                 {"Korean", 0x0412}};

std::string Text(const char16_t* text) {
    return ToUtf8(CT_UString(text));
}

std::string BlockNameOf(char16_t unit) {
    return Text(Properties::sqcuz_UnicodeBlockName(Properties::seo_GetUnicodeBlock(unit)));
}

Values NamesOfBits(unsigned int bits, std::span<const char* const> names) {
    Values values;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if ((bits >> i & 1) != 0) values.emplace_back(names[i]);
    }
    return values;
}

Values NumericValueOf(char16_t unit) {
    short numerator, denominator;
    Properties::sv_NumericValue(unit, numerator, denominator);
    if (denominator == 0) return {};
    const std::string value = std::to_string(numerator);
    return {denominator == 1 ? value : value + "/" + std::to_string(denominator)};
}

Values PunctuationClassesOf(char16_t unit) {
    Values values;
    for (const auto& [name, test] : kPunctuation) {
        if (test(unit)) values.emplace_back(name);
    }
    return values;
}

// The writings that do not let a line begin or end with it.
Values WritingsWithout(BOOL (*may_stand)(char16_t, unsigned int), char16_t unit) {
    Values values;
    for (const auto& [name, language_id] : kWritings) {
        if (!may_stand(unit, language_id)) values.emplace_back(name);
    }
    return values;
}

// Nothing when the mapping leaves the character as it is.
Values MappedBy(char16_t (*map)(char16_t), char16_t unit) {
    const char16_t mapped = map(unit);
    if (mapped == unit) return {};
    return {Labelled(mapped)};
}

Values DecompositionOf(char16_t unit) {
    CT_UString units;
    Values values;
    if (Mappings::sn_Decompose(unit, &units) == 1) return {};
    for (unsigned int i = 0; i < units.n_GetLength(); ++i) {
        values.push_back(Labelled(units.u_GetAt(i)));
    }
    return values;
}

// The code pages that can hold anything: all of these hold the letter A. The numbers below are
// other names of pages; UTF-16 and, from 65000 on, UTF-7 and UTF-8 hold everything and are left
// out.
const std::vector<unsigned int>& CodePages() {
    static const auto pages = [] {
        std::vector<unsigned int> found;
        for (unsigned int page = 37; page < 65000; ++page) {
            if (page != 1200 && Properties::sb_IsInCodepage(u'A', page)) found.push_back(page);
        }
        return found;
    }();
    return pages;
}

Fact CodePagesOf(char16_t unit) {
    Fact fact{"code pages", "codePages", Fact::Kind::kNumbers, {}};
    for (const unsigned int page : CodePages()) {
        if (Properties::sb_IsInCodepage(unit, page)) fact.values.push_back(std::to_string(page));
    }
    if (fact.values.size() == CodePages().size()) fact.summary = "all";
    return fact;
}

// Both kana mappings agree on what they only widen.
std::vector<Fact> KanaOf(char16_t unit) {
    using enum Fact::Kind;
    const Values katakana = MappedBy(Mappings::su_HiraganaToKatakana, unit);
    const Values hiragana = MappedBy(Mappings::su_KatakanaToHiragana, unit);
    const bool same = katakana == hiragana;
    return {{"wide form", "wideForm", kCharacter, same ? katakana : Values()},
            {"katakana", "katakana", kCharacter, same ? Values() : katakana},
            {"hiragana", "hiragana", kCharacter, same ? Values() : hiragana}};
}

}  // namespace

std::string CodeOf(char32_t code) {
    char text[16];
    std::snprintf(text, sizeof text, "U+%04X", static_cast<unsigned int>(code));
    return text;
}

std::string Utf8Of(char32_t code) {
    if (code <= 0xFFFF) {
        const auto unit = static_cast<char16_t>(code);
        return ToUtf8(CT_UString(&unit, 1));
    }
    const char16_t pair[] = {static_cast<char16_t>(0xD7C0 + (code >> 10)),
                             static_cast<char16_t>(0xDC00 + (code & 0x3FF))};
    return ToUtf8(CT_UString(pair, 2));
}

std::string Labelled(char32_t code) {
    if (code > 0xFFFF) return CodeOf(code) + ' ' + Utf8Of(code);
    const auto category = Properties::seo_GetUnicodeProperty(static_cast<char16_t>(code));
    if (category <= Properties::kMarkEnclosing) return CodeOf(code) + " \u25CC" + Utf8Of(code);
    const bool hidden =
        category >= Properties::kSeparatorSpace && category <= Properties::kOtherPrivateUse;
    return hidden ? CodeOf(code) : CodeOf(code) + ' ' + Utf8Of(code);
}

std::vector<Fact> FactsOf(char32_t code) {
    using enum Fact::Kind;
    if (code > 0xFFFF) {
        const auto high = static_cast<char16_t>(0xD7C0 + (code >> 10));
        const auto low = static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        return {{"UTF-16 units", "units", kCharacters, {CodeOf(high), CodeOf(low)}},
                {"blocks", "blocks", kTexts, {BlockNameOf(high), BlockNameOf(low)}}};
    }
    const auto unit = static_cast<char16_t>(code);
    const auto category = Properties::seo_GetUnicodeProperty(unit);
    const auto script = Properties::seo_GetScript(Properties::seo_GetUnicodeBlock(unit));
    std::vector<Fact> facts = {
        {"category", "category", kText, {Text(Properties::sqcuz_UnicodePropertyName(category))}},
        {"block", "block", kText, {BlockNameOf(unit)}},
        {"script", "script", kText, {kScripts[script]}},
        {"numeric value", "numericValue", kText, NumericValueOf(unit)},
        {"type", "type", kTexts,
         NamesOfBits(Properties::sn2_GetCharacterInformation(unit), kTypes)},
        {"layout", "layout", kText, {kLayouts[Properties::seo_GetLayoutInformation(unit)]}},
        {"processing", "processing", kTexts,
         NamesOfBits(Properties::sn2_GetTextProcessingInformation(unit), kProcessing)},
        {"punctuation", "punctuation", kTexts, PunctuationClassesOf(unit)},
        {"no line start", "noLineStart", kTexts,
         WritingsWithout(Properties::sb_CanStartLine, unit)},
        {"no line end", "noLineEnd", kTexts, WritingsWithout(Properties::sb_CanEndLine, unit)},
        {"lower case", "lowerCase", kCharacter, MappedBy(Mappings::su_ToLower, unit)},
        {"upper case", "upperCase", kCharacter, MappedBy(Mappings::su_ToUpper, unit)},
        {"base", "base", kCharacter, MappedBy(Mappings::su_ToBase, unit)},
        {"decomposition", "decomposition", kCharacters, DecompositionOf(unit)},
        {"digit", "digit", kCharacter, MappedBy(Mappings::su_FoldDigit, unit)},
        {"plain form", "plainForm", kCharacter, MappedBy(Mappings::su_FoldCZone, unit)},
    };
    for (Fact& fact : KanaOf(unit)) facts.push_back(std::move(fact));
    facts.push_back(CodePagesOf(unit));
    return facts;
}

}  // namespace zelkor::cli
