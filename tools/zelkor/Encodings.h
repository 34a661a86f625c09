// Encodings by the names and numbers that a user types.
#ifndef TOOLS_ZELKOR_ENCODINGS_H
#define TOOLS_ZELKOR_ENCODINGS_H

#include <Foundation/Core/Language/Codepage.h>

#include <string>

namespace zelkor {

// A character-set name in any case or the number of a Windows code page; an unknown one ends the
// command with bad usage.
[[nodiscard]] CT_Codepage ParseEncoding(const std::string& name);

// Its main name with its number, "UTF-8 (65001)".
[[nodiscard]] std::string Describe(const CT_Codepage& encoding);

}  // namespace zelkor

#endif
