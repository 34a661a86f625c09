// zelkor char: what the library knows of characters, as a table or as JSON.
#include <Foundation/Core/Character/CharProperties.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "CharFacts.h"
#include "Columns.h"
#include "Commands.h"
#include "Console.h"

namespace zelkor::cli {

namespace {

bool IsSurrogate(char32_t code) {
    return code >= 0xD800 && code <= 0xDFFF;
}

[[noreturn]] void Refuse(const std::string& argument, const char* what) {
    throw Failure(
        "'" + argument + "' " + what + "; give characters, or code points from U+0000 to U+10FFFF",
        2);
}

// Fit for a terminal, other bytes as "\xFF".
std::string AsciiOf(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned int>(byte) & 0xFF);
        text += byte >= ' ' && byte <= '~' ? std::string(1, byte) : escape;
    }
    return text;
}

char32_t ParseCode(const std::string& argument) {
    std::uint32_t code = 0;
    const char* const digits = argument.data() + 2;
    const char* const last = argument.data() + argument.size();
    const auto [end, error] = std::from_chars(digits, last, code, 16);
    if (error != std::errc() || end != last || code > 0x10FFFF)
        Refuse(argument, "is no code point");
    return code;
}

// The characters of a text, or the one that is given as "U+20AC".
std::u32string ParseArgument(const std::string& argument) {
    if (argument.empty()) Refuse(argument, "is empty");
    const bool is_code = argument.size() > 2 && (argument[0] | 0x20) == 'u' && argument[1] == '+';
    if (is_code) return {ParseCode(argument)};
    const CT_UString text = FromUtf8(argument);
    if (ToUtf8(text) != argument) Refuse(AsciiOf(argument), "is no UTF-8 text");
    std::u32string codes;
    for (unsigned int i = 0; i < text.n_GetLength(); ++i) {
        char32_t code = text.u_GetAt(i);
        if (IsSurrogate(code)) code = (code << 10) + text.u_GetAt(++i) - 0x35FDC00U;
        codes += code;
    }
    return codes;
}

constexpr int kNameWidth = 15;
constexpr std::size_t kLineWidth = 80;

// Name and values in a column of their own; a long list goes on in the next line.
void PrintRow(const Fact& fact) {
    if (fact.values.empty()) return;
    std::printf("  %-*s", kNameWidth, fact.label);
    if (fact.summary != nullptr) {
        std::puts(fact.summary);
        return;
    }
    std::size_t at = 2 + kNameWidth;
    for (std::size_t i = 0; i < fact.values.size(); ++i) {
        const std::string item = fact.values[i] + (i + 1 < fact.values.size() ? "," : "");
        if (i != 0 && at + 1 + item.size() > kLineWidth) {
            std::printf("\n%*s", 2 + kNameWidth, "");
            at = 2 + kNameWidth;
        } else if (i != 0) {
            std::putchar(' ');
            ++at;
        }
        std::fputs(item.c_str(), stdout);
        at += item.size();
    }
    std::putchar('\n');
}

void PrintTable(const std::u32string& codes) {
    bool first = true;
    for (const char32_t code : codes) {
        std::printf("%s%s\n", first ? "" : "\n", Labelled(code).c_str());
        first = false;
        if (code > 0xFFFF) {
            std::puts("  beyond U+FFFF: the library has properties of its UTF-16 units only");
        }
        for (const Fact& fact : FactsOf(code)) PrintRow(fact);
    }
}

std::string Quoted(const std::string& text) {
    const CT_UString units = FromUtf8(text);
    return JsonText({units.qcuz_Get(), units.n_GetLength()});
}

std::string JsonOf(const std::string& value, Fact::Kind kind) {
    using enum Fact::Kind;
    if (kind == kNumbers) return value;
    const bool is_character = kind == kCharacter || kind == kCharacters;
    return Quoted(is_character ? value.substr(0, value.find(' ')) : value);
}

std::string JsonOf(const Fact& fact) {
    if (fact.kind == Fact::Kind::kText || fact.kind == Fact::Kind::kCharacter) {
        return fact.values.empty() ? "null" : JsonOf(fact.values.front(), fact.kind);
    }
    std::string list;
    for (const std::string& value : fact.values) {
        list += (list.empty() ? "" : ", ") + JsonOf(value, fact.kind);
    }
    return "[" + list + "]";
}

void PrintJson(const std::u32string& codes) {
    std::string text;
    for (const char32_t code : codes) {
        text += text.empty() ? "[\n" : ",\n";
        text += "  {\"code\": " + Quoted(CodeOf(code)) + ", \"character\": ";
        text += code == 0 ? "\"\\u0000\"" : IsSurrogate(code) ? "null" : Quoted(Utf8Of(code));
        for (const Fact& fact : FactsOf(code)) {
            text += ",\n   " + Quoted(fact.key) + ": " + JsonOf(fact);
        }
        text += "}";
    }
    std::printf("%s\n]\n", text.c_str());
}

void Run(const std::vector<std::string>& arguments, bool json) {
    std::u32string codes;
    for (const std::string& argument : arguments) {
        for (const char32_t code : ParseArgument(argument)) {
            if (codes.find(code) == std::u32string::npos) codes += code;
        }
    }
    if (json) {
        PrintJson(codes);
    } else {
        PrintTable(codes);
    }
}

}  // namespace

void AddCharCommand(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "char", "Show what characters are: category, block, types, mappings, code pages.");
    command->footer(
        "The tables are those of Unicode 2.0. Properties that a character does not have are left\n"
        "out, and so are UTF-7, UTF-8 and UTF-16, which hold every character.");
    auto arguments = std::make_shared<std::vector<std::string>>();
    auto json = std::make_shared<bool>(false);
    command
        ->add_option("CHARS", *arguments,
                     "Texts, each character of which is shown once, or code points such as U+20AC")
        ->required();
    command->add_flag(
        "--json", *json,
        "As JSON, other characters by their code; absent properties are null or empty");
    command->callback([arguments, json] { Run(*arguments, *json); });
}

}  // namespace zelkor::cli
