#include "Foundation/Core/String/UStringForwardIterator.h"

using zelkor::detail::TextArgument;
using zelkor::detail::View;

CT_UStringForwardIterator::CT_UStringForwardIterator(const CT_UString& text,
                                                     TextArgument separators)
    : separators_(separators.Get().data(), static_cast<std::uint32_t>(separators.Get().size())),
      text_(text),
      length_(text_.n_GetLength()),
      set_(View(separators_)) {}

BOOL CT_UStringForwardIterator::b_MoveNext() {
    if (position_ >= length_) return FALSE;
    const std::u16string_view rest = View(text_).substr(position_);
    const std::size_t begin = set_.FirstOther(rest);
    const std::size_t length = set_.FirstMember(rest.substr(begin));
    // Unlike an assignment this keeps the block, which soon fits every token.
    current_.v_Replace(rest.data() + begin, static_cast<std::uint32_t>(length), 0);
    position_ += static_cast<std::uint32_t>(begin + length);
    return length != 0;
}
