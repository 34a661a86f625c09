// Which units are letters.
#include "Foundation/Platform/Text/Internal/Tables/Letters.h"
#include "Foundation/Platform/Locales/Locales.h"

namespace zelkor::platform {

bool IsCharAlpha(char16_t unit) noexcept {
    const auto& bits = nls::kLetterBits[nls::kLetterBlocks[unit >> 8]];
    return (bits[unit >> 6 & 3] >> (unit & 63) & 1) != 0;
}

}  // namespace zelkor::platform
