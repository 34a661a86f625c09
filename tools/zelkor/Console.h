// What the commands share: text between the terminal's UTF-8 and the library's strings, names of
// files, failures that end a command, and a progress bar.
#ifndef TOOLS_ZELKOR_CONSOLE_H
#define TOOLS_ZELKOR_CONSOLE_H

#include <Foundation/Core/String/UString.h>

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zelkor::cli {

// Ends a command with a message (empty: none) and an exit status: 1, the work failed; 2, bad usage.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& message, int status = 1)
        : std::runtime_error(message), status_(status) {}
    [[nodiscard]] int status() const { return status_; }

private:
    int status_;
};

[[nodiscard]] CT_UString FromUtf8(std::string_view text);
[[nodiscard]] std::string ToUtf8(const CT_UString& text);

// Text that the user typed, which must be UTF-8; else bad usage.
[[nodiscard]] CT_UString FromArgument(const std::string& argument);

// A name that the user typed, for the library's file classes: every byte of it reaches the system,
// be it UTF-8 or not, a backslash, or a colon behind a letter.
[[nodiscard]] CT_UString FileName(std::string_view argument);

// Fit for a terminal: control characters and bytes that are no UTF-8 as "\xNN".
[[nodiscard]] std::string Printable(std::string_view bytes);

// Throws the thread's recorded error, if there is one, as a Failure: "(code): message", with the
// source locations it passed through when the user asked for them. Clears it.
void ThrowRecordedError();
void ShowLocations(bool show);

// A bar on the standard error when that is a terminal and the work takes longer than a second.
class Progress {
public:
    Progress(std::string what, std::uint64_t total);  // a total of 0 is not known: no bar
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Advance(std::uint64_t done);

private:
    void Draw(std::uint64_t done);

    std::string what_;
    std::uint64_t total_;
    bool terminal_;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point next_;
};

// "1,234,567"
[[nodiscard]] std::string Grouped(std::uint64_t number);
// The number with the word for one or for more: "1 word", "2,000 words".
[[nodiscard]] std::string Counted(std::uint64_t count, const char* one, const char* more);

}  // namespace zelkor::cli

#endif
