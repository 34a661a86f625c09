// AnsiCodePages: what is known already about the default ANSI code pages of locales.
//
// A table of fixed size in which each locale has a few places; a locale that finds them taken is
// not kept and asked anew each time. A slot is one word, so that no lock is needed: threads may
// look up and keep at the same time. A `constinit` object.
#ifndef FOUNDATION_CORE_LANGUAGE_INTERNAL_ANSICODEPAGES_H
#define FOUNDATION_CORE_LANGUAGE_INTERNAL_ANSICODEPAGES_H

#include <array>
#include <atomic>
#include <cstdint>

#include "Foundation/Platform/Types.h"

namespace zelkor::detail {

class AnsiCodePages {
public:
    // 0 when the locale is not kept.
    [[nodiscard]] unsigned int Find(LCID lcid) const noexcept {
        for (unsigned int step = 0; step < kPlaces; ++step) {
            const Slot slot = slots_[Place(lcid, step)].load(std::memory_order_relaxed);
            if (slot == 0) return 0;
            if (slot >> 32 == lcid) return static_cast<unsigned int>(slot);
        }
        return 0;
    }

    // The code page is not 0.
    void Keep(LCID lcid, unsigned int code_page) noexcept {
        const Slot wanted = Slot{lcid} << 32 | code_page;
        for (unsigned int step = 0; step < kPlaces; ++step) {
            Slot slot = 0;
            if (slots_[Place(lcid, step)].compare_exchange_strong(slot, wanted,
                                                                  std::memory_order_relaxed) ||
                slot == wanted) {
                return;
            }
        }
    }

    void Clear() noexcept {
        for (auto& slot : slots_) slot.store(0, std::memory_order_relaxed);
    }

private:
    using Slot = std::uint64_t;  // the locale above its code page; 0 is free
    static constexpr std::size_t kSlots = 1024;
    static constexpr unsigned int kPlaces = 8;

    // Neighbouring numbers are far apart (Knuth's multiplicative hashing).
    static std::size_t Place(LCID lcid, unsigned int step) noexcept {
        return ((lcid * 0x9E3779B1u >> 22) + step) % kSlots;
    }

    std::array<std::atomic<Slot>, kSlots> slots_{};
};

}  // namespace zelkor::detail

#endif
