#include "Foundation/Core/String/UStringForwardIterator.h"

#include "Foundation/Platform/UnitSet.h"

using foundation::detail::TextArgument;
using foundation::detail::View;

CT_UStringForwardIterator::CT_UStringForwardIterator(const CT_UString& text,
                                                     TextArgument separators)
    : separators_(separators.Get().data(), static_cast<std::uint32_t>(separators.Get().size())),
      text_(text),
      length_(text_.n_GetLength()) {}

BOOL CT_UStringForwardIterator::b_MoveNext() {
    if (position_ >= length_) return FALSE;
    const std::u16string_view rest = View(text_).substr(position_);
    const platform::UnitSet set(View(separators_));
    const std::size_t begin = set.FirstOther(rest);
    const std::size_t length = set.FirstMember(rest.substr(begin));
    current_.v_Set(rest.data() + begin, static_cast<std::uint32_t>(length));
    position_ += static_cast<std::uint32_t>(begin + length);
    return length != 0;
}
