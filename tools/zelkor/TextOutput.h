// TextOutput: text into a file in an encoding. What the encoding lacks is told as a loss with its
// line and character, and replaced. After a loss that is not allowed nothing more is written.
#ifndef TOOLS_ZELKOR_TEXTOUTPUT_H
#define TOOLS_ZELKOR_TEXTOUTPUT_H

#include <Foundation/Platform/CodePages/TextPieces.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "Encodings.h"
#include "Losses.h"
#include "OutputFile.h"

namespace zelkor::cli {

class TextOutput {
public:
    // `source` names the text in messages.
    TextOutput(OutputFile& file, const Encoding& encoding, Losses& losses, std::string source);

    void WriteMark();
    // Half of a surrogate pair at the end waits for the other half.
    void Write(std::u16string_view units);
    // Writes what waits; the file is finished by its owner.
    void Finish();

private:
    void PutPairs(std::u16string_view units);
    void Put(std::u16string_view units, bool last);
    [[nodiscard]] std::u16string Repaired(std::u16string_view units);
    void TellLacking(std::u16string_view units, std::size_t at, std::size_t count);
    void Tell(std::u16string_view units, std::size_t at, char32_t character);

    OutputFile& file_;
    Encoding encoding_;
    Losses& losses_;
    std::string source_;
    platform::TextEncoder encoder_;
    std::string bytes_;
    std::u16string waiting_;        // half of a pair
    std::uint64_t line_feeds_ = 0;  // before the text in hand
};

}  // namespace zelkor::cli

#endif
