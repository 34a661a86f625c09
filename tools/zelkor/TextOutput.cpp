#include "TextOutput.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "Surrogates.h"

namespace zelkor::cli {

namespace {

// Where the first unit lies, from `at` on, that must not reach the encoder, which would write it:
// half of a pair in a form of Unicode, and what reads back as a shift in ISO-2022-JP.
std::size_t FindBarred(const Encoding& encoding, std::u16string_view units, std::size_t at) {
    if (encoding.IsUnicode()) return FindUnpaired(units, at);
    if (encoding.page != kIso2022Jp) return units.size();
    return std::min(units.find_first_of(u"\x0E\x0F\x1B", at), units.size());
}

}  // namespace

TextOutput::TextOutput(OutputFile& file, const Encoding& encoding, Losses& losses,
                       std::string source)
    : file_(file),
      encoding_(encoding),
      losses_(losses),
      source_(std::move(source)),
      encoder_(encoding.page) {}

void TextOutput::WriteMark() {
    file_.Write(MarkOf(encoding_));
}

void TextOutput::Write(std::u16string_view units) {
    if (waiting_.empty()) return PutPairs(units);
    waiting_ += units;
    PutPairs(std::exchange(waiting_, {}));
}

void TextOutput::Finish() {
    Put(std::exchange(waiting_, {}), true);
}

// Keeps half of a pair at the end back.
void TextOutput::PutPairs(std::u16string_view units) {
    const bool half = !units.empty() && IsFirstHalf(units.back());
    Put(units.substr(0, units.size() - (half ? 1 : 0)), false);
    if (half) waiting_ = units.back();
}

void TextOutput::Put(std::u16string_view units, bool last) {
    std::u16string repaired;
    if (FindBarred(encoding_, units, 0) != units.size()) {
        repaired = Repaired(units);
        units = repaired;
    }
    bytes_.resize(std::max(bytes_.size(), encoder_.MaxBytes(units.size())));
    const auto done = encoder_.Encode(units.data(), units.size(), last, bytes_.data());
    if (done.faults != 0) TellLacking(units, done.first_fault, done.faults);
    line_feeds_ += static_cast<std::uint64_t>(std::ranges::count(units, u'\n'));
    if (!losses_.spoil()) file_.Write({bytes_.data(), done.written});
}

std::u16string TextOutput::Repaired(std::u16string_view units) {
    std::u16string text(units);
    const char16_t replacement = encoding_.IsUnicode() ? u'\uFFFD' : u'?';
    for (std::size_t at = 0; (at = FindBarred(encoding_, text, at)) != text.size();) {
        Tell(units, at, text[at]);
        text[at] = replacement;
    }
    return text;
}

// Tells so many characters that the encoding lacks; the first one is known.
void TextOutput::TellLacking(std::u16string_view units, std::size_t at, std::size_t count) {
    std::string bytes;
    while (count != 0 && at < units.size() && losses_.tells()) {
        const bool pair =
            IsFirstHalf(units[at]) && at + 1 < units.size() && IsSecondHalf(units[at + 1]);
        const std::size_t size = pair ? 2 : 1;
        if (!EncodeExactly(encoding_.page, units.substr(at, size), bytes)) {
            Tell(units, at, pair ? CodeOf(units[at], units[at + 1]) : char32_t{units[at]});
            --count;
        }
        at += size;
    }
    losses_.AddUntold(count);
}

void TextOutput::Tell(std::u16string_view units, std::size_t at, char32_t character) {
    losses_.Add([&] {
        const auto before = std::ranges::count(units.substr(0, at), u'\n');
        char code[16];
        std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned int>(character));
        return source_ + ":" +
               std::to_string(line_feeds_ + static_cast<std::uint64_t>(before) + 1) + ": " +
               NameOf(encoding_) + " has no " + code;
    });
}

}  // namespace zelkor::cli
