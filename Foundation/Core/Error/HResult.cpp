#include "Foundation/Core/Error/Internal/HResult.h"

#include <algorithm>
#include <string_view>

#include "Foundation/Core/Error/Internal/Tables/HResultTable.h"
#include "Foundation/Platform/LastError.h"

namespace platform = zelkor::platform;

namespace zelkor::detail {

static_assert(std::ranges::adjacent_find(kHResults, std::ranges::greater_equal(),
                                         &HResultRow::value) == std::end(kHResults),
              "the rows ascend");

namespace {

// The ASCII text of a known value; empty for others.
std::string_view KnownText(std::uint32_t value) {
    const auto row = std::ranges::lower_bound(kHResults, value, {}, &HResultRow::value);
    if (row == std::end(kHResults) || row->value != value) return {};
    return kHResultTexts + row->text;
}

}  // namespace

std::u16string_view DescribeHResult(HRESULT hresult, std::span<char16_t> area) {
    const auto value = static_cast<std::uint32_t>(hresult);
    const auto put = [area](const auto& text) {
        const std::size_t length = std::min(text.size(), area.size() - 1);
        std::copy_n(text.begin(), length, area.begin());
        area[length] = 0;
        return std::u16string_view(area.data(), length);
    };
    if (const std::string_view known = KnownText(value); !known.empty()) return put(known);
    if (const auto text = platform::SystemText(value); !text.empty()) return put(text);
    return put(std::u16string_view(u"[No error description found.]"));
}

}  // namespace zelkor::detail
