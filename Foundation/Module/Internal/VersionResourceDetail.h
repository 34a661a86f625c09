// The library's own version resource.
#ifndef FOUNDATION_MODULE_INTERNAL_VERSIONRESOURCEDETAIL_H
#define FOUNDATION_MODULE_INTERNAL_VERSIONRESOURCEDETAIL_H

#include "Foundation/Platform/Modules.h"

namespace zelkor::detail {

inline constexpr platform::VersionText kVersionTexts[] = {
    {u"FileDescription", u"Zelkor Foundation class library"},
    {u"FileVersion", u"7.0.0.615"},
    {u"InternalName", u"zelkor-foundation"},
    {u"OriginalFilename", u"libzelkor-foundation.so"},
    {u"ProductName", u"Zelkor Foundation"},
    {u"ProductVersion", u"7.0.0.615"},
};
inline constexpr platform::VersionResource kVersionResource{.fixed = {.dwSignature = 0xFEEF04BD,
                                                                      .dwStrucVersion = 0x00010000,
                                                                      .dwFileVersionMS = 7 << 16,
                                                                      .dwFileVersionLS = 615,
                                                                      .dwProductVersionMS = 7 << 16,
                                                                      .dwProductVersionLS = 615,
                                                                      .dwFileFlagsMask = 0x3F,
                                                                      .dwFileFlags = 0,
                                                                      .dwFileOS = 0,
                                                                      .dwFileType = 2,
                                                                      .dwFileSubtype = 0,
                                                                      .dwFileDateMS = 0,
                                                                      .dwFileDateLS = 0},
                                                            .texts = kVersionTexts};

}  // namespace zelkor::detail

#endif
