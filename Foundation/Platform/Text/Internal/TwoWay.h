// Finding a text in time linear in both, whatever they are: the Two-Way algorithm of M. Crochemore
// and D. Perrin (Journal of the ACM 38, 1991). It compares one unit at a time, so FindText turns to
// it only when faster ways have compared more than they should.
#ifndef FOUNDATION_PLATFORM_TEXT_INTERNAL_TWOWAY_H
#define FOUNDATION_PLATFORM_TEXT_INTERNAL_TWOWAY_H

#include <cstddef>

namespace zelkor::platform::detail {

// As FindText, for two units and more of `char` or `char16_t`.
template <typename Unit>
[[nodiscard]] std::size_t TwoWayFind(const Unit* text, std::size_t length, const Unit* wanted,
                                     std::size_t wanted_length) noexcept;

}  // namespace zelkor::platform::detail

#endif
