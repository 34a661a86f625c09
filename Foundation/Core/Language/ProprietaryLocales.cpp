#include "Foundation/Core/Language/Internal/ProprietaryLocales.h"

#include <algorithm>
#include <span>

#include "Foundation/Core/Language/Internal/Tables/ProprietaryTables.h"
#include "Foundation/Platform/Runtime.h"

namespace zelkor::detail {

namespace {

constexpr auto kLocales = std::to_array<LCID>({0x043A, 0x0464, 0x043B, 0x0430, 0x0434, 0x0435});

std::span<const ProprietaryItem> ItemsOf(std::uint32_t index) {
    switch (index) {
        case 0:
            return kMalteseItems;
        case 1:
            return kTagalogItems;
        case 2:
            return kSamiItems;
        case 3:
            return kSothoItems;
        case 4:
            return kXhosaItems;
        default:
            return kZuluItems;
    }
}

}  // namespace

ProprietaryLocale::ProprietaryLocale(LCID lcid) {
    const auto found = std::ranges::find(kLocales, lcid);
    if (found != kLocales.end()) index_ = static_cast<std::uint32_t>(found - kLocales.begin());
}

std::optional<std::u16string_view> ProprietaryLocale::Value(std::uint32_t type) const {
    if (!IsOne()) return std::nullopt;
    const std::span items = ItemsOf(index_);
    const auto item = std::ranges::find(items, type, &ProprietaryItem::type);
    if (item == items.end()) return std::nullopt;
    return std::u16string_view(item->value);
}

LCID ProprietaryLocale::Fallback() const {
    const auto number = Value(kFallbackType);
    return number ? static_cast<LCID>(platform::ReadInteger(number->data())) : 0;
}

}  // namespace zelkor::detail
