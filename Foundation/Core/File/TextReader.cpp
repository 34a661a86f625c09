#include "Foundation/Core/File/TextReader.h"

#include <algorithm>
#include <cstring>

#include "Foundation/Core/Base/OS.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Text/LineEnd.h"

namespace platform = zelkor::platform;

using zelkor::detail::ClearError;
using zelkor::detail::ErrorIsSet;
using zelkor::detail::Failed;

namespace {

constexpr unsigned int kMostAttempts = 3;
constexpr char16_t kCarriageReturn = 13;
constexpr char16_t kLineFeed = 10;

// Number of bytes at the end that begin a UTF-8 character without completing it: 0 to 3.
unsigned int CutUtf8Tail(const unsigned char* bytes, unsigned int count) {
    for (unsigned int back = 1; back <= std::min(count, 3u); ++back) {
        const unsigned char byte = bytes[count - back];
        if ((byte & 0xC0) == 0x80) continue;
        const unsigned int length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
        return length > back ? back : 0;
    }
    return 0;
}

}  // namespace

CT_StreamTextReader::CT_StreamTextReader(CT_Stream* stream, CT_Codepage encoding, BOOL sniff)
    : stream_(stream) {
    if (stream_ == nullptr) return;
    if (!stream_->b_IsOpen()) {
        stream_->v_Open(CT_Stream::kRead);
        if (Failed()) return;
    }
    stream_size_ = stream_->n_GetSize();
    const bool both_byte_orders = sniff == kBothByteOrders;
    if (!sniff || !b_SniffEncoding(both_byte_orders)) encoding_ = encoding;
    if (Failed()) return;
    if (!encoding_.b_IsValid()) encoding_ = CT_Codepage::kPseudoAnsi;
    const unsigned int page = encoding_.n_Get();
    const bool big_endian = both_byte_orders && encoding_.eo_Get() == CT_Codepage::kUtf16BigEndian;
    if (big_endian || (page != platform::kUtf8Page && !platform::TakesTableFlags(page))) {
        decoder_ = platform::TextDecoder(page);
        by_pieces_ = decoder_.IsServed();
    }
}

CT_StreamTextReader::~CT_StreamTextReader() {
    v_Close();
}

BOOL CT_StreamTextReader::b_ReadLine(CT_UString& line) {
    bool any = false;
    while (HaveCharacters()) {
        const char16_t* const rest = characters_.data() + position_;
        const unsigned int available = count_ - position_;
        const auto length = static_cast<unsigned int>(platform::FindLineEnd(rest, available));
        if (length > 0) {
            // Replacing from the start keeps the block that the last line left.
            line.v_Replace(rest, length, any ? line.n_GetLength() : 0);
            any = true;
        }
        position_ += length;
        if (length < available) {
            SkipSecondLineEnd(characters_[position_++]);
            if (!any) line.v_Set(0u, TRUE);
            return TRUE;
        }
    }
    if (!any) line.v_Set(0u, TRUE);
    return any ? TRUE : FALSE;
}

BOOL CT_StreamTextReader::b_ReadChar(char16_t& character) {
    character = 0;
    if (!HaveCharacters()) return FALSE;
    character = characters_[position_++];
    return TRUE;
}

void CT_StreamTextReader::v_Close() {
    if (stream_ != nullptr && stream_->b_IsOpen()) stream_->v_Close();
    stream_ = nullptr;
    position_ = 0;
    count_ = 0;
    kept_count_ = 0;
}

BOOL CT_StreamTextReader::b_SniffEncoding(bool both_byte_orders) {
    const bool pipe = stream_size_ == 0;
    if (stream_->n_GetOffset() != 0 || stream_size_ == 1) return FALSE;
    unsigned char mark[3] = {};
    unsigned int count = 0;
    // A pipe is not waited for where what came is no mark's beginning.
    for (unsigned int wanted = pipe ? 1 : 3; wanted <= 3; ++wanted) {
        count = FillUp(mark, count, wanted);
        if (Failed()) return FALSE;
        const bool wide = mark[0] == 0xFF || (mark[0] == 0xFE && both_byte_orders);
        if (count < wanted || (wide ? wanted >= 2 : mark[0] != 0xEF)) break;
    }
    unsigned int mark_size = 0;
    if (count >= 2 && mark[0] == 0xFF && mark[1] == 0xFE) {
        encoding_ = CT_Codepage::kUtf16;
        mark_size = 2;
    } else if (both_byte_orders && count >= 2 && mark[0] == 0xFE && mark[1] == 0xFF) {
        encoding_ = CT_Codepage::kUtf16BigEndian;
        mark_size = 2;
    } else if (count == 3 && mark[0] == 0xEF && mark[1] == 0xBB && mark[2] == 0xBF) {
        encoding_ = CT_Codepage::kUtf8;
        mark_size = 3;
    }
    if (pipe) {
        KeepForNextBlock(mark + mark_size, count - mark_size);
    } else {
        stream_->v_SetOffset(mark_size);
    }
    return mark_size != 0 ? TRUE : FALSE;
}

void CT_StreamTextReader::v_ReadNextBlock() {
    position_ = 0;
    count_ = 0;
    if (stream_ == nullptr || !stream_->b_IsOpen()) return;
    unsigned char bytes[kBlockSize];
    unsigned int count = 0;
    Decoded decoded{};
    do {  // a block of escape sequences alone is not the end
        std::copy_n(kept_, kept_count_, bytes);
        count = FillUp(bytes, kept_count_, kBlockSize);
        kept_count_ = 0;
        if (ErrorIsSet()) {
            if (read_error_ == 0) {
                read_error_ = CT_ErrorManager::spco_Get()->n_GetErrorCode();
            }
            ClearError();
        }
        if (count == 0) return;
        decoded = DecodeBlock(bytes, count);
        if (decoded.left_over > 0) {
            KeepForNextBlock(bytes + count - decoded.left_over, decoded.left_over);
        }
    } while (decoded.units == 0 && by_pieces_ && count == kBlockSize);
    count_ = decoded.units;
}

// Reads on behind the first `count` bytes until there are `size` or the stream ends or fails.
unsigned int CT_StreamTextReader::FillUp(unsigned char* bytes, unsigned int count,
                                         unsigned int size) {
    while (count < size) {
        const unsigned int read = stream_->n_Read(bytes + count, size - count);
        if (read == 0 || ErrorIsSet()) break;
        count += read;
    }
    return count;
}

// A stream that can be positioned reads the bytes again, a pipe cannot.
void CT_StreamTextReader::KeepForNextBlock(const unsigned char* bytes, unsigned int count) {
    if (stream_size_ != 0) {
        stream_->v_SetOffset(stream_->n_GetOffset() - count);
        if (!ErrorIsSet()) return;
        ClearError();
    }
    std::copy_n(bytes, count, kept_);
    kept_count_ = count;
}

void CT_StreamTextReader::v_Pushback() {
    --position_;
}

CT_StreamTextReader::Decoded CT_StreamTextReader::DecodeBlock(const unsigned char* bytes,
                                                              unsigned int count) {
    if (encoding_.eo_Get() == CT_Codepage::kUtf16) {
        for (unsigned int i = 0; i < count / 2; ++i) {
            characters_[i] = static_cast<char16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
        }
        return {count / 2, 0};
    }
    if (by_pieces_) {
        const platform::PieceResult done = decoder_.Decode(
            reinterpret_cast<const char*>(bytes), count, count < kBlockSize, characters_.data());
        return {static_cast<unsigned int>(done.written),
                count - static_cast<unsigned int>(done.taken)};
    }
    const unsigned int page = encoding_.n_Get();
    if (page == platform::kUtf8Page && !CT_OS::sb_GetIsWindowsXP()) {
        const unsigned int cut = count == kBlockSize ? CutUtf8Tail(bytes, count) : 0;
        return {Convert(page, 0, bytes, count - cut), cut};
    }
    unsigned int flags = 0;
    if (page == platform::kUtf8Page) flags = platform::kErrorOnInvalidChars;
    if (platform::TakesTableFlags(page)) {
        flags = platform::kErrorOnInvalidChars | platform::kPrecomposed;
    }
    return DecodeStrictly(page, flags, bytes, count);
}

CT_StreamTextReader::Decoded CT_StreamTextReader::DecodeStrictly(unsigned int page,
                                                                 unsigned int flags,
                                                                 const unsigned char* bytes,
                                                                 unsigned int count) {
    unsigned int failures = 0;
    while (failures < kMostAttempts) {
        platform::SetLastError(platform::kErrorSuccess);  // escapes alone give no unit and no error
        const unsigned int units = Convert(page, flags, bytes, count - failures);
        if (units > 0) return {units, failures};
        const auto error = platform::LastError();
        if (error == platform::kErrorInvalidFlags || error == platform::kErrorInvalidParameter ||
            error == platform::kErrorInsufficientBuffer) {
            ++errors_;
            return {0, failures};
        }
        if (count < kBlockSize) return {0, 0};
        ++failures;
    }
    return {0, failures};
}

unsigned int CT_StreamTextReader::Convert(unsigned int page, unsigned int flags,
                                          const unsigned char* bytes, unsigned int count) {
    return static_cast<unsigned int>(platform::MultiByteToWideChar(
        page, flags, reinterpret_cast<const char*>(bytes), static_cast<int>(count),
        characters_.data(), static_cast<int>(characters_.size())));
}

// Whether a character is there to be read, out of the next block if need be.
bool CT_StreamTextReader::HaveCharacters() {
    if (position_ == count_) v_ReadNextBlock();
    return position_ < count_;
}

// CR LF and LF CR end one line together.
void CT_StreamTextReader::SkipSecondLineEnd(char16_t first) {
    char16_t second;
    if (!b_ReadChar(second)) return;
    const bool pair = first == kCarriageReturn ? second == kLineFeed : second == kCarriageReturn;
    if (!pair) v_Pushback();
}

CT_FileTextReader::CT_FileTextReader(CT_WinFile& file, CT_Codepage encoding, BOOL sniff)
    : stream_(&file), reader_(std::make_unique<CT_StreamTextReader>(&stream_, encoding, sniff)) {}

CT_FileTextReader::~CT_FileTextReader() {
    if (stream_.b_IsOpen()) stream_.v_Close();
}

BOOL CT_FileTextReader::b_ReadLine(CT_UString& line) {
    return reader_->b_ReadLine(line);
}

BOOL CT_FileTextReader::b_ReadChar(char16_t& character) {
    return reader_->b_ReadChar(character);
}

void CT_FileTextReader::v_Close() {
    reader_->v_Close();
}
