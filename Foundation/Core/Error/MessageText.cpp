#include "Foundation/Core/Error/Internal/MessageText.h"

#include <algorithm>
#include <string_view>

#include "Foundation/Core/Base/OS.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/Modules.h"
#include "Foundation/Platform/Runtime.h"

namespace zelkor::detail {

namespace {

constexpr unsigned int kNarrowUnits = 2048;

}  // namespace

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
    char bytes[3 * kNarrowUnits];  // no default page takes more for a unit
    const auto room = static_cast<int>(std::u16string_view(text).size() + 1);
    const int count =
        platform::WideCharToMultiByte(0, 0, text, room, bytes, sizeof bytes, nullptr, nullptr);
    if (count <= 0 || platform::MultiByteToWideChar(0, 0, bytes, count, text, room) <= 0) {
        text[0] = 0;
    }
}

void LoadResource(char16_t* out, unsigned int size, HINSTANCE module, unsigned int id) {
    if (size == 0 || out == nullptr) return;
    const bool narrow = CT_OS::seo_GetVersion() < CT_OS::WindowsNT;
    const unsigned int room = narrow ? std::min(size, kNarrowUnits) : size;
    const std::u16string_view found = CutText(platform::FindString(module, id), room - 1);
    std::ranges::copy(found, out);
    out[found.size()] = 0;
    if (narrow) PassNarrow(out);
}

}  // namespace zelkor::detail
