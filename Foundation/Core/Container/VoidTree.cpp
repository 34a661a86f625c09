#include "Foundation/Core/Container/VoidTree.h"

#include <algorithm>
#include <atomic>
#include <cstring>

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Core/TestOut/TestOut.h"

using zelkor::detail::CharTree;

namespace {

constinit std::atomic<CT_VoidTree::DebugPrint> debug_print{&CT_VoidTree::sv_DebugPrintDefault};

CT_TestOut& SharedOut() {
    static CT_TestOut out;
    return out;
}

const char16_t* Text(const CT_UString* key) noexcept {
    return key == nullptr ? u"" : key->qcuz_Get();
}

// An unused item holds a number.
std::size_t Stride(std::uint32_t item_size) noexcept {
    return std::max(std::size_t{item_size}, sizeof(std::uint32_t));
}

}  // namespace

CT_VoidTree::CT_VoidTree(unsigned int itemSize) noexcept : item_size_(itemSize) {
    v_SetDebugPrint(nullptr);
}

void CT_VoidTree::v_Set() noexcept {
    tree_.Clear();
    items_.Release();
    unused_ = CharTree::kNone;
    v_SetDebugPrint(nullptr);
}

std::byte* CT_VoidTree::Item(std::uint32_t number) noexcept {
    return &items_[number * Stride(item_size_)];
}

const std::byte* CT_VoidTree::Item(std::uint32_t number) const noexcept {
    return &items_[number * Stride(item_size_)];
}

void CT_VoidTree::v_Add(const char16_t* key, const void* item) {
    if (item == nullptr && item_size_ != 0) return;
    const std::size_t stride = Stride(item_size_);
    if (unused_ == CharTree::kNone) items_.Reserve(stride);
    std::uint32_t& number = tree_.Insert(key);
    if (number == CharTree::kNone) {
        if (unused_ == CharTree::kNone) {
            number = static_cast<std::uint32_t>(items_.Extend(stride) / stride);
        } else {
            number = unused_;
            std::memcpy(&unused_, Item(number), sizeof unused_);
        }
    }
    if (item_size_ != 0) std::memcpy(Item(number), item, item_size_);
}

void CT_VoidTree::v_Add(const CT_UString* key, const void* item) {
    v_Add(Text(key), item);
}

BOOL CT_VoidTree::b_Search(const char16_t* key, void* out) const {
    const std::uint32_t number = tree_.Find(key);
    if (number == CharTree::kNone) return FALSE;
    if (out != nullptr) std::memcpy(out, Item(number), item_size_);
    return TRUE;
}

BOOL CT_VoidTree::b_Search(const CT_UString* key, void* out) const {
    return b_Search(Text(key), out);
}

BOOL CT_VoidTree::b_Remove(const char16_t* key) noexcept {
    const std::uint32_t number = tree_.Remove(key);
    if (number == CharTree::kNone) return FALSE;
    if (tree_.Entries() == 0) {
        items_.Release();
        unused_ = CharTree::kNone;
    } else {
        std::memcpy(Item(number), &unused_, sizeof unused_);
        unused_ = number;
    }
    return TRUE;
}

BOOL CT_VoidTree::b_Remove(const CT_UString* key) noexcept {
    return b_Remove(Text(key));
}

void CT_VoidTree::v_DebugPrint(et_ElementSize) const {
    const DebugPrint print = debug_print.load(std::memory_order_relaxed);
    tree_.ForEach([&](char16_t* key, std::uint32_t number) {
        print(key, const_cast<std::byte*>(Item(number)));
    });
}

void CT_VoidTree::v_SetDebugPrint(DebugPrint routine) noexcept {
    debug_print.store(routine == nullptr ? &sv_DebugPrintDefault : routine,
                      std::memory_order_relaxed);
}

void CT_VoidTree::v_SetDebugPrint(const char16_t* file, const char16_t* label,
                                  unsigned int outputType) {
    SharedOut().v_Set(file, label, outputType);
}

void CT_VoidTree::sv_DebugPrintDefault(void* key, void* item) {
    SharedOut().v_Out(u"%s: %p\n", static_cast<const char16_t*>(key), item);
}
