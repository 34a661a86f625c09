// Where the beginnings of words lead, so that a search need not follow their branches: the first
// kFirst characters, and from there the next kMore. A place is whatever the user calls the point
// behind these characters, as a number that is not 0.
#ifndef FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTBEGINNINGS_H
#define FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTBEGINNINGS_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/CompList/Internal/CompListStorage.h"

namespace zelkor::detail::complist {

class Beginnings {
public:
    static constexpr std::uint32_t kFirst = 4;
    static constexpr std::uint32_t kMore = 2;
    static constexpr std::uint32_t kBoth = kFirst + kMore;

    // The characters of a beginning so far, as they are added one by one from none to kBoth.
    class Key {
    public:
        void Add(std::uint32_t unit) noexcept {
            units_ = units_ << 16 | unit;
            ++length_;
        }
        // With kFirst characters it goes on from the place where these lead.
        void GoOnFrom(std::uint32_t place) noexcept { units_ = place; }
        [[nodiscard]] std::uint32_t Length() const noexcept { return length_; }
        // Of up to kFirst characters. Keys of all lengths differ: none contains a zero character.
        [[nodiscard]] std::uint64_t First() const noexcept {
            return units_ << 16 * (kFirst - length_);
        }
        // Of kBoth characters.
        [[nodiscard]] std::uint64_t Both() const noexcept { return units_; }

    private:
        std::uint64_t units_ = 0;
        std::uint32_t length_ = 0;
    };

    // How far the beginning of a key is known.
    struct Found {
        std::uint32_t place = 0;    // behind the known part
        std::uint32_t length = 0;   // of it: 0, kFirst or kBoth
        std::uint32_t missing = 0;  // the length that no word begins with, 0 when that is not known
    };
    template <typename Unit>
    [[nodiscard]] Found Follow(const Unit* key) const noexcept {
        Found found;
        Key units;
        while (units.Length() < kFirst) {
            if (key[units.Length()] == 0) return found;
            units.Add(key[units.Length()]);
        }
        const std::uint32_t first = first_.Find(units.First());
        if (first == 0) {
            found.missing = kFirst;
            return found;
        }
        found = {first, kFirst, 0};
        if (key[kFirst] == 0 || key[kFirst + 1] == 0) return found;
        units.GoOnFrom(first);
        units.Add(key[kFirst]);
        units.Add(key[kFirst + 1]);
        const std::uint32_t both = both_.Find(units.Both());
        if (both == 0) {
            found.missing = kBoth;
            return found;
        }
        return {both, kBoth, 0};
    }

    // Makes room for one of each kind; may throw, and then nothing has changed.
    void Reserve() {
        first_.Reserve(1);
        both_.Reserve(1);
    }
    // Require room, and a beginning that is not known.
    void AddFirst(const Key& key, std::uint32_t place) noexcept {
        first_.Insert(key.First(), place);
    }
    void AddBoth(const Key& key, std::uint32_t place) noexcept { both_.Insert(key.Both(), place); }

    // A key whose first kFirst characters are missing may still continue a short word that nothing
    // else continues. Such words are added with AddFirst too; `ends` says of a place whether it is
    // still so. The length of that word, 0 when there is none.
    template <typename Unit, typename Ends>
    [[nodiscard]] std::uint32_t ShortEnd(const Unit* key, Ends ends) const noexcept {
        Key units;
        for (std::uint32_t i = 0; i + 1 < kFirst; ++i) {
            units.Add(key[i]);
            const std::uint32_t place = first_.Find(units.First());
            if (place != 0 && ends(place)) return i + 1;
        }
        return 0;
    }

    [[nodiscard]] std::size_t Bytes() const noexcept { return first_.Bytes() + both_.Bytes(); }

private:
    PlaceTable first_;
    PlaceTable both_;
};

}  // namespace zelkor::detail::complist

#endif
