#include "Foundation/Core/Text/StringScanner.h"

#include "Foundation/Platform/UnitSet.h"

namespace platform = zelkor::platform;

namespace {

using View = std::u16string_view;
using platform::UnitSet;

constexpr std::size_t kNoHit = platform::kNoHit;

// A part of a text; begins behind its end when there is no such part.
struct Part {
    std::size_t begin = kNoHit;
    std::size_t length = 0;

    [[nodiscard]] bool Exists() const { return begin != kNoHit; }
};

Part Word(View text, View separators, std::uint32_t n) {
    if (n == 0) return {};
    const UnitSet set(separators);
    const std::size_t begin = set.FindRun(text, n - 1);
    if (begin == kNoHit) return {};
    return {begin, set.FirstMember(text.substr(begin))};
}

Part Item(View text, char16_t separator, std::uint32_t n) {
    if (n == 0) return {};
    const UnitSet set(View(&separator, 1));
    std::size_t begin = 0;
    if (n > 1) {
        const std::size_t before = set.FindMember(text, n - 2);
        if (before == kNoHit) return {};
        begin = before + 1;
    }
    return {begin, set.FirstMember(text.substr(begin))};
}

void Take(CT_UString* out, View text, Part part) {
    if (out == nullptr) return;
    if (!part.Exists()) return out->vv_Init();
    out->v_Set(text.data() + part.begin, static_cast<std::uint32_t>(part.length));
}

void Remove(CT_UString* text, Part part) {
    if (!part.Exists()) return;
    text->vv_Remove(static_cast<std::uint32_t>(part.length),
                    static_cast<std::uint32_t>(part.begin));
}

}  // namespace

std::uint32_t CT_StringScanner::n_WordCountU(View text, View separators) {
    return static_cast<std::uint32_t>(UnitSet(separators).CountRuns(text));
}

void CT_StringScanner::v_SubWordU(CT_UString* out, View text, View separators, std::uint32_t n) {
    Take(out, text, Word(text, separators, n));
}

void CT_StringScanner::v_RemoveWordU(CT_UString* text, View separators, std::uint32_t n) {
    if (text == nullptr) return;
    Remove(text, Word(zelkor::detail::View(*text), separators, n));
}

std::uint32_t CT_StringScanner::n_ItemCountU(View text, char16_t separator) {
    return static_cast<std::uint32_t>(UnitSet(View(&separator, 1)).CountMembers(text)) + 1;
}

void CT_StringScanner::v_ItemU(CT_UString* out, View text, char16_t separator, std::uint32_t n) {
    Take(out, text, Item(text, separator, n));
}

void CT_StringScanner::v_RemoveItemU(CT_UString* text, char16_t separator, std::uint32_t n) {
    if (text == nullptr) return;
    Remove(text, Item(zelkor::detail::View(*text), separator, n));
}
