// Every instruction set's kernels against the reference, on buffers of exact size.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

#include "Foundation/Platform/Text/Utf.h"
#include "tests/Platform/UtfReference.h"

namespace platform = zelkor::platform;

namespace {

using platform::UtfProgress;

// A copy on the heap with no byte to spare on either side.
template <class Unit>
struct Exact {
    explicit Exact(std::basic_string_view<Unit> text)
        : data(new Unit[text.size()]), size(text.size()) {
        std::copy(text.begin(), text.end(), data.get());
    }
    explicit Exact(std::size_t count) : data(new Unit[count]()), size(count) {}
    [[nodiscard]] std::basic_string<Unit> Prefix(std::size_t count) const {
        return {data.get(), count};
    }
    std::unique_ptr<Unit[]> data;
    std::size_t size;
};

class UtfKernelsTest : public testing::TestWithParam<int> {
protected:
    void SetUp() override {
        if (platform::LimitUtfKernels(GetParam()) != GetParam()) {
            GTEST_SKIP() << "this processor has no such instructions";
        }
    }
    void TearDown() override { platform::LimitUtfKernels(kNoLimit); }
    static constexpr int kNoLimit = 99;
};

void ExpectDecoded(std::string_view source, std::size_t capacity) {
    const auto wanted = test::ReferenceDecode(source, capacity);
    const Exact<char> text(source);
    const Exact<char16_t> out(capacity);
    const UtfProgress got =
        platform::Utf8ToUtf16(text.data.get(), text.size, out.data.get(), out.size);
    ASSERT_EQ(got.taken, wanted.taken);
    ASSERT_EQ(got.written, wanted.text.size());
    ASSERT_EQ(out.Prefix(got.written), wanted.text);
}

void ExpectEncoded(std::u16string_view source, std::size_t capacity) {
    const auto wanted = test::ReferenceEncode(source, capacity);
    const Exact<char16_t> text(source);
    const Exact<char> out(capacity);
    const UtfProgress got =
        platform::Utf16ToUtf8(text.data.get(), text.size, out.data.get(), out.size);
    ASSERT_EQ(got.taken, wanted.taken);
    ASSERT_EQ(got.written, wanted.text.size());
    ASSERT_EQ(out.Prefix(got.written), wanted.text);
}

// Ample, exact and every smaller capacity near the end; the length function agrees.
void ExpectDecoded(std::string_view source) {
    const auto whole = test::ReferenceDecode(source, source.size());
    const Exact<char> text(source);
    const UtfProgress length = platform::Utf16LengthOfUtf8(text.data.get(), text.size);
    ASSERT_EQ(length.taken, whole.taken);
    ASSERT_EQ(length.written, whole.text.size());
    ASSERT_NO_FATAL_FAILURE(ExpectDecoded(source, source.size() + 100));
    for (std::size_t cut = 0; cut <= std::min<std::size_t>(3, whole.text.size()); ++cut) {
        ASSERT_NO_FATAL_FAILURE(ExpectDecoded(source, whole.text.size() - cut));
    }
}

void ExpectEncoded(std::u16string_view source) {
    const auto whole = test::ReferenceEncode(source, 4 * source.size());
    const Exact<char16_t> text(source);
    const UtfProgress length = platform::Utf8LengthOfUtf16(text.data.get(), text.size);
    ASSERT_EQ(length.taken, whole.taken);
    ASSERT_EQ(length.written, whole.text.size());
    ASSERT_NO_FATAL_FAILURE(ExpectEncoded(source, 3 * source.size() + 100));
    for (std::size_t cut = 0; cut <= std::min<std::size_t>(4, whole.text.size()); ++cut) {
        ASSERT_NO_FATAL_FAILURE(ExpectEncoded(source, whole.text.size() - cut));
    }
}

// Characters in runs of one size, as scripts have them; `kinds` counts the sizes in use.
class RandomText {
public:
    explicit RandomText(std::mt19937& random) : random_(random) {}
    std::u32string Characters(std::size_t count, std::size_t kinds) {
        std::u32string text;
        std::size_t kind = 0;
        while (text.size() < count) {
            if (Below(8) == 0) kind = Below(kinds);
            constexpr char32_t kFirst[] = {0, 0x80, 0x800, 0x10000, 0xE000};
            constexpr char32_t kCount[] = {0x80, 0x780, 0xD000, 0x100000, 0x2000};
            text += static_cast<char32_t>(kFirst[kind] + Below(kCount[kind]));
        }
        return text;
    }
    std::size_t Below(std::size_t limit) { return random_() % limit; }

private:
    std::mt19937& random_;
};

TEST_P(UtfKernelsTest, AgreeWithTheReferenceOnRandomText) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    RandomText source(random);
    for (int round = 0; round < 1500; ++round) {
        std::string bytes;
        std::u16string units;
        for (const char32_t value : source.Characters(source.Below(300), 1 + source.Below(5))) {
            bytes += test::ReferenceUtf8(value);
            units += test::ReferenceUtf16(value);
        }
        if (!bytes.empty() && round % 2 == 1) {
            bytes[source.Below(bytes.size())] = static_cast<char>(source.Below(256));
            units[source.Below(units.size())] = static_cast<char16_t>(0xD800 + source.Below(0x800));
        }
        ASSERT_NO_FATAL_FAILURE(ExpectDecoded(bytes));
        ASSERT_NO_FATAL_FAILURE(ExpectEncoded(units));
    }
}

TEST_P(UtfKernelsTest, ConvertEveryCharacterBothWays) {
    std::u32string all;
    for (char32_t value = 0; value < 0x110000; value += value < 0x10000 ? 1 : 0x3D) {
        if (value < 0xD800 || value > 0xDFFF) all += value;
    }
    std::string bytes;
    std::u16string units;
    for (const char32_t value : all) {
        bytes += test::ReferenceUtf8(value);
        units += test::ReferenceUtf16(value);
    }
    std::u16string decoded(units.size(), u'\0');
    EXPECT_EQ(
        platform::Utf8ToUtf16(bytes.data(), bytes.size(), decoded.data(), decoded.size()).taken,
        bytes.size());
    EXPECT_TRUE(decoded == units);
    std::string encoded(bytes.size(), '\0');
    EXPECT_EQ(
        platform::Utf16ToUtf8(units.data(), units.size(), encoded.data(), encoded.size()).taken,
        units.size());
    EXPECT_TRUE(encoded == bytes);
}

// Every pair of bytes where a character is due, followed by two more trail bytes or by ASCII, in a
// long text of two-byte characters; the position walks through a block.
TEST_P(UtfKernelsTest, StopExactlyBeforeIllFormedBytes) {
    std::string around;
    for (int i = 0; i < 120; ++i) around += i % 5 == 4 ? " " : "\xC3\xA9";
    std::string source = around;
    for (unsigned pair = 0x8000; pair < 0x10000; ++pair) {
        const std::size_t at = 9 * (pair % 16);
        for (const char* const rest : {"\x80\xBF", "ab"}) {
            source = around;
            source.insert(
                at, {static_cast<char>(pair >> 8), static_cast<char>(pair), rest[0], rest[1]});
            const Exact<char> text(source);
            const UtfProgress got = platform::Utf16LengthOfUtf8(text.data.get(), text.size);
            const Exact<char16_t> out(text.size);
            const UtfProgress decoded =
                platform::Utf8ToUtf16(text.data.get(), text.size, out.data.get(), out.size);
            const auto wanted = test::ReferenceDecode(source, source.size());
            ASSERT_EQ(got.taken, wanted.taken) << std::hex << pair << " at " << at;
            ASSERT_EQ(decoded.taken, wanted.taken) << std::hex << pair << " at " << at;
            ASSERT_EQ(out.Prefix(decoded.written), wanted.text);
        }
    }
}

TEST_P(UtfKernelsTest, CutTextAndShortOutputEndAtACharacter) {
    std::string bytes;
    std::u16string units;
    for (const char32_t value : std::u32string_view(U"aé漢\U0001F600z\U00010000\U0010FFFFß文 ")) {
        bytes += test::ReferenceUtf8(value);
        units += test::ReferenceUtf16(value);
    }
    while (bytes.size() < 200) bytes += bytes;
    while (units.size() < 100) units += units;
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        ASSERT_NO_FATAL_FAILURE(ExpectDecoded(std::string_view(bytes).substr(0, size)));
        ASSERT_NO_FATAL_FAILURE(ExpectDecoded(bytes, size));
    }
    for (std::size_t size = 0; size <= units.size(); ++size) {
        ASSERT_NO_FATAL_FAILURE(ExpectEncoded(std::u16string_view(units).substr(0, size)));
        ASSERT_NO_FATAL_FAILURE(ExpectEncoded(units, size));
    }
}

TEST_P(UtfKernelsTest, AsciiRunsEndAtTheFirstOtherElement) {
    for (std::size_t size = 0; size < 140; ++size) {
        for (std::size_t at = 0; at <= size; at += 1 + size / 16) {
            std::string bytes(size, 'x');
            std::u16string units(size, u'x');
            if (at < size) {
                bytes[at] = '\x80';
                units[at] = at % 2 == 0 ? u'\x80' : u'\x8041';
            }
            const Exact<char> narrow{std::string_view(bytes)};
            const Exact<char16_t> wide{std::u16string_view(units)};
            ASSERT_EQ(platform::AsciiPrefix(narrow.data.get(), size), at);
            ASSERT_EQ(platform::AsciiPrefix(wide.data.get(), size), at);
            const Exact<char16_t> widened(at);
            platform::WidenAscii(narrow.data.get(), at, widened.data.get());
            ASSERT_EQ(widened.Prefix(at), units.substr(0, at));
            const Exact<char> narrowed(at);
            platform::NarrowAscii(wide.data.get(), at, narrowed.data.get());
            ASSERT_EQ(narrowed.Prefix(at), bytes.substr(0, at));
        }
    }
}

std::string LevelName(const testing::TestParamInfo<int>& level) {
    constexpr const char* kNames[] = {"Plain", "Sse2", "Sse41", "Avx2"};
    return kNames[level.param];
}

INSTANTIATE_TEST_SUITE_P(Levels, UtfKernelsTest, testing::Range(0, 4), LevelName);

}  // namespace
