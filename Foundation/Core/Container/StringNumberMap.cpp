#include "Foundation/Core/Container/StringNumberMap.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "Foundation/Platform/Scan.h"

namespace platform = zelkor::platform;

using zelkor::detail::View;

namespace {

constinit _SHI_Pool pool(sizeof(CT_StringNumberMap), 16);

constexpr std::uint32_t kNumberSize = 4;

// What is left to read of a buffer.
class Records {
public:
    explicit Records(const CT_Buffer& buffer)
        : at_(static_cast<const unsigned char*>(buffer.qcv_Get())), left_(buffer.n_GetUsedSize()) {}

    bool ReadNumber(std::uint32_t& number) {
        if (left_ < kNumberSize) return false;
        number = 0;
        for (std::uint32_t i = kNumberSize; i-- > 0;) number = number << 8 | at_[i];
        Skip(kNumberSize);
        return true;
    }
    // The units up to the zero unit; an odd byte at the end is none.
    CT_UString ReadWide() {
        const std::uint32_t most = left_ / 2;
        std::uint32_t length = 0;
        while (length < most && Unit(length) != 0) ++length;
        CT_UString text;
        text.vv_Init(length);
        for (std::uint32_t i = 0; i < length; ++i) text.v_Append(Unit(i));
        Skip(length < most ? 2 * length + 2 : left_);
        return text;
    }
    CT_UString ReadNarrow() {
        const auto* const text = reinterpret_cast<const char*>(at_);
        const std::size_t zero = platform::FindUnit(text, left_, '\0');
        const bool ended = zero != platform::kNoHit;
        const std::uint32_t length = ended ? static_cast<std::uint32_t>(zero) : left_;
        CT_UString wide(text, length, 0);
        Skip(ended ? length + 1 : left_);
        return wide;
    }

private:
    [[nodiscard]] char16_t Unit(std::uint32_t index) const {
        const auto* const bytes = at_ + 2 * std::size_t{index};
        return static_cast<char16_t>(bytes[0] | bytes[1] << 8);
    }
    void Skip(std::uint32_t count) {
        at_ += count;
        left_ -= count;
    }

    const unsigned char* at_;
    std::uint32_t left_;
};

void AppendUnit(CT_Buffer& out, std::uint32_t unit) {
    out.v_Append(static_cast<int>(unit & 0xFF));
    out.v_Append(static_cast<int>(unit >> 8));
}

}  // namespace

_SHI_Pool* CT_StringNumberMap::spso_GetMemPool() noexcept {
    return &pool;
}

CT_StringNumberMap::CT_StringNumberMap(std::uint32_t growth)
    : strings_(growth), numbers_(growth, 0) {}

CT_StringNumberMap::CT_StringNumberMap(const CT_StringNumberMap& other) = default;

void CT_StringNumberMap::v_Set(std::uint32_t growth) {
    CT_StringNumberMap fresh(growth);
    Swap(fresh);
}

void CT_StringNumberMap::v_Set(const CT_StringNumberMap* other) {
    if (other == nullptr) return v_Set(kDefaultGrowth);
    CT_StringNumberMap copy(*other);
    Swap(copy);
}

// Room among the numbers first: then the string is all that can fail.
void CT_StringNumberMap::v_Insert(Text string, std::uint32_t number) {
    numbers_.v_Insert(number);
    try {
        strings_.Append(string.Get());
    } catch (...) {
        numbers_.v_RemoveAt(numbers_.n_GetCount());
        throw;
    }
}

void CT_StringNumberMap::v_Update(Text string, std::uint32_t number) {
    v_SetAt(string, numbers_.n_Find(number));
}

void CT_StringNumberMap::v_SetAt(Text string, std::uint32_t position) {
    if (strings_.Has(position)) strings_.SetAt(string.Get(), position);
}

void CT_StringNumberMap::v_SetAt(std::uint32_t number, std::uint32_t position) {
    if (strings_.Has(position)) numbers_.v_SetAt(number, position);
}

void CT_StringNumberMap::v_Remove(std::uint32_t number) {
    v_RemoveAt(numbers_.n_Find(number));
}

// The numbers first: they may still be shared with the map that this one was copied from.
void CT_StringNumberMap::v_RemoveAt(std::uint32_t position) {
    if (!strings_.Has(position)) return;
    numbers_.v_RemoveAt(position);
    strings_.RemoveAt(position);
}

void CT_StringNumberMap::v_Append(const CT_StringNumberMap* other, std::uint32_t count) {
    if (other == nullptr) return;
    const std::uint32_t before = n_GetCount();
    const std::uint32_t added = std::min(count, other->n_GetCount());
    if (added == 0) return;
    numbers_.v_Append(&other->numbers_, 1, added);
    try {
        strings_.Append(other->strings_, added);
    } catch (...) {
        numbers_.v_Remove(before + 1, before + added);
        throw;
    }
}

void CT_StringNumberMap::v_Map2Buffer(CT_Buffer* out) const {
    if (out == nullptr) return;
    CT_Buffer records(0u, out->n_GetGrowth());
    for (std::uint32_t i = 1; i <= n_GetCount(); ++i) {
        AppendUnit(records, n_GetAt(i) & 0xFFFF);
        AppendUnit(records, n_GetAt(i) >> 16);
        for (const char16_t* unit = qcuz_GetAt(i); *unit != 0; ++unit) AppendUnit(records, *unit);
        AppendUnit(records, 0);
    }
    *out = std::move(records);
}

void CT_StringNumberMap::v_Buffer2Map(const CT_Buffer* in, BOOL unicode) {
    CT_StringNumberMap fresh;
    Records records(in == nullptr ? CT_Buffer() : *in);
    for (std::uint32_t number = 0; records.ReadNumber(number);) {
        const CT_UString text = unicode != FALSE ? records.ReadWide() : records.ReadNarrow();
        fresh.v_Insert(text, number);
    }
    Swap(fresh);
}

void CT_StringNumberMap::Swap(CT_StringNumberMap& other) noexcept {
    strings_.Swap(other.strings_);
    std::swap(numbers_, other.numbers_);
}
