// TextDecoder and TextEncoder: conversion of a text that comes in pieces, a block of a file or of a
// pipe at a time, to what converting it as a whole would give.
//
// Between two pieces they keep what the text has switched on: the character set of ISO-2022-JP
// (50220) and HZ (52936), the base-64 run of UTF-7 (65000). A character that a piece cuts stays
// with the caller, who puts it in front of the next piece. They serve the pages of CodePages.h by
// the same rules without flags, and 1200 and 1201, UTF-16 of either byte order.
//
// Nothing is lost in silence: what is not valid text of the page, and what the page lacks, is
// replaced as the calls of CodePages.h replace it, counted, and its first place told.
// Threads: one object, one thread. Nothing allocates or fails through LastError.
#ifndef FOUNDATION_PLATFORM_CODEPAGES_TEXTPIECES_H
#define FOUNDATION_PLATFORM_CODEPAGES_TEXTPIECES_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// What came of a piece. `taken` falls short of its length only by a cut character.
struct PieceResult {
    std::size_t taken;        // elements of the piece
    std::size_t written;      // elements of the result
    std::size_t faults;       // invalid sequences, or characters that the page lacks
    std::size_t first_fault;  // where in the piece the first of them began; meaningless without one
};

namespace nls {

// What a text has switched on, at the start nothing. The pages of CodePages.h with such states use
// what they need of it.
struct ShiftState {
    std::uint32_t bits = 0;  // UTF-7: bits of the run that are not yet a unit (or a digit)
    std::uint8_t bit_count = 0;
    bool in_run = false;
    bool run_is_empty = false;
    std::uint8_t set = 0;  // the character set in force; 0 is ASCII
    std::uint8_t saved_set = 0;
};

}  // namespace nls

class ZELKOR_API TextDecoder {
public:
    explicit TextDecoder(std::uint32_t page) noexcept;

    // False for a page that neither CodePages.h serves nor is 1200 or 1201.
    [[nodiscard]] bool IsServed() const noexcept { return served_; }

    // Decodes the next piece of the text; `last` says that nothing follows, so that a cut character
    // is a fault. At most 3 bytes are left untaken otherwise. `out` holds `length` units or more;
    // those behind `written` may be overwritten. Faults are what a decoding with
    // kErrorOnInvalidChars refuses, and in the pages without that flag
    //   50220   a byte or pair without a character, an unknown escape sequence
    //   52936   the same, a tilde at the end included
    //   65000   a byte from 80 up; a '+' that begins nothing; a run with bits left over, at the
    //           byte behind it
    //   1200 and 1201   an odd byte at the end, read as U+FFFD; unpaired surrogates pass
    // A page that is not served takes and writes nothing.
    PieceResult Decode(const char* text, std::size_t length, bool last, char16_t* out) noexcept;

private:
    std::uint32_t page_;
    bool served_;
    nls::ShiftState state_;
};

class ZELKOR_API TextEncoder {
public:
    explicit TextEncoder(std::uint32_t page) noexcept;

    [[nodiscard]] bool IsServed() const noexcept { return served_; }

    // Room that encoding a piece of so many units needs.
    [[nodiscard]] std::size_t MaxBytes(std::size_t units) const noexcept;

    // Encodes the next piece of the text; `last` says that nothing follows, and has the text end as
    // its page wants it. A high surrogate at the end of another piece is left untaken. `out` holds
    // MaxBytes(length) bytes, those behind `written` may be overwritten; an empty last piece may
    // still write some. Faults are
    //   table pages, 42, 52936   characters without a code: the default byte for each unit
    //   50220   the same; half-width katakana, which become full-width; 0E, 0F and 1B, which read
    //           back as shifts
    //   65001   unpaired surrogates: EF BF BD
    // A surrogate pair is one fault. A page that is not served takes and writes nothing.
    PieceResult Encode(const char16_t* text, std::size_t length, bool last, char* out) noexcept;

private:
    std::uint32_t page_;
    bool served_;
    nls::ShiftState state_;
};

}  // namespace zelkor::platform

#endif
