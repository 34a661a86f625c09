// TextInput: the text of a file, a pipe or the standard input, block by block; LineInput: its
// lines.
//
// A byte-order mark is passed over. Everything that does not decode is told as a loss, with its
// line and, where that is known, its byte (from 0), and the encoding's replacement stands for it;
// no surrogate is unpaired. Memory does not grow with the text.
#ifndef TOOLS_ZELKOR_TEXTINPUT_H
#define TOOLS_ZELKOR_TEXTINPUT_H

#include <Foundation/Platform/CodePages/TextPieces.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Console.h"
#include "Encodings.h"
#include "InputFile.h"
#include "Losses.h"

namespace zelkor::cli {

// What a text is taken for.
struct TextRule {
    std::string named;  // by --from; empty: what the mark says, else UTF-8
    bool mark_decides =
        true;  // a mark goes before `named`; else one that contradicts it is refused
};

class TextInput {
public:
    TextInput(const std::string& name, const TextRule& rule, Losses& losses);

    // The next block, empty at the end of the text. It is the caller's to change, and good until
    // the next call.
    [[nodiscard]] std::span<char16_t> Next();

    [[nodiscard]] const InputFile& file() const { return file_; }
    [[nodiscard]] const Encoding& encoding() const { return encoding_; }
    // As messages show it.
    [[nodiscard]] const std::string& name() const { return file_.name(); }

private:
    void TakeMark(const TextRule& rule);
    [[nodiscard]] std::span<char16_t> Decode(std::string_view bytes, bool last);
    void TellFaults(platform::TextDecoder decoder, std::string_view bytes, bool last,
                    std::size_t count);
    void TellFault(std::size_t at, std::string_view bytes, std::uint64_t line);
    void ReplaceUnpaired(std::span<char16_t> units, std::uint64_t first);
    [[nodiscard]] std::uint64_t LineAt(std::span<const char16_t> units) const;

    InputFile file_;
    Losses& losses_;
    Progress progress_;
    Encoding encoding_;
    bool is_guess_ = false;  // neither --from nor a mark says it
    platform::TextDecoder decoder_;
    std::string bytes_;  // the block as it was read, behind what was left of the one before
    std::size_t left_ = 0;
    std::uint64_t offset_ = 0;  // of the block in the file
    bool at_end_ = false;
    std::vector<char16_t> units_;
    std::optional<char16_t> half_;  // the first half of a pair whose second half comes next
    std::uint64_t line_feeds_ = 0;  // before the block
    std::uint64_t returns_ = 0;
};

// Lines ended by CR LF, LF CR, CR or LF.
class LineInput {
public:
    static constexpr std::size_t kLongest = 1 << 20;
    struct Line {
        std::u16string_view text;  // without the end; a zero stands behind it
        std::uint64_t number = 0;  // from 1
        bool too_long = false;     // it has more than kLongest units; `text` is empty
    };

    explicit LineInput(TextInput& input) : input_(input) {}
    // False at the end of the text. The line is good until the next call.
    bool Next(Line& line);

private:
    bool Fill();
    void SkipSecondEnd();

    TextInput& input_;
    std::span<char16_t> block_;
    std::u16string begun_;  // of a line that goes on in the next block
    std::uint64_t number_ = 0;
    char16_t end_ = 0;  // the end of the line before, when the block ended with it
};

}  // namespace zelkor::cli

#endif
