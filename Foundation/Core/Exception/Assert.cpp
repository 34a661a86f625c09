#include "Foundation/Core/Exception/Assert.h"

#include <cstddef>
#include <cstdlib>
#include <memory>

#include "Foundation/Core/Error/Internal/MessageText.h"
#include "Foundation/Core/Exception/Internal/ExceptionDetail.h"
#include "Foundation/Platform/Dialogs.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

namespace {

constexpr const char16_t* kFormat =
    u"Line %d in %s\n\nASSERT(%s);\n\nClick Abort to stop, Retry to debug, or Ignore to continue.\n"
    u"(Click Ignore to see what happens in a Release build.)";
constexpr std::size_t kAreaSize = 256;
constexpr int kAbortExitCode = 3;

struct FreeBlock {
    void operator()(char16_t* block) const noexcept { platform::Free(block); }
};

}  // namespace

BOOL CT_Assert::sb_ShowAssertMessage(const char16_t* expression, const char16_t* file,
                                     unsigned int line) {
    if (expression == nullptr) expression = u"";
    if (file == nullptr) file = u"";
    char16_t area[kAreaSize];
    char16_t* text = area;
    std::size_t size = platform::TextLength(kFormat) + platform::TextLength(expression) +
                       platform::TextLength(file) + 10;
    std::unique_ptr<char16_t, FreeBlock> block;
    if (size > kAreaSize) {
        block.reset(static_cast<char16_t*>(platform::TryAllocate(size * sizeof(char16_t))));
        if (block == nullptr) size = kAreaSize;
        if (block != nullptr) text = block.get();
    }
    const int length = platform::PrintText(text, size, kFormat, line, file, expression);
    if (length < 0) text[zelkor::detail::CutText({text, size}, size - 1).size()] = 0;
    const int answer =
        platform::ShowMessageBox(text, u"Debug Assertion Failed!",
                                 platform::kBoxAbortRetryIgnore | platform::kBoxSetForeground);
    if (answer == platform::kAnswerAbort) std::_Exit(kAbortExitCode);
    return answer == platform::kAnswerRetry ? TRUE : FALSE;
}

BOOL CT_Assert::sb_ShowAssertMessage(const char* expression, const char* file, unsigned int line) {
    using zelkor::detail::WidenQuietly;
    return sb_ShowAssertMessage(WidenQuietly(expression).qcuz_Get(), WidenQuietly(file).qcuz_Get(),
                                line);
}
