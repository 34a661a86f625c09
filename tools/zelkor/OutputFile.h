// OutputFile: a file that takes its place only when it is finished.
//
// What is written goes to a temporary file beside the output, which Finish() puts in its place; a
// failure, or an end by a signal, leaves what was there and removes the temporary file. A symbolic
// link stays and its target is replaced. Owner, group, permissions and extended attributes of an
// existing file are kept; where renaming cannot keep them (further hard links, a folder that takes
// no new file), the finished bytes are copied into the file itself. The input may be the same file.
// Written directly are the standard output ("-"), pipes and devices.
#ifndef TOOLS_ZELKOR_OUTPUTFILE_H
#define TOOLS_ZELKOR_OUTPUTFILE_H

#include <Foundation/Core/String/UString.h>

#include <string>
#include <string_view>

#include "TemporaryFile.h"

namespace zelkor::cli {

class OutputFile {
public:
    // Refuses a folder, a file that may not be written and a folder that is not there.
    explicit OutputFile(const std::string& name);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void Write(std::string_view bytes);

    // Instead of writing: the name of a new file for a class of the library that writes files by
    // itself, under this name or beside it with ".new" behind. It must be closed before Finish().
    [[nodiscard]] CT_UString Staged();

    // Puts the finished file in its place.
    void Finish();

    // As messages show it.
    [[nodiscard]] const std::string& name() const { return name_; }
    // Whether it is written directly.
    [[nodiscard]] bool is_direct() const { return target_.empty(); }
    [[nodiscard]] int direct_descriptor() const { return is_direct() ? direct_ : -1; }
    [[nodiscard]] bool is_standard_output() const;

private:
    void Open();
    void OpenDirectly(int descriptor);
    void Examine();
    bool TakeOver();
    void CopyInto(int target);
    [[noreturn]] void FailWith(int error) const;

    std::string name_;
    std::string target_;  // behind all symbolic links; empty when it is written directly
    TemporaryFile temporary_;
    int direct_ = -1;  // the open pipe or device, or the file that is copied into
    bool in_place_ = false;
    bool is_untouched_ = true;  // what was there, while it is copied into
};

}  // namespace zelkor::cli

#endif
