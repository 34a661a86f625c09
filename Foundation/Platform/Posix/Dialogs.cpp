#include "Foundation/Platform/Dialogs.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "Foundation/Platform/Console.h"

namespace zelkor::platform {

namespace {

constinit std::atomic<MessageBoxHandler> box_handler{nullptr};
constinit std::atomic<DebugOutputSink> debug_sink{nullptr};
constinit std::atomic<FatalHandler> fatal_handler{nullptr};

struct Button {
    int answer;
    const char16_t* note;  // what is printed of the answer; null where there is no choice
};

// The button that goes on as if nothing had been asked, by the kinds of boxes.
Button ButtonPressed(std::uint32_t flags) {
    static constexpr Button kButtons[] = {{kAnswerOk, nullptr},
                                          {kAnswerOk, u"-> OK\n"},
                                          {kAnswerIgnore, u"-> Ignore\n"},
                                          {kAnswerCancel, u"-> Cancel\n"},
                                          {kAnswerNo, u"-> No\n"},
                                          {kAnswerCancel, u"-> Cancel\n"},
                                          {kAnswerContinue, u"-> Continue\n"}};
    const std::uint32_t kind = flags & kBoxButtonMask;
    return kButtons[kind < std::size(kButtons) ? kind : 0];
}

}  // namespace

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler) noexcept {
    return box_handler.exchange(handler, std::memory_order_acq_rel);
}

int ShowMessageBox(const char16_t* text, const char16_t* caption, std::uint32_t flags) {
    if (const MessageBoxHandler handler = box_handler.load(std::memory_order_acquire)) {
        return handler(text, caption, flags);
    }
    WriteText(StandardStream::kError, caption);
    if (*caption != 0) WriteText(StandardStream::kError, u": ");
    WriteText(StandardStream::kError, text);
    WriteText(StandardStream::kError, u"\n");
    const Button pressed = ButtonPressed(flags);
    if (pressed.note != nullptr) WriteText(StandardStream::kError, pressed.note);
    return pressed.answer;
}

DebugOutputSink SetDebugOutputSink(DebugOutputSink sink) noexcept {
    return debug_sink.exchange(sink, std::memory_order_acq_rel);
}

void WriteDebugOutput(const char16_t* text) {
    if (const DebugOutputSink sink = debug_sink.load(std::memory_order_acquire)) sink(text);
}

FatalHandler SetFatalHandler(FatalHandler handler) noexcept {
    return fatal_handler.exchange(handler, std::memory_order_acq_rel);
}

void EndProcess(const char* reason) {
    WriteBytes(StandardStream::kError, reason, std::strlen(reason));
    WriteBytes(StandardStream::kError, "\n", 1);
    if (const FatalHandler handler = fatal_handler.load(std::memory_order_acquire)) handler(reason);
    std::abort();
}

}  // namespace zelkor::platform
