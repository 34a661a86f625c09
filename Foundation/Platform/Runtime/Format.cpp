#include <array>
#include <cstdarg>
#include <limits>
#include <utility>

#include "Foundation/Platform/Runtime.h"
#include "Foundation/Platform/Runtime/Internal/FormatDetail.h"
#include "Foundation/Platform/Runtime/Internal/FormatFloat.h"

namespace zelkor::platform {
namespace {

using runtime::Directive;
using runtime::FloatText;
using runtime::Writer;

// The decimal numbers 00 to 99, one behind the other.
constexpr auto kPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

// A number in base 8, 10 or 16, written from the end of an area that holds any 64-bit one. Zero has
// no digits.
template <typename Char>
class Digits {
public:
    void Decimal(std::uint64_t value) noexcept {
        while (value >= 100) {
            const std::size_t pair = 2 * static_cast<std::size_t>(value % 100);
            value /= 100;
            *--first_ = static_cast<Char>(kPairs[pair + 1]);
            *--first_ = static_cast<Char>(kPairs[pair]);
        }
        if (value >= 10) {
            *--first_ = static_cast<Char>('0' + value % 10);
            value /= 10;
        }
        if (value != 0) *--first_ = static_cast<Char>('0' + value);
    }
    // `bits` per digit: 3 or 4.
    void Binary(std::uint64_t value, unsigned bits, bool upper) noexcept {
        const char* const names = upper ? "0123456789ABCDEF" : "0123456789abcdef";
        const std::uint64_t mask = (1u << bits) - 1;
        for (; value != 0; value >>= bits) *--first_ = static_cast<Char>(names[value & mask]);
    }
    [[nodiscard]] const Char* First() const noexcept { return first_; }
    [[nodiscard]] std::size_t Count() const noexcept {
        return static_cast<std::size_t>(area_.data() + area_.size() - first_);
    }

private:
    std::array<Char, 22> area_;  // 64 bits in base 8
    Char* first_ = area_.data() + area_.size();
};

// The text before a number's digits: a sign or the mark of a base.
struct Prefix {
    std::array<char, 3> text{};
    std::size_t length = 0;
    void Add(char unit) noexcept { text[length++] = unit; }
    void AddSign(const Directive& directive, bool negative) noexcept {
        if (negative)
            Add('-');
        else if (directive.plus)
            Add('+');
        else if (directive.blank)
            Add(' ');
    }
};

template <typename Char>
class Formatter {
public:
    Formatter(Char* out, std::size_t capacity, std::va_list arguments) noexcept
        : out_(out, capacity) {
        va_copy(arguments_, arguments);
    }
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;
    ~Formatter() { va_end(arguments_); }

    std::size_t Run(const Char* format) noexcept {
        for (;;) {
            format = out_.AppendLiteral(format);
            if (*format == 0) break;
            Directive directive;
            format = runtime::ParseDirective(format + 1, directive,
                                             [this] { return va_arg(arguments_, int); });
            if (*format == 0) break;
            Convert(*format++, directive);
        }
        out_.Terminate();
        return out_.Length();
    }

private:
    using enum Directive::Size;

    void Convert(Char letter, const Directive& directive) noexcept {
        switch (letter) {
            case 'd':
            case 'i':
                return Signed(directive);
            case 'u':
            case 'o':
            case 'x':
            case 'X':
                return Number(directive, letter, Unsigned(directive), Prefix{});
            case 'p':
                return Pointer(directive);
            case 's':
                return Text(directive, IsWide(directive, sizeof(Char) == 2));
            case 'S':
                return Text(directive, IsWide(directive, sizeof(Char) == 1));
            case 'c':
                return Character(directive, IsWide(directive, sizeof(Char) == 2));
            case 'C':
                return Character(directive, IsWide(directive, sizeof(Char) == 1));
            case 'e':
            case 'E':
            case 'f':
            case 'g':
            case 'G':
            case 'a':
            case 'A':
                return Float(directive, static_cast<char>(letter));
            case 'n':
                static_cast<void>(va_arg(arguments_, void*));
                return;
            default:
                out_.Put(letter);
        }
    }

    static bool IsWide(const Directive& directive, bool otherwise) noexcept {
        if (directive.size == kShort) return false;
        return directive.size == kLong || directive.size == kWide || otherwise;
    }

    std::uint64_t Unsigned(const Directive& directive) noexcept {
        if (directive.size == k64) return va_arg(arguments_, unsigned long long);
        if (directive.size == kPointer) return va_arg(arguments_, std::size_t);
        const unsigned value = va_arg(arguments_, unsigned);
        return directive.size == kShort ? value & 0xFFFF : value;
    }

    void Signed(const Directive& directive) noexcept {
        std::int64_t value;
        if (directive.size == k64)
            value = va_arg(arguments_, long long);
        else if (directive.size == kPointer)
            value = va_arg(arguments_, std::ptrdiff_t);
        else
            value = va_arg(arguments_, int);
        if (directive.size == kShort) value = static_cast<std::int16_t>(value);
        Prefix prefix;
        prefix.AddSign(directive, value < 0);
        const auto magnitude = static_cast<std::uint64_t>(value);
        Number(directive, 'd', value < 0 ? 0 - magnitude : magnitude, prefix);
    }

    void Number(const Directive& directive, Char letter, std::uint64_t value,
                Prefix prefix) noexcept {
        Digits<Char> digits;
        if (letter == 'd' || letter == 'u') {
            digits.Decimal(value);
        } else {
            digits.Binary(value, letter == 'o' ? 3 : 4, letter == 'X');
        }
        const std::size_t count = digits.Count();
        auto least = static_cast<std::size_t>(directive.precision < 0 ? 1 : directive.precision);
        if (directive.alternate && letter == 'o' && least <= count) least = count + 1;
        if (directive.alternate && (letter == 'x' || letter == 'X') && value != 0) {
            prefix.Add('0');
            prefix.Add(static_cast<char>(letter));
        }
        std::size_t zeros = least > count ? least - count : 0;
        const std::size_t length = prefix.length + zeros + count;
        std::size_t padding = directive.width > length ? directive.width - length : 0;
        if (directive.zero && !directive.left && directive.precision < 0) {
            zeros += std::exchange(padding, 0);
        }
        if (!directive.left) out_.Fill(' ', padding);
        out_.Append(prefix.text.data(), prefix.length);
        out_.Fill('0', zeros);
        out_.Append(digits.First(), count);
        if (directive.left) out_.Fill(' ', padding);
    }

    void Pointer(Directive directive) noexcept {
        const auto address = reinterpret_cast<std::uintptr_t>(va_arg(arguments_, void*));
        directive.precision = static_cast<int>(2 * sizeof(void*));
        Number(directive, 'X', address, Prefix{});
    }

    // Pads text of a known length; the zero flag pads texts as well.
    template <typename From>
    void Padded(const Directive& directive, const From* text, std::size_t length) noexcept {
        const std::size_t padding = directive.width > length ? directive.width - length : 0;
        if (!directive.left) out_.Fill(directive.zero ? '0' : ' ', padding);
        out_.Append(text, length);
        if (directive.left) out_.Fill(' ', padding);
    }

    void Text(const Directive& directive, bool wide) noexcept {
        if (wide) return TextOf(directive, va_arg(arguments_, const char16_t*), u"(null)");
        TextOf(directive, va_arg(arguments_, const char*), "(null)");
    }
    template <typename From>
    void TextOf(const Directive& directive, const From* text, const From* null_text) noexcept {
        if (text == nullptr) text = null_text;
        // A negative precision becomes the largest bound; with one, nothing behind it is read.
        const auto most = static_cast<std::size_t>(directive.precision);
        if (directive.width == 0) return out_.AppendText(text, most);
        std::size_t length = 0;
        while (length < most && text[length] != 0) ++length;
        Padded(directive, text, length);
    }

    void Character(const Directive& directive, bool wide) noexcept {
        const int value = va_arg(arguments_, int);
        const auto unit = static_cast<char16_t>(value);
        const auto byte = static_cast<char>(value);
        if (wide) return Padded(directive, &unit, 1);
        Padded(directive, &byte, 1);
    }

    void Float(const Directive& directive, char letter) noexcept {
        const double value = directive.size == kLongDouble
                                 ? static_cast<double>(va_arg(arguments_, long double))
                                 : va_arg(arguments_, double);
        const FloatText text =
            runtime::DescribeFloat(value, letter, directive.precision, directive.alternate);
        Prefix prefix;
        prefix.AddSign(directive, text.negative);
        if (text.hexadecimal) {
            prefix.Add('0');
            prefix.Add(letter == 'A' ? 'X' : 'x');
        }
        const std::size_t length = prefix.length + text.Length();
        const std::size_t padding = directive.width > length ? directive.width - length : 0;
        const bool zeros = directive.zero && !directive.left;
        if (!directive.left && !zeros) out_.Fill(' ', padding);
        out_.Append(prefix.text.data(), prefix.length);
        if (zeros) out_.Fill('0', padding);
        out_.Append(text.digits.data(), text.integer_digits);
        out_.Fill('0', text.integer_zeros);
        if (text.point) out_.Put('.');
        out_.Fill('0', text.fraction_zeros);
        out_.Append(text.digits.data() + text.integer_digits, text.fraction_digits);
        out_.Fill('0', text.trailing_zeros);
        out_.Append(text.exponent.data(), text.exponent_length);
        if (directive.left) out_.Fill(' ', padding);
    }

    Writer<Char> out_;
    std::va_list arguments_;
};

int Fit(std::size_t length, std::size_t capacity) noexcept {
    constexpr auto kMost = static_cast<std::size_t>(std::numeric_limits<int>::max());
    return length > capacity || length > kMost ? -1 : static_cast<int>(length);
}

}  // namespace

std::size_t FormatWhole(char16_t* out, std::size_t capacity, const char16_t* format,
                        std::va_list arguments) noexcept {
    return Formatter<char16_t>(out, capacity, arguments).Run(format);
}

std::size_t FormatWhole(char* out, std::size_t capacity, const char* format,
                        std::va_list arguments) noexcept {
    return Formatter<char>(out, capacity, arguments).Run(format);
}

int FormatText(char16_t* out, std::size_t capacity, const char16_t* format,
               std::va_list arguments) noexcept {
    return Fit(FormatWhole(out, capacity, format, arguments), capacity);
}

int FormatText(char* out, std::size_t capacity, const char* format,
               std::va_list arguments) noexcept {
    return Fit(FormatWhole(out, capacity, format, arguments), capacity);
}

int PrintText(char16_t* out, std::size_t capacity, const char16_t* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = FormatText(out, capacity, format, arguments);
    va_end(arguments);
    return length;
}

int PrintText(char* out, std::size_t capacity, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = FormatText(out, capacity, format, arguments);
    va_end(arguments);
    return length;
}

}  // namespace zelkor::platform
