#include "Foundation/Platform/Text/TextDetection.h"

#include <algorithm>
#include <cstdlib>

namespace zelkor::platform {

namespace {

constexpr std::size_t kExaminedUnits = 256;
constexpr unsigned int kKanaRow = 0x30;

// The ASCII bytes that 8-bit text is made of.
bool IsAsciiTextByte(unsigned int byte) {
    return (byte >= 0x20 && byte <= 0x7E) || byte == 0x09 || byte == 0x0A || byte == 0x0C ||
           byte == 0x0D || byte == 0x1A;
}

// What text of any 8-bit page is made of, the escape byte of ISO-2022 included.
bool IsTextByte(unsigned int byte) {
    return byte >= 0x80 || byte == 0x1B || IsAsciiTextByte(byte);
}

bool IsControl(unsigned int unit) {
    return unit == 0x09 || unit == 0x0A || unit == 0x0D || unit == 0x20;
}

// Text of one script keeps its high bytes steady while its low bytes move about.
class Statistics {
public:
    void Add(unsigned int low, unsigned int high) {
        if (count_++ != 0) {
            low_changes_ += Distance(low, low_);
            high_changes_ += Distance(high, high_);
        }
        low_ = low;
        high_ = high;
        ascii_ = ascii_ && IsAsciiTextByte(low) && IsAsciiTextByte(high);
        text_ = text_ && IsTextByte(low) && IsTextByte(high);
    }

    [[nodiscard]] bool Hold() const { return Vary(low_changes_, high_changes_, high_); }
    [[nodiscard]] bool HoldInReverse() const { return Vary(high_changes_, low_changes_, low_); }

private:
    static unsigned int Distance(unsigned int a, unsigned int b) { return a < b ? b - a : a - b; }

    // 8-bit text may vary like this by chance. It is taken for UTF-16 only if it is all kana.
    [[nodiscard]] bool Vary(unsigned int moving, unsigned int steady, unsigned int row) const {
        const bool kana = !ascii_ && count_ >= 4 && steady == 0 && row == kKanaRow;
        return 3 * steady < moving && (!text_ || kana);
    }

    unsigned int low_ = 0;
    unsigned int high_ = 0;
    unsigned int low_changes_ = 0;
    unsigned int high_changes_ = 0;
    std::size_t count_ = 0;
    bool ascii_ = true;
    bool text_ = true;
};

// What one unit says. The ideographic blank counts in the little-endian order only: reversed it is
// the digit 0.
std::uint32_t SignsOf(unsigned int low, unsigned int high, bool first) {
    const unsigned int unit = high << 8 | low;
    std::uint32_t signs = 0;
    if (IsControl(unit) || unit == 0x3000) signs |= kUnicodeControls;
    if (low == 0 && IsControl(high)) signs |= kUnicodeReverseControls;
    if (low == 0 || high == 0) signs |= kUnicodeNullBytes;
    const bool reverse_mark = unit == 0xFFFE && !first;
    if (unit == 0 || unit == 0xFFFF || unit == 0x0A0D || reverse_mark)
        signs |= kUnicodeIllegalChars;
    return signs;
}

std::uint32_t MarkOf(const unsigned char* bytes) {
    if (bytes[0] == 0xFF && bytes[1] == 0xFE) return kUnicodeSignature;
    if (bytes[0] == 0xFE && bytes[1] == 0xFF) return kUnicodeReverseSignature;
    return 0;
}

}  // namespace

std::uint32_t UnicodeTests(const void* data, std::size_t size, std::uint32_t requested) noexcept {
    if (data == nullptr || size < 2) return 0;
    const auto* const bytes = static_cast<const unsigned char*>(data);
    const std::size_t units = size / 2;
    const std::size_t count = std::min(units, kExaminedUnits);
    std::uint32_t held = MarkOf(bytes);
    if (size % 2 != 0) held |= kUnicodeOddLength;
    Statistics statistics;
    bool ascii16 = true;
    bool reverse_ascii16 = true;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned int low = bytes[2 * i];
        const unsigned int high = bytes[2 * i + 1];
        if (i + 1 == units && i != 0) {  // may be a terminator
            held |= SignsOf(low, high, false) & (kUnicodeControls | kUnicodeReverseControls);
            break;
        }
        ascii16 = ascii16 && high == 0 && low != 0 && low < 0x80;
        reverse_ascii16 = reverse_ascii16 && low == 0 && high != 0 && high < 0x80;
        held |= SignsOf(low, high, i == 0);
        statistics.Add(low, high);
    }
    if (ascii16) held |= kUnicodeAscii16;
    if (reverse_ascii16) held |= kUnicodeReverseAscii16;
    if (statistics.Hold()) held |= kUnicodeStatistics;
    if (statistics.HoldInReverse()) held |= kUnicodeReverseStatistics;
    return held & requested;
}

bool IsTextUnicode(const void* data, std::size_t size, std::uint32_t requested) noexcept {
    constexpr std::uint32_t kMarks = kUnicodeSignature | kUnicodeReverseSignature;
    constexpr std::uint32_t kReverse =
        kUnicodeReverseAscii16 | kUnicodeReverseStatistics | kUnicodeReverseControls;
    const std::uint32_t held = UnicodeTests(data, size, requested);
    if ((held & kMarks) != 0) return true;
    if ((held & (kUnicodeIllegalChars | kUnicodeOddLength | kReverse)) != 0) return false;
    return held != 0;
}

}  // namespace zelkor::platform
