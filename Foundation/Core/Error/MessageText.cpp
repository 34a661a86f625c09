#include "Foundation/Core/Error/Internal/MessageText.h"

#include <string_view>

#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/Runtime.h"

namespace zelkor::detail {

std::u16string_view CutText(std::u16string_view text, std::size_t most) noexcept {
    if (text.size() <= most) return text;
    if (most != 0 && (text[most - 1] & 0xFC00) == 0xD800) --most;
    return text.substr(0, most);
}

std::size_t FormatCut(char16_t* out, std::size_t size, const char16_t* format, va_list arguments) {
    if (format == nullptr) format = u"";
    const int written = platform::FormatText(out, size - 1, format, arguments);
    std::size_t length = static_cast<std::size_t>(written);
    // One unit more than fits tells the cut from the end.
    if (written < 0) length = CutText({out, size}, size - 1).size();
    out[length] = 0;
    return length;
}

void PassNarrow(char16_t* text) {
    char bytes[3 * 2048];  // no default page takes more for a unit
    const auto room = static_cast<int>(std::u16string_view(text).size() + 1);
    const int count =
        platform::WideCharToMultiByte(0, 0, text, room, bytes, sizeof bytes, nullptr, nullptr);
    if (count <= 0 || platform::MultiByteToWideChar(0, 0, bytes, count, text, room) <= 0) {
        text[0] = 0;
    }
}

}  // namespace zelkor::detail
