#include "Foundation/Core/File/File.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Foundation/Core/Character/CharProperties.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/File/FileSystem.h"
#include "Foundation/Core/File/Internal/FileDetail.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Scan.h"

namespace platform = zelkor::platform;

namespace {

using zelkor::detail::ErrorIsSet;
using zelkor::detail::Failed;
using zelkor::detail::View;

constexpr unsigned int kAll = 0xFFFFFFFF;
constexpr unsigned int kBufferUnit = 1024;

// What lines of 8-bit and of UTF-16 text differ in.
template <typename Text>
struct Kind;

template <>
struct Kind<CT_CString> {
    using Unit = char;
    static constexpr unsigned int kBlock = 256;  // bytes
    static constexpr unsigned int kReadAheadBlock = 4096;
    static constexpr bool kHasMark = false;
};

template <>
struct Kind<CT_UString> {
    using Unit = char16_t;
    static constexpr unsigned int kBlock = 512;
    static constexpr unsigned int kReadAheadBlock = 8192;
    static constexpr bool kHasMark = true;
};

template <typename Text>
using UnitOf = typename Kind<Text>::Unit;
template <typename Text>
using ViewOf = std::basic_string_view<UnitOf<Text>>;
template <typename Text>
constexpr unsigned int kUnit = static_cast<unsigned int>(sizeof(UnitOf<Text>));

unsigned int RoundBufferSize(unsigned int size) {
    return (size + kBufferUnit - 1) & ~(kBufferUnit - 1);
}

// The used part of the buffer from unit `from` on; an odd last byte is no unit.
template <typename Text>
ViewOf<Text> Units(const CT_Buffer& buffer, unsigned int from) {
    const ViewOf<Text> all(static_cast<const UnitOf<Text>*>(buffer.qcv_Get()),
                           buffer.n_GetUsedSize() / kUnit<Text>);
    return all.substr(std::min<std::size_t>(from, all.size()));
}

char* Writable(CT_CString& text) {
    return text.qcz_Get();
}
char16_t* Writable(CT_UString& text) {
    return text.quz_Get();
}

// Builds one line in the caller's string, whose block is kept when nobody shares it.
template <typename Text>
class LineBuilder {
public:
    explicit LineBuilder(Text& line) : line_(line) {
        if (line.pcco_GetBuffer()->n_GetUseCount() > 1) line.vv_Init();
    }
    LineBuilder(const LineBuilder&) = delete;
    LineBuilder& operator=(const LineBuilder&) = delete;
    ~LineBuilder() {
        if (length_ == 0) line_.vv_Remove(kAll, 0);  // nothing replaced what the string held
    }

    // Adds the line, or the part of it, that `data` begins with, without its line end. A carriage
    // return at the end of `data` is dropped too: its line feed may be in the block that follows.
    // Returns the units taken with the line feed, or 0 when there is none and all was taken.
    unsigned int Take(ViewOf<Text> data) {
        const std::size_t feed = platform::FindUnit(data.data(), data.size(), UnitOf<Text>{'\n'});
        ViewOf<Text> text = data.substr(0, feed);
        if (!text.empty() && text.back() == UnitOf<Text>{'\r'}) text.remove_suffix(1);
        if (!text.empty()) {
            line_.vv_SetLength(length_ + static_cast<unsigned int>(text.size()));
            text.copy(Writable(line_) + length_, text.size());
            length_ += static_cast<unsigned int>(text.size());
        }
        return feed == platform::kNoHit ? 0 : static_cast<unsigned int>(feed) + 1;
    }

    [[nodiscard]] unsigned int Bytes() const { return length_ * kUnit<Text>; }

private:
    Text& line_;
    unsigned int length_ = 0;
};

bool IsByteOrderMark(const unsigned char* bytes) {
    return bytes[0] == 0xFF && bytes[1] == 0xFE;
}

template <typename Text>
unsigned int StripLine(unsigned int result, Text& line, const Text* set) {
    if (ErrorIsSet()) return 0;
    if (set != nullptr) line.vv_Strip(set);
    return result;
}

}  // namespace

CT_File::CT_File() = default;

CT_File::CT_File(const CT_UString* name, unsigned int buffer_size)
    : buffer_size_(RoundBufferSize(buffer_size)) {
    v_SetFullName(name);
}

CT_File::CT_File(const CT_File* other) {
    if (other == nullptr) return;
    buffer_size_ = other->buffer_size_;
    v_SetFullName(&other->full_name_);
}

CT_File::~CT_File() = default;

void CT_File::vv_Set(const CT_File* other) {
    if (other == nullptr) return CT_File::vv_Set();
    const CT_UString name(other->full_name_);  // `other` may be this very file
    CT_File::vv_Set(&name, other->buffer_size_);
}

void CT_File::vv_Set(const CT_UString* name, unsigned int buffer_size) {
    const CT_UString kept(name);  // it may be this file's own
    CT_File::vv_Set();
    v_SetFullName(&kept);
    buffer_size_ = RoundBufferSize(buffer_size);
}

void CT_File::vv_Set() {
    full_name_.vv_Init();
    drive_.vv_Init();
    directory_.vv_Init();
    name_.vv_Init();
    extension_.vv_Init();
    line_buffer_.v_Set(0, kAll, TRUE);
    read_ahead_ = 0;
    ClearOpenState();
}

void CT_File::v_SetFullName(const CT_UString* name) {
    full_name_.v_Set(name);
    SplitFullName();
}

void CT_File::v_SetDrive(const CT_UString* drive) {
    drive_.v_Set(drive);
    RebuildFullName();
}

void CT_File::v_SetDirectory(const CT_UString* directory) {
    directory_.v_Set(directory);
    RebuildFullName();
}

void CT_File::v_SetName(const CT_UString* name) {
    name_.v_Set(name);
    RebuildFullName();
}

void CT_File::v_SetExtension(const CT_UString* extension) {
    extension_.v_Set(extension);
    RebuildFullName();
}

void CT_File::v_FullPath() {
    CT_FileSystem::sv_FullPath(&full_name_);
    if (Failed()) return;
    SplitFullName();
}

BOOL CT_File::b_IsExistent() const {
    return CT_FileSystem::sb_IsExistent(&full_name_);
}

unsigned int CT_File::n_Read(CT_Buffer* buffer, unsigned int count) {
    if (count == 0 || buffer == nullptr) return 0;
    buffer->v_SetMinSize(count, FALSE);
    void* const data = buffer->qv_Get();
    buffer->v_SetUsedSize(0);  // a failed read leaves nothing
    const unsigned int read = vn_Read(data, count);
    if (Failed()) return 0;
    buffer->v_SetUsedSize(read);
    return read;
}

unsigned int CT_File::n_Write(const CT_Buffer* buffer, unsigned int count) {
    if (count == 0 || buffer == nullptr || buffer->n_GetUsedSize() == 0) return 0;
    if (count == kAll) count = buffer->n_GetUsedSize();
    if (count > buffer->n_GetMaximumSize()) {
        platform::SetLastError(platform::kErrorInvalidParameter);
        zelkor::detail::RecordSystemError(full_name_.qcuz_Get());
        return 0;
    }
    const unsigned int written = vn_Write(buffer->qcv_Get(), count);
    return Failed() ? 0 : written;
}

template <typename Text>
unsigned int CT_File::ReadLine(Text& line) {
    v_SetAccess(kReadTransfer);
    if (Failed()) return 0;
    LineBuilder<Text> builder(line);
    for (bool skips_mark = Kind<Text>::kHasMark;; skips_mark = false) {
        const unsigned int read = FillLineBuffer(Kind<Text>::kBlock, skips_mark);
        if (Failed()) return 0;
        if (read == 0) return builder.Bytes();
        const unsigned int taken = builder.Take(Units<Text>(line_buffer_, 0)) * kUnit<Text>;
        if (taken == 0) continue;
        if (taken < read) vv_SetOffset(kFromCurrent, -static_cast<int>(read - taken));
        return Failed() ? 0 : builder.Bytes() + kUnit<Text>;
    }
}

template <typename Text>
unsigned int CT_File::ReadLineAhead(Text& line) {
    v_SetAccess(kReadTransfer);
    if (Failed()) return 0;
    LineBuilder<Text> builder(line);
    for (;;) {
        if (read_ahead_ == 0) {
            const unsigned int read =
                FillLineBuffer(Kind<Text>::kReadAheadBlock, Kind<Text>::kHasMark);
            if (Failed() || read == 0) return 0;
        }
        const auto rest = Units<Text>(line_buffer_, read_ahead_);
        const unsigned int taken = builder.Take(rest);
        read_ahead_ = taken == 0 || taken == rest.size() ? 0 : read_ahead_ + taken;
        if (taken != 0) return builder.Bytes() + kUnit<Text>;
    }
}

// Fills the line buffer as far as the file goes and answers the bytes in it; 0 on failure. With
// `skips_mark`, a byte-order mark at the file's beginning is passed over.
unsigned int CT_File::FillLineBuffer(unsigned int size, bool skips_mark) {
    line_buffer_.v_SetMinSize(size, FALSE);
    auto* const data = static_cast<unsigned char*>(line_buffer_.qv_Get());
    line_buffer_.v_SetUsedSize(0);
    bool looks_for_mark = skips_mark && vn_GetOffset() == 0;
    unsigned int used = 0;
    while (used < size) {
        const unsigned int read = vn_Read(data + used, (looks_for_mark ? 2 : size) - used);
        if (Failed()) return 0;
        if (read == 0) break;
        used += read;
        if (!looks_for_mark || used < 2) continue;
        looks_for_mark = false;
        if (IsByteOrderMark(data)) used = 0;
    }
    line_buffer_.v_SetUsedSize(used);
    return used;
}

unsigned int CT_File::n_ReadLineC(CT_CString* line, const CT_CString* strip) {
    return line == nullptr ? 0 : StripLine(ReadLine(*line), *line, strip);
}

unsigned int CT_File::n_ReadLineU(CT_UString* line, const CT_UString* strip) {
    return line == nullptr ? 0 : StripLine(ReadLine(*line), *line, strip);
}

unsigned int CT_File::n_ReadLineCSequential(CT_CString* line, const CT_CString* strip) {
    return line == nullptr ? 0 : StripLine(ReadLineAhead(*line), *line, strip);
}

unsigned int CT_File::n_ReadLineUSequential(CT_UString* line, const CT_UString* strip) {
    return line == nullptr ? 0 : StripLine(ReadLineAhead(*line), *line, strip);
}

template <typename Text>
void CT_File::WriteLine(const Text* line, bool new_line) {
    static constexpr std::array<UnitOf<Text>, 2> kLineEnd{'\r', '\n'};
    const ViewOf<Text> text = line == nullptr ? ViewOf<Text>() : View(*line);
    std::array<UnitOf<Text>, 256> whole;
    if (new_line && text.size() <= whole.size() - kLineEnd.size()) {  // one transfer instead of two
        const auto end = std::ranges::copy(text, whole.begin()).out;
        std::ranges::copy(kLineEnd, end);
        const auto units = static_cast<unsigned int>(text.size() + kLineEnd.size());
        vn_Write(whole.data(), units * kUnit<Text>);
        Failed();
        return;
    }
    if (!text.empty()) vn_Write(text.data(), line->n_GetLength() * kUnit<Text>);
    if (Failed() || !new_line) return;
    vn_Write(kLineEnd.data(), sizeof kLineEnd);
    Failed();
}

void CT_File::v_WriteLineC(const CT_CString* line, BOOL new_line) {
    WriteLine(line, new_line != FALSE);
}

void CT_File::v_WriteLineU(const CT_UString* line, BOOL new_line) {
    WriteLine(line, new_line != FALSE);
}

bool CT_File::BeginsLike(BOOL (*test)(const void*, unsigned int)) {
    constexpr unsigned int kLooked = 100;
    v_SetAccess(kReadTransfer);
    if (Failed()) return false;
    const unsigned int size = vn_GetSize();
    if (size < 2 || size % 2 != 0) return false;
    alignas(char16_t) std::array<unsigned char, kLooked> bytes;
    const unsigned int read = vn_Read(bytes.data(), kLooked);
    if (Failed()) return false;
    const bool verdict = test(bytes.data(), read) != FALSE;
    vv_SetOffset(kFromStart, 0);
    return !Failed() && verdict;
}

BOOL CT_File::b_IsUnicode() {
    return BeginsLike(&CT_CharProperties::sb_IsTextUnicode) ? TRUE : FALSE;
}

BOOL CT_File::b_IsLikelyUnicode() {
    return BeginsLike(&CT_CharProperties::sb_IsTextLikelyUnicode) ? TRUE : FALSE;
}

void CT_File::v_SetAccess(et_FileAccess access) {
    if (access == direction_) return;
    zelkor::detail::SeekTo(*this, vn_GetOffset());
    if (Failed()) return;
    direction_ = access;
}

void CT_File::StoreOpenState(et_Access access, et_Open mode, et_Share share,
                             unsigned int attributes, unsigned int flags) {
    open_access_ = access;
    open_mode_ = mode;
    open_share_ = share;
    open_attributes_ = attributes;
    open_flags_ = flags;
    open_ = TRUE;
}

void CT_File::ClearOpenState() {
    direction_ = kNoTransfer;
    open_ = FALSE;
    open_access_ = kNoAccess;
    open_mode_ = et_Open{};
    open_share_ = kShareNone;
    open_attributes_ = 0;
    open_flags_ = 0;
}

void CT_File::SplitFullName() {
    CT_FileSystem::sv_SplitPath(&full_name_, &drive_, &directory_, &name_, &extension_);
}

void CT_File::RebuildFullName() {
    CT_FileSystem::sv_MakePath(&full_name_, &drive_, &directory_, &name_, &extension_);
}

void zelkor::detail::SeekTo(CT_File& file, unsigned int offset) {
    constexpr unsigned int kReach = 0x7FFFFFFF;  // a distance is signed: farther takes two steps
    constexpr unsigned int kUnreachable = 0xFFFFFFFF;  // refused as -1, without a first step
    if (offset <= kReach || offset == kUnreachable) {
        return file.vv_SetOffset(CT_File::kFromStart, static_cast<int>(offset));
    }
    file.vv_SetOffset(CT_File::kFromStart, static_cast<int>(kReach));
    if (file.vn_GetOffset() != kReach) return;
    file.vv_SetOffset(CT_File::kFromCurrent, static_cast<int>(offset - kReach));
}
