// Text files of 50 MB for benchmarks, made on first use below the temporary folder and removed at
// the end: German prose lines in UTF-8 and in windows-1252.
#ifndef BENCHMARKS_TEXTFILES_H
#define BENCHMARKS_TEXTFILES_H

#include <string>

namespace bench {

enum class TextFile { Utf8, Windows1252 };

const std::string& FileOf(TextFile text);

}  // namespace bench

#endif
