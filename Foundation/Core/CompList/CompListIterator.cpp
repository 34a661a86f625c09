#include "Foundation/Core/CompList/CompListIterator.h"

#include "Foundation/Core/CompList/CompList.h"
#include "Foundation/Core/CompList/Internal/CompListImage.h"

using namespace zelkor::detail::complist;

CT_CompListIterator::CT_CompListIterator(const CT_CompList* list)
    : list_(nullptr), stack_(sizeof(Branch)) {
    Start(list);
}

CT_CompListIterator::~CT_CompListIterator() = default;

void CT_CompListIterator::vv_Set(const CT_CompList* list) {
    CutCollected(0);
    Start(list);
}

void CT_CompListIterator::Start(const CT_CompList* list) {
    list_ = list;
    position_ = list == nullptr ? 0 : list->first_;
    stack_.v_Set(kStackGrowth, 0, TRUE);
    branch_ended_ = false;
    elements_left_ = 0;
    if (list == nullptr) return;
    const View image = list->Image();
    if (image.limit > kFirstElement) {
        elements_left_ =
            (static_cast<std::uint32_t>(image.limit) - kFirstElement) / image.widths.element;
    }
}

BOOL CT_CompListIterator::b_GetNext(CT_String* word, unsigned int* handle) {
    if (list_ == nullptr) return FALSE;
    const View image = list_->Image();
    const auto end = static_cast<std::uint32_t>(image.limit);
    const Widths& widths = image.widths;
    if (position_ < end) MakeOwn(word);
    if (branch_ended_) Backtrack(widths.Jump());
    while (position_ < end && elements_left_ != 0) {
        --elements_left_;
        const std::uint32_t element = image.Element(position_);
        if (element == kEndOfStream) break;
        if (element == kAlternative) {
            const std::size_t target = image.Target(position_);
            if (target == 0 || !LeaveAlternative(static_cast<std::uint32_t>(target))) break;
        } else if (element == kGoesOn || element == kWordEnds) {
            if (!image.HasHandle(position_)) break;
            if (word != nullptr) word->v_Set(vpcco_GetCollectedString());
            if (handle != nullptr) *handle = image.Handle(position_);
            position_ += widths.Mark();
            branch_ended_ = element == kWordEnds && stack_.n_GetCount() != 0;
            if (element == kWordEnds && !branch_ended_) position_ = end;
            return TRUE;
        } else {
            vv_AppendCharacter(element);
            position_ += widths.element;
        }
    }
    elements_left_ = 0;
    return FALSE;
}

// From the marker behind an alternative's first character to the next alternative. False when there
// is no such character.
bool CT_CompListIterator::LeaveAlternative(std::uint32_t target) {
    const std::uint32_t length = vpcco_GetCollectedString()->vn_GetLength();
    if (length == 0) return false;
    const std::uint32_t character = vn_PopCharacter();
    const Branch branch{position_, length - 1, character};
    stack_.v_Insert(&branch);
    position_ = target;
    return true;
}

// Goes into the alternative that was left last.
void CT_CompListIterator::Backtrack(std::uint32_t jump) {
    const std::uint32_t count = stack_.n_GetCount();
    Branch branch;
    stack_.v_GetAt(&branch, static_cast<int>(count));
    stack_.v_RemoveAt(count);
    CutCollected(branch.length);
    vv_AppendCharacter(branch.character);
    position_ = branch.position + jump;
    branch_ended_ = false;
}

// Ends the sharing with the caller's string, so that the next character copies nothing.
void CT_CompListIterator::MakeOwn(CT_String* word) const {
    if (word == nullptr) return;
    const void* const shared = vpcco_GetCollectedString()->pcco_GetBuffer()->qcv_Get();
    if (shared != nullptr && word->pcco_GetBuffer()->qcv_Get() == shared) word->vv_Init();
}

void CT_CompListIterator::CutCollected(std::uint32_t length) {
    const CT_String* const collected = vpcco_GetCollectedString();
    for (std::uint32_t left = collected->vn_GetLength(); left > length; --left) vn_PopCharacter();
}

CT_CCompListIterator::CT_CCompListIterator(const CT_CompList* list) : CT_CompListIterator(list) {
    if (list != nullptr) collected_.v_SetCodePage(list->n_GetCodePage());
}

void CT_CCompListIterator::vv_Set(const CT_CompList* list) {
    CT_CompListIterator::vv_Set(list);
    if (list != nullptr) collected_.v_SetCodePage(list->n_GetCodePage());
}

const CT_String* CT_CCompListIterator::vpcco_GetCollectedString() const {
    return &collected_;
}

unsigned int CT_CCompListIterator::vn_PopCharacter() {
    const std::uint32_t last = collected_.n_GetLength() - 1;
    const unsigned int character = static_cast<unsigned char>(collected_.c_GetAt(last));
    collected_.v_SetAt('\0', last);
    return character;
}

void CT_CCompListIterator::vv_AppendCharacter(unsigned int character) {
    collected_.v_Append(static_cast<char>(character));
}

const CT_String* CT_UCompListIterator::vpcco_GetCollectedString() const {
    return &collected_;
}

unsigned int CT_UCompListIterator::vn_PopCharacter() {
    const std::uint32_t last = collected_.n_GetLength() - 1;
    const unsigned int character = collected_.u_GetAt(last);
    collected_.v_SetAt(u'\0', last);
    return character;
}

void CT_UCompListIterator::vv_AppendCharacter(unsigned int character) {
    collected_.v_Append(static_cast<char16_t>(character));
}
