// The scans beneath buffers and strings, against the standard library on texts that end exactly
// where their allocation does.
#include "Foundation/Platform/Scan.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace platform = zelkor::platform;

namespace {

template <typename Unit>
std::vector<Unit> RandomText(std::mt19937& random, std::size_t most, unsigned letters) {
    std::vector<Unit> text(random() % (most + 1));
    for (Unit& unit : text) unit = static_cast<Unit>('a' + random() % letters);
    text.shrink_to_fit();
    return text;
}

template <typename Unit>
void Compare() {
    using View = std::basic_string_view<Unit>;
    std::mt19937 random(11);
    for (int i = 0; i < 20000; ++i) {
        const unsigned letters = i % 2 == 0 ? 2 : 5;
        const std::vector<Unit> text = RandomText<Unit>(random, 150, letters);
        const std::vector<Unit> wanted = RandomText<Unit>(random, 6, letters);
        const View view(text.data(), text.size());
        const std::size_t hit = view.find(View(wanted.data(), wanted.size()));
        ASSERT_EQ(platform::FindText(text.data(), text.size(), wanted.data(), wanted.size()),
                  hit == View::npos ? platform::kNoHit : hit);
        const std::size_t unit = view.find(static_cast<Unit>('c'));
        ASSERT_EQ(platform::FindUnit(text.data(), text.size(), static_cast<Unit>('c')),
                  unit == View::npos ? platform::kNoHit : unit);

        std::vector<Unit> other = text;
        if (!other.empty() && i % 3 != 0) other[random() % other.size()] = static_cast<Unit>('z');
        if (!other.empty() && i % 7 == 0) other[random() % other.size()] = 0;
        std::size_t common = 0;
        while (common < text.size() && text[common] == other[common]) ++common;
        ASSERT_EQ(platform::CommonLength(text.data(), other.data(), text.size()), common);
        std::size_t zero = 0;
        while (zero < other.size() && other[zero] != 0) ++zero;
        ASSERT_EQ(platform::CommonLength(other.data(), other.data(), other.size()), zero);
    }
}

// Nearly periodic texts, in which most places agree far into what is wanted.
template <typename Unit>
void CompareRepetitive() {
    using Text = std::basic_string<Unit>;
    std::mt19937 random(12);
    for (int i = 0; i < 2000; ++i) {
        const std::vector<Unit> block = RandomText<Unit>(random, 1U << (i % 7), 2);
        Text text;
        while (text.size() < 3000) text.append(block.begin(), block.end()).push_back('a');
        for (int spots = i % 3; spots > 0; --spots) text[random() % text.size()] = 'b';
        Text wanted = text.substr(random() % text.size(), 2 + random() % 400);
        if (i % 2 == 0) wanted[random() % wanted.size()] ^= 3;
        const std::size_t hit = text.find(wanted);
        ASSERT_EQ(platform::FindText(text.data(), text.size(), wanted.data(), wanted.size()),
                  hit == Text::npos ? platform::kNoHit : hit);
    }
}

TEST(ScanTest, RepetitiveTextsTakeLinearTime) {
    CompareRepetitive<char>();
    CompareRepetitive<char16_t>();
    // Comparing at every place would take hours.
    const std::u16string half(std::size_t{1} << 21, u'a');
    const std::u16string wanted = half + u'b' + half;
    std::u16string text(std::size_t{1} << 24, u'a');
    EXPECT_EQ(platform::FindText(text.data(), text.size(), wanted.data(), wanted.size()),
              platform::kNoHit);
    text[text.size() - half.size() - 1] = u'b';
    EXPECT_EQ(platform::FindText(text.data(), text.size(), wanted.data(), wanted.size()),
              text.size() - wanted.size());
}

TEST(ScanTest, BytesAndUnitsAgreeWithTheStandardLibrary) {
    Compare<char>();
    Compare<char16_t>();
}

}  // namespace
