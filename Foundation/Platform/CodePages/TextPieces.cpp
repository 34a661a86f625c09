#include "Foundation/Platform/CodePages/TextPieces.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>

#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/CodePages/Internal/CodePageDetail.h"
#include "Foundation/Platform/Text/Internal/UtfScalar.h"

namespace zelkor::platform {
namespace {

using nls::Decoding;
using nls::Encoding;
using nls::Outcome;
using nls::Page;
using nls::Piece;

constexpr std::uint32_t kUtf16 = 1200;
constexpr std::uint32_t kUtf16BigEndian = 1201;
constexpr std::uint32_t kGb18030Page = 54936;
constexpr char16_t kReplacement = 0xFFFD;

bool IsUtf16(std::uint32_t page) noexcept {
    return page == kUtf16 || page == kUtf16BigEndian;
}

bool IsServedPage(std::uint32_t page) noexcept {
    Page found;
    return IsUtf16(page) || nls::FindPage(page, found);
}

// Copies units from the page's byte order to the processor's, or back.
template <bool swapped>
void CopyUnits(const void* from, std::size_t units, void* to) noexcept {
    const auto* const source = static_cast<const char*>(from);
    auto* const target = static_cast<char*>(to);
    for (std::size_t i = 0; i < units; ++i) {
        std::uint16_t unit;
        std::memcpy(&unit, source + 2 * i, sizeof unit);
        if (swapped) unit = static_cast<std::uint16_t>(unit << 8 | unit >> 8);
        std::memcpy(target + 2 * i, &unit, sizeof unit);
    }
}

void CopyUnits(std::uint32_t page, const void* from, std::size_t units, void* to) noexcept {
    const bool big = std::endian::native == std::endian::big;
    if ((page == kUtf16BigEndian) == big) return CopyUnits<false>(from, units, to);
    CopyUnits<true>(from, units, to);
}

bool HasShiftStates(const Page& page) noexcept {
    return page.rules.bytes_at_end != 0;
}

PieceResult DecodeUtf16(std::uint32_t page, const unsigned char* text, std::size_t length,
                        bool last, char16_t* out) noexcept {
    const std::size_t units = length / 2;
    CopyUnits(page, text, units, out);
    const bool odd = length % 2 != 0;
    if (!odd || !last) return {2 * units, units, 0, 0};
    out[units] = kReplacement;
    return {length, units + 1, 1, length - 1};
}

// Whether the text, whose first character strict decoding refused, may only lack its end.
bool IsCut(const Page& page, const unsigned char* text, std::size_t length) noexcept {
    if (page.number == kGb18030Page) return nls::IsCutGb18030(text, length);
    if (page.tables == nullptr) {
        return nls::IsCutUtf8(reinterpret_cast<const char*>(text), length);
    }
    return length == 1 && page.tables->max_char_size == 2 &&
           nls::DoubleByteView(*page.tables).IsLead(text[0]);
}

// Size of a sequence that strict decoding refused.
std::size_t RefusedSize(const Page& page, const unsigned char* text, std::size_t length) noexcept {
    if (page.number == kGb18030Page) return 1;
    if (page.tables == nullptr) {
        return nls::IllFormedUtf8(reinterpret_cast<const char*>(text), length);
    }
    const bool pair = page.tables->max_char_size == 2 && length > 1 && text[1] != 0 &&
                      nls::DoubleByteView(*page.tables).IsLead(text[0]);
    return pair ? 2 : 1;
}

Encoding EncodingOf(const Page& page, const char16_t* text, std::size_t length,
                    char* out) noexcept {
    return {.text = text,
            .length = length,
            .out = reinterpret_cast<unsigned char*>(out),
            .capacity = MaxBytes(page.number, length),
            .strict = false,
            .default_code = '?',
            .wants_used_default = true,
            .used_default = false};
}

// Decodes strictly as far as that goes, and what is refused one by one without.
PieceResult DecodeCounting(const Page& page, const unsigned char* text, std::size_t length,
                           bool last, char16_t* out) noexcept {
    Piece faults;
    std::size_t at = 0;
    std::size_t count = 0;
    const auto decode = [&](std::size_t size, bool strict) {
        const Outcome done = nls::Decode(page,
                                         {.text = text + at,
                                          .length = size,
                                          .out = out + count,
                                          .capacity = length - count,
                                          .strict = strict},
                                         faults);
        at += done.taken;
        count += done.count;
    };
    while (at < length) {
        decode(length - at, true);
        if (at == length || (!last && IsCut(page, text + at, length - at))) break;
        faults.Fault(at);
        decode(RefusedSize(page, text + at, length - at), false);
    }
    return {at, count, faults.faults, faults.first_fault};
}

// Encodes strictly as far as that goes, and puts a replacement for each unit that is refused.
PieceResult EncodeCounting(const Page& page, const char16_t* text, std::size_t length,
                           char* out) noexcept {
    const std::string_view replacement = page.number == kUtf8Page ? "\xEF\xBF\xBD" : "?";
    Piece faults;
    std::size_t at = 0;
    std::size_t count = 0;
    for (;;) {
        Encoding call = EncodingOf(page, text + at, length - at, out + count);
        call.strict = true;
        const Outcome done = nls::Encode(page, call, faults);
        at += done.taken;
        count += done.count;
        if (at == length) return {length, count, faults.faults, faults.first_fault};
        faults.Fault(at++);
        std::ranges::copy(replacement, out + count);
        count += replacement.size();
    }
}

// Encodes into a table page. Only a text that came out with default bytes is searched for them.
PieceResult EncodeByTable(const Page& page, const char16_t* text, std::size_t length,
                          char* out) noexcept {
    Piece faults;
    Encoding call = EncodingOf(page, text, length, out);
    const std::size_t count = nls::Encode(page, call, faults).count;
    if (call.used_default) {
        for (std::size_t at = 0; at < length;) {
            const std::size_t units = detail::ReadUtf16(text + at, length - at).length == 2 ? 2 : 1;
            char bytes[4];
            Encoding character = EncodingOf(page, text + at, units, bytes);
            nls::Encode(page, character, faults);
            if (character.used_default) faults.Fault(at);
            at += units;
        }
    }
    return {length, count, faults.faults, faults.first_fault};
}

}  // namespace

TextDecoder::TextDecoder(std::uint32_t page) noexcept
    : page_(nls::ResolvePage(page)), served_(IsServedPage(page_)) {}

PieceResult TextDecoder::Decode(const char* text, std::size_t length, bool last,
                                char16_t* out) noexcept {
    if (!served_) return {};
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    if (IsUtf16(page_)) return DecodeUtf16(page_, bytes, length, last, out);
    Page page;
    nls::FindPage(page_, page);
    if (!HasShiftStates(page)) return DecodeCounting(page, bytes, length, last, out);
    Piece piece{.state = state_, .last = last};
    const Outcome done = nls::Decode(
        page, {.text = bytes, .length = length, .out = out, .capacity = length, .strict = false},
        piece);
    state_ = piece.state;
    return {done.taken, done.count, piece.faults, piece.first_fault};
}

TextEncoder::TextEncoder(std::uint32_t page) noexcept
    : page_(nls::ResolvePage(page)), served_(IsServedPage(page_)) {}

std::size_t TextEncoder::MaxBytes(std::size_t units) const noexcept {
    return IsUtf16(page_) ? 2 * units : platform::MaxBytes(page_, units);
}

PieceResult TextEncoder::Encode(const char16_t* text, std::size_t length, bool last,
                                char* out) noexcept {
    if (!served_) return {};
    if (IsUtf16(page_)) {
        CopyUnits(page_, text, length, out);
        return {length, 2 * length, 0, 0};
    }
    if (!last && length != 0 && detail::IsHighSurrogate(text[length - 1])) --length;
    Page page;
    nls::FindPage(page_, page);
    if (page.tables != nullptr) return EncodeByTable(page, text, length, out);
    if (!HasShiftStates(page)) return EncodeCounting(page, text, length, out);
    Piece piece{.state = state_, .last = last};
    Encoding call = EncodingOf(page, text, length, out);
    const Outcome done = nls::Encode(page, call, piece);
    state_ = piece.state;
    return {length, done.count, piece.faults, piece.first_fault};
}

}  // namespace zelkor::platform
