// PlatformName: the text of a name as the platform sees it. The one place that tells the platform
// families apart where names are concerned.
//
// The NT family sees the name as it is. The older one sees 8-bit text: a name goes through code
// page 0 and back, so that characters which that page lacks turn into its substitutes.
#ifndef FOUNDATION_CORE_STRING_INTERNAL_PLATFORMNAME_H
#define FOUNDATION_CORE_STRING_INTERNAL_PLATFORMNAME_H

#include <string_view>

#include "Foundation/Core/String/UString.h"

namespace zelkor::detail {

// Whether the platform belongs to the family that takes 8-bit text.
[[nodiscard]] bool IsOlderFamily();

// What is left of a text that passes to or from the platform. Leaves no error behind: text that
// cannot be converted at all becomes empty.
void PassPlatform(CT_UString* text);

class PlatformName {
public:
    // A null name is empty. The name must stay as it is as long as this object is used.
    explicit PlatformName(const CT_UString* name);
    PlatformName(const PlatformName&) = delete;
    PlatformName& operator=(const PlatformName&) = delete;

    [[nodiscard]] const char16_t* Get() const { return text_; }

private:
    CT_UString passed_;
    const char16_t* text_;
};

}  // namespace zelkor::detail

#endif
