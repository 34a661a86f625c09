// What the converters of the code pages share: the call they are given, what they answer, and the
// bounded destination that the algorithmic pages write to. Not for callers outside this room.
#ifndef FOUNDATION_PLATFORM_CODEPAGES_INTERNAL_CODEPAGEDETAIL_H
#define FOUNDATION_PLATFORM_CODEPAGES_INTERNAL_CODEPAGEDETAIL_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>

#include "Foundation/Platform/CodePages/Internal/Tables/CodePageTables.h"
#include "Foundation/Platform/CodePages/TextPieces.h"
#include "Foundation/Platform/LastError.h"

namespace zelkor::platform::nls {

inline constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

// A null `out` asks for the size; the capacity is then without limit.
struct Decoding {
    const unsigned char* text;
    std::size_t length;
    char16_t* out;
    std::size_t capacity;
    bool strict;  // invalid text fails
};

struct Encoding {
    const char16_t* text;
    std::size_t length;
    unsigned char* out;
    std::size_t capacity;
    bool strict;                 // UTF-8: an unpaired surrogate fails
    std::uint16_t default_code;  // table pages; stored as in kDoubleCodes
    bool wants_used_default;     // the caller asks for used_default
    bool used_default;           // set by the table pages
};

// Elements written or needed, and a last error, 0 when all went well. `taken` tells how much of the
// text was converted before the result was full, the rest refused, or a character cut; encoding to
// table pages leaves it out.
struct Outcome {
    std::size_t count;
    std::uint32_t error;
    std::size_t taken = 0;
};

// What a call of a page with shift states sees of its text: the whole, or a piece of it.
struct Piece {
    ShiftState state;        // before the piece, then behind it
    bool last = true;        // nothing follows
    std::size_t faults = 0;  // what strict decoding would refuse, or what the page lacks
    std::size_t first_fault = 0;

    void Fault(std::size_t at) noexcept {
        if (faults++ == 0) first_fault = at;
    }
};

Outcome DecodeSingleByte(const TablePage& page, const Decoding& call) noexcept;
Outcome EncodeSingleByte(const TablePage& page, Encoding& call) noexcept;
Outcome DecodeDoubleByte(const TablePage& page, const Decoding& call) noexcept;
Outcome EncodeDoubleByte(const TablePage& page, Encoding& call) noexcept;
// The beginning of a GB18030 text that is as in page 936; whatever comes next is refused.
Outcome DecodeSharedPairs(const TablePage& page, const Decoding& call) noexcept;

// Size of the ill-formed piece that a text begins with, and whether the text is but the beginning
// of a character. Both for a text of a byte or more that begins with no whole character.
std::size_t IllFormedUtf8(const char* text, std::size_t length) noexcept;
bool IsCutUtf8(const char* text, std::size_t length) noexcept;

Outcome DecodeUtf8(const Decoding& call) noexcept;
Outcome EncodeUtf8(const Encoding& call) noexcept;
// Whether a text that begins with no whole character of GB18030 is but the beginning of one.
bool IsCutGb18030(const unsigned char* text, std::size_t length) noexcept;
Outcome DecodeGb18030(const Decoding& call) noexcept;
Outcome EncodeGb18030(const Encoding& call) noexcept;

Outcome DecodeUtf7(const Decoding& call, Piece& piece) noexcept;
Outcome EncodeUtf7(const Encoding& call, Piece& piece) noexcept;
Outcome DecodeIso2022Jp(const Decoding& call, Piece& piece) noexcept;
Outcome EncodeIso2022Jp(const Encoding& call, Piece& piece) noexcept;
Outcome DecodeHz(const Decoding& call, Piece& piece) noexcept;
Outcome EncodeHz(const Encoding& call, Piece& piece) noexcept;
Outcome DecodeSymbol(const Decoding& call) noexcept;
Outcome EncodeSymbol(const Encoding& call) noexcept;

// The page's tables, or null when it has none.
const TablePage* FindTablePage(std::uint32_t page) noexcept;

// What calls a page allows, and how long its codes get.
struct PageRules {
    std::uint32_t decode_flags;
    std::uint32_t encode_flags;
    bool has_default_char;         // the caller may name one and ask whether it was used
    unsigned char max_char_size;   // as the system reports it
    unsigned char bytes_per_unit;  // never more, but for
    unsigned char bytes_at_end;
};

// A page that is served: one with tables, or one of the algorithmic pages.
struct Page {
    std::uint32_t number;
    const TablePage* tables;
    PageRules rules;
};

// The page behind the numbers 0 to 3, any other number itself.
std::uint32_t ResolvePage(std::uint32_t page) noexcept;

// False when the page is not served.
bool FindPage(std::uint32_t number, Page& page) noexcept;

// `piece` counts for the pages with shift states only.
Outcome Decode(const Page& page, const Decoding& call, Piece& piece) noexcept;
Outcome Encode(const Page& page, Encoding& call, Piece& piece) noexcept;

// Whether a single byte whose unit is private-use counts as invalid; those of pairs never do.
inline bool IsPrivateUse(char16_t unit) noexcept {
    return unit >= 0xE000 && unit <= 0xF8FF;
}

// The tables of a double-byte page, looked up one code or unit at a time.
class DoubleByteView {
public:
    explicit DoubleByteView(const TablePage& page) noexcept
        : singles_(kSingleUnits + page.single_units),
          rows_(kLeadRows + page.lead_rows),
          cells_(kCells + page.cells),
          index_(kDoubleIndex + page.encode_index),
          columns_(page.trail_count + 1u),
          first_trail_(page.first_trail),
          trail_count_(page.trail_count),
          default_unit_(page.default_unit),
          default_code_(page.default_code) {}

    [[nodiscard]] bool IsLead(unsigned char byte) const noexcept { return rows_[byte] != 0; }
    [[nodiscard]] char16_t Single(unsigned char byte) const noexcept { return singles_[byte]; }

    // The unit of a lead byte and any byte behind it.
    [[nodiscard]] char16_t Pair(unsigned char lead, unsigned char trail) const noexcept {
        const unsigned int column = static_cast<unsigned char>(trail - first_trail_);
        return cells_[(rows_[lead] - 1u) * columns_ +
                      (column < trail_count_ ? column : trail_count_)];
    }

    // Whether the pair has a row; its first byte need not be a lead byte.
    [[nodiscard]] bool IsDefinedPair(unsigned char lead, unsigned char trail) const noexcept {
        return IsLead(lead) &&
               (Pair(lead, trail) != default_unit_ || (lead | trail << 8) == default_code_);
    }

    // The code as stored in kDoubleCodes, kMissingCode when there is none.
    [[nodiscard]] std::uint16_t Code(char16_t unit) const noexcept {
        return kDoubleCodes[index_[unit / kUnitsPerBlock] * kUnitsPerBlock + unit % kUnitsPerBlock];
    }

private:
    const char16_t* singles_;
    const std::uint8_t* rows_;
    const char16_t* cells_;
    const std::uint16_t* index_;
    unsigned int columns_;
    unsigned int first_trail_;
    unsigned int trail_count_;
    char16_t default_unit_;
    std::uint16_t default_code_;
};

// Stored codes of two bytes have the second one in the high half, and it is never zero.
inline bool IsPairCode(std::uint16_t code) noexcept {
    return code > 0xFF;
}
inline unsigned char FirstByte(std::uint16_t code) noexcept {
    return static_cast<unsigned char>(code);
}
inline unsigned char SecondByte(std::uint16_t code) noexcept {
    return static_cast<unsigned char>(code >> 8);
}

// The destination of a conversion that goes character by character. What does not fit whole is not
// written, and nothing after it is.
template <typename Element>
class Sink {
public:
    Sink(Element* out, std::size_t capacity) noexcept
        : out_(out), capacity_(out == nullptr ? kUnlimited : capacity) {}

    [[nodiscard]] bool IsFull() const noexcept { return full_; }

    void Put(Element element) noexcept { Put({element}); }
    void Put(std::initializer_list<Element> elements) noexcept {
        full_ = full_ || capacity_ - count_ < elements.size();
        if (full_) return;
        if (out_ != nullptr) {
            std::size_t at = count_;
            for (const Element element : elements) out_[at++] = element;
        }
        count_ += elements.size();
    }

    [[nodiscard]] Outcome Result(std::size_t taken) const noexcept {
        return {count_, full_ ? kErrorInsufficientBuffer : kErrorSuccess, taken};
    }

private:
    Element* out_;
    std::size_t capacity_;
    std::size_t count_ = 0;
    bool full_ = false;
};

using UnitSink = Sink<char16_t>;
using ByteSink = Sink<unsigned char>;

}  // namespace zelkor::platform::nls

#endif
