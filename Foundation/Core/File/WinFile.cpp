#include "Foundation/Core/File/WinFile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <utility>

#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/File/FileSystem.h"
#include "Foundation/Core/File/Internal/FileDetail.h"
#include "Foundation/Core/String/Internal/PlatformName.h"
#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Memory.h"

namespace platform = zelkor::platform;

namespace {

using zelkor::detail::Failed;
using zelkor::detail::PlatformName;
using zelkor::detail::Seconds;

constexpr unsigned int kRenamedBufferSize = 16384;
constexpr unsigned int kWholeFile = 0xFFFFFFFF;
constexpr std::uint64_t kMapStep = 0x100000;
constexpr std::uint64_t kLargestFile = 0xFFFFFFFF;
constexpr unsigned int kFileTooLarge = 27;  // the C runtime's numbers
constexpr unsigned int kInvalidArgument = 22;
constexpr unsigned int kMessageCallFailed = 60003;

constinit _SHI_Pool pool{sizeof(CT_WinFile), 32};

// A bit of vv_Open's arguments and what the platform takes for it.
struct Bit {
    unsigned int bit, platform;
};

constexpr auto kAttributeBits = std::to_array<Bit>({
    {CT_File::kAttributeNormal, platform::kFileNormal},
    {CT_File::kAttributeArchive, platform::kFileArchive},
    {CT_File::kAttributeCompressed, platform::kFileCompressed},
    {CT_File::kAttributeHidden, platform::kFileHidden},
    {CT_File::kAttributeReadOnly, platform::kFileReadOnly},
    {CT_File::kAttributeSystem, platform::kFileSystem},
    {CT_File::kAttributeDirectory, platform::kFileFolder},
    {CT_File::kAttributeTemporary, platform::kFileTemporary},
});

constexpr auto kFlagBits = std::to_array<Bit>({
    {CT_File::kFlagWriteThrough, platform::kFlagWriteThrough},
    {CT_File::kFlagOverlapped, platform::kFlagOverlapped},
    {CT_File::kFlagNoBuffering, platform::kFlagNoBuffering},
    {CT_File::kFlagRandomAccess, platform::kFlagRandomAccess},
    {CT_File::kFlagSequentialScan, platform::kFlagSequentialScan},
    {CT_File::kFlagDeleteOnClose, platform::kFlagDeleteOnClose},
});

template <std::size_t N>
unsigned int PlatformBits(const std::array<Bit, N>& bits, unsigned int given) {
    unsigned int word = 0;
    for (const Bit& row : bits) {
        if (given & row.bit) word |= row.platform;
    }
    return word;
}

// By access and by mode of opening.
constexpr std::array<unsigned int, 4> kAccess{
    platform::kAccessNone,
    platform::kAccessRead,
    platform::kAccessWrite,
    platform::kAccessRead | platform::kAccessWrite,
};
constexpr std::array<unsigned int, 4> kDisposition{
    0,
    platform::kOpenExisting,
    platform::kCreateAlways,
    platform::kOpenAlways,
};

// A handle at the position where the object is to begin, or INVALID_HANDLE_VALUE with the last
// error set: the file is too large, or its end cannot be found.
HANDLE Positioned(HANDLE handle, bool at_end, std::uint64_t* position) {
    if (handle == INVALID_HANDLE_VALUE) return handle;
    std::uint64_t size = 0;
    *position = 0;
    bool good = platform::QueryFileSize(handle, &size) &&
                (!at_end || platform::SetFilePosition(handle, 0, platform::kSeekEnd, position));
    if (good && (size > kLargestFile || *position >= kLargestFile)) {
        platform::SetLastError(platform::kErrorFileTooLarge);
        good = false;
    }
    if (good) return handle;
    const std::uint32_t error = platform::LastError();
    platform::CloseHandle(handle);
    platform::SetLastError(error);
    return INVALID_HANDLE_VALUE;
}

}  // namespace

CT_WinFile::CT_WinFile() = default;

CT_WinFile::CT_WinFile(const CT_UString* name, unsigned int buffer_size)
    : CT_File(name, buffer_size) {}

CT_WinFile::CT_WinFile(const CT_File* other) : CT_File(other) {}

CT_WinFile::~CT_WinFile() {
    CloseForReset();
}

void* CT_WinFile::operator new(std::size_t size) {
    // a derived class without operators of its own does not fit the blocks
    void* const block =
        size == sizeof(CT_WinFile) ? platform::AllocateBlock(&pool) : platform::Allocate(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void CT_WinFile::operator delete(void* block, std::size_t size) {
    if (size == sizeof(CT_WinFile)) {
        platform::FreeBlock(&pool, block);
    } else {
        platform::Free(block);
    }
}

_SHI_Pool* CT_WinFile::spso_GetMemPool() {
    return &pool;
}

void CT_WinFile::vv_Set(const CT_File* other) {
    CloseForReset();
    CT_File::vv_Set(other);
}

void CT_WinFile::vv_Set(const CT_UString* name, unsigned int buffer_size) {
    CloseForReset();
    CT_File::vv_Set(name, buffer_size);
}

void CT_WinFile::vv_Set() {
    CloseForReset();
    CT_File::vv_Set();
}

void CT_WinFile::vv_Open(et_Access access, et_Open mode, et_Share share, unsigned int attributes,
                         unsigned int flags) {
    handle_ = INVALID_HANDLE_VALUE;
    flush_error_ = 0;
    const bool known = access < kAccess.size() && mode != 0 && mode < kDisposition.size() &&
                       share <= kShareReadWrite;
    if (!known) return void(Refuse(platform::kErrorInvalidParameter));
    const PlatformName name(pcco_GetFullName());
    const unsigned int word =
        PlatformBits(kAttributeBits, attributes) | PlatformBits(kFlagBits, flags);
    std::uint64_t position = 0;
    const auto open = [&] {
        return Positioned(
            platform::OpenFile(name.Get(), kAccess[access], share, kDisposition[mode], word),
            mode == kAppend, &position);
    };
    handle_ = open();
    if (handle_ == INVALID_HANDLE_VALUE && mode == kAppend) {
        platform::SetLastError(platform::kErrorSuccess);
        handle_ = open();
    }
    if (handle_ == INVALID_HANDLE_VALUE) return Fail();
    platform::SetLastError(platform::kErrorSuccess);  // 183: it existed before
    offset_ = static_cast<unsigned int>(position);
    StoreOpenState(access, mode, share, attributes, flags);
}

void CT_WinFile::vv_Close() {
    if (mapping_ != nullptr) {
        v_CloseMap(0);
        Failed();
    }
    if (!platform::CloseHandle(handle_)) return Fail();
    handle_ = nullptr;
    offset_ = 0;
    ClearOpenState();
    TellFlushFailure();
}

void CT_WinFile::vv_Flush() {
    TellFlushFailure();
    if (!platform::FlushFile(handle_)) Fail();
}

void CT_WinFile::vv_Remove() {
    if (!platform::RemoveFile(PlatformName(pcco_GetFullName()).Get())) Fail();
}

void CT_WinFile::vv_Rename(const CT_UString* new_name) {
    const PlatformName from(pcco_GetFullName());
    if (!platform::RenameFile(from.Get(), PlatformName(new_name).Get(), false, true)) {
        return FailBetween(new_name);
    }
    vv_Set(new_name, kRenamedBufferSize);
    Failed();
}

unsigned int CT_WinFile::vn_Read(void* buffer, unsigned int count) {
    if (count == 0) return 0;
    v_SetAccess(kReadTransfer);
    if (Failed()) return 0;
    if (buffer == nullptr) return Refuse(platform::kErrorInvalidParameter);
    std::uint32_t read = 0;
    if (view_ != nullptr) {
        read = n_ReadMap(buffer, count);
    } else if (!platform::ReadFile(handle_, buffer, std::clamp(~offset_, 1u, count), &read)) {
        ForgetDirection();  // the file pointer may have moved
        Fail();
        return 0;
    }
    // Behind the largest offset a file has no more, but a pipe may.
    if (read > ~offset_) {
        ForgetDirection();
        return Refuse(platform::kErrorFileTooLarge);
    }
    offset_ += read;
    return read;
}

unsigned int CT_WinFile::vn_Write(const void* data, unsigned int count) {
    if (count == 0) return 0;
    v_SetAccess(kWriteTransfer);
    if (Failed()) return 0;
    if (data == nullptr) return Refuse(platform::kErrorInvalidParameter);
    // What is written ends where a position can be set.
    if (count >= ~offset_) return Refuse(platform::kErrorFileTooLarge);
    std::uint32_t written = 0;
    if (view_ != nullptr) {
        written = n_WriteMap(data, count);
        if (Failed()) return 0;
    } else if (!platform::WriteFile(handle_, data, count, &written)) {
        ForgetDirection();
        Fail();
        return 0;
    }
    offset_ += written;
    return written;
}

unsigned int CT_WinFile::vn_GetSize() const {
    return CT_FileSystem::sn4_GetSize(pcco_GetFullName());
}

unsigned int CT_WinFile::vn_GetOffset() const {
    return offset_;
}

void CT_WinFile::vv_SetOffset(et_Origin origin, int distance) {
    // mapped transfers leave the file pointer where it was
    if (view_ != nullptr && origin == kFromCurrent && !MoveTo(offset_)) return Fail();
    std::uint64_t position = 0;
    if (!platform::SetFilePosition(handle_, distance, origin, &position)) return Fail();
    if (position >= kLargestFile) {
        MoveTo(offset_);
        return void(Refuse(platform::kErrorFileTooLarge));
    }
    offset_ = static_cast<unsigned int>(position);
}

BOOL CT_WinFile::vb_IsEof() const {
    return offset_ >= vn_GetSize() ? TRUE : FALSE;
}

void CT_WinFile::v_LockFile(unsigned int offset, unsigned int length) {
    if (!platform::LockFile(handle_, offset, length)) Fail();
}

void CT_WinFile::v_UnlockFile(unsigned int offset, unsigned int length) {
    if (!platform::UnlockFile(handle_, offset, length)) Fail();
}

void CT_WinFile::v_CreateMap(unsigned int minimum_size) {
    platform::FileStatus status{};
    if (platform::QueryStatus(PlatformName(pcco_GetFullName()).Get(), &status) != 0) {
        status.size = 0;
    }
    std::uint64_t size = status.size;
    if (ec_GetOpenAccess() != kReadAccess && minimum_size != kWholeFile) {
        const std::uint64_t target = std::max<std::uint64_t>(minimum_size, status.size);
        size = mapped_size_;
        if (size < target) size += (target - size + kMapStep - 1) / kMapStep * kMapStep;
    }
    if (size > kLargestFile) return void(Refuse(platform::kErrorFileTooLarge));
    if (!MakeMapping(size)) Fail();
}

void CT_WinFile::v_CloseMap(unsigned int new_length) {
    if (view_ == nullptr) return;
    if (!platform::UnmapView(view_)) Fail();
    if (!platform::CloseHandle(mapping_)) Fail();
    view_ = nullptr;
    mapping_ = nullptr;
    mapped_size_ = 0;
    if (ec_GetOpenAccess() == kReadAccess || new_length == 0) {
        return ForgetDirection();  // the file pointer is not where the mapped transfers ended
    }
    if (!MoveTo(new_length)) return Fail();
    offset_ = new_length;
    v_SetEndOfFile();
    Failed();
}

void CT_WinFile::v_FlushMap() {
    if (view_ == nullptr || platform::FlushView(view_, 0)) return;
    if (flush_error_ == 0) flush_error_ = platform::LastError();
}

void CT_WinFile::TellFlushFailure() {
    if (flush_error_ == 0) return;
    platform::SetLastError(std::exchange(flush_error_, 0));
    Fail();
}

void CT_WinFile::v_SetEndOfFile() {
    if (!platform::SetEndOfFile(handle_)) Fail();
}

void CT_WinFile::v_SetAttributes(unsigned int attributes) {
    if (!platform::SetAttributes(PlatformName(pcco_GetFullName()).Get(), attributes)) Fail();
}

unsigned int CT_WinFile::n_GetAttributes() {
    const unsigned int attributes =
        platform::QueryAttributes(PlatformName(pcco_GetFullName()).Get());
    if (attributes == platform::kInvalidAttributes) Fail();
    return attributes;
}

void CT_WinFile::v_Append(const CT_WinFile* source, unsigned int block_size) {
    if (source == nullptr) return void(Refuse(platform::kErrorInvalidParameter));
    if (source == this) return void(Refuse(platform::kErrorSharingViolation));
    AppendAll(const_cast<CT_WinFile&>(*source), block_size);
}

void CT_WinFile::v_CopyFile(const CT_UString* target) const {
    const PlatformName from(pcco_GetFullName());
    if (!platform::DuplicateFile(from.Get(), PlatformName(target).Get(), true)) {
        FailBetween(target);
    }
}

void CT_WinFile::v_GetFileInformation(struct _stat* information) const {
    platform::FileStatus status{};
    unsigned int error = static_cast<unsigned int>(
        platform::QueryStatus(PlatformName(pcco_GetFullName()).Get(), &status));
    if (error == 0 && status.size > kLargestFile) error = kFileTooLarge;
    if (information == nullptr) error = kInvalidArgument;
    if (error != 0) {
        zelkor::detail::Record({error, kMessageCallFailed}, pcco_GetFullName()->qcuz_Get(),
                               u"_wstat", error);
        return;
    }
    *information = {};
    information->st_dev = status.device;
    information->st_rdev = status.device;
    information->st_ino = static_cast<unsigned short>(status.index);
    information->st_mode = static_cast<unsigned short>(status.mode);
    information->st_nlink = static_cast<short>(status.links);
    information->st_size = static_cast<unsigned int>(status.size);
    information->st_atime = Seconds(status.access);
    information->st_mtime = Seconds(status.modification);
    information->st_ctime = Seconds(status.creation);
}

void CT_WinFile::v_GetFileInfo(BY_HANDLE_FILE_INFORMATION* information) {
    if (information == nullptr) {
        Refuse(platform::kErrorInvalidParameter);
    } else if (!platform::QueryFileInformation(handle_, information)) {
        Fail();
    }
}

void CT_WinFile::sv_SetHandleCount(unsigned int count) {
    platform::SetHandleCount(count);
}

void CT_WinFile::Fail(const char* file, unsigned int line) const {
    zelkor::detail::RecordSystemError(pcco_GetFullName()->qcuz_Get(), file, line);
}

unsigned int CT_WinFile::Refuse(unsigned int error, const char* file, unsigned int line) const {
    platform::SetLastError(error);
    Fail(file, line);
    return 0;
}

void CT_WinFile::FailBetween(const CT_UString* target, const char* file, unsigned int line) const {
    CT_UString names(pcco_GetFullName());
    names.v_Append(u" : ");
    names.v_Append(target);
    zelkor::detail::RecordSystemError(names.qcuz_Get(), file, line);
}

void CT_WinFile::CloseForReset() {
    if (b_IsOpen()) {
        CT_WinFile::vv_Close();
        Failed();
        // the object forgets the handle now, so it must go even if closing failed
        if (b_IsOpen()) platform::CloseHandle(handle_);
    }
    handle_ = nullptr;
    offset_ = 0;
    mapping_ = nullptr;
    view_ = nullptr;
    mapped_size_ = 0;
}

bool CT_WinFile::MoveTo(unsigned int position) {
    return platform::SetFilePosition(handle_, position, platform::kSeekBegin, nullptr);
}

bool CT_WinFile::MakeMapping(std::uint64_t size) {
    const bool writable = ec_GetOpenAccess() != kReadAccess;
    mapped_size_ = 0;
    mapping_ = platform::CreateMapping(handle_, writable, size);
    if (mapping_ == nullptr) return false;
    view_ = platform::MapView(mapping_, writable, size);
    if (view_ == nullptr) {
        const std::uint32_t error = platform::LastError();
        platform::CloseHandle(mapping_);
        platform::SetLastError(error);
        mapping_ = nullptr;
        return false;
    }
    mapped_size_ = static_cast<unsigned int>(size);
    return true;
}

// Lets the view grow where it is, which keeps its pages; false when it must be made anew.
bool CT_WinFile::GrowMapping(unsigned int minimum_size) {
    const std::uint64_t size = (std::uint64_t{minimum_size} + kMapStep - 1) / kMapStep * kMapStep;
    if (size > kLargestFile || !platform::GrowView(mapping_, view_, size)) return false;
    mapped_size_ = static_cast<unsigned int>(size);
    return true;
}

void CT_WinFile::AppendAll(CT_WinFile& source, unsigned int block_size) {
    source.vv_Open(kReadAccess, kOpenExisting, kShareNone, kAttributeNormal, 0);
    if (Failed()) return;
    vv_Open(kWriteAccess, kAppend, kShareNone, kAttributeNormal, 0);
    if (Failed()) return;
    CT_Buffer block;
    while (source.n_Read(&block, block_size) != 0) {
        const auto* const data = static_cast<const char*>(block.qcv_Get());
        for (unsigned int done = 0; done < block.n_GetUsedSize();) {
            const unsigned int written = vn_Write(data + done, block.n_GetUsedSize() - done);
            if (Failed()) return;
            // no error and no progress: nothing of the source may be lost
            if (written == 0) return void(Refuse(platform::kErrorWriteFault));
            done += written;
        }
    }
    if (Failed()) return;
    vv_Close();
    if (Failed()) return;
    source.vv_Close();
    Failed();
}

unsigned int CT_WinFile::n_ReadMap(void* buffer, unsigned int count) {
    if (offset_ >= mapped_size_) return 0;
    const unsigned int read = std::min(count, mapped_size_ - offset_);
    std::memcpy(buffer, static_cast<const char*>(view_) + offset_, read);
    return read;
}

unsigned int CT_WinFile::n_WriteMap(const void* data, unsigned int count) {
    const unsigned int end = offset_ + count;  // the caller has seen to it that this fits
    if (ec_GetOpenAccess() == kReadAccess) return Refuse(platform::kErrorAccessDenied);
    if (end > mapped_size_ && !GrowMapping(end)) {
        v_CloseMap(0);
        if (Failed()) return 0;
        v_CreateMap(end);
        if (Failed()) return 0;
    }
    std::memcpy(static_cast<char*>(view_) + offset_, data, count);
    return count;
}
