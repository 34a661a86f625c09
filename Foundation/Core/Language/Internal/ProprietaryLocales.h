// The locales whose data the library has itself.
#ifndef FOUNDATION_CORE_LANGUAGE_INTERNAL_PROPRIETARYLOCALES_H
#define FOUNDATION_CORE_LANGUAGE_INTERNAL_PROPRIETARYLOCALES_H

#include <cstdint>
#include <optional>
#include <string_view>

#include "Foundation/Platform/Types.h"

namespace zelkor::detail {

// One of them, or none.
class ProprietaryLocale {
public:
    explicit ProprietaryLocale(LCID lcid);

    [[nodiscard]] bool IsOne() const { return index_ != kNone; }
    // Constant text, followed by a zero; nothing when the list lacks the type.
    [[nodiscard]] std::optional<std::u16string_view> Value(std::uint32_t type) const;
    // The locale to ask for what the list lacks, 0 for none.
    [[nodiscard]] LCID Fallback() const;

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    std::uint32_t index_ = kNone;
};

}  // namespace zelkor::detail

#endif
