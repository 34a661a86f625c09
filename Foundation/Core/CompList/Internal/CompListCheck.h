// Whether an element stream is one that insertion can have written.
#ifndef FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTCHECK_H
#define FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTCHECK_H

#include <cstdint>
#include <optional>

#include "Foundation/Core/CompList/Internal/CompListImage.h"

namespace zelkor::detail::complist {

// The number of words in the stream between kFirstElement and the view's limit, nothing when it or
// the jump table is damaged: see CT_CompList::b_IsSound. Reads the image twice from end to end and
// follows each alternative marker twice; needs a bit for each byte of it. May throw for lack of
// memory.
[[nodiscard]] std::optional<std::uint32_t> CountSoundWords(const View& image);

}  // namespace zelkor::detail::complist

#endif
