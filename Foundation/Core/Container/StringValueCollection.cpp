#include "Foundation/Core/Container/StringValueCollection.h"

#include <utility>

using zelkor::detail::View;

namespace {

// A text up to its first zero character, as zero-terminated text would give it.
std::u16string_view Cut(std::u16string_view text) {
    return text.substr(0, text.find(u'\0'));
}

using Element = CT_StringValueCollection::st_Element;

void Assign(Element& element, std::u16string_view value) {
    element.string_value.v_Set(value.data(), static_cast<std::uint32_t>(value.size()));
    element.type = CT_StringValueCollection::kString;
}
void Assign(Element& element, int value) {
    element.integer_value = value;
    element.type = CT_StringValueCollection::kInteger;
}
void Assign(Element& element, double value) {
    element.double_value = value;
    element.type = CT_StringValueCollection::kDouble;
}

BOOL Give(const Element* element, CT_UString& out) {
    if (element == nullptr) {
        out.vv_Init();
    } else {
        out = element->string_value;
    }
    return element != nullptr;
}
BOOL Give(const Element* element, int& out) {
    out = element == nullptr ? 0 : element->integer_value;
    return element != nullptr;
}
BOOL Give(const Element* element, double& out) {
    out = element == nullptr ? 0 : element->double_value;
    return element != nullptr;
}

}  // namespace

CT_StringValueCollection::CT_StringValueCollection(const CT_StringValueCollection& other)
    : CT_StringValueCollection() {
    for (const st_Element* element : other.elements_) {
        Append(std::make_unique<st_Element>(*element));
    }
}

void CT_StringValueCollection::v_Clear() noexcept {
    for (const st_Element* element : elements_) delete element;
    elements_ = Elements();
}

void CT_StringValueCollection::v_Set(const CT_StringValueCollection* other) {
    if (other == nullptr) return v_Clear();
    CT_StringValueCollection copy(*other);
    std::swap(elements_, copy.elements_);
}

BOOL CT_StringValueCollection::b_Add(Text key, Text value, BOOL overwrite) {
    return Put(key.Get(), Cut(value.Get()), true, overwrite != FALSE);
}

BOOL CT_StringValueCollection::b_Add(Text key, int value, BOOL overwrite) {
    return Put(key.Get(), value, true, overwrite != FALSE);
}

BOOL CT_StringValueCollection::b_Add(Text key, double value, BOOL overwrite) {
    return Put(key.Get(), value, true, overwrite != FALSE);
}

BOOL CT_StringValueCollection::b_SetValue(Text key, Text value) {
    return Put(key.Get(), Cut(value.Get()), false, true);
}

BOOL CT_StringValueCollection::b_SetValue(Text key, int value) {
    return Put(key.Get(), value, false, true);
}

BOOL CT_StringValueCollection::b_SetValue(Text key, double value) {
    return Put(key.Get(), value, false, true);
}

BOOL CT_StringValueCollection::b_GetValue(Text key, CT_UString& out) const {
    return Give(Find(key, kString), out);
}

BOOL CT_StringValueCollection::b_GetValue(Text key, int& out) const noexcept {
    return Give(Find(key, kInteger), out);
}

BOOL CT_StringValueCollection::b_GetValue(Text key, double& out) const noexcept {
    return Give(Find(key, kDouble), out);
}

BOOL CT_StringValueCollection::b_GetValueAt(std::uint32_t position, CT_UString& out) const {
    return Give(At(position, kString), out);
}

BOOL CT_StringValueCollection::b_GetValueAt(std::uint32_t position, int& out) const noexcept {
    return Give(At(position, kInteger), out);
}

BOOL CT_StringValueCollection::b_GetValueAt(std::uint32_t position, double& out) const noexcept {
    return Give(At(position, kDouble), out);
}

auto CT_StringValueCollection::eo_GetTypeAt(std::uint32_t position) const noexcept -> et_Type {
    const st_Element* const element = At(position);
    return element == nullptr ? kNone : element->type;
}

void CT_StringValueCollection::v_GetKeyAt(std::uint32_t position, CT_UString& out) const {
    const st_Element* const element = At(position);
    if (element == nullptr) return out.vv_Init();
    out = element->key;
}

BOOL CT_StringValueCollection::b_KeyExists(Text key) const noexcept {
    return Find(key.Get()) != nullptr;
}

BOOL CT_StringValueCollection::b_Remove(Text key) {
    const std::unique_ptr<st_Element> element(Find(key.Get()));
    if (element == nullptr) return FALSE;
    elements_.v_RemoveAt(elements_.n_Find(element.get()));
    return TRUE;
}

void CT_StringValueCollection::v_Merge(const CT_StringValueCollection* other, BOOL overwrite) {
    if (other == nullptr) return;
    CT_StringValueCollection merged(*this);
    for (const st_Element* element : other->elements_) {
        st_Element* const present = merged.Find(View(element->key));
        if (present == nullptr) {
            merged.Append(std::make_unique<st_Element>(*element));
        } else if (overwrite != FALSE) {
            *present = *element;
        }
    }
    std::swap(elements_, merged.elements_);
}

auto CT_StringValueCollection::Find(std::u16string_view key) const noexcept -> st_Element* {
    const std::u16string_view wanted = Cut(key);
    for (std::uint32_t i = n_GetCount(); i > 0; --i) {
        st_Element* const element = elements_.o_GetAt(i);
        if (View(element->key) == wanted) return element;
    }
    return nullptr;
}

auto CT_StringValueCollection::Find(Text key, et_Type type) const noexcept -> const st_Element* {
    const st_Element* const element = Find(key.Get());
    return element != nullptr && element->type == type ? element : nullptr;
}

auto CT_StringValueCollection::At(std::uint32_t position) const noexcept -> const st_Element* {
    return position - 1 < n_GetCount() ? elements_.o_GetAt(position) : nullptr;
}

auto CT_StringValueCollection::At(std::uint32_t position, et_Type type) const noexcept
    -> const st_Element* {
    const st_Element* const element = At(position);
    return element != nullptr && element->type == type ? element : nullptr;
}

void CT_StringValueCollection::Append(std::unique_ptr<st_Element> element) {
    elements_.v_Insert(element.get());
    static_cast<void>(element.release());
}

template <typename Value>
BOOL CT_StringValueCollection::Put(std::u16string_view key, Value value, bool add, bool overwrite) {
    const std::u16string_view own_key = Cut(key);
    if (st_Element* const present = Find(own_key); present != nullptr) {
        if (overwrite) Assign(*present, value);
        return overwrite;
    }
    if (!add || own_key.empty()) return FALSE;
    auto element = std::make_unique<st_Element>();
    element->key.v_Set(own_key.data(), static_cast<std::uint32_t>(own_key.size()));
    Assign(*element, value);
    Append(std::move(element));
    return TRUE;
}
