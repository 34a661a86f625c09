// UTF-16 texts in tests: readable failure messages and conversions for literals.
#ifndef TESTS_SUPPORT_TEXT_H
#define TESTS_SUPPORT_TEXT_H

#include <string>
#include <string_view>
#include <vector>

namespace test {

// UTF-8 of a UTF-16 text for messages; an unpaired surrogate shows as \uXXXX.
std::string Utf8(std::u16string_view text);

// UTF-16 of a UTF-8 text.
std::u16string Utf16(std::string_view text);

// The rows of a table of cases, each of fields divided by "|"; rows stand on lines of their own or
// have " / " between them: R"(1|one / 2|two
// 3|three)".
std::vector<std::vector<std::string>> Table(std::string_view text);

}  // namespace test

#endif
