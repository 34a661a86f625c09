#include "Columns.h"

#include <Foundation/Core/Character/CharProperties.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "Console.h"

namespace zelkor::cli {

namespace {

std::string Narrow(std::u16string_view text) {
    return ToUtf8(CT_UString(text.data(), static_cast<unsigned int>(text.size())));
}

struct Range {
    char16_t first, last;
};

// Unicode 15, EastAsianWidth.txt: the wide and full-width blocks of the Basic Multilingual Plane.
constexpr auto kWide = std::to_array<Range>({{0x1100, 0x115F},
                                             {0x2E80, 0x303E},
                                             {0x3041, 0x33FF},
                                             {0x3400, 0x4DBF},
                                             {0x4E00, 0xA4CF},
                                             {0xAC00, 0xD7A3},
                                             {0xF900, 0xFAFF},
                                             {0xFE30, 0xFE6F},
                                             {0xFF01, 0xFF60},
                                             {0xFFE0, 0xFFE6}});
// Non-spacing marks that the library's older Unicode does not know: Syriac, Thaana, Sinhala, Khmer.
constexpr auto kLaterMarks = std::to_array<Range>({{0x0711, 0x0711},
                                                   {0x0730, 0x074A},
                                                   {0x07A6, 0x07B0},
                                                   {0x0DD2, 0x0DD6},
                                                   {0x17B7, 0x17BD},
                                                   {0x17C6, 0x17D3}});

bool LiesIn(const auto& ranges, char16_t unit) {
    return std::ranges::any_of(
        ranges, [unit](Range range) { return unit >= range.first && unit <= range.last; });
}

std::size_t CellsOf(char16_t unit) {
    const auto property = CT_CharProperties::seo_GetUnicodeProperty(unit);
    if (property == CT_CharProperties::kMarkNonSpacing ||
        property == CT_CharProperties::kMarkEnclosing ||
        property == CT_CharProperties::kOtherFormat || LiesIn(kLaterMarks, unit)) {
        return 0;
    }
    return LiesIn(kWide, unit) ? 2 : 1;
}

}  // namespace

std::size_t DisplayWidth(std::u16string_view text) {
    std::size_t cells = 0;
    for (const char16_t unit : text) cells += CellsOf(unit);
    return cells;
}

std::string Aligned(const std::vector<std::vector<std::u16string>>& rows, std::string_view indent) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], DisplayWidth(row[i]));
        }
    }
    std::string lines;
    for (const auto& row : rows) {
        std::string line(indent);
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += Narrow(row[i]);
            line.append(widths[i] - DisplayWidth(row[i]) + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        lines += line + '\n';
    }
    return lines;
}

std::string JsonText(std::u16string_view text) {
    std::string quoted = "\"";
    for (const char c : Narrow(text)) {
        if (c == '"' || c == '\\') quoted += '\\';
        if (static_cast<unsigned char>(c) >= 0x20) {
            quoted += c;
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned char>(c));
            quoted += escape;
        }
    }
    return quoted + '"';
}

}  // namespace zelkor::cli
