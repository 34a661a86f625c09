// CT_UStringWrapper: CT_UString as a value for ordered containers, by character code.
#ifndef FOUNDATION_CORE_STRING_USTRINGWRAPPER_H
#define FOUNDATION_CORE_STRING_USTRINGWRAPPER_H

#include "Foundation/Core/String/UString.h"

class ZELKOR_API CT_UStringWrapper : public CT_UString {
public:
    CT_UStringWrapper() noexcept = default;
    explicit CT_UStringWrapper(const CT_UString* text) : CT_UString(text) {}

    [[nodiscard]] bool operator==(const CT_UStringWrapper& other) const {
        return vi_Compare(&other, 0, kToEnd, 0) == 0;
    }
    [[nodiscard]] bool operator<(const CT_UStringWrapper& other) const {
        return vi_Compare(&other, 0, kToEnd, 0) < 0;
    }
    [[nodiscard]] const CT_UString* pcco_GetValue() const noexcept { return this; }
};

#endif
