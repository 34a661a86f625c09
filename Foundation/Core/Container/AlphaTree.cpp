#include "Foundation/Core/Container/AlphaTree.h"

#include "Foundation/Core/String/UString.h"

using zelkor::detail::CharTree;

namespace {

const char16_t* Text(const CT_UString* key) noexcept {
    return key == nullptr ? u"" : key->qcuz_Get();
}

}  // namespace

void CT_AlphaTree::v_Set() noexcept {
    tree_.Clear();
}

void CT_AlphaTree::v_Add(const char16_t* key, std::uint32_t value) {
    if (value == kNotFound) {
        b_Remove(key);
    } else {
        tree_.Insert(key) = value;
    }
}

void CT_AlphaTree::v_Add(const CT_UString* key, std::uint32_t value) {
    v_Add(Text(key), value);
}

std::uint32_t CT_AlphaTree::n_Search(const char16_t* key) const noexcept {
    return tree_.Find(key);
}

std::uint32_t CT_AlphaTree::n_Search(const CT_UString* key) const noexcept {
    return tree_.Find(Text(key));
}

BOOL CT_AlphaTree::b_Remove(const char16_t* key) noexcept {
    return tree_.Remove(key) != CharTree::kNone ? TRUE : FALSE;
}

BOOL CT_AlphaTree::b_Remove(const CT_UString* key) noexcept {
    return b_Remove(Text(key));
}

void CT_AlphaTree::v_DebugPrint(et_ElementSize) {
    tree_.ForEach(
        [this](const char16_t* key, std::uint32_t value) { out_.v_Out(u"%s : %d\n", key, value); });
}

void CT_AlphaTree::v_SetDebugPrint(const char16_t* file, const char16_t* label,
                                   unsigned int outputType) {
    out_.v_Set(file, label, outputType);
}
