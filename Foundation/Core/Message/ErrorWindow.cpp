// CT_ErrorManager: the message box with an error's message and locations.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include "Foundation/Core/Base/OS.h"
#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/Error/Internal/MessageText.h"
#include "Foundation/Platform/Dialogs.h"
#include "Foundation/Platform/Modules.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

namespace {

constexpr std::size_t kAreaSize = 1024;

// One text after the other in a fixed area, each with its zero; what does not fit is cut.
class Area {
public:
    void Append(std::u16string_view text) {
        text = zelkor::detail::CutText(text, kAreaSize - 1 - used_);
        std::ranges::copy(text, units_ + used_);
        used_ += text.size();
    }
    void AppendFileName(const char* file) {
        const char* name = file != nullptr ? std::strrchr(file, '\\') : nullptr;
        if (name == nullptr && file != nullptr) name = std::strrchr(file, '/');
        if (name == nullptr) return Append(u"(unknown file)");
        for (++name; *name != '\0'; ++name) {
            const auto unit = static_cast<char16_t>(static_cast<unsigned char>(*name));
            Append({&unit, 1});
        }
    }
    // Ends a text; the next one begins behind its zero, or is empty when no room is left.
    char16_t* End() {
        char16_t* const text = units_ + start_;
        units_[used_] = 0;
        if (used_ < kAreaSize - 1) ++used_;
        start_ = used_;
        return text;
    }

private:
    char16_t units_[kAreaSize];
    std::size_t start_ = 0;
    std::size_t used_ = 0;
};

}  // namespace

int CT_ErrorManager::i_ErrorLocationWindow(unsigned int titleID, const char16_t* title,
                                           unsigned int flags) {
    const st_error* const error = pso_GetError();
    if (error == nullptr) return 0;
    Area area;
    if (title != nullptr) {
        area.Append(title);
    } else if (titleID != 0) {
        area.Append(platform::FindString(error->module, titleID));
    }
    char16_t* const caption = area.End();
    area.Append(error->message);
    if (error->firstLocation != nullptr) area.Append(u"\n");
    for (const st_location* at = error->firstLocation; at != nullptr; at = at->next) {
        area.Append(u"\n");
        area.AppendFileName(at->file);
        char16_t line[32];
        platform::PrintText(line, std::size(line), u": line %d", at->line);
        area.Append(line);
    }
    char16_t* const text = area.End();
    if (CT_OS::seo_GetVersion() < CT_OS::WindowsNT) {
        zelkor::detail::PassNarrow(caption);
        zelkor::detail::PassNarrow(text);
    }
    const int answer = platform::ShowMessageBox(text, caption, flags | platform::kBoxSetForeground);
    if (answer == platform::kAnswerAbort) platform::EndProcess("Aborted from an error box.");
    return answer;
}
