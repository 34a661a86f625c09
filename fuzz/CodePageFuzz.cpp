// Any bytes decoded, and any units encoded, in any page. The first byte chooses the page, the
// second the direction; buffers have exactly the size that the length query names. What must hold:
//   the length query, the written count and the documented bounds agree, and one element less
//   fails; strict decoding gives what plain decoding gives, or fails with error 1113; a text in two
//   pieces converts as the whole, with faults just where strict decoding fails; text that came out
//   of a conversion converts back to what it came from.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <vector>

#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/CodePages/TextPieces.h"
#include "Foundation/Platform/LastError.h"

namespace platform = zelkor::platform;

namespace {

constexpr std::uint32_t kPages[] = {
    42,    437,   646,   720,   850,   862,   874,   932,   936,   949,   950,   1250,  1251,
    1252,  1253,  1254,  1255,  1256,  1257,  1258,  1361,  10000, 10001, 10002, 10003, 10004,
    10005, 10006, 10007, 10008, 10010, 10017, 10021, 10029, 10079, 10081, 10082, 20127, 20866,
    20932, 28591, 28592, 28593, 28594, 28595, 28596, 28597, 28598, 28599, 50220, 51932, 52936,
    65000, 65001, 54936, 20949, 708,   737,   775,   852,   855,   857,   858,   860,   861,
    863,   864,   865,   866,   869,   21866, 28603, 28605};

void Require(bool holds) {
    if (!holds) std::abort();
}

// Vectors hold their elements on the heap without slack, unlike strings.
using Bytes = std::vector<char>;
using Units = std::vector<char16_t>;

// Where a text is cut in two: about anywhere, but the same for the same text.
template <typename Text>
std::size_t CutOf(const Text& text) {
    return static_cast<unsigned char>(text[text.size() / 2]) * text.size() / 256;
}

// Hands a text over in two pieces, `convert(piece, length, last, out)`.
template <typename Result, typename Text, typename Convert, typename Room>
std::size_t InPieces(const Text& text, Result& result, const Convert& convert, const Room& room) {
    const std::size_t cut = CutOf(text);
    const Text front(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(cut));
    Result out(room(cut));
    const platform::PieceResult first = convert(front.data(), cut, false, out.data());
    Require(first.written <= out.size() && first.taken <= cut && cut - first.taken <= 3);
    result.assign(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(first.written));
    const Text rest(text.begin() + static_cast<std::ptrdiff_t>(first.taken), text.end());
    out.assign(room(rest.size()), {});
    const platform::PieceResult second = convert(rest.data(), rest.size(), true, out.data());
    Require(second.written <= out.size() && second.taken == rest.size());
    result.insert(result.end(), out.begin(),
                  out.begin() + static_cast<std::ptrdiff_t>(second.written));
    return first.faults + second.faults;
}

void RequirePieces(std::uint32_t page, const Bytes& bytes, const Units& units, bool refused) {
    platform::TextDecoder decoder(page);
    Units pieces;
    const std::size_t faults = InPieces(
        bytes, pieces, [&](auto... arguments) { return decoder.Decode(arguments...); },
        [](std::size_t length) { return length; });
    Require(pieces == units);
    if (refused) Require(faults != 0);
}

void RequirePieces(std::uint32_t page, const Units& units, const Bytes& bytes) {
    platform::TextEncoder encoder(page);
    Bytes pieces;
    const std::size_t faults = InPieces(
        units, pieces, [&](auto... arguments) { return encoder.Encode(arguments...); },
        [&](std::size_t length) { return encoder.MaxBytes(length); });
    Require(page == 42 ? bytes.empty() == (faults != 0) : pieces == bytes);
}

Units Decode(std::uint32_t page, const Bytes& bytes) {
    using platform::MultiByteToWideChar;
    if (bytes.empty()) return {};
    const int length = static_cast<int>(bytes.size());
    const int size = MultiByteToWideChar(page, 0, bytes.data(), length, nullptr, 0);
    Require(size >= 0 && size <= length);
    if (size == 0) {
        RequirePieces(page, bytes, {}, false);
        return {};
    }
    Units units(static_cast<std::size_t>(size));
    Require(MultiByteToWideChar(page, 0, bytes.data(), length, units.data(), size) == size);
    Units again(units.size());
    const int strict = MultiByteToWideChar(page, platform::kErrorOnInvalidChars, bytes.data(),
                                           length, again.data(), size);
    Require(strict == 0 || again == units);
    RequirePieces(page, bytes, units,
                  strict == 0 && platform::LastError() == platform::kErrorNoUnicodeTranslation);
    Units cut(units.size() - 1);
    Require(cut.empty() ||
            (MultiByteToWideChar(page, 0, bytes.data(), length, cut.data(), size - 1) == 0 &&
             platform::LastError() == platform::kErrorInsufficientBuffer));
    return units;
}

// The bytes, or none when the page refuses a unit (42).
Bytes Encode(std::uint32_t page, const Units& units) {
    const auto encode = [&](Bytes& out) {
        return platform::WideCharToMultiByte(page, 0, units.data(), static_cast<int>(units.size()),
                                             out.data(), static_cast<int>(out.size()), nullptr,
                                             nullptr);
    };
    if (units.empty()) return {};
    Bytes bytes;
    const int size = encode(bytes);
    if (size == 0) {
        Require(page == 42 && platform::LastError() == platform::kErrorNoUnicodeTranslation);
        RequirePieces(page, units, {});
        return {};
    }
    bytes.resize(static_cast<std::size_t>(size));
    Require(bytes.size() <= platform::MaxBytes(page, units.size()));
    Require(encode(bytes) == size);
    RequirePieces(page, units, bytes);
    Bytes cut(bytes.size() - 1);
    Require(cut.empty() ||
            (encode(cut) == 0 && platform::LastError() == platform::kErrorInsufficientBuffer));
    return bytes;
}

// Encoding replaces what the page lacks; from then on nothing changes any more. The marks of
// ISO-2022-JP are not told from units of the same number.
void RequireRoundTrip(std::uint32_t page, const Units& units) {
    const Bytes bytes = Encode(page, units);
    const auto is_mark = [](char16_t unit) { return unit == 0xE || unit == 0xF || unit == 0x1B; };
    if (page == 50220 && std::ranges::any_of(units, is_mark)) return;
    const Units again = Decode(page, bytes);
    if (page == 65000) Require(again == units);
    Require(Encode(page, again) == bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3 || size > 1024) return 0;
    const std::uint32_t page = kPages[data[0] % std::size(kPages)];
    const bool decoding = data[1] % 2 == 0;
    const Bytes bytes(data + 2, data + size);
    if (decoding) {
        RequireRoundTrip(page, Decode(page, bytes));
        return 0;
    }
    Units units(bytes.size() / 2);
    for (std::size_t at = 0; at < units.size(); ++at) {
        units[at] = static_cast<char16_t>(data[2 + 2 * at] | data[3 + 2 * at] << 8);
    }
    RequireRoundTrip(page, units);
    return 0;
}
