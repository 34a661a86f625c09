#include "Foundation/Platform/Internal/ErrorTexts.h"

#include <algorithm>
#include <array>

#include "Foundation/Platform/LastError.h"

namespace zelkor::platform {

namespace {

using detail::kErrorTexts;

constexpr std::size_t kCount = std::size(kErrorTexts);
static_assert(std::ranges::is_sorted(kErrorTexts, {}, &detail::ErrorText::number));

// One number and the place of its text in the units that follow; no pointers, so that nothing is
// to be relocated when the library is loaded.
struct Place {
    std::uint32_t number;
    std::uint16_t start, length;
};

constexpr std::size_t kUnits = [] {
    std::size_t units = 0;
    for (const detail::ErrorText& entry : kErrorTexts) units += entry.text.size() + 2;
    return units;
}();
static_assert(kUnits <= 0xFFFF);

constexpr std::array<char16_t, kUnits> kText = [] {
    std::array<char16_t, kUnits> text{};
    char16_t* next = text.data();
    for (const detail::ErrorText& entry : kErrorTexts) {
        for (const char unit : entry.text) *next++ = static_cast<unsigned char>(unit);
        *next++ = u'\r';
        *next++ = u'\n';
    }
    return text;
}();

constexpr std::array<Place, kCount> kPlaces = [] {
    std::array<Place, kCount> places{};
    std::size_t start = 0;
    for (std::size_t i = 0; i < kCount; ++i) {
        const std::size_t length = kErrorTexts[i].text.size() + 2;
        places[i] = {kErrorTexts[i].number, static_cast<std::uint16_t>(start),
                     static_cast<std::uint16_t>(length)};
        start += length;
    }
    return places;
}();

// An HRESULT of the system's facility stands for the number in its low half.
constexpr std::uint32_t kFacilityMask = 0xFFFF0000;
constexpr std::uint32_t kSystemFacility = 0x80070000;

}  // namespace

std::u16string_view SystemText(std::uint32_t number) noexcept {
    if ((number & kFacilityMask) == kSystemFacility) number &= ~kFacilityMask;
    const auto place = std::ranges::lower_bound(kPlaces, number, {}, &Place::number);
    if (place == kPlaces.end() || place->number != number) return {};
    return {kText.data() + place->start, place->length};
}

}  // namespace zelkor::platform
