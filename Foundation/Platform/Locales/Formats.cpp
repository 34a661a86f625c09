#include "Foundation/Platform/Locales/Formats.h"

#include <algorithm>
#include <array>
#include <limits>

#include "Foundation/Platform/LastError.h"

namespace zelkor::platform {
namespace {

constexpr std::uint32_t kMostDigits = 9;
constexpr std::uint32_t kMostOrder = 4;
constexpr std::uint32_t kLargestGrouping = 999999999;

constexpr bool IsDigit(char16_t unit) noexcept {
    return unit >= u'0' && unit <= u'9';
}

// A number as it is shown: which digits, rounded.
class Decimal {
public:
    // False when the text is no number.
    bool Read(std::u16string_view text, std::size_t fraction_digits) noexcept {
        negative_ = text.starts_with(u'-');
        if (negative_) text.remove_prefix(1);
        const std::size_t period = std::min(text.find(u'.'), text.size());
        whole_ = text.substr(0, period);
        fraction_ = text.substr(std::min(period + 1, text.size()));
        if (whole_.empty() && fraction_.empty()) return false;
        if (!std::ranges::all_of(whole_, IsDigit) || !std::ranges::all_of(fraction_, IsDigit)) {
            return false;
        }
        whole_.remove_prefix(std::min(whole_.find_first_not_of(u'0'), whole_.size()));
        fraction_digits_ = fraction_digits;
        Round();
        return true;
    }

    [[nodiscard]] std::size_t WholeDigits() const noexcept { return whole_.size() + carried_; }
    // Of the digits before and behind the separator together, from 0.
    [[nodiscard]] char16_t Digit(std::size_t index) const noexcept {
        if (carried_) return index == 0 ? u'1' : u'0';
        const char16_t digit = Given(index);
        if (!rounded_up_ || index < raised_) return digit;
        return index == raised_ ? static_cast<char16_t>(digit + 1) : u'0';
    }
    [[nodiscard]] bool Negative() const noexcept {
        if (!negative_) return false;
        const std::size_t count = WholeDigits() + fraction_digits_;
        for (std::size_t i = 0; i < count; ++i) {
            if (Digit(i) != u'0') return true;
        }
        return false;
    }

private:
    [[nodiscard]] char16_t Given(std::size_t index) const noexcept {
        if (index < whole_.size()) return whole_[index];
        index -= whole_.size();
        return index < fraction_.size() ? fraction_[index] : u'0';
    }
    // Finds the digit that takes the one carried over the nines behind it.
    void Round() noexcept {
        rounded_up_ = fraction_.size() > fraction_digits_ && fraction_[fraction_digits_] >= u'5';
        if (!rounded_up_) return;
        std::size_t end = whole_.size() + fraction_digits_;
        while (end > 0 && Given(end - 1) == u'9') --end;
        carried_ = end == 0;
        if (!carried_) raised_ = end - 1;
    }

    std::u16string_view whole_;
    std::u16string_view fraction_;
    std::size_t fraction_digits_ = 0;
    std::size_t raised_ = 0;
    bool negative_ = false;
    bool rounded_up_ = false;
    bool carried_ = false;  // all digits were nines: a 1 stands before them
};

// Where separators stand among the digits before the decimal separator.
class Groups {
public:
    explicit Groups(std::uint32_t grouping) noexcept {
        for (std::uint32_t rest = grouping; rest != 0; rest /= 10) sizes_[count_++] = rest % 10;
        std::reverse(sizes_.begin(), sizes_.begin() + count_);
    }
    // Whether one stands before the last `digits` digits.
    [[nodiscard]] bool EndAt(std::size_t digits) const noexcept {
        std::size_t sum = 0;
        for (std::size_t i = 0; i < count_; ++i) {
            if (sizes_[i] == 0) return false;
            sum += sizes_[i];
            if (digits <= sum) return digits == sum;
        }
        return count_ != 0 && (digits - sum) % sizes_[count_ - 1] == 0;
    }

private:
    std::array<std::uint32_t, 10> sizes_{};
    std::uint32_t count_ = 0;
};

template <typename Put>
void Write(const Decimal& number, const NumberFormat& format, const Put& put) {
    const bool negative = number.Negative();
    if (negative) {
        if (format.negative_order == 0) put(u"(");
        if (format.negative_order == 1 || format.negative_order == 2) put(format.negative_sign);
        if (format.negative_order == 2) put(u" ");
    }
    const Groups groups(format.grouping);
    const std::size_t whole = number.WholeDigits();
    const auto put_digit = [&](std::size_t index) {
        const char16_t digit = number.Digit(index);
        put(std::u16string_view(&digit, 1));
    };
    for (std::size_t i = 0; i < whole; ++i) {
        if (i != 0 && groups.EndAt(whole - i)) put(format.thousands_separator);
        put_digit(i);
    }
    if (whole == 0 && (format.leading_zero != 0 || format.digits == 0)) put(u"0");
    if (format.digits != 0) put(format.decimal_separator);
    for (std::size_t i = 0; i < format.digits; ++i) put_digit(whole + i);
    if (negative) {
        if (format.negative_order == 0) put(u")");
        if (format.negative_order == 4) put(u" ");
        if (format.negative_order >= 3) put(format.negative_sign);
    }
}

int Fail(std::uint32_t error) noexcept {
    SetLastError(error);
    return 0;
}

}  // namespace

int FormatNumber(std::u16string_view number, const NumberFormat& format, char16_t* out,
                 int capacity) noexcept {
    Decimal decimal;
    if (format.digits > kMostDigits || format.leading_zero > 1 ||
        format.negative_order > kMostOrder || capacity < 0 || (out == nullptr && capacity != 0) ||
        !decimal.Read(number, format.digits)) {
        return Fail(kErrorInvalidParameter);
    }
    const auto room = static_cast<std::size_t>(capacity);
    std::size_t length = 0;
    Write(decimal, format, [&](std::u16string_view part) {
        if (length + part.size() < room) std::ranges::copy(part, out + length);
        length += part.size();
    });
    if (length >= std::numeric_limits<int>::max()) return Fail(kErrorInvalidParameter);
    if (capacity != 0 && length >= room) return Fail(kErrorInsufficientBuffer);
    if (capacity != 0) out[length] = 0;
    return static_cast<int>(length + 1);
}

bool ReadGrouping(std::u16string_view text, std::uint32_t* grouping) noexcept {
    std::uint64_t digits = 0;
    bool good = text.empty() || text.size() % 2 == 1;
    for (std::size_t i = 0; i < text.size() && good; ++i) {
        good = i % 2 == 0 ? IsDigit(text[i]) && digits <= kLargestGrouping : text[i] == u';';
        if (i % 2 == 0) digits = digits * 10 + (text[i] - u'0');
    }
    digits = text.ends_with(u'0') ? digits / 10 : digits * 10;
    if (!good || digits > kLargestGrouping) {
        SetLastError(kErrorInvalidParameter);
        return false;
    }
    *grouping = static_cast<std::uint32_t>(digits);
    return true;
}

}  // namespace zelkor::platform
