#include "Foundation/Core/TestOut/TestOut.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>

#include "Foundation/Core/Error/Internal/MessageText.h"
#include "Foundation/Core/String/Internal/PlatformName.h"
#include "Foundation/Platform/Console.h"
#include "Foundation/Platform/Dialogs.h"
#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Paths.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

using platform::StandardStream;

namespace {

constexpr std::size_t kAreaSize = 2048;

struct FreeBlock {
    void operator()(char16_t* block) const noexcept { platform::Free(block); }
};

void TellError(std::u16string_view text) {
    platform::WriteText(StandardStream::kError, text);
}

// Says that an argument or the stream is missing; the caller goes on without it.
void TellMissing(const char16_t* item, unsigned int line = __builtin_LINE()) {
    char16_t text[128];
    platform::PrintText(text, std::size(text),
                        u"ASSERT failed: %s\nLine %d in File .\\TestOut\\TestOut.\n", item, line);
    TellError(text);
}

// A copy of the label; null for none.
char16_t* CopyLabel(const char16_t* label) {
    if (label == nullptr) return nullptr;
    const std::size_t size = platform::TextLength(label) + 1;
    auto* const copy = static_cast<char16_t*>(platform::Allocate(size * sizeof(char16_t)));
    if (copy != nullptr) std::copy_n(label, size, copy);
    return copy;
}

// Makes or empties the file; null when it cannot be.
HANDLE CreateTextFile(std::u16string_view name) {
    char16_t path[kAreaSize];
    std::size_t length = 0;
    const platform::PathParts parts = platform::SplitPath(name);
    if (parts.drive.empty() && parts.directory.empty()) {
        length = platform::TemporaryFolder(path);
        if (length == 0) return nullptr;
    }
    if (length + name.size() >= kAreaSize) return nullptr;
    *std::ranges::copy(name, path + length).out = 0;
    if (zelkor::detail::IsOlderFamily()) zelkor::detail::PassNarrow(path);
    HANDLE const file = platform::OpenFile(path, platform::kAccessWrite,
                                           platform::kShareRead | platform::kShareWrite,
                                           platform::kCreateAlways, platform::kFileNormal);
    return file != INVALID_HANDLE_VALUE ? file : nullptr;
}

}  // namespace

// ---- Life -----------------------------------------------------------------------------------

CT_TestOut::CT_TestOut() noexcept = default;

CT_TestOut::CT_TestOut(const char16_t* file, const char16_t* label, unsigned int outputType) {
    v_Set(file, label, outputType);
}

CT_TestOut::~CT_TestOut() {
    v_Close();
}

void CT_TestOut::v_Set() noexcept {
    v_Close();
    stream_ = Stream::kOutput;
    output_type_ = kToStream;
}

void CT_TestOut::v_Set(const char16_t* file, const char16_t* label, unsigned int outputType) {
    char16_t* const copy = CopyLabel(label);  // first: it may be the label of now
    v_Set();
    label_ = copy;
    if (file == nullptr) TellMissing(u"qcuz_file");
    v_Open(file);
    output_type_ = outputType;
}

// ---- Stream and label -------------------------------------------------------------------------

void CT_TestOut::v_CloseFile() noexcept {
    if (file_ != nullptr) platform::CloseHandle(std::exchange(file_, nullptr));
    stream_ = Stream::kNone;
}

void CT_TestOut::v_Open(const char16_t* file) noexcept {
    v_CloseFile();
    stream_ = Stream::kOutput;
    const std::u16string_view name(file != nullptr ? file : u"stdout");
    if (name == u"stdout") return;
    if (name == u"stderr") {
        stream_ = Stream::kError;
        return;
    }
    file_ = CreateTextFile(name);
    if (file_ != nullptr) {
        stream_ = Stream::kFile;
        v_WriteUnits(u"\uFEFF");
        return;
    }
    TellError(u"Could not open ");
    TellError(name);
    TellError(u"\nUsing stdout instead.\n");
}

void CT_TestOut::v_Close() noexcept {
    v_CloseFile();
    platform::Free(std::exchange(label_, nullptr));
}

void CT_TestOut::v_SetLabel(const char16_t* label) {
    if (label == nullptr) {
        TellMissing(u"qcuz_label");
        return;
    }
    platform::Free(std::exchange(label_, CopyLabel(label)));
}

// ---- Output -----------------------------------------------------------------------------------

void CT_TestOut::v_Out(const char16_t* format, ...) {
    va_list arguments;
    if ((output_type_ & kToStream) != 0) {
        va_start(arguments, format);
        v_WriteStream(format, arguments);
        va_end(arguments);
    }
    if ((output_type_ & kToDebugger) != 0) {
        va_start(arguments, format);
        v_WriteDebugger(format, arguments);
        va_end(arguments);
    }
}

void CT_TestOut::v_OutputFile(const char16_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_WriteStream(format, arguments);
    va_end(arguments);
}

void CT_TestOut::v_DebugOut(const char16_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_WriteDebugger(format, arguments);
    va_end(arguments);
}

void CT_TestOut::v_WriteStream(const char16_t* format, va_list arguments) {
    if (stream_ == Stream::kNone) {
        TellMissing(u"pso_Output");
        stream_ = Stream::kOutput;
    }
    if (label_ != nullptr) v_WriteUnits(label_);
    if (format == nullptr) return;
    char16_t area[kAreaSize];
    va_list again;
    va_copy(again, arguments);
    const std::size_t length = platform::FormatWhole(area, kAreaSize, format, arguments);
    if (length <= kAreaSize) {
        v_WriteUnits({area, length});
    } else {
        const std::unique_ptr<char16_t, FreeBlock> block(
            static_cast<char16_t*>(platform::TryAllocate(length * sizeof(char16_t))));
        if (block != nullptr) {
            static_cast<void>(platform::FormatWhole(block.get(), length, format, again));
            v_WriteUnits({block.get(), length});
        } else {
            v_WriteUnits(zelkor::detail::CutText({area, kAreaSize}, kAreaSize - 1));
        }
    }
    va_end(again);
}

void CT_TestOut::v_WriteDebugger(const char16_t* format, va_list arguments) {
    if (label_ != nullptr) platform::WriteDebugOutput(label_);
    char16_t area[kAreaSize];
    zelkor::detail::FormatCut(area, kAreaSize, format, arguments);
    platform::WriteDebugOutput(area);
}

void CT_TestOut::v_WriteUnits(std::u16string_view text) noexcept {
    const StandardStream standard =
        stream_ == Stream::kError ? StandardStream::kError : StandardStream::kOutput;
    if (stream_ != Stream::kFile && platform::IsTerminal(standard)) {
        platform::WriteText(standard, text);
        return;
    }
    char bytes[1024];
    while (!text.empty()) {
        const std::size_t count = std::min(text.size(), sizeof bytes / 2);
        for (std::size_t i = 0; i < count; ++i) {
            bytes[2 * i] = static_cast<char>(text[i] & 0xFF);
            bytes[2 * i + 1] = static_cast<char>(text[i] >> 8);
        }
        std::uint32_t done = 0;
        if (stream_ == Stream::kFile) {
            platform::WriteFile(file_, bytes, static_cast<std::uint32_t>(2 * count), &done);
        } else {
            platform::WriteBytes(standard, bytes, 2 * count);
        }
        text.remove_prefix(count);
    }
}
