#include "Foundation/Core/Input/Input.h"

#include <algorithm>
#include <cstring>

#include "Foundation/Core/Character/CharProperties.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/File/Internal/FileDetail.h"

using zelkor::detail::Failed;

namespace {

constexpr unsigned int kFileBufferSize = 16384;
constexpr unsigned int kJudgedBytes = 100;

BOOL LooksLikeUnicode(const unsigned char* data, unsigned int size) {
    return CT_CharProperties::sb_IsTextUnicode(data, std::min(size, kJudgedBytes));
}

BOOL LooksLikelyUnicode(const unsigned char* data, unsigned int size) {
    return CT_CharProperties::sb_IsTextLikelyUnicode(data, std::min(size, kJudgedBytes));
}

// Hands out the next block of memory that is held as a whole.
BOOL NextBlock(const unsigned char* memory, unsigned int size, unsigned int& offset,
               unsigned int maximum, const unsigned char** data, unsigned int* count) {
    if (offset >= size || data == nullptr || count == nullptr) return FALSE;
    *data = memory + offset;
    *count = std::min(maximum, size - offset);
    offset += *count;
    return TRUE;
}

// The sum of an offset and a count, at most the largest offset there is.
unsigned int Beyond(unsigned int offset, unsigned int count) {
    return offset + std::min(count, 0xFFFFFFFF - offset);
}

void OpenForReading(CT_WinFile& file) {
    file.vv_Open(CT_File::kReadAccess, CT_File::kOpenExisting, CT_File::kShareNone,
                 CT_File::kAttributeNormal, 0);
}

}  // namespace

CT_MemoryInput::CT_MemoryInput(unsigned int block_size, const unsigned char* data,
                               unsigned int length)
    : CT_Input(block_size), data_(data), size_(data == nullptr ? 0 : length), offset_(0) {}

void CT_MemoryInput::v_Set(unsigned int block_size, const unsigned char* data,
                           unsigned int length) {
    v_SetBuffer(block_size);
    data_ = data;
    size_ = data == nullptr ? 0 : length;
    offset_ = 0;
}

BOOL CT_MemoryInput::vb_IsUnicode() {
    return LooksLikeUnicode(data_, size_);
}

BOOL CT_MemoryInput::vb_IsLikelyUnicode() {
    return LooksLikelyUnicode(data_, size_);
}

BOOL CT_MemoryInput::vb_GetNextBuffer(unsigned int maximum, const unsigned char** data,
                                      unsigned int* count) {
    return NextBlock(data_, size_, offset_, maximum, data, count);
}

BOOL CT_MemoryInput::vb_GetNextBuffer(const unsigned char** data, unsigned int* count) {
    return vb_GetNextBuffer(n_GetBuffer(), data, count);
}

BOOL CT_MemoryInput::vb_CopyNextBuffer(unsigned char* target, unsigned int count) {
    if (vb_IsEmpty() || target == nullptr) return FALSE;
    std::memcpy(target, data_ + offset_, std::min(count, size_ - offset_));
    offset_ = Beyond(offset_, count);
    return TRUE;
}

BOOL CT_MemoryInput::vb_Skip(unsigned int count) {
    offset_ = Beyond(offset_, count);
    return !vb_IsEmpty();
}

CT_FileInput::CT_FileInput(unsigned int block_size, const CT_UString* name)
    : CT_Input(block_size), file_(name, kFileBufferSize) {}

CT_FileInput::~CT_FileInput() {
    if (file_.b_IsOpen()) file_.vv_Close();
}

void CT_FileInput::v_Set(unsigned int block_size, const CT_UString* name) {
    vv_Close();
    v_SetBuffer(block_size);
    file_.vv_Set(name, kFileBufferSize);
    size_ = 0;
    offset_ = 0;
}

void CT_FileInput::vv_Open() {
    vv_Close();
    block_.v_SetMinSize(n_GetBuffer(), FALSE);
    size_ = file_.vn_GetSize();
    offset_ = 0;
    OpenForReading(file_);
    Failed();
}

void CT_FileInput::vv_Close() {
    if (file_.b_IsOpen()) file_.vv_Close();
    Failed();
}

BOOL CT_FileInput::vb_IsUnicode() {
    const BOOL verdict = file_.b_IsUnicode();
    return Failed() ? FALSE : verdict;
}

BOOL CT_FileInput::vb_IsLikelyUnicode() {
    const BOOL verdict = file_.b_IsLikelyUnicode();
    return Failed() ? FALSE : verdict;
}

BOOL CT_FileInput::vb_GetNextBuffer(unsigned int maximum, const unsigned char** data,
                                    unsigned int* count) {
    if (vb_IsEmpty() || data == nullptr || count == nullptr) return FALSE;
    *count = file_.n_Read(&block_, maximum);
    if (!Advance(*count)) return FALSE;
    *data = static_cast<const unsigned char*>(block_.qcv_Get());
    return TRUE;
}

BOOL CT_FileInput::vb_GetNextBuffer(const unsigned char** data, unsigned int* count) {
    return vb_GetNextBuffer(n_GetBuffer(), data, count);
}

BOOL CT_FileInput::vb_CopyNextBuffer(unsigned char* target, unsigned int count) {
    if (vb_IsEmpty() || target == nullptr) return FALSE;
    const unsigned int read = file_.vn_Read(target, count);
    return Advance(read) && read == count;
}

BOOL CT_FileInput::vb_Skip(unsigned int count) {
    if (vb_IsEmpty()) return FALSE;
    offset_ = std::min(Beyond(offset_, count), size_);
    zelkor::detail::SeekTo(file_, offset_);
    return Failed() ? FALSE : TRUE;
}

// Accounts for a read; one that yielded nothing ends the input.
BOOL CT_FileInput::Advance(unsigned int count) {
    const bool failed = Failed();
    if (failed || count == 0) {
        if (file_.b_IsOpen()) file_.vv_Close();
        return FALSE;
    }
    offset_ += count;
    return TRUE;
}

CT_MappedFileInput::CT_MappedFileInput(unsigned int block_size, const CT_UString* name)
    : CT_Input(block_size), file_(name, kFileBufferSize) {}

CT_MappedFileInput::~CT_MappedFileInput() {
    if (file_.b_IsOpen()) file_.vv_Close();
}

void CT_MappedFileInput::v_Set(unsigned int block_size, const CT_UString* name) {
    vv_Close();
    v_SetBuffer(block_size);
    file_.vv_Set(name, kFileBufferSize);
}

void CT_MappedFileInput::vv_Open() {
    vv_Close();
    OpenForReading(file_);
    if (Failed()) return;
    const unsigned int size = file_.vn_GetSize();  // nobody else changes it any more
    file_.v_CreateMap(size);
    if (Failed()) return file_.vv_Close();
    data_ = static_cast<const unsigned char*>(file_.pv_GetMapping());
    size_ = size;
}

void CT_MappedFileInput::vv_Close() {
    if (file_.b_IsOpen()) file_.vv_Close();
    Failed();
    Forget();  // the view is gone, whatever became of the handle
}

BOOL CT_MappedFileInput::vb_IsUnicode() {
    const BOOL verdict = file_.b_IsUnicode();
    return Failed() ? FALSE : verdict;
}

BOOL CT_MappedFileInput::vb_IsLikelyUnicode() {
    const BOOL verdict = file_.b_IsLikelyUnicode();
    return Failed() ? FALSE : verdict;
}

BOOL CT_MappedFileInput::vb_GetNextBuffer(unsigned int maximum, const unsigned char** data,
                                          unsigned int* count) {
    return NextBlock(data_, size_, offset_, maximum, data, count);
}

BOOL CT_MappedFileInput::vb_GetNextBuffer(const unsigned char** data, unsigned int* count) {
    return vb_GetNextBuffer(n_GetBuffer(), data, count);
}

BOOL CT_MappedFileInput::vb_CopyNextBuffer(unsigned char* target, unsigned int count) {
    if (vb_IsEmpty() || target == nullptr) return FALSE;
    const unsigned int copied = std::min(count, size_ - offset_);
    std::memcpy(target, data_ + offset_, copied);
    offset_ += copied;
    return copied == count;
}

BOOL CT_MappedFileInput::vb_Skip(unsigned int count) {
    if (vb_IsEmpty()) return FALSE;
    offset_ = std::min(Beyond(offset_, count), size_);
    return TRUE;
}

void CT_MappedFileInput::Forget() {
    data_ = nullptr;
    size_ = 0;
    offset_ = 0;
}
