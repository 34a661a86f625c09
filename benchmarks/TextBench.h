// The texts of the string tools' benchmarks, for ourselves and for the peers.
#ifndef BENCHMARKS_TEXTBENCH_H
#define BENCHMARKS_TEXTBENCH_H

#include <cstdint>
#include <string>

#include "Texts.h"

namespace bench {

// Words of English, a blank behind each.
inline std::u16string TextToScan(std::int64_t length = 500000) {
    return Utf16Text(Language::Ascii, static_cast<std::size_t>(length));
}

// Replacements: what is looked for and what comes in its place.
struct Replacement {
    const char* name;
    const char16_t* find;
    const char16_t* replacement;
};
inline constexpr Replacement kReplacements[] = {{"unit", u" ", u"_"},
                                                {"same", u"th", u"TH"},
                                                {"longer", u"th", u"<th>"},
                                                {"shorter", u" the ", u"_"},
                                                {"rare", u"zzyzx", u"none"}};

}  // namespace bench

#endif
