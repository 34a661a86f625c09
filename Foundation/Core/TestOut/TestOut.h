// CT_TestOut: text for tests and diagnosis, to a UTF-16 file, a standard stream or the debugger.
//
// Formats follow Platform/Runtime.h: %s takes UTF-16 text, %S 8-bit text. Every output has the
// label in front of it, nothing between. Texts are borrowed. A file has UTF-16 little-endian text
// behind the mark FF FE, and every output is in it when the call is back. So is what a standard
// stream gets that was sent to a file or a pipe, without mark; on a terminal the text appears in
// the terminal's own encoding. Failures are told on the standard error and never stop the process:
// output goes on. A text of more than 2047 units is cut there when there is no memory for more.
// Errors: records none. Threads: one object, one thread at a time.
#ifndef FOUNDATION_CORE_TESTOUT_TESTOUT_H
#define FOUNDATION_CORE_TESTOUT_TESTOUT_H

#include <cstdarg>
#include <string_view>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_TestOut {
public:
    // Bits of the output type.
    static constexpr unsigned int kToStream = 1;
    static constexpr unsigned int kToDebugger = 2;

    // The standard output, no label.
    CT_TestOut() noexcept;
    // As v_Open, v_SetLabel and v_SetOutputType; a null label is none. A null file is told on the
    // standard error and stands for the standard output. Running out of memory for the label throws
    // CT_SmartHeapException.
    CT_TestOut(const char16_t* file, const char16_t* label, unsigned int outputType);
    CT_TestOut(const CT_TestOut&) = delete;
    CT_TestOut& operator=(const CT_TestOut&) = delete;
    ~CT_TestOut();

    // Closes what is open and starts anew, as the constructors do. The label may be the one of now;
    // without memory for it nothing changes.
    void v_Set() noexcept;
    void v_Set(const char16_t* file, const char16_t* label, unsigned int outputType);

    // Closes the own file, if any, and opens another: "stdout" (or null) and "stderr" are the
    // standard streams; a name with neither drive nor directory is a file in the system's folder
    // for temporary files. The file is made new or emptied. When that fails, the standard output
    // takes its place.
    void v_Open(const char16_t* file) noexcept;
    // Closes the own file and drops the label; no stream is left, until v_Open or the next output,
    // which then takes the standard output.
    void v_Close() noexcept;

    // The label is copied. A null one is told on the standard error and changes nothing; running
    // out of memory throws CT_SmartHeapException and changes nothing.
    void v_SetLabel(const char16_t* label);
    // Null when there is none.
    [[nodiscard]] const char16_t* quz_GetLabel() const noexcept { return label_; }
    void v_SetOutputType(unsigned int type) noexcept { output_type_ = type; }

    // To every channel of the output type, to the stream only, to the debugger only. The debugger
    // gets the first 2047 units of a text, after the label, in a call of its own.
    void v_Out(const char16_t* format, ...);
    void v_OutputFile(const char16_t* format, ...);
    void v_DebugOut(const char16_t* format, ...);

private:
    enum class Stream { kNone, kFile, kOutput, kError };

    void v_CloseFile() noexcept;
    void v_WriteStream(const char16_t* format, va_list arguments);
    void v_WriteDebugger(const char16_t* format, va_list arguments);
    void v_WriteUnits(std::u16string_view text) noexcept;

    Stream stream_ = Stream::kOutput;
    HANDLE file_ = nullptr;  // of Stream::kFile: the one stream that is owned
    char16_t* label_ = nullptr;
    unsigned int output_type_ = kToStream;
};

#endif
