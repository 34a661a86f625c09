// Texts for benchmarks: words of a language in random order, the same ones on every run. A space
// stands behind each word (Japanese and Chinese: none), a comma or full stop behind some, and lines
// of about 70 characters end in LF.
#ifndef BENCHMARKS_TEXTS_H
#define BENCHMARKS_TEXTS_H

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// German fits windows-1252, Russian windows-1251, Japanese Shift_JIS, Chinese GB2312; mixed has
// words of all these, Greek, symbols and characters above U+FFFF.
enum class Language { Ascii, German, Russian, Japanese, Chinese, Mixed };

const char* NameOf(Language language);

// A text of at most and nearly `size` bytes of UTF-8 that ends behind a whole word.
std::string Utf8Text(Language language, std::size_t size);

// The same characters as UTF-16.
std::u16string Utf16Text(Language language, std::size_t utf8_size);

// The words the texts are made of, in UTF-8.
std::vector<std::string> Words(Language language);

}  // namespace bench

#endif
