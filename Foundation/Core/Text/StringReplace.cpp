#include <array>
#include <cstring>
#include <limits>
#include <vector>

#include "Foundation/Core/Buffer/Internal/Blocks.h"
#include "Foundation/Core/Text/StringTools.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Scan.h"
#include "Foundation/Platform/UnitSet.h"

namespace platform = zelkor::platform;

using zelkor::detail::BufferAccess;
using zelkor::detail::View;

namespace {

using WideView = std::u16string_view;
using platform::kNoHit;

constexpr std::uint32_t kNotFound = CT_StringTools::kNotFound;

// Insertion comes first: it alone may need memory.
template <typename String, typename Units>
std::uint32_t ReplaceFirst(String* string, Units find, Units replacement) {
    if (string == nullptr) return kNotFound;
    const Units text = View(*string);
    const std::size_t hit = platform::FindText(text.data(), text.size(), find.data(), find.size());
    if (hit == kNoHit) return kNotFound;
    const auto at = static_cast<std::uint32_t>(hit);
    const auto inserted = static_cast<std::uint32_t>(replacement.size());
    const auto removed = static_cast<std::uint32_t>(find.size());
    string->v_Insert(replacement.data(), inserted, at);
    string->vv_Remove(removed, at + inserted);
    return at;
}

char16_t* Copy(char16_t* out, WideView text) {
    if (text.size() == 1) {
        *out = text[0];
        return out + 1;
    }
    std::memcpy(out, text.data(), text.size() * sizeof(char16_t));
    return out + text.size();
}

// The occurrences of a text, one behind the other. Single units, which may be many, are looked up a
// few dozen at a time.
class Hits {
public:
    Hits(WideView text, WideView wanted) noexcept : text_(text), wanted_(wanted), set_(wanted) {}

    // The next one, kNoHit when there is none.
    [[nodiscard]] std::size_t Next() noexcept {
        if (wanted_.size() == 1) return NextUnit();
        const std::size_t hit = platform::FindText(text_.data() + from_, text_.size() - from_,
                                                   wanted_.data(), wanted_.size());
        if (hit == kNoHit) return kNoHit;
        const std::size_t place = from_ + hit;
        from_ = place + wanted_.size();
        return place;
    }

private:
    [[nodiscard]] std::size_t NextUnit() noexcept {
        if (taken_ == count_) {
            base_ = from_;
            count_ = set_.FindMembers(text_.substr(base_), places_.data(), places_.size());
            taken_ = 0;
            if (count_ == 0) return kNoHit;
            from_ = base_ + places_[count_ - 1] + 1;
        }
        return base_ + places_[taken_++];
    }

    WideView text_;
    WideView wanted_;
    std::size_t from_ = 0;
    platform::UnitSet set_;
    std::array<std::uint32_t, 64> places_;
    std::size_t base_ = 0;
    std::size_t count_ = 0;
    std::size_t taken_ = 0;
};

// In the string's own block, or a copy of it that is not shared. The block holds neither text, and
// the replacement is not longer than what it replaces.
void Overwrite(CT_UString& string, WideView find, WideView replacement) {
    if (Hits(View(string), find).Next() == kNoHit) return;
    char16_t* const units = string.quz_Get();
    const WideView text = View(string);
    Hits hits(text, find);
    std::size_t hit = hits.Next();
    char16_t* out = units + hit;
    while (hit != kNoHit) {
        out = Copy(out, replacement);
        const std::size_t from = hit + find.size();
        hit = hits.Next();
        const WideView kept = text.substr(from, hit - from);
        if (out != units + from) std::memmove(out, kept.data(), kept.size() * sizeof(char16_t));
        out += kept.size();
    }
    string.vv_Remove(CT_String::kToEnd, static_cast<std::uint32_t>(out - units));
}

// In a fresh block of the right size.
void Rebuild(CT_UString& string, WideView find, WideView replacement) {
    const WideView text = View(string);
    std::vector<std::uint32_t, platform::Allocator<std::uint32_t>> places;
    Hits hits(text, find);
    for (std::size_t hit; (hit = hits.Next()) != kNoHit;) {
        places.push_back(static_cast<std::uint32_t>(hit));
    }
    if (places.empty()) return;
    const std::uint64_t length = text.size() - places.size() * find.size() +
                                 std::uint64_t{places.size()} * replacement.size();
    if (length > std::numeric_limits<std::uint32_t>::max()) zelkor::detail::ReportExhausted();
    CT_UString fresh;
    fresh.vv_SetGrowth(string.vn_GetGrowth());
    fresh.vv_SetLength(static_cast<std::uint32_t>(length));
    char16_t* out = fresh.quz_Get();
    std::size_t from = 0;
    for (const std::uint32_t place : places) {
        out = Copy(out, text.substr(from, place - from));
        out = Copy(out, replacement);
        from = place + find.size();
    }
    Copy(out, text.substr(from));
    string = std::move(fresh);
}

}  // namespace

std::uint32_t CT_StringTools::sn_Replace(CT_UString* string, Text find, Text replacement) {
    return ReplaceFirst(string, find.Get(), replacement.Get());
}

std::uint32_t CT_StringTools::sn_Replace(CT_CString* string, const CT_CString* find,
                                         const CT_CString* replacement) {
    return ReplaceFirst(string, View(find), View(replacement));
}

void CT_StringTools::sv_ReplaceAll(CT_UString* string, Text find, Text replacement) {
    const WideView wanted = find.Get();
    const WideView given = replacement.Get();
    if (string == nullptr || wanted.empty()) return;
    // The block of a text that lies in the string itself is shared from here on, and stays.
    const CT_Buffer& buffer = *string->pcco_GetBuffer();
    const CT_Buffer hold_wanted = BufferAccess::HoldIfOwn(buffer, wanted.data(), true);
    const CT_Buffer hold_given = BufferAccess::HoldIfOwn(buffer, given.data(), true);
    const bool shrinks = given.size() < wanted.size();
    if (given.size() == wanted.size() || (shrinks && buffer.n_GetUseCount() == 1)) {
        Overwrite(*string, wanted, given);
    } else {
        Rebuild(*string, wanted, given);
    }
}
