// What a command could not keep of its input: counted, the first of it told with its place.
#ifndef TOOLS_ZELKOR_LOSSES_H
#define TOOLS_ZELKOR_LOSSES_H

#include <cstdint>
#include <cstdio>
#include <string>

namespace zelkor::cli {

class OutputFile;

class Losses {
public:
    // `allowed`: the user asked for replacements (--lossy).
    explicit Losses(bool allowed) : allowed_(allowed) {}

    // Counts one. `describe` makes the message, place first, and is asked for the first few only.
    template <typename Describe>
    void Add(const Describe& describe) {
        if (++count_ <= kMostTold) Tell(describe());
    }
    // Counts some without a message, which the first few should have.
    void AddUntold(std::uint64_t count) { count_ += count; }
    // The text may be in another encoding than the one that was taken for it.
    void DoubtEncoding() { in_doubt_ = true; }
    // Whether the next one is told.
    [[nodiscard]] bool tells() const { return count_ < kMostTold; }
    [[nodiscard]] std::uint64_t count() const { return count_; }
    [[nodiscard]] bool allowed() const { return allowed_; }
    // Whether the result may not be used.
    [[nodiscard]] bool spoil() const { return count_ != 0 && !allowed_; }

    // When all is read, before the output is put in place: ends the command with the number of what
    // was lost, or, where replacements are allowed, tells it.
    void Settle(const OutputFile& output) const;

private:
    static constexpr std::uint64_t kMostTold = 10;
    static void Tell(const std::string& message);

    bool allowed_;
    bool in_doubt_ = false;
    std::uint64_t count_ = 0;
};

}  // namespace zelkor::cli

#endif
