// Message boxes and debugger output, caught for the length of a scope. One of each at a time.
#ifndef TESTS_SUPPORT_DIALOGS_H
#define TESTS_SUPPORT_DIALOGS_H

#include <cstdint>
#include <string>
#include <vector>

#include "Foundation/Platform/Dialogs.h"
#include "Support/Text.h"

namespace test {

// Answers every box as told and keeps what the last one showed, as UTF-8.
class MessageBoxes {
public:
    explicit MessageBoxes(int button = zelkor::platform::kAnswerIgnore)
        : before_(zelkor::platform::SetMessageBoxHandler(Show)) {
        answer = button;
        count = 0;
    }
    ~MessageBoxes() { zelkor::platform::SetMessageBoxHandler(before_); }
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;

    inline static int answer = 0, count = 0;
    inline static std::string text, caption;
    inline static std::uint32_t flags = 0;

private:
    static int Show(const char16_t* shown, const char16_t* title, std::uint32_t wanted) {
        text = Utf8(shown);
        caption = Utf8(title);
        flags = wanted;
        ++count;
        return answer;
    }

    zelkor::platform::MessageBoxHandler before_;
};

// Collects the debugger output, piece by piece, as UTF-8.
class DebugOutput {
public:
    DebugOutput() : before_(zelkor::platform::SetDebugOutputSink(Collect)) { pieces.clear(); }
    ~DebugOutput() { zelkor::platform::SetDebugOutputSink(before_); }
    DebugOutput(const DebugOutput&) = delete;
    DebugOutput& operator=(const DebugOutput&) = delete;

    static std::string Whole() {
        std::string whole;
        for (const std::string& piece : pieces) whole += piece;
        return whole;
    }

    inline static std::vector<std::string> pieces;

private:
    static void Collect(const char16_t* text) { pieces.push_back(Utf8(text)); }

    zelkor::platform::DebugOutputSink before_;
};

}  // namespace test

#endif
