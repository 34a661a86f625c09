// What the record commands share: record files that close themselves, and bytes as text.
#ifndef TOOLS_ZELKOR_RECORDS_H
#define TOOLS_ZELKOR_RECORDS_H

#include <Foundation/Core/Buffer/Buffer.h>
#include <Foundation/Core/File/WinFile.h>
#include <Foundation/Core/String/UString.h>
#include <Foundation/Database/RecordManager/RecordManager.h>

#include <CLI/App.hpp>
#include <iosfwd>
#include <string>
#include <string_view>

namespace zelkor {

// A file by its name, for the classes that take a file object.
class NamedFile {
public:
    explicit NamedFile(const std::string& name);
    operator const CT_WinFile*() const { return &file_; }

private:
    CT_UString path_;
    CT_WinFile file_;
};

// An open record file. Close() throws what closing meets; the destructor closes what is left open
// after a failure, so that what was done before it is kept.
class RecordFile {
public:
    explicit RecordFile(const std::string& name);
    ~RecordFile();
    RecordFile(const RecordFile&) = delete;
    RecordFile& operator=(const RecordFile&) = delete;

    RecordFile& OpenToRead();
    RecordFile& OpenToWrite();
    void Close();
    CT_RecordManager* operator->() { return &manager_; }

private:
    NamedFile file_;
    CT_RecordManager manager_;
};

[[nodiscard]] CT_Buffer ToBuffer(std::string_view bytes);
[[nodiscard]] std::string_view ToBytes(const CT_Buffer& buffer);

// A file's content, of "-" the standard input's.
[[nodiscard]] std::string ReadAll(const std::string& name);
void WriteOut(std::string_view bytes);  // to the standard output

// Printable ASCII as it is, "\\", "\t", "\n", all else "\xNN"; and back (throws Failure).
[[nodiscard]] std::string Escape(std::string_view bytes);
[[nodiscard]] std::string Unescape(std::string_view text);

void AddRecordInspection(CLI::App& parent);  // info, check, repair, compact, map
void AddRecordText(CLI::App& parent);        // export, import

}  // namespace zelkor

#endif
