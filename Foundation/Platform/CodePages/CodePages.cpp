#include "Foundation/Platform/CodePages/CodePages.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "Foundation/Platform/CodePages/Internal/CodePageDetail.h"

namespace zelkor::platform {
namespace {

using nls::Decoding;
using nls::Encoding;
using nls::Outcome;
using nls::Page;
using nls::PageRules;
using nls::TablePage;

constexpr std::uint32_t kSymbol = 42;
constexpr std::uint32_t kMacintosh = 10000;
constexpr std::uint32_t kIso2022Jp = 50220;
constexpr std::uint32_t kHz = 52936;
constexpr std::uint32_t kGb18030 = 54936;
constexpr std::uint32_t kUtf7 = 65000;

struct AlgorithmicPage {
    std::uint32_t number;
    PageRules rules;
};
// 50220: at worst an escape sequence of 4 bytes and a pair for each unit, and one at the end.
// HZ: an escape of 2 bytes and a pair. UTF-7: '+', three digits and '-' for a lone unit, and the
// end of a run that an earlier piece of the text began.
constexpr auto kAlgorithmicPages =
    std::to_array<AlgorithmicPage>({{kSymbol, {0, 0, false, 1, 1, 0}},
                                    {kIso2022Jp, {0, 0, false, 5, 6, 3}},
                                    {kHz, {0, 0, false, 5, 4, 2}},
                                    {kGb18030, {0x8, 0x80, false, 4, 4, 0}},
                                    {kUtf7, {0, 0, false, 5, 5, 2}},
                                    {kUtf8Page, {0x8, 0x80, false, 4, 3, 0}}});

// The stored code of a caller's default character; a page with one byte takes the first alone.
std::uint16_t DefaultCode(const Page& page, const char* bytes) noexcept {
    if (page.tables == nullptr) return 0;
    if (bytes == nullptr) return '?';
    const unsigned int first = static_cast<unsigned char>(bytes[0]);
    const bool pair = page.tables->max_char_size == 2 && first != 0;
    const unsigned int second = pair ? static_cast<unsigned char>(bytes[1]) : 0;
    return static_cast<std::uint16_t>(first | second << 8);
}

int Fail(std::uint32_t error) noexcept {
    SetLastError(error);
    return 0;
}

// What the caller gets: a count beyond its range counts as a result that does not fit.
int Answer(const Outcome& outcome) noexcept {
    if (outcome.error != kErrorSuccess) return Fail(outcome.error);
    if (outcome.count > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        return Fail(kErrorInsufficientBuffer);
    }
    if (outcome.count == 0) SetLastError(kErrorSuccess);
    return static_cast<int>(outcome.count);
}

// Whether text and destination of a call make sense.
bool IsCallable(const void* text, int length, const void* out, int capacity) noexcept {
    return text != nullptr && length != 0 && capacity >= 0 &&
           (capacity == 0 || (out != nullptr && out != text));
}

template <typename Element>
std::size_t TextLength(const Element* text, int length) noexcept {
    if (length >= 0) return static_cast<std::size_t>(length);
    return std::char_traits<Element>::length(text) + 1;
}

}  // namespace

std::uint32_t nls::ResolvePage(std::uint32_t page) noexcept {
    switch (page) {
        case 0:
        case 3:
            return AnsiCodePage();
        case 1:
            return OemCodePage();
        case 2:
            return kMacintosh;
        default:
            return page;
    }
}

bool nls::FindPage(std::uint32_t number, Page& page) noexcept {
    const TablePage* const tables = FindTablePage(number);
    if (tables != nullptr && tables->max_char_size <= 2) {
        const std::uint8_t size = tables->max_char_size;
        page = {number, tables, {0xF, 0x6F0, true, size, size, 0}};
        return true;
    }
    const auto row = std::ranges::find(kAlgorithmicPages, number, &AlgorithmicPage::number);
    if (row == kAlgorithmicPages.end()) return false;
    page = {number, nullptr, row->rules};
    return true;
}

Outcome nls::Decode(const Page& page, const Decoding& call, Piece& piece) noexcept {
    if (page.tables != nullptr) {
        return page.tables->max_char_size == 1 ? DecodeSingleByte(*page.tables, call)
                                               : DecodeDoubleByte(*page.tables, call);
    }
    switch (page.number) {
        case kSymbol:
            return DecodeSymbol(call);
        case kIso2022Jp:
            return DecodeIso2022Jp(call, piece);
        case kHz:
            return DecodeHz(call, piece);
        case kGb18030:
            return DecodeGb18030(call);
        case kUtf7:
            return DecodeUtf7(call, piece);
        default:
            return DecodeUtf8(call);
    }
}

Outcome nls::Encode(const Page& page, Encoding& call, Piece& piece) noexcept {
    if (page.tables != nullptr) {
        return page.tables->max_char_size == 1 ? EncodeSingleByte(*page.tables, call)
                                               : EncodeDoubleByte(*page.tables, call);
    }
    switch (page.number) {
        case kSymbol:
            return EncodeSymbol(call);
        case kIso2022Jp:
            return EncodeIso2022Jp(call, piece);
        case kHz:
            return EncodeHz(call, piece);
        case kGb18030:
            return EncodeGb18030(call);
        case kUtf7:
            return EncodeUtf7(call, piece);
        default:
            return EncodeUtf8(call);
    }
}

const TablePage* nls::FindTablePage(std::uint32_t page) noexcept {
    const TablePage& row = kTablePages[kPagePlaces[page % kPageModulus]];
    return row.number == page ? &row : nullptr;
}

int MultiByteToWideChar(std::uint32_t page, std::uint32_t flags, const char* text, int length,
                        char16_t* out, int capacity) noexcept {
    if (!IsCallable(text, length, out, capacity)) return Fail(kErrorInvalidParameter);
    Page found;
    if (!nls::FindPage(nls::ResolvePage(page), found)) return Fail(kErrorInvalidParameter);
    if ((flags & ~found.rules.decode_flags) != 0) return Fail(kErrorInvalidFlags);

    const bool measuring = capacity == 0;
    Decoding call{.text = reinterpret_cast<const unsigned char*>(text),
                  .length = TextLength(text, length),
                  .out = measuring ? nullptr : out,
                  .capacity = measuring ? nls::kUnlimited : static_cast<std::size_t>(capacity),
                  .strict = (flags & kErrorOnInvalidChars) != 0};
    nls::Piece whole;
    Outcome outcome = nls::Decode(found, call, whole);
    if (outcome.error == kErrorInsufficientBuffer && call.strict && found.tables != nullptr) {
        // An invalid character further on is the graver error.
        call.out = nullptr;
        call.capacity = nls::kUnlimited;
        const Outcome measured = nls::Decode(found, call, whole);
        if (measured.error != kErrorSuccess) outcome = measured;
    }
    return Answer(outcome);
}

int WideCharToMultiByte(std::uint32_t page, std::uint32_t flags, const char16_t* text, int length,
                        char* out, int capacity, const char* default_char,
                        BOOL* used_default) noexcept {
    if (!IsCallable(text, length, out, capacity)) return Fail(kErrorInvalidParameter);
    Page found;
    if (!nls::FindPage(nls::ResolvePage(page), found)) return Fail(kErrorInvalidParameter);
    const bool default_asked = default_char != nullptr || used_default != nullptr;
    if (default_asked && !found.rules.has_default_char) return Fail(kErrorInvalidParameter);
    if ((flags & ~found.rules.encode_flags) != 0) return Fail(kErrorInvalidFlags);

    const bool measuring = capacity == 0;
    Encoding call{.text = text,
                  .length = TextLength(text, length),
                  .out = measuring ? nullptr : reinterpret_cast<unsigned char*>(out),
                  .capacity = measuring ? nls::kUnlimited : static_cast<std::size_t>(capacity),
                  .strict = (flags & kWideErrorOnInvalidChars) != 0,
                  .default_code = DefaultCode(found, default_char),
                  .wants_used_default = used_default != nullptr,
                  .used_default = false};
    nls::Piece whole;
    const Outcome outcome = nls::Encode(found, call, whole);
    if (used_default != nullptr) *used_default = call.used_default;
    return Answer(outcome);
}

std::size_t MaxBytes(std::uint32_t page, std::size_t units) noexcept {
    Page found;
    if (!nls::FindPage(nls::ResolvePage(page), found)) return 0;
    return units * found.rules.bytes_per_unit + found.rules.bytes_at_end;
}

bool GetCodePageInfo(std::uint32_t page, CodePageInfo* info) noexcept {
    Page found;
    if (!nls::FindPage(nls::ResolvePage(page), found)) return Fail(kErrorInvalidParameter) != 0;
    *info = {.max_char_size = found.rules.max_char_size, .default_char = {'?'}, .lead_bytes = {}};
    if (found.tables != nullptr) {
        std::ranges::copy(found.tables->lead_bytes, info->lead_bytes);
    }
    return true;
}

bool IsValidCodePage(std::uint32_t page) noexcept {
    Page found;
    return nls::FindPage(page, found);
}

}  // namespace zelkor::platform
