#include "Foundation/Platform/UnitSet.h"

#include <algorithm>
#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zelkor::platform {

// A set made ready for a scan: which units of a piece of text are in it, as bits, the first unit in
// the lowest one.
class Membership {
public:
    static constexpr std::size_t kLine = 16;
    static constexpr std::size_t kBlock = 64;

    explicit Membership(const UnitSet& set) noexcept : set_(set) {
#if defined(__SSE2__)
        if (set.units_.size() > kMostFilled) return;
        filled_ = static_cast<int>(set.units_.size());
        for (int i = 0; i < filled_; ++i) {
            fill_[i] = _mm_set1_epi16(static_cast<short>(set.units_[static_cast<std::size_t>(i)]));
        }
#endif
    }

    [[nodiscard]] std::uint32_t OfLine(const char16_t* text) const noexcept {
#if defined(__SSE2__)
        if (filled_ >= 0) {
            const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
            const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + 8));
            __m128i low_hits = _mm_setzero_si128();
            __m128i high_hits = low_hits;
            for (int i = 0; i < filled_; ++i) {
                low_hits = _mm_or_si128(low_hits, _mm_cmpeq_epi16(low, fill_[i]));
                high_hits = _mm_or_si128(high_hits, _mm_cmpeq_epi16(high, fill_[i]));
            }
            return static_cast<std::uint32_t>(
                _mm_movemask_epi8(_mm_packs_epi16(low_hits, high_hits)));
        }
#endif
        return static_cast<std::uint32_t>(OneByOne(text, kLine));
    }

    // Up to kBlock units.
    [[nodiscard]] std::uint64_t OfBlock(const char16_t* text, std::size_t count) const noexcept {
        std::uint64_t bits = 0;
        std::size_t i = 0;
        for (; i + kLine <= count; i += kLine) bits |= std::uint64_t{OfLine(text + i)} << i;
        return i == count ? bits : bits | OneByOne(text + i, count - i) << i;
    }

private:
    [[nodiscard]] std::uint64_t OneByOne(const char16_t* text, std::size_t count) const noexcept {
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < count; ++i) {
            bits |= std::uint64_t{set_.Has(text[i])} << i;
        }
        return bits;
    }

    const UnitSet& set_;
#if defined(__SSE2__)
    static constexpr std::size_t kMostFilled = 8;
    int filled_ = -1;  // members in fill_, -1 when they are too many
    __m128i fill_[kMostFilled];
#endif
};

namespace {

constexpr std::size_t kLine = Membership::kLine;
constexpr std::size_t kBlock = Membership::kBlock;

// The first `count` bits.
constexpr std::uint64_t Ones(std::size_t count) noexcept {
    return count >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

std::size_t First(const UnitSet& set, std::u16string_view text, bool member) noexcept {
    std::size_t at = 0;
    if (text.size() >= kLine) {
        const Membership membership(set);
        const std::uint32_t flip = member ? 0 : 0xFFFF;
        for (; at + kLine <= text.size(); at += kLine) {
            const std::uint32_t hits = membership.OfLine(text.data() + at) ^ flip;
            if (hits != 0) return at + static_cast<std::size_t>(std::countr_zero(hits));
        }
    }
    while (at < text.size() && set.Has(text[at]) != member) ++at;
    return at;
}

std::size_t Last(const UnitSet& set, std::u16string_view text, bool member) noexcept {
    std::size_t end = text.size();
    if (end >= kLine) {
        const Membership membership(set);
        const std::uint32_t flip = member ? 0 : 0xFFFF;
        for (; end >= kLine; end -= kLine) {
            const std::uint32_t hits = membership.OfLine(text.data() + end - kLine) ^ flip;
            if (hits != 0) return end - kLine + static_cast<std::size_t>(std::bit_width(hits)) - 1;
        }
    }
    while (end > 0 && set.Has(text[end - 1]) != member) --end;
    return end == 0 ? kNoHit : end - 1;
}

// The text block by block, with the bits of what is looked for: members, or the first units of runs
// of others.
class Marks {
public:
    Marks(const UnitSet& set, std::u16string_view text, bool runs) noexcept
        : membership_(set), text_(text), runs_(runs) {}

    [[nodiscard]] bool AtEnd() const noexcept { return at_ >= text_.size(); }
    [[nodiscard]] std::size_t Position() const noexcept { return at_; }
    [[nodiscard]] std::uint64_t Get() noexcept {
        const std::size_t count = std::min(kBlock, text_.size() - at_);
        const std::uint64_t members = membership_.OfBlock(text_.data() + at_, count);
        if (!runs_) return members;
        const std::uint64_t others = ~members & Ones(count);
        const std::uint64_t starts = others & ~(others << 1 | inside_);
        inside_ = others >> 63;
        return starts;
    }
    void Next() noexcept { at_ += kBlock; }

private:
    Membership membership_;
    std::u16string_view text_;
    std::size_t at_ = 0;
    bool runs_;
    std::uint64_t inside_ = 0;  // 1 when the block before ended in a run
};

std::size_t Count(Marks marks) noexcept {
    std::size_t count = 0;
    for (; !marks.AtEnd(); marks.Next()) {
        count += static_cast<std::size_t>(std::popcount(marks.Get()));
    }
    return count;
}

std::size_t Find(Marks marks, std::size_t index) noexcept {
    for (; !marks.AtEnd(); marks.Next()) {
        std::uint64_t bits = marks.Get();
        const auto here = static_cast<std::size_t>(std::popcount(bits));
        if (index < here) {
            for (; index != 0; --index) bits &= bits - 1;
            return marks.Position() + static_cast<std::size_t>(std::countr_zero(bits));
        }
        index -= here;
    }
    return kNoHit;
}

}  // namespace

std::size_t UnitSet::FirstMember(std::u16string_view text) const noexcept {
    return First(*this, text, true);
}

// Runs of members are most often the single separator between two words.
std::size_t UnitSet::FirstOther(std::u16string_view text) const noexcept {
    constexpr std::size_t kShortRun = 2;
    for (std::size_t i = 0; i < kShortRun && i < text.size(); ++i) {
        if (!Has(text[i])) return i;
    }
    return First(*this, text, false);
}

std::size_t UnitSet::LastMember(std::u16string_view text) const noexcept {
    return Last(*this, text, true);
}

std::size_t UnitSet::LastOther(std::u16string_view text) const noexcept {
    return Last(*this, text, false);
}

std::size_t UnitSet::CountMembers(std::u16string_view text) const noexcept {
    return Count(Marks(*this, text, false));
}

std::size_t UnitSet::FindMember(std::u16string_view text, std::size_t index) const noexcept {
    return Find(Marks(*this, text, false), index);
}

std::size_t UnitSet::FindMembers(std::u16string_view text, std::uint32_t* places,
                                 std::size_t most) const noexcept {
    std::size_t count = 0;
    for (Marks marks(*this, text, false); !marks.AtEnd(); marks.Next()) {
        for (std::uint64_t bits = marks.Get(); bits != 0; bits &= bits - 1) {
            if (count == most) return count;
            const auto bit = static_cast<std::size_t>(std::countr_zero(bits));
            places[count++] = static_cast<std::uint32_t>(marks.Position() + bit);
        }
    }
    return count;
}

std::size_t UnitSet::CountRuns(std::u16string_view text) const noexcept {
    return Count(Marks(*this, text, true));
}

std::size_t UnitSet::FindRun(std::u16string_view text, std::size_t index) const noexcept {
    return Find(Marks(*this, text, true), index);
}

}  // namespace zelkor::platform
