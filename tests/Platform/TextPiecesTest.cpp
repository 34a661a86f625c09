// Texts that come in pieces: whatever the pieces, the result is that of the whole text, and what is
// lost is counted once, at its place.
#include "Foundation/Platform/CodePages/TextPieces.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/Platform/CodePageCalls.h"

namespace platform = zelkor::platform;

namespace {

using namespace std::string_literals;

struct Faults {
    std::size_t count, first;
    bool operator==(const Faults&) const = default;
};

// Hands the text over in pieces of `size` new elements, each behind what was left of the one
// before.
template <typename Result, typename Element, typename Coder, typename Method>
std::basic_string<Result> InPieces(Coder coder, const std::basic_string<Element>& text,
                                   std::size_t size, Faults& faults, Method convert) {
    std::basic_string<Result> result;
    std::size_t at = 0;
    std::size_t end = 0;
    while (end < text.size()) {
        end = std::min(end + size, text.size());
        const auto piece = test::Exact(text.substr(at, end - at));
        std::size_t room = end - at;
        if constexpr (sizeof(Result) == 1) room = coder.MaxBytes(room);
        const auto out = std::make_unique<Result[]>(room);
        const bool last = end == text.size();
        const auto done = (coder.*convert)(piece.get(), end - at, last, out.get());
        EXPECT_LE(end - at - done.taken, last ? 0u : 3u);
        if (faults.count == 0 && done.faults != 0) faults.first = at + done.first_fault;
        faults.count += done.faults;
        result.append(out.get(), done.written);
        at += done.taken;
    }
    return result;
}

// Converts with a fresh Coder for each size of pieces; the whole text's result.
template <typename Coder, typename Result, typename Element, typename Method>
std::basic_string<Result> InAnyPieces(std::uint32_t page, const std::basic_string<Element>& text,
                                      const Faults& wanted, Method convert) {
    std::basic_string<Result> whole;
    for (std::size_t size = text.size(); size != 0; --size) {
        Faults faults{};
        const auto result = InPieces<Result>(Coder(page), text, size, faults, convert);
        if (size == text.size()) whole = result;
        EXPECT_EQ(result, whole) << page << " in pieces of " << size;
        EXPECT_EQ(faults.count, wanted.count) << page << " in pieces of " << size;
        EXPECT_EQ(faults.first, wanted.first) << page << " in pieces of " << size;
    }
    return whole;
}

TEST(TextPiecesTest, DecodingInPiecesIsDecodingTheWhole) {
    struct Case {
        std::uint32_t page;
        std::string bytes;
        Faults faults;
    };
    const Case cases[] = {
        {1252, "caf\xE9", {}},
        {1255, "ab\xFFz\xFF", {2, 2}},
        {932, "A\x82\xA0\x83\x41\x81\xFFz\x82\0\x81\x45\x82"s, {3, 5}},
        {936, "\xB0\xA1\xB0\xA1 plain text of some length \xB0\xA1\xA1\xFF", {1, 33}},
        {65001, "a\xC3\xA9\xF0\x9F\x98\x80\xE2\x82z\xED\xA0\x80\xF4\x90\xF0\x9F\x98", {5, 7}},
        {54936,
         "\xB0\xA1\x81\x30\x84\x36\xA2\xE3\x94\x39\xFC\x36z\x81\x30\x81z\xB0\xFF\x84\x31",
         {4, 13}},
        {42, "A\x1F\xFF", {}},
        {50220, "\x1B$B$\"$$\x1B(BA\n\x1B(I1\x1B$(D0!\x1B&@\0161\x0F\x1B(J!", {}},
        {50220, "A\x1B$A!!\x1B$B/$\x1B(B\xFF\x1B$B$", {4, 1}},
        {52936, "~{Dc:C~}~~A~\n~{\nDc~}~x", {}},
        {52936, "~{Dc ccD\x7F!~}\xFE~", {4, 4}},
        {65000, "+AOk-+AOkA6Q-x+-+2D3eAA-", {}},
        {65000, "+AOkB!x", {1, 5}},  // place 4 when the digits came in an earlier piece
        {65000, "\xE9+A-+AE!+!+AE\xE9+E-x+", {7, 0}},
        {1200, "A\0\x3D\xD8!"s, {1, 4}},
        {1201, "\0A\xD8\x3D"s, {}},
    };
    for (const auto& [page, bytes, faults] : cases) {
        const auto units = InAnyPieces<platform::TextDecoder, char16_t>(
            page, bytes, faults, &platform::TextDecoder::Decode);
        if (platform::IsValidCodePage(page)) {
            EXPECT_EQ(units, test::Decoded(page, bytes)) << page;
        }
    }
}

TEST(TextPiecesTest, EncodingInPiecesIsEncodingTheWhole) {
    struct Case {
        std::uint32_t page;
        std::u16string units;
        Faults faults;
    };
    const Case cases[] = {
        {1252, u"a\u20AC?", {}},
        {1252, u"a\xD83D\xDE00\u3042\xD83D", {3, 1}},
        {932, u"\u3042\u00E9?", {1, 1}},
        {65001, u"\xD83D\xDE00\u3042\xDE00z\xD83D", {2, 3}},
        {54936, u"\xD83D\xDE00\u554A\u00A5z\xDE00\u20AC\xD83D", {2, 5}},
        {50220, u"\u3042\u3044A\u4E02\uFF71\u0E01\u3042\x0E", {3, 4}},
        {52936, u"\u4F60\u597D~\u597D\u0E01", {1, 4}},
        {65000, u"\u00E9\u00E9\u00E9A+\u00E9+\xD83D\xDE00\xDE00", {}},
        {42, u"\uF041A\uF042", {1, 1}},
        {1201, u"A\xD83D\xDE00", {}},
    };
    for (const auto& [page, units, faults] : cases) {
        const auto bytes = InAnyPieces<platform::TextEncoder, char>(page, units, faults,
                                                                    &platform::TextEncoder::Encode);
        if (page != 42 && page != 1201) {
            EXPECT_EQ(bytes, test::Encoded(page, units)) << page;
        }
    }
}

}  // namespace
