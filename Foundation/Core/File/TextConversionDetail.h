// What the text readers and writers both know of code pages.
#ifndef FOUNDATION_CORE_FILE_TEXTCONVERSIONDETAIL_H
#define FOUNDATION_CORE_FILE_TEXTCONVERSIONDETAIL_H

#include <algorithm>
#include <array>

namespace foundation::detail {

inline constexpr unsigned int kUtf8Page = 65001;

// Whether the platform's conversions accept flags for a page; those of other make are told 0.
[[nodiscard]] constexpr bool TakesConversionFlags(unsigned int page) {
    constexpr std::array kPlain = {42u,    50220u, 50221u, 50222u, 50225u,
                                   50227u, 50229u, 52936u, 54936u, 65000u};
    return !(page >= 57002 && page <= 57011) && !std::ranges::binary_search(kPlain, page);
}

}  // namespace foundation::detail

#endif
