// The punctuation classes of CT_CharProperties: lists of characters, merged into one table while
// compiling.
#include <array>
#include <cstdint>
#include <string_view>

#include "Foundation/Core/Character/CharProperties.h"

namespace {

enum Class : std::uint32_t {
    kApostrophe = 1U << 0,
    kColon = 1U << 1,
    kComma = 1U << 2,
    kDot = 1U << 3,
    kExclamation = 1U << 4,
    kHyphen = 1U << 5,
    kQuestion = 1U << 6,
    kSemicolon = 1U << 7,
    kBrace = 1U << 8,
    kParagraph = 1U << 9,
    kOpeningBracket = 1U << 10,
    kClosingBracket = 1U << 11,
    kOpeningParenthesis = 1U << 12,
    kClosingParenthesis = 1U << 13,
    kQuote = 1U << 14,
    kSingleQuote = 1U << 15,
    kOpeningQuote = 1U << 16,
    kClosingQuote = 1U << 17,
    kPercent = 1U << 18,
    kAngle = 1U << 19,
    kVowel = 1U << 20,
};

struct List {
    Class mask;
    std::u16string_view characters;
};

constexpr List kLists[] = {
    {kApostrophe, u"'\u02BC\u055A\uFF07"},
    {kColon, u":\u02D0\u02D1\u061B\uFE55\uFF1A"},
    {kComma, u",\u055D\u060C\u201A\u3001\uFE50\uFE51\uFF0C\uFF64"},
    {kDot, u".\u00B7\u0589\u06D4\u3002\uFE52\uFF0E\uFF61"},
    {kExclamation, u"!\u00A1\u055C\u203C\u2762\u2763\uFE57\uFF01"},
    {kHyphen, u"-\u00AD\u2010\u2011\uFE63\uFF0D"},
    {kQuestion, u"?\u00BF\u037E\u055E\u061F\uFE56\uFF1F"},
    {kSemicolon, u";\u061B\uFE54\uFF1B"},
    {kBrace, u"{}\uFE37\uFE38\uFE5B\uFE5C\uFF5B\uFF5D"},
    {kParagraph, u"\u10FB\u2029"},
    {kOpeningBracket,
     u"[{\u2045\u2329\u3008\u300A\u300C\u300E\u3010\u3014\u3016\u3018\u301A"
     u"\uFE37\uFE39\uFE3B\uFE3D\uFE3F\uFE41\uFE43\uFE5B\uFE5D\uFF3B\uFF5B\uFF62"},
    {kClosingBracket,
     u"]}\u2046\u232A\u3009\u300B\u300D\u300F\u3011\u3015\u3017\u3019\u301B"
     u"\uFE38\uFE3A\uFE3C\uFE3E\uFE40\uFE42\uFE44\uFE5C\uFE5E\uFF3D\uFF5D\uFF63"},
    {kOpeningParenthesis, u"(\uFE59\uFF08"},
    {kClosingParenthesis, u")\uFE5A\uFF09"},
    {kQuote,
     u"\"\u00AB\u00BB\u2018\u2019\u201A\u201B\u201C\u201D\u201E\u201F\u2039\u203A"
     u"\u275B\u275C\u275D\u275E\u301D\u301E\u301F\uFF02"},
    {kSingleQuote, u"'\u2018\u2019\u201A\u201B\u2039\u203A\u275B\u275C\u301D\u301E\u301F"},
    {kOpeningQuote, u"\u00AB\u2018\u201C\u2039"},
    {kClosingQuote, u"\u00BB\u2019\u201D\u203A"},
    {kPercent, u"%\u066A\uFE6A\uFF05"},
    {kAngle, u"<>\uFE64\uFE65\uFF1C\uFF1D"},
    {kVowel,
     u"aeiouAEUIO\u3041\u3042\u3043\u3044\u3045\u3046\u3047\u3048\u3049\u304A"
     u"\u30A1\u30A2\u30A3\u30A4\u30A5\u30A6\u30A7\u30A8\u30A9\u30AA"},
};

// The upper bits of a unit select a block, the lower bits its classes there; block 0 has none.
struct Table {
    static constexpr unsigned int kShift = 6;

    std::array<std::uint8_t, (0x10000U >> kShift)> stage{};
    std::array<std::array<std::uint32_t, 1U << kShift>, 24> blocks{};

    [[nodiscard]] constexpr std::uint32_t operator[](char16_t unit) const {
        return blocks[stage[unit >> kShift]][unit & ((1U << kShift) - 1)];
    }
};

consteval Table MakeTable() {
    Table table;
    std::uint8_t used = 0;
    for (const auto& [mask, characters] : kLists) {
        for (const char16_t unit : characters) {
            std::uint8_t& block = table.stage[unit >> Table::kShift];
            if (block == 0) block = ++used;
            table.blocks[block][unit & ((1U << Table::kShift) - 1)] |= mask;
        }
    }
    return table;
}

constexpr Table kTable = MakeTable();

bool Is(char16_t unit, std::uint32_t classes) {
    return (kTable[unit] & classes) != 0;
}

constexpr std::uint32_t kBracket = kOpeningBracket | kClosingBracket;
constexpr std::uint32_t kParenthesis = kOpeningParenthesis | kClosingParenthesis;

}  // namespace

BOOL CT_CharProperties::sb_IsApostrophe(char16_t unit) {
    return Is(unit, kApostrophe);
}
BOOL CT_CharProperties::sb_IsColon(char16_t unit) {
    return Is(unit, kColon);
}
BOOL CT_CharProperties::sb_IsComma(char16_t unit) {
    return Is(unit, kComma);
}
BOOL CT_CharProperties::sb_IsDot(char16_t unit) {
    return Is(unit, kDot);
}
BOOL CT_CharProperties::sb_IsExclamation(char16_t unit) {
    return Is(unit, kExclamation);
}
BOOL CT_CharProperties::sb_IsHyphen(char16_t unit) {
    return Is(unit, kHyphen);
}
BOOL CT_CharProperties::sb_IsQuestion(char16_t unit) {
    return Is(unit, kQuestion);
}
BOOL CT_CharProperties::sb_IsSemicolon(char16_t unit) {
    return Is(unit, kSemicolon);
}
BOOL CT_CharProperties::sb_IsBrace(char16_t unit) {
    return Is(unit, kBrace);
}
BOOL CT_CharProperties::sb_IsTabulator(char16_t unit) {
    return unit == u'\t';
}
BOOL CT_CharProperties::sb_IsParagraph(char16_t unit) {
    return Is(unit, kParagraph);
}
BOOL CT_CharProperties::sb_IsOpeningBracket(char16_t unit) {
    return Is(unit, kOpeningBracket);
}
BOOL CT_CharProperties::sb_IsClosingBracket(char16_t unit) {
    return Is(unit, kClosingBracket);
}
BOOL CT_CharProperties::sb_IsBracket(char16_t unit) {
    return Is(unit, kBracket);
}
BOOL CT_CharProperties::sb_IsOpeningParenthesis(char16_t unit) {
    return Is(unit, kOpeningParenthesis);
}
BOOL CT_CharProperties::sb_IsClosingParenthesis(char16_t unit) {
    return Is(unit, kClosingParenthesis);
}
BOOL CT_CharProperties::sb_IsParenthesis(char16_t unit) {
    return Is(unit, kParenthesis);
}
BOOL CT_CharProperties::sb_IsQuote(char16_t unit) {
    return Is(unit, kQuote);
}
BOOL CT_CharProperties::sb_IsSingleQuote(char16_t unit) {
    return Is(unit, kSingleQuote);
}
BOOL CT_CharProperties::sb_IsDoubleQuote(char16_t unit) {
    return Is(unit, kQuote) && !Is(unit, kSingleQuote);
}
BOOL CT_CharProperties::sb_IsOpeningQuote(char16_t unit) {
    return Is(unit, kOpeningQuote);
}
BOOL CT_CharProperties::sb_IsClosingQuote(char16_t unit) {
    return Is(unit, kClosingQuote);
}
BOOL CT_CharProperties::sb_IsPercent(char16_t unit) {
    return Is(unit, kPercent);
}
BOOL CT_CharProperties::sb_IsStop(char16_t unit) {
    return Is(unit, kColon | kDot | kExclamation | kQuestion | kSemicolon);
}
BOOL CT_CharProperties::sb_IsSurrounder(char16_t unit) {
    return Is(unit, kBracket | kParenthesis | kQuote | kApostrophe | kAngle);
}
BOOL CT_CharProperties::sb_IsVowel(char16_t unit) {
    return Is(unit, kVowel);
}
