// CT_Compare: every function over all pairs of a list of texts and numbers, beside plain
// arithmetic.
#include "Foundation/Core/String/Compare.h"

#include <string>
#include <vector>

#include "Core/String/PlainTexts.h"
#include "Core/String/StringTexts.h"

namespace platform = zelkor::platform;

namespace {

using test::Sign;

// First difference of two texts with their zeros; what the library answers is derived from it.
template <typename Text>
int Difference(const Text& a, const Text& b, bool fold) {
    const auto unit = [fold](const Text& text, std::size_t i) {
        const int value = i < text.size() ? static_cast<char16_t>(text[i]) : 0;
        const int code = sizeof(text[0]) == 1 ? value & 0xFF : value;
        return fold && code >= 'A' && code <= 'Z' ? code - 'A' + 'a' : code;
    };
    std::size_t i = 0;
    while (i < a.size() && unit(a, i) == unit(b, i)) ++i;
    return unit(a, i) - unit(b, i);
}

// The four forms of one comparison must agree.
template <typename T, typename A, typename B, typename C, typename D>
int Agreed(A constant, B plain, C constant_items, D items, T* a, T* b) {
    const T *const_a = a, *const_b = b;
    const int answer = constant(a, b);
    EXPECT_EQ(plain(a, b), answer);
    EXPECT_EQ(constant_items(&const_a, &const_b), answer);
    EXPECT_EQ(items(&a, &b), answer);
    return answer;
}
#define COMPARED(name, constant, plain, a, b)                                                    \
    Agreed(CT_Compare::si_Compare##name##constant, CT_Compare::si_Compare##name##plain,          \
           CT_Compare::si_Compare##name##P##constant, CT_Compare::si_Compare##name##P##plain, a, \
           b)

// Texts between bars: letters and their neighbours, beginnings of each other, other scripts, an
// unpaired surrogate, and texts that are longer than a block.
std::vector<std::u16string> Texts() {
    const std::u16string all =
        u"|A|a|B|_|Z|[|@|`|ab|ABC|abc|abd|\u00C9|\u00E9|z|\u00FF|a\u00E9|A\u00C9|\u0130|\u0131"
        u"|\u0410|\u0430|\uFF21|\uFF41|\xD800|\uFFFF|\u212A|sixteen characters and more"
        u"|Sixteen Characters and MORE|sixteen characters and mor|sixteen char\u00C4cters";
    std::vector<std::u16string> texts;
    for (const auto& [begin, length] : test::Split(all, u"|", false)) {
        texts.push_back(all.substr(begin, length));
    }
    return texts;
}

void ComparePair(std::u16string a, std::u16string b) {
    SCOPED_TRACE(test::Utf8(a + u" / " + b));
    const int binary = Sign(Difference(a, b, false)), folded = Difference(a, b, true);
    EXPECT_EQ(COMPARED(Case, QCUZ, QUZ, a.data(), b.data()), binary);
    EXPECT_EQ(COMPARED(NoCase, QCUZ, QUZ, a.data(), b.data()), folded);
    CT_UString left(a.c_str()), right(b.c_str());
    EXPECT_EQ(COMPARED(UString, PCCO, PCO, &left, &right), binary);
    EXPECT_EQ(COMPARED(UStringNoCase, PCCO, PCO, &left, &right), folded);
    // As UTF-8 every text survives but the unpaired surrogate.
    CT_CString utf8(b.c_str(), CT_String::kToEnd, 65001);
    CT_String *wide = &left, *other = &right;
    if (b.find(0xD800) == b.npos) other = &utf8;
    EXPECT_EQ(COMPARED(String, PCCO, PCO, wide, other), binary);
    EXPECT_EQ(COMPARED(StringNoCase, PCCO, PCO, other, wide), -folded);
}

// Whatever the code pages of 8-bit strings.
void ComparePair(std::string a, std::string b) {
    SCOPED_TRACE(a + " / " + b);
    const int binary = Sign(Difference(a, b, false)), folded = Difference(a, b, true);
    EXPECT_EQ(COMPARED(Case, QCCZ, QCZ, a.data(), b.data()), binary);
    EXPECT_EQ(COMPARED(NoCase, QCCZ, QCZ, a.data(), b.data()), folded);
    CT_CString left(a.c_str(), CT_String::kToEnd, 1252), right(b.c_str(), CT_String::kToEnd, 932);
    EXPECT_EQ(COMPARED(CString, PCCO, PCO, &left, &right), binary);
    EXPECT_EQ(COMPARED(CStringNoCase, PCCO, PCO, &left, &right), folded);
}

TEST(CompareTest, TextsAndStringsCompareByUnitWithOrWithoutCase) {
    const auto low_bytes = [](const std::u16string& text) {
        return std::string(text.begin(), text.end());
    };
    const std::vector<std::u16string> texts = Texts();
    for (const std::u16string& a : texts) {
        for (const std::u16string& b : texts) {
            ComparePair(a, b);
            ComparePair(low_bytes(a), low_bytes(b));
        }
    }
}

TEST(CompareTest, NumbersCompareByTheirOwnSign) {
    for (const unsigned int a : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        for (const unsigned int b : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
            const int as_unsigned = Sign(static_cast<long long>(a) - static_cast<long long>(b));
            EXPECT_EQ(CT_Compare::si_CompareN(a, b), as_unsigned);
            EXPECT_EQ(CT_Compare::si_CompareN4(a, b), as_unsigned);
            EXPECT_EQ(CT_Compare::si_ComparePN(&a, &b), as_unsigned);
            EXPECT_EQ(CT_Compare::si_ComparePN4(&a, &b), as_unsigned);
            const int left = static_cast<int>(a), right = static_cast<int>(b);
            const int as_signed = Sign(static_cast<long long>(left) - right);
            EXPECT_EQ(CT_Compare::si_CompareI(left, right), as_signed);
            EXPECT_EQ(CT_Compare::si_ComparePI(&left, &right), as_signed);
        }
    }
}

TEST(CompareTest, AStringEndsAtItsFirstZero) {
    CT_UString a(u"same characters, one zero"), b(u"SAME characters, one zero and more");
    a.quz_Get()[16] = b.quz_Get()[16] = 0;  // without vv_Update
    EXPECT_EQ(CT_Compare::si_CompareUStringNoCasePCCO(&a, &b), 0);
    CT_UString c(a);
    c.v_Append(u"different");
    EXPECT_EQ(CT_Compare::si_CompareUStringPCCO(&a, &c), 0);
    const CT_UString none, empty(u"");
    EXPECT_EQ(CT_Compare::si_CompareUStringPCCO(&none, &empty), 0);
}

TEST(CompareTest, NullIsAnEmptyTextOrZero) {
    char text[] = "a", *const none = nullptr;
    char16_t wide_text[] = u"a", *const no_wide = nullptr;
    CT_CString narrow(text), *const no_narrow = nullptr;
    CT_UString wide(wide_text), *const no_string = nullptr;
    CT_String *const any = &narrow, *const no_any = nullptr;
    int one = 1;
    EXPECT_EQ(COMPARED(Case, QCCZ, QCZ, text, none), 1);
    EXPECT_EQ(COMPARED(NoCase, QCCZ, QCZ, none, text), -'a');
    EXPECT_EQ(COMPARED(Case, QCUZ, QUZ, no_wide, wide_text), -1);
    EXPECT_EQ(COMPARED(NoCase, QCUZ, QUZ, wide_text, no_wide), 'a');
    EXPECT_EQ(COMPARED(CString, PCCO, PCO, &narrow, no_narrow), 1);
    EXPECT_EQ(COMPARED(CStringNoCase, PCCO, PCO, no_narrow, &narrow), -'a');
    EXPECT_EQ(COMPARED(UString, PCCO, PCO, no_string, &wide), -1);
    EXPECT_EQ(COMPARED(UStringNoCase, PCCO, PCO, no_string, no_string), 0);
    EXPECT_EQ(COMPARED(String, PCCO, PCO, any, no_any), 1);
    EXPECT_EQ(COMPARED(StringNoCase, PCCO, PCO, no_any, any), -'a');
    EXPECT_EQ(CT_Compare::si_CompareCasePQCZ(nullptr, nullptr), 0) << "nor need there be items";
    EXPECT_EQ(CT_Compare::si_ComparePI(&one, nullptr), 1);
}

TEST(CompareTest, OnlyEightBitTextIsConverted) {
    const CT_CString euro("\x80", CT_String::kToEnd, 1252);
    const CT_UString wide(u"\u20AC"), other(u"\u20AD");
    const CT_CString nothing;
    const std::uint64_t before = platform::AllocationCount();
    EXPECT_EQ(CT_Compare::si_CompareStringPCCO(&wide, &other), -1);
    EXPECT_EQ(platform::AllocationCount(), before);
    EXPECT_EQ(CT_Compare::si_CompareStringPCCO(&nothing, &wide), -1);
    EXPECT_GT(test::FailEachAllocation([&] {
                  EXPECT_EQ(CT_Compare::si_CompareStringPCCO(&euro, &wide), 0);
                  EXPECT_EQ(CT_Compare::si_CompareStringNoCasePCCO(&other, &euro), 1);
              }),
              1u);
}

}  // namespace
