// TemporaryFile: a file that goes with its object, also when a signal ends the process.
// SeekableFile: a file to read for classes of the library that need one.
#ifndef TOOLS_ZELKOR_TEMPORARYFILE_H
#define TOOLS_ZELKOR_TEMPORARYFILE_H

#include <Foundation/Core/String/UString.h>

#include <string>
#include <string_view>

namespace zelkor::cli {

class TemporaryFile {
public:
    TemporaryFile() = default;
    ~TemporaryFile() { Remove(); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // Makes an empty file, for its owner only, in a folder ("" or with a slash at its end), or in
    // the one for temporary files. False with errno when that cannot be.
    [[nodiscard]] bool Make(const std::string& folder);
    [[nodiscard]] bool Make();
    // Removes it, and what a class of the library may have left beside it, "NAME.new".
    void Remove();
    // It has another name now and stays.
    void Keep();

    [[nodiscard]] bool is_there() const { return !name_.empty(); }
    [[nodiscard]] const std::string& name() const { return name_; }
    // Open for reading and writing until Close(); then -1.
    [[nodiscard]] int descriptor() const { return descriptor_; }
    void Close();
    [[nodiscard]] bool Reopen();

private:
    std::string name_;
    int descriptor_ = -1;
};

// Writes all of it, or ends the command with a message that begins with the name.
void WriteAll(int descriptor, std::string_view bytes, const std::string& name);

// A regular file as it is; of a pipe, and of "-", the standard input, a copy of all its bytes.
class SeekableFile {
public:
    explicit SeekableFile(const std::string& name);

    // For the library's file classes.
    [[nodiscard]] const CT_UString& path() const { return path_; }
    // As messages show it.
    [[nodiscard]] const std::string& name() const { return name_; }

private:
    TemporaryFile copy_;
    std::string name_;
    CT_UString path_;
};

}  // namespace zelkor::cli

#endif
