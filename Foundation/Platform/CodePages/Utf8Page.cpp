// Page 65001, UTF-8: what happens around the well-formed stretches that the kernels convert.
//
// Decoding, each ill-formed piece gives one U+FFFD. A piece is a byte that can begin no sequence,
// or a lead byte with the further bytes that were still possible. Three of these further bytes are
// taken although they already make the sequence ill-formed: the second byte of an overlong form, of
// a surrogate, and of a value above 10FFFF. At the end of the text a cut sequence is one piece.
#include "Foundation/Platform/CodePages/Internal/CodePageDetail.h"
#include "Foundation/Platform/Text/Internal/UtfScalar.h"
#include "Foundation/Platform/Text/Utf.h"

namespace zelkor::platform::nls {
namespace {

constexpr char16_t kReplacement = 0xFFFD;
constexpr char kReplacementBytes[] = {'\xEF', '\xBF', '\xBD'};

// Bytes that the lead byte announces behind itself; 0 for a byte that begins no sequence.
std::size_t Announced(char lead) noexcept {
    const std::uint32_t byte = detail::Byte(lead);
    if (byte < 0xC2 || byte > 0xF4) return 0;
    return byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
}

// Whether no character begins with the two bytes, a lead byte and a trail byte.
bool IsRuledOut(char first, char second) noexcept {
    const std::uint32_t lead = detail::Byte(first);
    const std::uint32_t trail = detail::Byte(second);
    const bool too_small = (lead == 0xE0 && trail < 0xA0) || (lead == 0xF0 && trail < 0x90);
    const bool surrogate = lead == 0xED && trail >= 0xA0;
    const bool too_large = lead == 0xF4 && trail >= 0x90;
    return too_small || surrogate || too_large;
}

}  // namespace

std::size_t IllFormedUtf8(const char* text, std::size_t length) noexcept {
    const std::size_t announced = Announced(text[0]);
    std::size_t size = 1;
    while (size <= announced && size < length && detail::IsTrail(text[size])) {
        ++size;
        if (size == 2 && IsRuledOut(text[0], text[1])) break;
    }
    return size;
}

bool IsCutUtf8(const char* text, std::size_t length) noexcept {
    return length <= Announced(text[0]) && IllFormedUtf8(text, length) == length &&
           (length != 2 || !IsRuledOut(text[0], text[1]));
}

Outcome DecodeUtf8(const Decoding& call) noexcept {
    const char* text = reinterpret_cast<const char*>(call.text);
    std::size_t at = 0;
    std::size_t count = 0;
    for (;;) {
        const std::size_t left = call.length - at;
        const UtfProgress done =
            call.out == nullptr
                ? Utf16LengthOfUtf8(text + at, left)
                : Utf8ToUtf16(text + at, left, call.out + count, call.capacity - count);
        at += done.taken;
        count += done.written;
        if (at == call.length) return {count, kErrorSuccess, at};
        if (detail::ReadUtf8(text + at, call.length - at).length != 0) break;  // does not fit
        if (call.strict) return {count, kErrorNoUnicodeTranslation, at};
        if (count == call.capacity) break;
        if (call.out != nullptr) call.out[count] = kReplacement;
        ++count;
        at += IllFormedUtf8(text + at, call.length - at);
    }
    return {count, kErrorInsufficientBuffer, at};
}

Outcome EncodeUtf8(const Encoding& call) noexcept {
    char* out = reinterpret_cast<char*>(call.out);
    std::size_t at = 0;
    std::size_t count = 0;
    for (;;) {
        const std::size_t left = call.length - at;
        const UtfProgress done =
            out == nullptr ? Utf8LengthOfUtf16(call.text + at, left)
                           : Utf16ToUtf8(call.text + at, left, out + count, call.capacity - count);
        at += done.taken;
        count += done.written;
        if (at == call.length) return {count, kErrorSuccess, at};
        if (detail::ReadUtf16(call.text + at, call.length - at).length != 0) break;  // does not fit
        if (call.strict) return {count, kErrorNoUnicodeTranslation, at};
        if (call.capacity - count < sizeof kReplacementBytes) break;
        if (out != nullptr) std::memcpy(out + count, kReplacementBytes, sizeof kReplacementBytes);
        count += sizeof kReplacementBytes;
        ++at;
    }
    return {count, kErrorInsufficientBuffer, at};
}

}  // namespace zelkor::platform::nls
