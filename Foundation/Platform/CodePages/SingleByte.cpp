// Single-byte pages: a byte is a unit. Blocks of 16 that are plain Latin-1 in the page are widened
// and narrowed as they are; all others go through the tables.
#include <algorithm>

#include "Foundation/Platform/CodePages/Internal/CodePageDetail.h"
#include "Foundation/Platform/Text/Internal/SimdBlocks.h"

namespace zelkor::platform::nls {
namespace {

// How much of a page is Latin-1 both ways; the values of TablePage::identity.
enum Identity : std::uint8_t { kNone, kAscii, kLatin };

constexpr std::size_t kSingleBytes = 256;

// Whether the byte was decoded from a row, and not refused by strict decoding.
bool IsDefined(const TablePage& page, const char16_t* units, unsigned char byte) noexcept {
    const char16_t unit = units[byte];
    return !IsPrivateUse(unit) && (unit != page.default_unit || byte == page.default_code);
}

// Encodes unit by unit. Held by value where blocks are written: stores of bytes might change what a
// pointer leads to, as far as a compiler knows.
class SingleEncoder {
public:
    SingleEncoder(const TablePage& page, std::uint16_t default_code) noexcept
        : index_(kSingleIndex + page.encode_index),
          codes_(kSingleCodes + page.encode_codes),
          default_byte_(FirstByte(default_code)) {}

    unsigned char operator()(char16_t unit) noexcept {
        const unsigned char byte =
            codes_[index_[unit / kUnitsPerBlock] * kUnitsPerBlock + unit % kUnitsPerBlock];
        if (byte != 0 || unit == 0) [[likely]]
            return byte;
        used_default_ = true;
        return default_byte_;
    }

    [[nodiscard]] bool UsedDefault() const noexcept { return used_default_; }

private:
    const std::uint8_t* index_;
    const std::uint8_t* codes_;
    unsigned char default_byte_;
    bool used_default_ = false;
};

#if FOUNDATION_SSE2

// Whole blocks of ASCII in front of the text, in bytes.
std::size_t AsciiRun(const unsigned char* text, const unsigned char* end) noexcept {
    const unsigned char* at = text;
    while (end - at >= static_cast<std::ptrdiff_t>(kBlock) &&
           _mm_movemask_epi8(LoadBlock(at)) == 0) {
        at += kBlock;
    }
    return static_cast<std::size_t>(at - text);
}

// Whether all 16 bytes are their own units.
template <Identity identity>
bool IsPlain(__m128i bytes) noexcept {
    if constexpr (identity == kAscii) return _mm_movemask_epi8(bytes) == 0;
    const __m128i high = _mm_and_si128(bytes, _mm_set1_epi8(static_cast<char>(0xE0)));
    const __m128i controls = _mm_cmpeq_epi8(high, _mm_set1_epi8(static_cast<char>(0x80)));
    return _mm_movemask_epi8(controls) == 0;
}

// Whether all 16 units are their own bytes.
template <Identity identity>
bool IsPlain(__m128i first, __m128i second) noexcept {
    const int beyond = identity == kAscii ? 0xFF80 : 0xFF00;
    const __m128i high =
        _mm_and_si128(_mm_or_si128(first, second), _mm_set1_epi16(static_cast<short>(beyond)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) != 0xFFFF) return false;
    return identity == kAscii || IsPlain<identity>(_mm_packus_epi16(first, second));
}

// Converts whole blocks and returns the number of characters done.
template <Identity identity>
std::size_t DecodeBlocks(const char16_t* units, const unsigned char* text, std::size_t length,
                         char16_t* out) noexcept {
    std::size_t at = 0;
    for (; length - at >= kBlock; at += kBlock) {
        const __m128i bytes = LoadBlock(text + at);
        if (IsPlain<identity>(bytes)) {
            StoreWidened(bytes, out + at);
        } else {
            for (std::size_t i = at; i < at + kBlock; ++i) out[i] = units[text[i]];
        }
    }
    return at;
}

template <Identity identity>
std::size_t EncodeBlocks(SingleEncoder& encoder, const char16_t* text, std::size_t length,
                         unsigned char* out) noexcept {
    SingleEncoder encode = encoder;
    std::size_t at = 0;
    for (; length - at >= kBlock; at += kBlock) {
        const __m128i first = LoadBlock(text + at);
        const __m128i second = LoadBlock(text + at + kBlock / 2);
        if (IsPlain<identity>(first, second)) {
            StoreBlock(_mm_packus_epi16(first, second), out + at);
        } else {
            for (std::size_t i = at; i < at + kBlock; ++i) out[i] = encode(text[i]);
        }
    }
    encoder = encode;
    return at;
}

#else

std::size_t AsciiRun(const unsigned char*, const unsigned char*) noexcept {
    return 0;
}
template <Identity>
std::size_t DecodeBlocks(const char16_t*, const unsigned char*, std::size_t, char16_t*) noexcept {
    return 0;
}
template <Identity>
std::size_t EncodeBlocks(SingleEncoder&, const char16_t*, std::size_t, unsigned char*) noexcept {
    return 0;
}

#endif

// Number of bytes before the first one that strict decoding refuses. A text longer than the page is
// judged by the page first: most pages define every byte.
std::size_t AcceptedPrefix(const TablePage& page, const char16_t* units,
                           const Decoding& call) noexcept {
    const auto defined = [&](unsigned char byte) { return IsDefined(page, units, byte); };
    if (call.length > kSingleBytes) {
        std::size_t byte = 0;
        while (byte < kSingleBytes && defined(static_cast<unsigned char>(byte))) ++byte;
        if (byte == kSingleBytes) return call.length;
    }
    const unsigned char* const end = call.text + call.length;
    const unsigned char* at = call.text;
    for (;;) {
        if (page.identity != kNone) at += AsciiRun(at, end);
        const unsigned char* const stop =
            end - at > static_cast<std::ptrdiff_t>(kBlock) ? at + kBlock : end;
        const unsigned char* const refused = std::find_if_not(at, stop, defined);
        if (refused != stop || stop == end) return static_cast<std::size_t>(refused - call.text);
        at = stop;
    }
}

}  // namespace

Outcome DecodeSingleByte(const TablePage& page, const Decoding& call) noexcept {
    const char16_t* units = kSingleUnits + page.single_units;
    const std::size_t length = call.strict ? AcceptedPrefix(page, units, call) : call.length;
    const std::uint32_t error = length < call.length ? kErrorNoUnicodeTranslation : kErrorSuccess;
    if (call.out == nullptr) return {length, error, length};

    const std::size_t count = std::min(length, call.capacity);
    std::size_t at = 0;
    if (page.identity == kLatin) at = DecodeBlocks<kLatin>(units, call.text, count, call.out);
    if (page.identity == kAscii) at = DecodeBlocks<kAscii>(units, call.text, count, call.out);
    for (; at < count; ++at) call.out[at] = units[call.text[at]];
    return {count, count < length ? kErrorInsufficientBuffer : error, count};
}

Outcome EncodeSingleByte(const TablePage& page, Encoding& call) noexcept {
    SingleEncoder encode(page, call.default_code);
    if (call.out == nullptr) {
        for (std::size_t at = 0; call.wants_used_default && at < call.length; ++at) {
            encode(call.text[at]);
        }
        call.used_default = encode.UsedDefault();
        return {call.length, kErrorSuccess};
    }
    const std::size_t count = std::min(call.length, call.capacity);
    std::size_t at = 0;
    if (page.identity == kLatin) at = EncodeBlocks<kLatin>(encode, call.text, count, call.out);
    if (page.identity == kAscii) at = EncodeBlocks<kAscii>(encode, call.text, count, call.out);
    for (; at < count; ++at) call.out[at] = encode(call.text[at]);
    call.used_default = encode.UsedDefault();
    return {count, count < call.length ? kErrorInsufficientBuffer : kErrorSuccess};
}

}  // namespace zelkor::platform::nls
