// Bytes that a user hands to the record commands: whole files, and lines.
#ifndef TOOLS_ZELKOR_RECORDLINES_H
#define TOOLS_ZELKOR_RECORDLINES_H

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "Console.h"

namespace zelkor::cli {

// Throws Failure when there is no such file to read.
void MustBeReadable(const std::string& name);

// A file's content; "-" is the standard input.
[[nodiscard]] std::string ReadAll(const std::string& name);

// The lines of a file, whatever bytes they hold. What is to be read again and is no file on disk
// (the standard input, a pipe) goes to a temporary one first.
class Lines {
public:
    enum Times { kOnce, kAgain };

    Lines(const std::string& name, Times times);
    ~Lines();
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    // The next line without its line feed, good until the one after it; false at the end.
    bool Next(std::string_view* line);
    void Rewind();

    // As messages show it.
    [[nodiscard]] const std::string& Name() const { return name_; }
    [[nodiscard]] unsigned int Number() const { return number_; }  // of the line read last
    [[nodiscard]] std::uint64_t Size() const { return size_; }     // 0: not known
    [[nodiscard]] std::uint64_t Done() const { return done_; }
    // "FILE:LINE: what", of the line read last or the one given; "FILE: what" before the first.
    [[nodiscard]] Failure Wrong(const std::string& what) const { return Wrong(what, number_); }
    [[nodiscard]] Failure Wrong(const std::string& what, unsigned int line) const;

private:
    void TakeAll();

    struct Close {
        void operator()(std::FILE* file) const {
            if (file != stdin) std::fclose(file);
        }
    };
    std::string name_;
    std::unique_ptr<std::FILE, Close> file_;
    char* line_ = nullptr;
    std::size_t room_ = 0;
    std::uint64_t size_ = 0;
    std::uint64_t done_ = 0;
    unsigned int number_ = 0;
};

}  // namespace zelkor::cli

#endif
