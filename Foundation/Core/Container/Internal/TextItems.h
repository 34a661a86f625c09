// TextItems: the items of a text between separator characters, one after the other, in one pass.
// For the library's containers.
#ifndef FOUNDATION_CORE_CONTAINER_INTERNAL_TEXTITEMS_H
#define FOUNDATION_CORE_CONTAINER_INTERNAL_TEXTITEMS_H

#include <algorithm>
#include <string_view>

#include "Foundation/Platform/Scan.h"

namespace zelkor::detail {

class TextItems {
public:
    TextItems(std::u16string_view text, char16_t separator) noexcept
        : rest_(text), separator_(separator) {}

    // False when there is no more item. There is one more than separators.
    bool Next(std::u16string_view& item) noexcept {
        if (done_) return false;
        const std::size_t end = platform::FindUnit(rest_.data(), rest_.size(), separator_);
        done_ = end == platform::kNoHit;
        item = rest_.substr(0, end);
        if (!done_) rest_.remove_prefix(end + 1);
        return true;
    }

private:
    std::u16string_view rest_;
    char16_t separator_;
    bool done_ = false;
};

}  // namespace zelkor::detail

#endif
