#include "Support/Text.h"

#include <cstdio>

namespace test {

namespace {

void AppendUtf8(std::string& out, char32_t code) {
    const int more = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    const char32_t mark = more == 0 ? 0 : 0xFF00u >> (more + 1);
    out.push_back(static_cast<char>(mark | code >> 6 * more));
    for (int k = more; k-- > 0;) out.push_back(static_cast<char>(0x80 | (code >> 6 * k & 0x3F)));
}

}  // namespace

std::string Utf8(std::u16string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if ((unit & 0xFC00) == 0xD800 && i + 1 < text.size() && (text[i + 1] & 0xFC00) == 0xDC00) {
            AppendUtf8(out, 0x10000 + ((unit - 0xD800u) << 10) + (text[i + 1] - 0xDC00u));
            ++i;
        } else if ((unit & 0xF800) == 0xD800) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04X", static_cast<unsigned>(unit));
            out += escaped;
        } else {
            AppendUtf8(out, unit);
        }
    }
    return out;
}

std::u16string Utf16(std::string_view text) {
    std::u16string out;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i++]);
        const int more = lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        char32_t code = more == 0 ? lead : lead & (0x3Fu >> more);
        for (int k = 0; k < more && i < text.size(); ++k) {
            code = code << 6 | (static_cast<unsigned char>(text[i++]) & 0x3Fu);
        }
        if (code >= 0x10000) {
            out.push_back(static_cast<char16_t>(0xD7C0 + (code >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(code));
        }
    }
    return out;
}

namespace {

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
    std::vector<std::string> parts;
    for (std::size_t end; (end = text.find(separator)) != std::string_view::npos;) {
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(end + separator.size());
    }
    parts.emplace_back(text);
    return parts;
}

}  // namespace

std::vector<std::vector<std::string>> Table(std::string_view text) {
    std::vector<std::vector<std::string>> rows;
    for (const std::string& line : Split(text, "\n")) {
        for (const std::string& row : Split(line, " / ")) rows.push_back(Split(row, "|"));
    }
    return rows;
}

}  // namespace test
