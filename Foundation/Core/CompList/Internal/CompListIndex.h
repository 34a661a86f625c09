// The index of an adopted image that is searched often. It holds where the beginnings of
// words lead, and the alternatives that stand far down their chain.
#ifndef FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTINDEX_H
#define FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTINDEX_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/CompList/Internal/CompListBeginnings.h"
#include "Foundation/Core/CompList/Internal/CompListImage.h"
#include "Foundation/Core/CompList/Internal/CompListStorage.h"

namespace zelkor::detail::complist {

class Index {
public:
    // Alternatives up to this rank are reached by following their chain.
    static constexpr std::uint32_t kNearby = 3;

    // False when the image does not hang together; the index is then of no use.
    [[nodiscard]] bool Build(const View& image);

    // By positions behind a beginning; those of short words whose branch ends there as well.
    [[nodiscard]] const Beginnings& KnownBeginnings() const noexcept { return beginnings_; }
    // The alternative with this first character, of a rank above kNearby, in the chain that begins
    // at `head`; 0 when there is none.
    [[nodiscard]] std::uint32_t FarAlternative(std::uint32_t head,
                                               std::uint32_t unit) const noexcept {
        return far_.Find(Step(head, unit));
    }
    [[nodiscard]] std::size_t Bytes() const noexcept { return beginnings_.Bytes() + far_.Bytes(); }

private:
    template <typename Unit>
    class Builder;

    Beginnings beginnings_;
    PlaceTable far_;
};

// Searches an image for a key that is not empty. `index` may be null. `skipped` counts the
// alternatives passed over. With `exact` an absent word's matched length is not found out.
template <typename Unit>
[[nodiscard]] Outcome WalkImage(const View& image, const Unit* key, const Index* index, bool exact,
                                std::uint32_t& skipped) noexcept;

}  // namespace zelkor::detail::complist

#endif
