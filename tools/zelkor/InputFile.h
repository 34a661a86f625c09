// InputFile: the bytes of a file, a pipe or the standard input, opened once and read in order.
#ifndef TOOLS_ZELKOR_INPUTFILE_H
#define TOOLS_ZELKOR_INPUTFILE_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace zelkor::cli {

class InputFile {
public:
    // "-" is the standard input.
    explicit InputFile(const std::string& name);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    // Reads that many bytes; fewer only at the end.
    std::size_t Read(char* out, std::size_t count);
    // All that is left; more than `most` bytes end the command.
    [[nodiscard]] std::string ReadAll(std::size_t most);

    // Whether that descriptor, or -1, is the same file on a disk: writing there would feed it.
    [[nodiscard]] bool IsOpenAs(int descriptor) const;

    // Bytes of a regular file, 0 when that is not known.
    [[nodiscard]] std::uint64_t size() const { return size_; }
    // As messages show it.
    [[nodiscard]] const std::string& name() const { return name_; }

private:
    std::string name_;
    int descriptor_;
    std::uint64_t size_ = 0;
};

}  // namespace zelkor::cli

#endif
