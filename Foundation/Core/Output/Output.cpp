#include "Foundation/Core/Output/Output.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"

using zelkor::detail::BufferAccess;
using zelkor::detail::Failed;

namespace {

constexpr unsigned int kToEnd = 0xFFFFFFFF;
constexpr unsigned int kFileBufferSize = 16384;

// Bytes of a text; 4 GiB and more as the most that 32 bits hold, which no buffer takes.
template <typename Unit>
unsigned int Bytes(const Unit* text, unsigned int count) {
    if (text == nullptr) return 0;
    const std::size_t length = count == kToEnd ? std::char_traits<Unit>::length(text) : count;
    return static_cast<unsigned int>(std::min<std::size_t>(length * sizeof(Unit), 0xFFFFFFFF));
}

void OpenForWriting(CT_WinFile& file) {
    file.vv_Open(CT_File::kWriteAccess, CT_File::kCreateAlways, CT_File::kShareNone,
                 CT_File::kAttributeNormal, 0);
}

// Appends bytes, also the target's own, as UTF-16 units; an odd last byte becomes a unit of its
// own.
void AppendBytes(CT_UString& target, const unsigned char* bytes, unsigned int count) {
    const CT_Buffer hold = BufferAccess::HoldIfOwn(*target.pcco_GetBuffer(), bytes, true);
    target.vv_SetMinSize(target.n_GetLength() + count / 2 + 1, TRUE);
    std::array<char16_t, 256> units;
    while (count > 0) {
        const auto piece = std::min<unsigned int>(count, sizeof units);
        units[(piece - 1) / 2] = 0;
        std::memcpy(units.data(), bytes, piece);
        target.v_Append(units.data(), (piece + 1) / 2);
        bytes += piece;
        count -= piece;
    }
}

}  // namespace

void CT_Output::v_Format(const char* format, ...) {
    CT_CString text;
    va_list arguments;
    va_start(arguments, format);
    text.v_Format(format, arguments);
    va_end(arguments);
    vv_AppendC(text.qccz_Get(), kToEnd, 0);
}

void CT_Output::v_Format(const char16_t* format, ...) {
    CT_UString text;
    va_list arguments;
    va_start(arguments, format);
    text.v_Format(format, arguments);
    va_end(arguments);
    vv_AppendU(text.qcuz_Get(), kToEnd);
}

CT_MemoryOutput::CT_MemoryOutput() : buffer_(new CT_Buffer) {}

CT_MemoryOutput::CT_MemoryOutput(const CT_Buffer* content) : buffer_(new CT_Buffer(content)) {}

CT_MemoryOutput::~CT_MemoryOutput() {
    delete buffer_;
}

void CT_MemoryOutput::v_Set() {
    delete std::exchange(buffer_, new CT_Buffer);
}

void CT_MemoryOutput::v_Set(const CT_Buffer* content) {
    delete std::exchange(buffer_, new CT_Buffer(content));
}

void CT_MemoryOutput::vv_AppendV(const void* data, unsigned int count) {
    if (data != nullptr) Buffer().v_Append(data, count);
}

void CT_MemoryOutput::vv_AppendC(const char* text, unsigned int count, unsigned int) {
    Buffer().v_Append(text, Bytes(text, count));
}

void CT_MemoryOutput::vv_AppendU(const char16_t* text, unsigned int count) {
    Buffer().v_Append(text, Bytes(text, count));
}

unsigned int CT_MemoryOutput::vn_GetSize() const {
    return buffer_ == nullptr ? 0 : buffer_->n_GetUsedSize();
}

void CT_MemoryOutput::v_AppendC(char character) {
    Buffer().v_Append(static_cast<unsigned char>(character));
}

CT_Buffer* CT_MemoryOutput::pco_GiveMemory() {
    return std::exchange(buffer_, nullptr);
}

CT_Buffer& CT_MemoryOutput::Buffer() {
    if (buffer_ == nullptr) buffer_ = new CT_Buffer;
    return *buffer_;
}

CT_FileOutput::CT_FileOutput(const CT_UString* name) {
    Attach(name);
}

CT_FileOutput::CT_FileOutput(CT_WinFile* file) {
    Attach(file);
}

CT_FileOutput::~CT_FileOutput() {
    Release();
}

void CT_FileOutput::v_Set(const CT_UString* name) {
    Release();
    Attach(name);
}

void CT_FileOutput::v_Set(CT_WinFile* file) {
    Release();
    Attach(file);
}

void CT_FileOutput::vv_AppendV(const void* data, unsigned int count) {
    if (file_ == nullptr || data == nullptr) return;
    file_->vn_Write(data, count);
    Failed();
}

void CT_FileOutput::vv_AppendC(const char* text, unsigned int count, unsigned int) {
    vv_AppendV(text, Bytes(text, count));
}

void CT_FileOutput::vv_AppendU(const char16_t* text, unsigned int count) {
    vv_AppendV(text, Bytes(text, count));
}

unsigned int CT_FileOutput::vn_GetSize() const {
    return file_ == nullptr ? 0 : file_->vn_GetSize();
}

CT_WinFile* CT_FileOutput::pco_GiveFile() {
    if (file_ != nullptr && file_->b_IsOpen()) file_->vv_Close();
    Failed();
    owns_file_ = FALSE;
    closes_file_ = FALSE;
    return std::exchange(file_, nullptr);
}

void CT_FileOutput::Attach(const CT_UString* name) {
    auto file = std::make_unique<CT_WinFile>(name, kFileBufferSize);
    OpenForWriting(*file);
    file_ = file.release();
    owns_file_ = TRUE;
    closes_file_ = TRUE;
    Failed();
}

void CT_FileOutput::Attach(CT_WinFile* file) {
    if (file == nullptr) return;
    if (!file->b_IsOpen()) {
        OpenForWriting(*file);
        closes_file_ = TRUE;
    }
    file_ = file;
    const bool failed = Failed();
    if (failed && !file_->b_IsOpen()) return;
    file_->vv_SetOffset(CT_File::kFromEnd, 0);
    Failed();
}

void CT_FileOutput::Release() {
    if (file_ != nullptr && closes_file_ && file_->b_IsOpen()) file_->vv_Close();
    Failed();
    if (owns_file_) delete file_;
    file_ = nullptr;
    owns_file_ = FALSE;
    closes_file_ = FALSE;
}

CT_StringOutput::CT_StringOutput(CT_String& target) {
    v_Set(target);
}

void CT_StringOutput::v_Set(CT_String& target) {
    target_ = &target;
    wide_ = static_cast<CT_UString*>(target.vpv_IsKindOf(CT_UString::spcco_GetType()));
}

void CT_StringOutput::vv_AppendV(const void* data, unsigned int count) {
    if (count == 0 || data == nullptr) return;
    if (wide_ != nullptr) {
        AppendBytes(*wide_, static_cast<const unsigned char*>(data), count);
    } else {
        Narrow().v_Append(static_cast<const char*>(data), count);
    }
    target_->vv_Update();
}

void CT_StringOutput::vv_AppendC(const char* text, unsigned int count, unsigned int code_page) {
    if (text == nullptr) return;
    if (wide_ != nullptr) {
        const CT_UString converted(text, count, code_page);
        wide_->v_Append(&converted);
    } else {
        Narrow().v_Append(text, count);
    }
}

void CT_StringOutput::vv_AppendU(const char16_t* text, unsigned int count) {
    if (text == nullptr) return;
    if (wide_ != nullptr) {
        wide_->v_Append(text, count);
    } else {
        Narrow().v_Append(text);
    }
}

unsigned int CT_StringOutput::vn_GetSize() const {
    return target_->vn_GetLength();
}

CT_CString& CT_StringOutput::Narrow() {
    return static_cast<CT_CString&>(*target_);
}
