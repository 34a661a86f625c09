#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdarg>
#include <limits>
#include <string>
#include <vector>

#include "Foundation/Platform/Runtime.h"
#include "Support/Text.h"

namespace platform = zelkor::platform;

namespace {

std::u16string Wide(const char16_t* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    std::vector<char16_t> out(platform::FormatWhole(nullptr, 0, format, arguments));
    EXPECT_EQ(platform::FormatText(out.data(), out.size(), format, again),
              static_cast<int>(out.size()));
    va_end(again);
    va_end(arguments);
    return {out.begin(), out.end()};
}

std::string Narrow(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::array<char, 256> out;
    const int length = platform::FormatText(out.data(), out.size(), format, arguments);
    va_end(arguments);
    EXPECT_GE(length, 0);
    return out.data();
}

struct Case {
    std::u16string text;
    const char* wanted;
};

void Check(std::initializer_list<Case> cases) {
    int number = 0;
    for (const auto& [text, wanted] : cases) {
        EXPECT_EQ(test::Utf8(text), wanted) << "case " << number;
        ++number;
    }
}

constexpr char16_t* kNoText = nullptr;
constexpr char* kNoBytes = nullptr;
const double kInfinity = std::numeric_limits<double>::infinity();

TEST(RuntimeFormatTest, WritesIntegersAsTheOlderRuntime) {
    Check(
        {{Wide(u"%d|%i", std::numeric_limits<int>::min(), 0), "-2147483648|0"},
         {Wide(u"%u %x %X %o", -1, 0xABCDEF, 0xABCDEF, 8), "4294967295 abcdef ABCDEF 10"},
         {Wide(u"%+d % d %+ d %+u", 5, 5, -5, 5), "+5  5 -5 5"},
         {Wide(u"[%5d] [%-5d] [%05d] [%-05d]", 42, 42, -42, 42), "[   42] [42   ] [-0042] [42   ]"},
         {Wide(u"%.5d %8.5d %-8.5d|", -42, 42, 42), "-00042    00042 00042   |"},
         {Wide(u"[%08.5d] [%08.4X]", 42, 0xAB), "[   00042] [    00AB]"},
         {Wide(u"[%.0d] [%5.0x] [%#.0o]", 0, 0, 0), "[] [     ] [0]"},
         {Wide(u"%#x %#X %#x %#o %#o", 255, 255, 0, 8, 0), "0xff 0XFF 0 010 0"},
         {Wide(u"%#.8x [%-#10x] [%#010x]", 255, 255, 255), "0x000000ff [0xff      ] [0x000000ff]"},
         {Wide(u"[%*d] [%*d] [%.*d] [%.*d]", 6, 42, -6, 42, 4, 42, -1, 42),
          "[    42] [42    ] [0042] [42]"},
         {Wide(u"%hd %hu %hx %hhd", 70000, 70000, 0x12345, 300), "4464 4464 2345 300"},
         {Wide(u"%ld %lu %lx", -1, 0xFFFFFFFFu, 7u), "-1 4294967295 7"},
         {Wide(u"%I64d %lld %I64X", INT64_MIN, -5LL, 0x123456789ABCDEFULL),
          "-9223372036854775808 -5 123456789ABCDEF"},
         {Wide(u"%I32d %Iu %I64o", -5, sizeof(int), ~0ULL), "-5 4 1777777777777777777777"},
         {Wide(u"%p [%20p] %#p", nullptr, reinterpret_cast<void*>(0x1234ABCD),
               reinterpret_cast<void*>(0x1234)),
          "0000000000000000 [    000000001234ABCD] 0X0000000000001234"},
         {Wide(u"{%08.8X-%04.4X-%02.2X}", 0x112233, 0xAB, 0xB), "{00112233-00AB-0B}"}});
    // A 64-bit value under %ld prints its low half, and what follows is still in step.
    Check({{Wide(u"%ld %d", 0x100000002LL, 3), "2 3"}});
}

TEST(RuntimeFormatTest, CrossesTextWidthsByTheSizeLetters) {
    Check({{Wide(u"%s %ls %ws %S %hs %hS", u"a", u"b", u"c", "d", "e", "f"), "a b c d e f"},
           {Wide(u"%c%lc%C%hc", u'\u20AC', u'x', 'y', 0xE9), "€xyé"},
           {Wide(u"%S", "\xE9\x80"), "é\u0080"},
           {Wide(u"[%10s] [%-10s] [%010s]", u"ab", u"ab", u"ab"),
            "[        ab] [ab        ] [00000000ab]"},
           {Wide(u"[%5c] [%05c] [%-5c]", u'A', u'A', u'A'), "[    A] [0000A] [A    ]"},
           {Wide(u"[%.3s] [%10.3s] [%.0s] [%.*s]", u"abcdef", u"abcdef", u"abc", -1, u"abc"),
            "[abc] [       abc] [] [abc]"},
           {Wide(u"%s %S [%.3s]", kNoText, kNoBytes, kNoText), "(null) (null) [(nu]"}});
    EXPECT_EQ(Narrow("%s %hs %S %ls %ws", "a", "b", u"c", u"d", u"e"), "a b c d e");
    EXPECT_EQ(Narrow("%S|%C|%c", u"\u00E9\u4E00\U0001F600", u'\u20AC', 0xE9), "\xE9???|?|\xE9");
    EXPECT_EQ(Narrow("%d %5.1f %p", 42, 0.25, nullptr), "42   0.3 0000000000000000");
    // A precision bounds the read: these have no terminator.
    const std::array<char16_t, 2> units{u'h', u'i'};
    const std::array<char, 2> bytes{'h', 'o'};
    EXPECT_EQ(Wide(u"%.2s %.2S", units.data(), bytes.data()), u"hi ho");
}

TEST(RuntimeFormatTest, WritesFloatingPointNumbersAsTheOlderRuntime) {
    Check({{Wide(u"%f %f %f", 0.5, -0.0, 5e-7), "0.500000 -0.000000 0.000000"},
           {Wide(u"%f", 1e22), "10000000000000000000000.000000"},
           {Wide(u"%.0f %.0f %.0f %.0f %#.0f", 0.5, 1.5, 2.5, 0.05, 1.0), "1 2 3 0 1."},
           {Wide(u"%.2f %.2f %.1f %.1f", 1.005, 2.675, 0.25, 0.35), "1.00 2.67 0.3 0.3"},
           {Wide(u"%.20f %.1f %.3f", 0.1, 9.96, 0.0009996), "0.10000000000000001000 10.0 0.001"},
           {Wide(u"[%10.2f] [%-10.2f] [%010.2f] [%+.1f]", 3.14159, 3.14159, -3.14159, 2.0),
            "[      3.14] [3.14      ] [-000003.14] [+2.0]"},
           {Wide(u"%e %.2e %.0e %e", 12345.678, 9.999, 5.0, 0.0),
            "1.234568e+004 1.00e+001 5e+000 0.000000e+000"},
           {Wide(u"%E %e", -1e300, 5e-324), "-1.000000E+300 4.940656e-324"},
           {Wide(u"%g %g %g %g %g", 0.0, 100000.0, 1e6, 0.0001, 0.00001),
            "0 100000 1e+006 0.0001 1e-005"},
           {Wide(u"%#g %.17g %.3g %G %.0g", 1.5, 0.1, 3.14159, 1e-10, 25.0),
            "1.50000 0.10000000000000001 3.14 1E-010 3e+001"},
           {Wide(u"%.0g %.0G %#.0g %.0g %#.0g", 0.5, 0.00012, 0.5, -0.0999, 5.0),
            "0.5 0.0001 0.5 -0.1 5."},
           {Wide(u"%g %.3g %.20g", 999999.5, 0.00009999, 0.5), "1e+006 0.0001 0.5"},
           {Wide(u"%a %A %.1a %.15a", 1.0, 0.5, 1.96875, 0.0),
            "0x1.0000000000000p+0 0X1.0000000000000P-1 0x2.0p+0 0x0.000000000000000p+0"},
           {Wide(u"%a", 5e-324), "0x0.0000000000001p-1022"},
           {Wide(u"%f %f %g %e", kInfinity, -kInfinity, kInfinity, kInfinity),
            "1.#INF00 -1.#INF00 1.#INF 1.#INF00e+000"},
           {Wide(u"%f %f %.2f", -std::numeric_limits<double>::quiet_NaN(),
                 std::numeric_limits<double>::quiet_NaN(), kInfinity),
            "-1.#IND00 1.#QNAN0 1.#INF"},
           {Wide(u"%Lf", 0.25L), "0.250000"}});
}

TEST(RuntimeFormatTest, SurvivesBadDirectives) {
    int untouched = 7;
    Check({{Wide(u"100%% %5%"), "100% %"},
           {Wide(u"%"), ""},
           {Wide(u"a%"), "a"},
           {Wide(u"%-"), ""},
           {Wide(u"%5.*", 3), ""},
           {Wide(u"%d%I", 5), "5"},
           {Wide(u"%y|%d", 5), "y|5"},
           {Wide(u"% |%lq%P%z"), "|qPz"},
           {Wide(u"%2$d %1$d", 1, 2), "$d $d"},
           {Wide(u"%\u4e00%d", 5), "一5"},
           {Wide(u"[%n]%d", &untouched, 5), "[]5"}});
    EXPECT_EQ(untouched, 7);
}

std::size_t Whole(char16_t* out, std::size_t capacity, const char16_t* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::size_t length = platform::FormatWhole(out, capacity, format, arguments);
    va_end(arguments);
    return length;
}

TEST(RuntimeFormatTest, GiantWidthsAreCountedNotWritten) {
    std::array<char16_t, 4> out;
    const std::size_t most = std::numeric_limits<int>::max();
    EXPECT_EQ(Whole(out.data(), 4, u"%999999999d", 1), 999'999'999u);
    EXPECT_EQ(Whole(out.data(), 4, u"%99999999999999999999d", 1), most);
    EXPECT_EQ(Whole(out.data(), 4, u"%.99999999999999999999d", -1), most + 1);
    EXPECT_EQ(Whole(out.data(), 4, u"%*d", std::numeric_limits<int>::min(), 1), most + 1);
    EXPECT_EQ(Whole(out.data(), 4, u"%.2147483647f", 1.0), most + 2);
    EXPECT_EQ(Whole(out.data(), 4, u"%.2147483647e%.2147483647a", 1.0, 1.0), 2 * most + 14);
    EXPECT_EQ(platform::PrintText(out.data(), 4, u"%999999999d", 1), -1);
}

TEST(RuntimeFormatTest, AnswersAsTheRuntimeWhenTheAreaIsSmall) {
    struct Area {
        std::size_t capacity;
        int result;
        std::u16string content;
    };
    for (const auto& [capacity, result, content] : {Area{0, -1, u"~~~~~~~~"},
                                                    {1, -1, u"a~~~~~~~"},
                                                    {4, -1, u"abcd~~~~"},
                                                    {5, 5, u"abcde~~~"},
                                                    {6, 5, std::u16string(u"abcde\0~~", 8)},
                                                    {8, 5, std::u16string(u"abcde\0~~", 8)}}) {
        SCOPED_TRACE(capacity);
        std::u16string out(8, u'~');
        EXPECT_EQ(platform::PrintText(out.data(), capacity, u"a%s%c", u"bcd", u'e'), result);
        EXPECT_EQ(out, content);
        std::u16string exact(capacity, u'~');  // an overrun is a sanitizer's find
        EXPECT_EQ(Whole(exact.data(), capacity, u"%S%.*d", "ab", 3, 5), 5u);
    }
}

}  // namespace
