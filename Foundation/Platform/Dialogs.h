// Message boxes and debugger output. The library has no screen of its own: the application installs
// handlers that show the box and take the text.
//
// Threads: handlers are called on the thread that shows or writes, and may be replaced at any time.
#ifndef FOUNDATION_PLATFORM_DIALOGS_H
#define FOUNDATION_PLATFORM_DIALOGS_H

#include <cstdint>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// Flags of a box: the buttons in the low four bits, and the wish to come to the front.
inline constexpr std::uint32_t kBoxOk = 0;
inline constexpr std::uint32_t kBoxAbortRetryIgnore = 2;
inline constexpr std::uint32_t kBoxButtonMask = 0xF;
inline constexpr std::uint32_t kBoxSetForeground = 0x10000;

// Answers of a box.
enum : int {
    kAnswerOk = 1,
    kAnswerCancel = 2,
    kAnswerAbort = 3,
    kAnswerRetry = 4,
    kAnswerIgnore = 5,
    kAnswerYes = 6,
    kAnswerNo = 7,
    kAnswerTryAgain = 10,
    kAnswerContinue = 11,
};

// Shows a box and returns the answer. Both texts are zero-terminated and never null.
using MessageBoxHandler = int (*)(const char16_t* text, const char16_t* caption,
                                  std::uint32_t flags);

// Installs a handler (null: the default) and returns the one before (null: it was the default).
// The default prints caption and text to the standard error and answers with the button that goes
// on as if nothing had been asked: Ignore, Continue or OK where there is one, else No or Cancel.
// Where there was a choice the answer is printed, too: "-> Ignore".
ZELKOR_API MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler) noexcept;
ZELKOR_API int ShowMessageBox(const char16_t* text, const char16_t* caption, std::uint32_t flags);

// Takes one piece of debugger output, zero-terminated; a line may arrive in several pieces.
using DebugOutputSink = void (*)(const char16_t* text);

// Installs a sink (null: the default, which drops the text) and returns the one before.
ZELKOR_API DebugOutputSink SetDebugOutputSink(DebugOutputSink sink) noexcept;
ZELKOR_API void WriteDebugOutput(const char16_t* text);

// Ends the process at once for a reason that it cannot survive, which is printed to the standard
// error first. A handler may end it in another way; when it returns, the process is aborted.
using FatalHandler = void (*)(const char* reason);
ZELKOR_API FatalHandler SetFatalHandler(FatalHandler handler) noexcept;
[[noreturn]] ZELKOR_API void EndProcess(const char* reason);

}  // namespace zelkor::platform

#endif
