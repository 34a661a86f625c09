#include "Foundation/Core/File/Stream.h"

#include <algorithm>
#include <cstring>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/File/Internal/FileDetail.h"
#include "Foundation/Core/File/WinFile.h"

using zelkor::detail::Failed;
using zelkor::detail::Record;

namespace {

constexpr unsigned int kFileErrorText = 60003;  // "File "%s": %s returned error %u"
constexpr unsigned int kMemoryErrorText = 60006;

}  // namespace

CT_FileStream::~CT_FileStream() {
    if (b_IsOpen()) file_->vv_Close();
}

void CT_FileStream::v_Open(et_Mode mode) {
    if (file_ == nullptr) return;
    if (mode != kRead && mode != kWrite) {
        Record({kFileErrorText, kFileErrorText}, file_->pcco_GetFullName()->qcuz_Get(), u"eo_mode",
               kFileErrorText);
        return;
    }
    if (file_->b_IsOpen()) return;
    const bool reading = mode == kRead;
    file_->vv_Open(reading ? CT_File::kReadAccess : CT_File::kWriteAccess,
                   reading ? CT_File::kOpenExisting : CT_File::kCreateAlways, CT_File::kShareRead,
                   CT_File::kAttributeNormal, 0);
    Failed();
}

BOOL CT_FileStream::b_IsOpen() const {
    return file_ != nullptr && file_->b_IsOpen() ? TRUE : FALSE;
}

CT_Stream::et_Mode CT_FileStream::eo_GetMode() const {
    if (!b_IsOpen()) return kClosed;
    return (file_->ec_GetOpenAccess() & CT_File::kWriteAccess) != 0 ? kWrite : kRead;
}

void CT_FileStream::v_Close() {
    if (file_ == nullptr) return;
    file_->vv_Close();
    Failed();
}

void CT_FileStream::v_SetOffset(unsigned int offset) {
    if (file_ == nullptr) return;
    zelkor::detail::SeekTo(*file_, offset);
    Failed();
}

unsigned int CT_FileStream::n_GetOffset() const {
    return file_ == nullptr ? 0 : file_->vn_GetOffset();
}

unsigned int CT_FileStream::n_GetSize() const {
    return file_ == nullptr ? 0 : file_->vn_GetSize();
}

BOOL CT_FileStream::b_IsEof() const {
    return file_ == nullptr ? TRUE : file_->vb_IsEof();
}

unsigned int CT_FileStream::n_Read(unsigned char* target, unsigned int count) {
    if (file_ == nullptr || target == nullptr) return 0;
    // At its end a readable file reads nothing anyway; asking for the end costs a look-up by name.
    const bool readable = (file_->ec_GetOpenAccess() & CT_File::kReadAccess) != 0;
    if (!readable && file_->vb_IsEof()) return 0;
    const unsigned int read = file_->vn_Read(target, count);
    return Failed() ? 0 : read;
}

unsigned int CT_FileStream::n_Write(const unsigned char* data, unsigned int count) {
    if (file_ == nullptr || data == nullptr) return 0;
    const unsigned int written = file_->vn_Write(data, count);
    return Failed() ? 0 : written;
}

void CT_BufferStream::v_Open(et_Mode mode) {
    mode_ = buffer_ == nullptr ? kClosed : mode;
    offset_ = 0;
}

void CT_BufferStream::v_Close() {
    mode_ = kClosed;
    offset_ = 0;
}

BOOL CT_BufferStream::b_IsOpen() const {
    return mode_ != kClosed;
}

void CT_BufferStream::v_SetOffset(unsigned int offset) {
    if (offset > CT_BufferStream::n_GetSize()) return Record({kMemoryErrorText, kMemoryErrorText});
    offset_ = offset;
}

unsigned int CT_BufferStream::n_GetOffset() const {
    return offset_;
}

unsigned int CT_BufferStream::n_GetSize() const {
    return buffer_ == nullptr ? 0 : buffer_->n_GetUsedSize();
}

BOOL CT_BufferStream::b_IsEof() const {
    return offset_ >= CT_BufferStream::n_GetSize();
}

unsigned int CT_BufferStream::n_Read(unsigned char* target, unsigned int count) {
    if (target == nullptr || CT_BufferStream::b_IsEof()) return 0;
    const unsigned int taken = std::min(count, buffer_->n_GetUsedSize() - offset_);
    std::memcpy(target, static_cast<const unsigned char*>(buffer_->qcv_Get()) + offset_, taken);
    offset_ += taken;
    return taken;
}

unsigned int CT_BufferStream::n_Write(const unsigned char* data, unsigned int count) {
    if (count == 0 || data == nullptr || buffer_ == nullptr) return 0;
    // The buffer may have been cut behind the stream's back.
    offset_ = std::min(offset_, buffer_->n_GetUsedSize());
    buffer_->v_Replace(data, count, offset_);
    offset_ += count;
    return count;
}
