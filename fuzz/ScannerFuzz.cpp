// Words, items, tokens and replacing in any text, beside plain splitting. The first units of the
// input are a count of separators and the separators.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Foundation/Core/String/UStringForwardIterator.h"
#include "Foundation/Core/Text/FormattedString.h"
#include "Foundation/Core/Text/StringScanner.h"
#include "Foundation/Core/Text/StringTools.h"
#include "tests/Core/String/PlainTexts.h"

namespace {

using Text = std::u16string;
using test::Of;
using test::String;

void Require(bool holds) {
    if (!holds) std::abort();
}

void CheckWords(const Text& text, const Text& separators) {
    const std::vector<test::Place> words = test::Split(text, separators, true);
    const CT_UString string = String(text), set = String(separators);
    const auto count = static_cast<std::uint32_t>(words.size());
    Require(CT_StringScanner::n_WordCount(string, set) == count);
    CT_UStringForwardIterator tokens(string, set);
    CT_UString out;
    for (std::uint32_t n = 1; n <= count; ++n) {
        const Text word = text.substr(words[n - 1].begin, words[n - 1].length);
        Require(tokens.b_MoveNext() && Of(tokens.rcco_Current()) == word);
        CT_StringScanner::v_SubWord(&out, string, set, n);
        Require(Of(out) == word);
    }
    Require(!tokens.b_MoveNext());
    out = string;
    for (std::uint32_t n = count; n > 0; --n) CT_StringScanner::v_RemoveWord(&out, set, n);
    Require(CT_StringScanner::n_WordCount(out, set) == 0);
}

void CheckItems(const Text& text, char16_t separator) {
    const std::vector<test::Place> items = test::Split(text, Text(1, separator), false);
    const CT_UString string = String(text);
    Require(CT_StringScanner::n_ItemCount(string, separator) == items.size());
    Text joined;
    CT_UString out;
    for (std::uint32_t n = 1; n <= items.size(); ++n) {
        CT_StringScanner::v_Item(&out, string, separator, n);
        joined += Of(out) + (n < items.size() ? Text(1, separator) : Text());
    }
    Require(joined == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || size > 2000) return 0;
    Text text((size - 2) / 2, u'\0');
    std::memcpy(text.data(), data + 2, text.size() * sizeof(char16_t));
    const Text separators = text.substr(0, data[0] % 12);
    text.erase(0, separators.size());
    CheckWords(text, separators);
    CheckItems(text, static_cast<char16_t>(data[1]));
    const Text replacement = text.substr(0, data[1] % 16);
    CT_UString replaced = String(text);
    CT_StringTools::sv_ReplaceAll(&replaced, String(separators), String(replacement));
    Require(Of(replaced) == test::Replaced(text, separators, replacement));
    CT_UString value;
    double real = 0;
    CT_FormattedString::sb_GetData(String(text), String(separators), &value);
    CT_FormattedString::sb_GetDataR(String(text), String(separators), &real);
    return 0;
}
