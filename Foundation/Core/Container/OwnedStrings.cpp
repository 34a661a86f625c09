#include "Foundation/Core/Container/OwnedStrings.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "Foundation/Core/String/Internal/StringCore.h"

namespace zelkor::detail {

namespace {

std::unique_ptr<CT_UString> MakeString(std::u16string_view text) {
    return std::make_unique<CT_UString>(text.data(), static_cast<std::uint32_t>(text.size()));
}

}  // namespace

OwnedStrings::OwnedStrings(const OwnedStrings& other) : OwnedStrings(other.strings_.n_GetGrowth()) {
    Append(other, other.Count());
}

std::uint32_t OwnedStrings::Search(std::u16string_view wanted) const noexcept {
    using Core = StringCore<char16_t>;
    std::uint32_t position = 0;
    for (const CT_UString* string : strings_) {
        ++position;
        if (Core::Compare(View(*string), wanted, CT_String::kToEnd) == 0) return position;
    }
    return 0;
}

void OwnedStrings::Append(const OwnedStrings& other, std::uint32_t count) {
    const std::uint32_t before = Count();
    const std::uint32_t added = std::min(count, other.Count());
    const std::uint64_t wanted = std::uint64_t{before} + added;
    if (wanted > strings_.n_GetMaxItems()) strings_.v_SetSize(static_cast<std::uint32_t>(wanted));
    try {
        for (std::uint32_t i = 1; i <= added; ++i) {
            strings_.v_Insert(new CT_UString(*other.At(i)));
        }
    } catch (...) {
        Truncate(before);
        throw;
    }
}

void OwnedStrings::Append(std::u16string_view text) {
    auto string = MakeString(text);
    strings_.v_Insert(string.get());
    static_cast<void>(string.release());
}

void OwnedStrings::Insert(std::u16string_view text, std::uint32_t position) {
    auto string = MakeString(text);
    strings_.v_InsertAt(string.get(), position);
    static_cast<void>(string.release());
}

void OwnedStrings::SetAt(std::u16string_view text, std::uint32_t position) {
    strings_.o_GetAt(position)->v_Set(text.data(), static_cast<std::uint32_t>(text.size()));
}

void OwnedStrings::RemoveAt(std::uint32_t position) noexcept {
    const std::unique_ptr<CT_UString> removed(strings_.o_GetAt(position));
    strings_.v_RemoveAt(position);
}

void OwnedStrings::Truncate(std::uint32_t count) noexcept {
    const std::uint32_t before = Count();
    for (std::uint32_t i = count; i < before; ++i) delete strings_.begin()[i];
    strings_.v_Remove(count + 1, before);
}

void OwnedStrings::Swap(OwnedStrings& other) noexcept {
    std::swap(strings_, other.strings_);
}

}  // namespace zelkor::detail
