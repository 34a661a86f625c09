// CT_UStringForwardIterator: walks the tokens of a text, the runs of characters between separators.
//
//     CT_UStringForwardIterator words(text, u" \t");
//     while (words.b_MoveNext()) Use(words.rcco_Current());
//
// The text is shared, so later changes to it do not show. Running out of memory throws
// CT_SmartHeapException and leaves the iterator where it was. One iterator, one thread.
#ifndef FOUNDATION_CORE_STRING_USTRINGFORWARDITERATOR_H
#define FOUNDATION_CORE_STRING_USTRINGFORWARDITERATOR_H

#include <cstdint>

#include "Foundation/Core/String/TextArgument.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/UnitSet.h"

class ZELKOR_API CT_UStringForwardIterator {
public:
    // Without separators the whole text is the one token, unless it is empty.
    CT_UStringForwardIterator(const CT_UString& text, zelkor::detail::TextArgument separators);

    // Steps to the next token; FALSE, with an empty current token where separators were all that
    // was left, when there is none.
    BOOL b_MoveNext();
    // The token of the last step; empty before the first one.
    [[nodiscard]] const CT_UString& rcco_Current() const noexcept { return current_; }

private:
    CT_UString separators_;
    CT_UString text_;
    CT_UString current_;
    std::uint32_t position_ = 0;
    std::uint32_t length_ = 0;
    zelkor::platform::UnitSet set_;  // of the separators, whose block copies share
};

#endif
