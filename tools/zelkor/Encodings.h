// Encodings by the names and numbers that a user types, and byte-order marks.
#ifndef TOOLS_ZELKOR_ENCODINGS_H
#define TOOLS_ZELKOR_ENCODINGS_H

#include <optional>
#include <string>
#include <string_view>

namespace zelkor::cli {

inline constexpr unsigned int kUtf8Number = 65001;
inline constexpr unsigned int kUtf16Little = 1200;
inline constexpr unsigned int kUtf16Big = 1201;
inline constexpr unsigned int kLatin1 = 28591;
inline constexpr unsigned int kIso2022Jp = 50220;

struct Encoding {
    unsigned int page = kUtf8Number;  // the Windows number
    bool either_order = false;        // named just "UTF-16": little-endian unless a mark says else

    [[nodiscard]] bool IsUtf16() const { return page == kUtf16Little || page == kUtf16Big; }
    [[nodiscard]] bool IsUnicode() const { return IsUtf16() || page == 65000 || page == 65001; }
};

// A character-set name in any case ("latin1", "cp437", "GB18030") or the number of a Windows code
// page that is served; an unknown one ends the command with bad usage.
[[nodiscard]] Encoding ParseEncoding(const std::string& name);

// Its main name with its number, "UTF-8 (65001)".
[[nodiscard]] std::string Describe(const Encoding& encoding);
// The name alone, which ParseEncoding knows.
[[nodiscard]] std::string NameOf(const Encoding& encoding);

// The byte-order mark of UTF-8 and UTF-16, else nothing.
[[nodiscard]] std::string_view MarkOf(const Encoding& encoding);
// What a text is that begins with such a mark.
[[nodiscard]] std::optional<Encoding> EncodingOfMark(std::string_view bytes);

// Whole texts from or to an encoding; false, with the result undefined, when anything in them is
// not allowed or would not come back the same.
[[nodiscard]] bool DecodeExactly(unsigned int page, std::string_view bytes, std::u16string& units);
[[nodiscard]] bool EncodeExactly(unsigned int page, std::u16string_view units, std::string& bytes);

}  // namespace zelkor::cli

#endif
