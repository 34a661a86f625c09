// zelkor encoding: what the beginnings of files say about their encoding.
#include <Foundation/Core/Character/CharProperties.h>
#include <Foundation/Platform/CodePages/CodePages.h>
#include <Foundation/Platform/CodePages/TextPieces.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Commands.h"
#include "Console.h"
#include "Encodings.h"
#include "InputFile.h"
#include "Surrogates.h"

namespace zelkor::cli {

namespace {

constexpr std::size_t kMostRead = 1 << 20;
constexpr unsigned int kAscii = 646;
constexpr unsigned int kHz = 52936;

// Whether the beginning of a text decodes without loss, but for a character cut at its end.
bool Decodes(unsigned int page, std::string_view bytes, bool all) {
    std::u16string units(bytes.size(), u'\0');
    const auto done =
        platform::TextDecoder(page).Decode(bytes.data(), bytes.size(), all, units.data());
    units.resize(done.written);
    if (!all && !units.empty() && IsFirstHalf(units.back())) units.pop_back();
    return done.faults == 0 && FindUnpaired(units) == units.size();
}

// UTF-16 without a mark: what the library takes for it, and text in which every other byte is often
// zero and the rest never. The byte order is the one in which more units are of the first 256.
unsigned int GuessUtf16(std::string_view bytes, bool all) {
    constexpr std::size_t kTested = 512;
    const auto size = static_cast<unsigned int>(std::min(kTested, bytes.size()) & ~std::size_t{1});
    if (size == 0) return 0;
    std::size_t zeros[2] = {};
    for (unsigned int i = 0; i < size; ++i) zeros[i % 2] += bytes[i] == 0 ? 1 : 0;
    const auto [fewer, more] = std::minmax(zeros[0], zeros[1]);
    const bool likely = fewer == 0 && more != 0 && more >= size / 8;
    if (!likely && CT_CharProperties::sb_IsTextUnicode(bytes.data(), size) == FALSE) return 0;
    const unsigned int page = zeros[0] > zeros[1] ? kUtf16Big : kUtf16Little;
    return Decodes(page, bytes, all) ? page : 0;
}

// Text of bytes below 0x80 alone, which may be Japanese or Chinese between escape sequences.
unsigned int GuessSevenBit(std::string_view bytes, bool all) {
    const auto has = [bytes](std::string_view part) {
        return bytes.find(part) != std::string_view::npos;
    };
    const bool escapes = has("\x1B$B") || has("\x1B$@") || has("\x1B$(D") || has("\x1B(I");
    if (escapes && Decodes(kIso2022Jp, bytes, all)) return kIso2022Jp;
    if (has("~{") && has("~}") && Decodes(kHz, bytes, all)) return kHz;
    return kAscii;
}

struct Guess {
    Encoding encoding;
    bool unknown = false;
    bool marked = false;
};

Guess GuessOf(std::string_view bytes, bool all) {
    if (const auto marked = EncodingOfMark(bytes)) return {*marked, false, true};
    if (const unsigned int page = GuessUtf16(bytes, all)) return {{page}};
    const bool seven_bit = std::ranges::all_of(bytes, [](char c) { return (c & 0x80) == 0; });
    if (seven_bit) return {{GuessSevenBit(bytes, all)}};
    if (Decodes(kUtf8Number, bytes, all)) return {{kUtf8Number}};
    return {{platform::AnsiCodePage()}, true};
}

const char* MarkName(const Encoding& encoding) {
    if (!encoding.IsUtf16()) return "UTF-8";
    return encoding.page == kUtf16Big ? "UTF-16, big-endian" : "UTF-16, little-endian";
}

void Show(const std::string& name) {
    InputFile file(name);
    std::string bytes(kMostRead, '\0');
    bytes.resize(file.Read(bytes.data(), bytes.size()));
    const Guess guess = GuessOf(bytes, bytes.size() < kMostRead);
    std::printf("%s\t%s%s\t%s\n", Printable(name).c_str(),
                guess.unknown ? "system's 8-bit page: " : "", Describe(guess.encoding).c_str(),
                guess.marked ? MarkName(guess.encoding) : "no byte-order mark");
}

void Run(const std::vector<std::string>& files) {
    bool failed = false;
    for (const std::string& name : files) {
        try {
            Show(name);
        } catch (const Failure& failure) {
            std::fflush(stdout);
            std::fprintf(stderr, "zelkor: %s\n", failure.what());
            failed = true;
        }
    }
    if (failed) throw Failure("not every file could be read");
}

}  // namespace

void AddEncodingCommand(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "encoding", "Tell the encoding that the beginnings of files suggest, and their mark.");
    command->footer(
        "Prints FILE<TAB>ENCODING<TAB>MARK. The encoding is one that --from takes. Files without "
        "a\n"
        "mark are judged by their first MiB.");
    auto files = std::make_shared<std::vector<std::string>>();
    command->add_option("FILE", *files, "Files to look at; - is the standard input")->required();
    command->callback([files] { Run(*files); });
}

}  // namespace zelkor::cli
