// What the record commands share: record files that close themselves, and bytes as text.
#ifndef TOOLS_ZELKOR_RECORDS_H
#define TOOLS_ZELKOR_RECORDS_H

#include <Foundation/Core/Buffer/Buffer.h>
#include <Foundation/Core/File/WinFile.h>
#include <Foundation/Core/String/UString.h>
#include <Foundation/Database/RecordManager/RecordFormat.h>
#include <Foundation/Database/RecordManager/RecordManager.h>

#include <CLI/App.hpp>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "Console.h"

namespace zelkor::cli {

// A file by its name, for the classes that take a file object.
class NamedFile {
public:
    explicit NamedFile(const std::string& name) : NamedFile(FileName(name)) {}  // as typed
    explicit NamedFile(const CT_UString& path);
    operator const CT_WinFile*() const { return &file_; }

private:
    CT_UString path_;
    CT_WinFile file_;
};

// An open record file. Close() throws what closing meets; the destructor closes what is left open
// after a failure, so that what was done before it is kept.
class RecordFile {
public:
    explicit RecordFile(const std::string& name) : RecordFile(FileName(name)) {}
    explicit RecordFile(const CT_UString& path);
    ~RecordFile();
    RecordFile(const RecordFile&) = delete;
    RecordFile& operator=(const RecordFile&) = delete;

    RecordFile& OpenToRead();
    void OpenToWrite();
    void Close();
    // For long work on a file open for writing, which the first signal to end does not end at once.
    static void ThrowIfInterrupted();
    // The bytes as a record, with zeros up to the record header size: a shorter record reads back
    // with whatever lay there before.
    [[nodiscard]] CT_Buffer Padded(std::string_view bytes) const;
    CT_RecordManager* operator->() { return &manager_; }

private:
    NamedFile file_;
    CT_RecordManager manager_;
};

// Has `change` change a record file. Where it fails, what it had done before stays in the file, and
// the failure tells that, and whether the file is sound: blocks that were taken stay taken.
void Change(const std::string& name, const std::function<void(RecordFile& file)>& change);

// Hands all records that a check finds, so none that only looks like one, or all resources to
// `use`. What cannot be read is told on the standard error; the result is then what to end the
// command with.
using RecordUse = std::function<void(unsigned int number, std::string_view bytes)>;
[[nodiscard]] std::string ReadRecords(const std::string& name, RecordFile& file,
                                      const RecordUse& use);
[[nodiscard]] std::string ReadResources(const std::string& name, RecordFile& file,
                                        const RecordUse& use);

// Throws Failure for sizes that no record file can have.
void MustFit(unsigned int header, unsigned int block, unsigned int resources, int status);
// The file's header; false when it has none with a record file's stamp.
[[nodiscard]] bool ReadHeader(const std::string& name, zelkor::record_format::HeaderImage* header);
// Throws Failure when a file of that name is there, or is there and is no record file.
void MustBeNew(const std::string& name);
void MustBeRecordFile(const std::string& name);
[[nodiscard]] bool SameFile(const std::string& one, const std::string& other);

// Has `make` write a new file, for the library's file classes, and puts it in the place of `name`
// when that is done; a failure leaves what was there.
void Replace(const std::string& name, const std::function<void(const CT_UString& path)>& make);

// Throws the recorded error, if there is one, with what it is about: "record 21: (31051): ...".
void ThrowRecordedError(const char* kind, unsigned int number);

[[nodiscard]] CT_Buffer ToBuffer(std::string_view bytes);
[[nodiscard]] std::string_view ToBytes(const CT_Buffer& buffer);

void WriteOut(std::string_view bytes);  // to the standard output

// Printable ASCII as it is, "\\", "\t", "\n", all else "\xNN"; and back (throws Failure).
[[nodiscard]] std::string Escape(std::string_view bytes);
[[nodiscard]] std::string Unescape(std::string_view text);

void AddRecordInspection(CLI::App& parent);  // info, check, repair, compact
void AddRecordMap(CLI::App& parent);
void AddRecordText(CLI::App& parent);  // export, import

}  // namespace zelkor::cli

#endif
