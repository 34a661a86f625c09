#include "TextInput.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "Surrogates.h"

namespace zelkor::cli {

namespace {

constexpr std::size_t kBlock = 1 << 16;
constexpr std::size_t kMostLeft = 16;  // bytes that the decoder leaves of a block, or of a mark
constexpr char16_t kReplacement = 0xFFFD;

bool Contradicts(const Encoding& named, const Encoding& mark) {
    return named.page != mark.page && !(named.either_order && mark.IsUtf16());
}

}  // namespace

TextInput::TextInput(const std::string& name, const TextRule& rule, Losses& losses)
    : file_(name),
      losses_(losses),
      progress_(file_.name(), file_.size()),
      decoder_(kUtf8Number),
      bytes_(kBlock + kMostLeft, '\0'),
      units_(bytes_.size() + 1) {
    TakeMark(rule);
    decoder_ = platform::TextDecoder(encoding_.page);
}

// Settles the encoding by the rule and the first bytes, which are then the beginning of a block.
void TextInput::TakeMark(const TextRule& rule) {
    left_ = file_.Read(bytes_.data(), kMostLeft);
    const std::string_view first(bytes_.data(), left_);
    if (first.starts_with(std::string_view("\xFF\xFE\0\0", 4))) {
        throw Failure(name() +
                      ": begins with the byte-order mark of UTF-32, which is not read here");
    }
    const std::optional<Encoding> marked = EncodingOfMark(first);
    if (!rule.named.empty()) encoding_ = ParseEncoding(rule.named);
    is_guess_ = !marked && rule.named.empty();
    if (!marked) return;
    if (!rule.named.empty() && !rule.mark_decides && Contradicts(encoding_, *marked)) {
        throw Failure(name() + ": begins with the byte-order mark of " + NameOf(*marked) +
                      ", so that it is not " + NameOf(encoding_) + "; --from " + NameOf(*marked) +
                      " reads it");
    }
    encoding_ = *marked;
    const std::size_t size = MarkOf(encoding_).size();
    std::memmove(bytes_.data(), bytes_.data() + size, left_ - size);
    left_ -= size;
    offset_ = size;
}

std::span<char16_t> TextInput::Next() {
    std::span<char16_t> text;
    while (text.empty() && !(at_end_ && left_ == 0)) {
        const std::size_t read = at_end_ ? 0 : file_.Read(bytes_.data() + left_, kBlock);
        at_end_ = read < kBlock;
        text = Decode({bytes_.data(), left_ + read}, at_end_);
        progress_.Advance(offset_);
    }
    line_feeds_ += static_cast<std::uint64_t>(std::ranges::count(text, u'\n'));
    // Line ends of carriage returns alone count where there are no others.
    if (line_feeds_ == 0) returns_ += static_cast<std::uint64_t>(std::ranges::count(text, u'\r'));
    return text;
}

// The block's units, behind the half of a pair that was kept. What is left of it comes first in the
// next one.
std::span<char16_t> TextInput::Decode(std::string_view bytes, bool last) {
    const std::size_t kept = half_ ? 1 : 0;
    if (half_) units_.front() = *half_;
    const platform::TextDecoder before = decoder_;
    const platform::PieceResult done =
        decoder_.Decode(bytes.data(), bytes.size(), last, units_.data() + kept);
    if (done.faults != 0) {
        if (is_guess_) losses_.DoubtEncoding();
        TellFaults(before, bytes, last, done.faults);
    }
    std::size_t count = done.written + kept;
    half_.reset();
    if (!last && count != 0 && IsFirstHalf(units_[count - 1])) half_ = units_[--count];
    const std::span<char16_t> units(units_.data(), count);
    ReplaceUnpaired(units, offset_ - 2 * kept);
    left_ = bytes.size() - done.taken;
    std::memmove(bytes_.data(), bytes_.data() + done.taken, left_);
    offset_ += done.taken;
    return units;
}

// The line of the unit behind a part of the block.
std::uint64_t TextInput::LineAt(std::span<const char16_t> units) const {
    const auto count = [units](char16_t end) {
        return static_cast<std::uint64_t>(std::ranges::count(units, end));
    };
    const std::uint64_t line_feeds = line_feeds_ + count(u'\n');
    return 1 + (line_feeds != 0 ? line_feeds : returns_ + count(u'\r'));
}

// Tells so many faults of the block. The decoder names one in a piece, so that those with a place
// of their own come from decoding the block again character by character.
void TextInput::TellFaults(platform::TextDecoder decoder, std::string_view bytes, bool last,
                           std::size_t count) {
    std::vector<char16_t> units;
    std::array<char16_t, kMostLeft> decoded;
    std::size_t size = 1;
    for (std::size_t at = 0; count != 0 && at + size <= bytes.size() && losses_.tells();) {
        const bool at_end = last && at + size == bytes.size();
        const auto done = decoder.Decode(bytes.data() + at, size, at_end, decoded.data());
        if (done.faults != 0) {
            TellFault(at + done.first_fault, bytes, LineAt(units));
            losses_.AddUntold(std::min(count, done.faults) - 1);
            count -= std::min(count, done.faults);
        }
        units.insert(units.end(), decoded.begin(),
                     decoded.begin() + static_cast<std::ptrdiff_t>(done.written));
        at += done.taken;
        size = done.taken != 0 ? 1 : std::min(size + 1, kMostLeft);
    }
    losses_.AddUntold(count);
}

void TextInput::TellFault(std::size_t at, std::string_view bytes, std::uint64_t line) {
    losses_.Add([&] {
        char byte[8];
        std::snprintf(byte, sizeof byte, "%02X",
                      static_cast<unsigned int>(static_cast<unsigned char>(bytes[at])));
        return name() + ":" + std::to_string(line) + ": byte " + std::to_string(offset_ + at) +
               ": " + byte + " is not valid " + NameOf(encoding_);
    });
}

// `first`: the byte of the first unit, in UTF-16.
void TextInput::ReplaceUnpaired(std::span<char16_t> units, std::uint64_t first) {
    const std::u16string_view text(units.data(), units.size());
    for (std::size_t at = FindUnpaired(text); at != text.size(); at = FindUnpaired(text, at)) {
        losses_.Add([&] {
            char code[8];
            std::snprintf(code, sizeof code, "%04X", static_cast<unsigned int>(text[at]));
            const std::string byte =
                encoding_.IsUtf16() ? " byte " + std::to_string(first + 2 * at) + ":" : "";
            return name() + ":" + std::to_string(LineAt(units.first(at))) + ":" + byte + " " +
                   code + " is half of a surrogate pair";
        });
        units[at] = kReplacement;
    }
}

// Has text in the block; false at the end.
bool LineInput::Fill() {
    while (block_.empty()) {
        block_ = input_.Next();
        if (block_.empty()) return false;
        SkipSecondEnd();
    }
    return true;
}

// Behind the end of a line, where the block goes on.
void LineInput::SkipSecondEnd() {
    if (block_.empty() || end_ == 0) return;
    if (block_.front() == (end_ == u'\r' ? u'\n' : u'\r')) block_ = block_.subspan(1);
    end_ = 0;
}

bool LineInput::Next(Line& line) {
    line = {};
    begun_.clear();
    bool begun = false;
    while (Fill()) {
        begun = true;
        const auto end = std::ranges::find_if(
            block_, [](char16_t unit) { return unit == u'\n' || unit == u'\r'; });
        const auto length = static_cast<std::size_t>(end - block_.begin());
        const std::u16string_view part(block_.data(), length);
        line.too_long = line.too_long || begun_.size() + length > kLongest;
        if (line.too_long) begun_.clear();
        if (end == block_.end()) {
            if (!line.too_long) begun_ += part;
            block_ = {};
            continue;
        }
        end_ = *end;
        *end = 0;
        line.text = part;
        block_ = block_.subspan(length + 1);
        SkipSecondEnd();
        break;
    }
    if (!begun) return false;
    if (!begun_.empty()) line.text = begun_ += line.text;
    if (line.too_long || line.text.empty()) line.text = std::u16string_view(u"", 0);
    line.number = ++number_;
    return true;
}

}  // namespace zelkor::cli
