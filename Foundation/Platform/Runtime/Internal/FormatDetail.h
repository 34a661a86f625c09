// What the formatting engine is made of: where the text goes, and what a directive says.
#ifndef FOUNDATION_PLATFORM_RUNTIME_INTERNAL_FORMATDETAIL_H
#define FOUNDATION_PLATFORM_RUNTIME_INTERNAL_FORMATDETAIL_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace zelkor::platform::runtime {

// Takes text into a bounded area and counts what no longer fits.
template <typename Char>
class Writer {
public:
    Writer(Char* out, std::size_t capacity) noexcept
        : next_(out), room_(capacity), capacity_(capacity) {}

    void Put(Char unit) noexcept {
        if (room_ == 0) {
            ++lost_;
            return;
        }
        --room_;
        *next_++ = unit;
    }
    // Text of either width; see the rules of width crossing in Runtime.h.
    template <typename From>
    void Append(const From* text, std::size_t length) noexcept {
        const std::size_t fits = Claim(length);
        std::transform(text, text + fits, next_, Convert<From>);
        next_ += fits;
    }
    // Text up to its terminator or `most` units, measured while it is copied.
    template <typename From>
    void AppendText(const From* text, std::size_t most) noexcept {
        const std::size_t fits = std::min(most, room_);
        std::size_t at = 0;
        for (; at < fits && text[at] != 0; ++at) next_[at] = Convert(text[at]);
        next_ += at;
        room_ -= at;
        if (at < fits) return;
        for (; at < most && text[at] != 0; ++at) ++lost_;
    }
    // The literal text of a format; answers where it ends, at a % or the terminator.
    const Char* AppendLiteral(const Char* format) noexcept {
        for (; *format != '%' && *format != 0; ++format) Put(*format);
        return format;
    }
    void Fill(char unit, std::size_t count) noexcept {
        if (count == 0) return;
        const std::size_t fits = Claim(count);
        std::fill_n(next_, fits, static_cast<Char>(unit));
        next_ += fits;
    }
    [[nodiscard]] std::size_t Length() const noexcept { return capacity_ - room_ + lost_; }
    void Terminate() noexcept {
        if (room_ != 0) *next_ = 0;
    }

private:
    template <typename From>
    static Char Convert(From unit) noexcept {
        if constexpr (sizeof(From) == sizeof(Char)) {
            return unit;
        } else if constexpr (sizeof(From) == 1) {
            return static_cast<unsigned char>(unit);
        } else {
            return static_cast<Char>(unit > 0xFF ? u'?' : unit);
        }
    }
    std::size_t Claim(std::size_t length) noexcept {
        const std::size_t fits = std::min(length, room_);
        room_ -= fits;
        lost_ += length - fits;
        return fits;
    }

    Char* next_;
    std::size_t room_;
    std::size_t capacity_;
    std::size_t lost_ = 0;
};

struct Directive {
    enum class Size { kNone, kShort, kLong, kWide, k64, kPointer, kLongDouble };

    bool left = false;
    bool plus = false;
    bool blank = false;
    bool alternate = false;
    bool zero = false;
    std::size_t width = 0;
    int precision = -1;  // -1: none
    Size size = Size::kNone;
};

// The size letters. F and N, which once told near from far pointers, are passed over.
template <typename Char>
const Char* ParseSize(const Char* at, Directive& directive) noexcept {
    using enum Directive::Size;
    for (;; ++at) {
        switch (*at) {
            case 'h':
                directive.size = kShort;
                break;
            case 'l':
                directive.size = directive.size == kLong ? k64 : kLong;
                break;
            case 'w':
                directive.size = kWide;
                break;
            case 'L':
                directive.size = kLongDouble;
                break;
            case 'F':
            case 'N':
                break;
            case 'I':
                if (at[1] == '6' && at[2] == '4') {
                    directive.size = k64;
                    at += 2;
                } else if (at[1] == '3' && at[2] == '2') {
                    directive.size = kNone;
                    at += 2;
                } else {
                    directive.size = kPointer;
                }
                break;
            default:
                return at;
        }
    }
}

// Reads a directive behind its %; `NextInt` fetches the argument of a star. Answers the position of
// the letter, or of the terminator when the directive is cut off.
template <typename Char, typename NextInt>
const Char* ParseDirective(const Char* at, Directive& directive, NextInt next_int) noexcept {
    constexpr int kMost = std::numeric_limits<int>::max();
    const auto number = [&at] {
        int value = 0;
        for (; *at >= '0' && *at <= '9'; ++at) {
            const int digit = *at - '0';
            value = value > (kMost - digit) / 10 ? kMost : value * 10 + digit;
        }
        return value;
    };
    for (;; ++at) {
        if (*at == '-')
            directive.left = true;
        else if (*at == '+')
            directive.plus = true;
        else if (*at == ' ')
            directive.blank = true;
        else if (*at == '#')
            directive.alternate = true;
        else if (*at == '0')
            directive.zero = true;
        else
            break;
    }
    if (*at == '*') {
        ++at;
        const std::int64_t width = next_int();
        if (width < 0) directive.left = true;
        directive.width = static_cast<std::size_t>(width < 0 ? -width : width);
    } else {
        directive.width = static_cast<std::size_t>(number());
    }
    if (*at == '.') {
        ++at;
        if (*at == '*') {
            ++at;
            directive.precision = std::max(next_int(), -1);
        } else {
            directive.precision = number();
        }
    }
    return ParseSize(at, directive);
}

}  // namespace zelkor::platform::runtime

#endif
