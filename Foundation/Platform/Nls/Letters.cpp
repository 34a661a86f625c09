// Which units are letters.
#include <algorithm>
#include <iterator>

#include "Foundation/Platform/Nls/Locales.h"
#include "Foundation/Platform/Nls/Tables/Letters.h"

namespace platform {

bool IsCharAlpha(char16_t unit) noexcept {
    if (unit < 0x80) return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z';
    const auto after =
        std::ranges::upper_bound(nls::kLetters, unit, std::ranges::less{}, &nls::LetterRun::first);
    return after != std::begin(nls::kLetters) && unit <= std::prev(after)->last;
}

}  // namespace platform
