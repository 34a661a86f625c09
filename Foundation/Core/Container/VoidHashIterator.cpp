#include "Foundation/Core/Container/Internal/ContainerDetail.h"
#include "Foundation/Core/Container/VoidHashTable.h"

using namespace zelkor::detail;

BOOL CT_VoidHashIterator::b_Next() noexcept {
    if (table_ == nullptr || (at_home_ == FALSE && item_ == nullptr)) return FALSE;
    at_home_ = FALSE;
    previous_ = item_;
    if (item_ != nullptr) item_ = item_->following;
    if (item_ == nullptr) GoToSlotAfter();
    return item_ == nullptr ? FALSE : TRUE;
}

void CT_VoidHashIterator::v_Get(void* out) const noexcept {
    if (out == nullptr || table_ == nullptr) return;
    if (item_ == nullptr) return ClearItem(out, table_->n_GetDataSize());
    CopyItem(out, item_->pcv_GetData(), table_->n_GetDataSize());
}

void CT_VoidHashIterator::v_GetKey(void* out) const noexcept {
    if (out == nullptr || table_ == nullptr) return;
    if (item_ == nullptr) return ClearItem(out, table_->n_GetKeySize());
    CopyItem(out, item_->pcv_GetKey(), table_->n_GetKeySize());
}

void CT_VoidHashIterator::v_Remove(void* out) noexcept {
    v_Get(out);
    RemoveCurrent();
}

void CT_VoidHashIterator::v_RemoveKey(void* out) noexcept {
    v_GetKey(out);
    RemoveCurrent();
}

BOOL CT_VoidHashIterator::b_IsEqual(const CT_VoidHashIterator* other) const noexcept {
    return other != nullptr && table_ == other->table_ && item_ == other->item_ &&
                   slot_ == other->slot_ && at_home_ == other->at_home_
               ? TRUE
               : FALSE;
}

void CT_VoidHashIterator::GoToSlotAfter() noexcept {
    previous_ = nullptr;
    const CT_VoidHashTable::Slots& slots = table_->slots_;
    while (item_ == nullptr && slot_ < slots.Size()) {
        slots.PrefetchFrom(slot_);
        item_ = slots[slot_++];
    }
}

void CT_VoidHashIterator::RemoveCurrent() noexcept {
    if (item_ == nullptr) return;
    const CT_VoidHashTable::st_HashItem* const item = item_;
    const CT_VoidHashTable::st_HashItem* const previous = previous_;
    const std::uint32_t slot = slot_;
    item_ = item->following;
    if (item_ == nullptr) GoToSlotAfter();
    const_cast<CT_VoidHashTable*>(table_)->RemoveBehind(previous, slot, item);
}
