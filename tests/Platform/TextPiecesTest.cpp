// Texts that come in pieces: whatever the pieces, the result is that of the whole text, and what is
// lost is counted once, at its place.
#include "Foundation/Platform/Nls/TextPieces.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/Platform/CodePageCalls.h"

namespace {

using namespace std::string_literals;
using test::Exact;

struct Total {
    std::size_t faults = 0;
    std::size_t first_fault = 0;
};

// Hands the text over in pieces of `size` new elements, each behind what was left of the one
// before.
template <typename Element, typename Result, typename Convert, typename Room>
std::basic_string<Result> InPieces(const std::basic_string<Element>& text, std::size_t size,
                                   Total& total, const Convert& convert, const Room& room) {
    std::basic_string<Result> result;
    std::size_t at = 0;
    std::size_t end = 0;
    while (end < text.size()) {
        end = std::min(end + size, text.size());
        const auto piece = Exact(text.substr(at, end - at));
        const auto out = std::make_unique<Result[]>(room(end - at));
        const bool last = end == text.size();
        const platform::PieceResult done = convert(piece.get(), end - at, last, out.get());
        EXPECT_LE(end - at - done.taken, last ? 0u : 3u);
        if (total.faults == 0) total.first_fault = at + done.first_fault;
        total.faults += done.faults;
        result.append(out.get(), done.written);
        at += done.taken;
    }
    return result;
}

std::u16string DecodeInPieces(std::uint32_t page, const std::string& text, std::size_t size,
                              Total& total) {
    platform::TextDecoder decoder(page);
    return InPieces<char, char16_t>(
        text, size, total, [&](auto... arguments) { return decoder.Decode(arguments...); },
        [](std::size_t bytes) { return bytes; });
}

std::string EncodeInPieces(std::uint32_t page, const std::u16string& text, std::size_t size,
                           Total& total) {
    platform::TextEncoder encoder(page);
    return InPieces<char16_t, char>(
        text, size, total, [&](auto... arguments) { return encoder.Encode(arguments...); },
        [&](std::size_t units) { return encoder.MaxBytes(units); });
}

struct Faults {
    std::size_t count, first;
};

TEST(TextPiecesTest, DecodingInPiecesIsDecodingTheWhole) {
    struct Case {
        std::uint32_t page;
        std::string bytes;
        Faults faults;
    };
    const Case cases[] = {
        {1252, "caf\xE9", {0, 0}},
        {1255, "ab\xFFz\xFF", {2, 2}},
        {932, "A\x82\xA0\x83\x41\x81\xFFz\x82\0\x81\x45\x82"s, {3, 5}},
        {936, "\xB0\xA1\xB0\xA1 plain text of some length \xB0\xA1\xA1\xFF", {1, 33}},
        {65001, "a\xC3\xA9\xF0\x9F\x98\x80\xE2\x82z\xED\xA0\x80\xF4\x90\xF0\x9F\x98", {5, 7}},
        {42, "A\x1F\xFF", {0, 0}},
        {50220,
         "\x1B$B$\"$$\x1B(BA\n\x1B(I1\x1B$(D0!\x1B&@\x0E"
         "1\x0F\x1B(J!",
         {0, 0}},
        {50220, "A\x1B$A!!\x1B$B/$\x1B(B\xFF\x1B$B$", {4, 1}},
        {52936, "~{Dc:C~}~~A~\n~{\nDc~}~x", {0, 0}},
        {52936, "~{Dc ccD\x7F!~}\xFE~", {4, 4}},
        {65000, "+AOk-+AOkA6Q-x+-+2D3eAA-", {0, 0}},
        {65000, "+A-+AE!+!\xE9+AE\xE9+E-x+", {7, 1}},
        {1200, "A\0\x3D\xD8!"s, {1, 4}},
        {1201, "\0A\xD8\x3D"s, {0, 0}},
    };
    for (const auto& [page, bytes, faults] : cases) {
        SCOPED_TRACE(testing::Message() << page << " " << testing::PrintToString(bytes));
        Total whole;
        const std::u16string units = DecodeInPieces(page, bytes, bytes.size(), whole);
        EXPECT_EQ(whole.faults, faults.count);
        if (faults.count != 0) {
            EXPECT_EQ(whole.first_fault, faults.first);
        }
        if (page != 1200 && page != 1201) {
            EXPECT_EQ(units, test::Decoded(page, bytes));
        }
        for (std::size_t size = 1; size < bytes.size(); ++size) {
            Total total;
            ASSERT_EQ(DecodeInPieces(page, bytes, size, total), units) << size;
            EXPECT_EQ(total.faults, faults.count) << size;
            if (faults.count != 0 && page != 65000) {
                EXPECT_EQ(total.first_fault, faults.first) << size;
            }
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
        {1252, u"a\u20AC?", {0, 0}},
        {1252, u"a\xD83D\xDE00\u3042\xD83D", {3, 1}},
        {932, u"\u3042\u00E9?", {1, 1}},
        {65001, u"\xD83D\xDE00\u3042\xDE00z\xD83D", {2, 3}},
        {42, u"\uF041A\uF042", {1, 1}},
        {50220, u"\u3042\u3044A\u4E02\uFF71\u0E01\u3042\x0E", {3, 4}},
        {52936, u"\u4F60\u597D~\u597D\u0E01", {1, 4}},
        {65000, u"\u00E9\u00E9\u00E9A+\u00E9+\xD83D\xDE00\xDE00", {0, 0}},
        {1201, u"A\xD83D\xDE00", {0, 0}},
    };
    for (const auto& [page, units, faults] : cases) {
        SCOPED_TRACE(testing::Message() << page << " " << testing::PrintToString(units));
        Total whole;
        const std::string bytes = EncodeInPieces(page, units, units.size(), whole);
        EXPECT_EQ(whole.faults, faults.count);
        if (faults.count != 0) {
            EXPECT_EQ(whole.first_fault, faults.first);
        }
        if (page != 1201 && page != 42) {
            EXPECT_EQ(bytes, test::Encoded(page, units));
        }
        for (std::size_t size = 1; size < units.size(); ++size) {
            Total total;
            ASSERT_EQ(EncodeInPieces(page, units, size, total), bytes) << size;
            EXPECT_EQ(total.faults, faults.count) << size;
            EXPECT_EQ(faults.count == 0 || total.first_fault == faults.first, true) << size;
        }
    }
}

}  // namespace
