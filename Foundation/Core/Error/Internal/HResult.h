// Descriptions of HRESULTs from the library's own table, or else the system's.
#ifndef FOUNDATION_CORE_ERROR_INTERNAL_HRESULT_H
#define FOUNDATION_CORE_ERROR_INTERNAL_HRESULT_H

#include <span>
#include <string_view>

#include "Foundation/Platform/Types.h"

namespace zelkor::detail {

// "NAME", "NAME (DTC)" or "NAME (description)" of a known value; the system's text, with its line
// break, of another; else "[No error description found.]". The view lies in `area`, which holds the
// text with its zero, cut to fit.
std::u16string_view DescribeHResult(HRESULT hresult, std::span<char16_t> area);

}  // namespace zelkor::detail

#endif
