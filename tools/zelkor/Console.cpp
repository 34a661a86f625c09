#include "Console.h"

#include <Foundation/Core/Error/ErrorManager.h>
#include <Foundation/Core/String/CString.h>
#include <Foundation/Core/String/StringConvert.h>
#include <Foundation/Platform/Text/Utf.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace zelkor::cli {

namespace {

constexpr unsigned int kUtf8 = 65001;
// How the library's names of files stand for bytes that are no UTF-8 and for a backslash.
constexpr char16_t kRawByte = 0xDC00;
constexpr char16_t kBackslash = 0xF05C;
bool show_locations = false;

// Hands out a text's stretches of UTF-8 and its other bytes, one at a time, in their order.
void Split(std::string_view bytes, const auto& text, const auto& byte) {
    while (!bytes.empty()) {
        const std::size_t taken = platform::Utf16LengthOfUtf8(bytes.data(), bytes.size()).taken;
        if (taken != 0) text(bytes.substr(0, taken));
        if (taken != bytes.size()) byte(static_cast<unsigned char>(bytes[taken]));
        bytes.remove_prefix(std::min(taken + 1, bytes.size()));
    }
}

std::string Escaped(unsigned char byte) {
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned int>(byte));
    return escape;
}

// A text of the library with names of files in it, as the user knows them.
std::string Message(const CT_UString& text) {
    std::string message;
    CT_UString plain;
    for (unsigned int i = 0; i < text.n_GetLength(); ++i) {
        const char16_t unit = text.u_GetAt(i);
        const bool in_pair = i != 0 && (text.u_GetAt(i - 1) & 0xFC00) == 0xD800;
        const bool is_byte = !in_pair && (unit & 0xFF80) == (kRawByte | 0x80);
        if (!is_byte && unit != kBackslash) {
            plain.v_Append(unit);
            continue;
        }
        message += ToUtf8(plain) + (is_byte ? Escaped(static_cast<unsigned char>(unit)) : "\\");
        plain = CT_UString();
    }
    return message + ToUtf8(plain);
}

}  // namespace

CT_UString FromUtf8(std::string_view text) {
    return CT_UString(text.data(), static_cast<unsigned int>(text.size()), kUtf8);
}

std::string ToUtf8(const CT_UString& text) {
    CT_CString bytes;
    CT_StringConvert::si_WideToMulti(&bytes, &text, kUtf8);
    return {bytes.qccz_Get(), bytes.n_GetLength()};
}

CT_UString FromArgument(const std::string& argument) {
    const std::size_t taken = platform::Utf16LengthOfUtf8(argument.data(), argument.size()).taken;
    if (taken != argument.size())
        throw Failure("'" + Printable(argument) + "' is no UTF-8 text", 2);
    return FromUtf8(argument);
}

CT_UString FileName(std::string_view argument) {
    CT_UString name;
    // A letter with a colon is no drive here.
    if (argument.size() > 1 && argument[1] == ':') name = CT_UString(u"./");
    const auto add_text = [&name](std::string_view text) {
        const CT_UString units = FromUtf8(text);
        for (const char16_t unit : std::u16string_view(units.qcuz_Get(), units.n_GetLength())) {
            name.v_Append(unit == u'\\' ? kBackslash : unit);
        }
    };
    const auto add_byte = [&name](unsigned char byte) {
        name.v_Append(static_cast<char16_t>(kRawByte | byte));
    };
    Split(argument, add_text, add_byte);
    return name;
}

std::string Printable(std::string_view bytes) {
    std::string printable;
    Split(
        bytes,
        [&printable](std::string_view text) {
            for (const char c : text) {
                const auto byte = static_cast<unsigned char>(c);
                printable += byte < 0x20 || byte == 0x7F ? Escaped(byte) : std::string(1, c);
            }
        },
        [&printable](unsigned char byte) { printable += Escaped(byte); });
    return printable;
}

void ThrowRecordedError() {
    CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
    if (!errors.b_IsSetError()) return;
    CT_UString text;
    errors.v_GetErrorMessage(text);
    std::string locations;
    for (unsigned int i = 1; show_locations && i <= errors.n_GetLocationCount(); ++i) {
        locations += std::string("\n    at ") + errors.qccz_GetLocationFileAt(i) + ":" +
                     std::to_string(errors.n_GetLocationLineAt(i));
    }
    errors.v_ClearError();
    throw Failure(Message(text) + locations);
}

void ShowLocations(bool show) {
    show_locations = show;
}

Progress::Progress(std::string what, std::uint64_t total)
    : what_(std::move(what)),
      total_(total),
      terminal_(total != 0 && isatty(STDERR_FILENO) != 0),
      next_(std::chrono::steady_clock::now() + std::chrono::seconds(1)) {}

Progress::~Progress() {
    if (drawn_) std::fputs("\r\033[K", stderr);
}

void Progress::Advance(std::uint64_t done) {
    if (!terminal_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now < next_) return;
    next_ = now + std::chrono::milliseconds(100);
    Draw(std::min(done, total_));
}

void Progress::Draw(std::uint64_t done) {
    constexpr std::size_t kWidth = 40;
    const std::size_t filled = kWidth * done / total_;
    std::fprintf(stderr, "\r%s [%s%s] %3u%%\033[K", what_.c_str(), std::string(filled, '#').c_str(),
                 std::string(kWidth - filled, '.').c_str(),
                 static_cast<unsigned int>(100 * done / total_));
    std::fflush(stderr);
    drawn_ = true;
}

std::string Grouped(std::uint64_t number) {
    const std::string digits = std::to_string(number);
    std::string text;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i != 0 && (digits.size() - i) % 3 == 0) text += ',';
        text += digits[i];
    }
    return text;
}

std::string Counted(std::uint64_t count, const char* one, const char* more) {
    return Grouped(count) + " " + (count == 1 ? one : more);
}

}  // namespace zelkor::cli
