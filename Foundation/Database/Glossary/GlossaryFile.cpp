#include "Foundation/Database/Glossary/GlossaryFile.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Core/String/Internal/PlatformName.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Core/SymbolTable/BiLingualWordList.h"
#include "Foundation/Database/RecordManager/RecordFormat.h"
#include "Foundation/Database/RecordManager/RecordManager.h"
#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"

namespace platform = zelkor::platform;

using zelkor::detail::Failed;
using zelkor::detail::PlatformName;
using zelkor::record_format::LoadU32;
using zelkor::record_format::StoreU32;

namespace {

// The layout, described in docs/formats/glossary.md.
constexpr unsigned int kPartCount = 4;  // resources 1 to 4: words, words, index, index
constexpr unsigned int kHeadKey = 5;    // resource: what follows
constexpr char kStamp[8] = {'g', 'l', 'o', 's', 's', 'a', 'r', 'y'};
constexpr unsigned int kVersionAt = 8;
constexpr unsigned int kCountAt = 12;
constexpr unsigned int kChecksumAt = 16;
constexpr unsigned int kHeadSize = 20;
constexpr std::uint32_t kVersion = 1;

constexpr unsigned int kRecordHeaderSize = 16;
constexpr unsigned int kBlockSize = 64;
constexpr unsigned int kFileBufferSize = 16384;
constexpr unsigned int kForeign = 31050;
constexpr unsigned int kCorrupt = 31005;

using Head = std::array<std::byte, kHeadSize>;
using Parts = std::array<CT_Buffer, kPartCount>;

// CRC-32 of ISO 3309: polynomial 0xEDB88320, reflected, all bits inverted before and after.
// Table i is of a byte that i more bytes follow: eight tables take eight bytes at a time.
constexpr unsigned int kStep = 8;
constexpr auto kChecksums = [] {
    std::array<std::array<std::uint32_t, 256>, kStep> tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (std::size_t table = 0; table < kStep; ++table) {
            for (int bit = 0; bit < 8; ++bit) {
                value = value >> 1 ^ ((value & 1) != 0 ? 0xEDB88320 : 0);
            }
            tables[table][byte] = value;
        }
    }
    return tables;
}();

// Of all parts, one behind the other.
std::uint32_t Checksum(const Parts& parts) noexcept {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const CT_Buffer& part : parts) {
        std::span bytes(static_cast<const std::byte*>(part.qcv_Get()), part.n_GetUsedSize());
        for (; bytes.size() >= kStep; bytes = bytes.subspan(kStep)) {
            const std::uint32_t words[] = {LoadU32(bytes.data()) ^ sum, LoadU32(bytes.data() + 4)};
            sum = 0;
            for (unsigned int i = 0; i < kStep; ++i) {
                sum ^= kChecksums[kStep - 1 - i][words[i / 4] >> i % 4 * 8 & 0xFF];
            }
        }
        for (const std::byte byte : bytes) {
            sum = kChecksums[0][(sum ^ static_cast<std::uint32_t>(byte)) & 0xFF] ^ sum >> 8;
        }
    }
    return ~sum;
}

// The file that is written beside another one, and then takes its place or goes.
class NewFile {
public:
    explicit NewFile(const char16_t* target) : target_(target), name_(target) {
        name_.v_Append(u".new");
        platform_name_.emplace(&name_);
    }
    ~NewFile() {
        if (!placed_) platform::RemoveFile(platform_name_->Get());
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    [[nodiscard]] const CT_UString* Name() const { return &name_; }
    // Somebody else is writing it.
    void Leave() { placed_ = true; }
    bool Replace() {
        placed_ =
            platform::RenameFile(platform_name_->Get(), PlatformName(&target_).Get(), true, false);
        if (!placed_) zelkor::detail::RecordSystemError(target_.qcuz_Get());
        return placed_;
    }

private:
    CT_UString target_;
    CT_UString name_;
    std::optional<PlatformName> platform_name_;
    bool placed_ = false;
};

BOOL Refuse(const char16_t* file, unsigned int code, const char16_t* format,
            const char* source = __builtin_FILE(), unsigned int line = __builtin_LINE()) {
    zelkor::detail::Record({code, format, source, line}, file);
    return FALSE;
}

BOOL RefuseNull(const char* source = __builtin_FILE(), unsigned int line = __builtin_LINE()) {
    platform::SetLastError(platform::kErrorInvalidParameter);
    zelkor::detail::RecordSystemError(source, line);
    return FALSE;
}

Head MakeHead(std::uint32_t count, const Parts& parts) noexcept {
    Head head;
    std::memcpy(head.data(), kStamp, sizeof kStamp);
    StoreU32(&head[kVersionAt], kVersion);
    StoreU32(&head[kCountAt], count);
    StoreU32(&head[kChecksumAt], Checksum(parts));
    return head;
}

}  // namespace

BOOL CT_GlossaryFile::sb_Save(const CT_BiLingualUWordList* list, const char16_t* file) {
    if (list == nullptr || file == nullptr) return RefuseNull();
    if (Failed()) return FALSE;
    const Parts parts{*list->pcco_GetSourceBuffer(), *list->pcco_GetTargetBuffer(),
                      *list->pcco_GetSourceIndex()->pcco_GetBuffer(),
                      *list->pcco_GetTargetIndex()->pcco_GetBuffer()};
    const Head head = MakeHead(list->n_GetCount(), parts);
    const CT_Buffer head_part(head.data(), kHeadSize, 1);
    NewFile fresh(file);
    const CT_WinFile named(fresh.Name(), kFileBufferSize);
    CT_RecordManager records(&named);
    records.v_Create(kRecordHeaderSize, kBlockSize, kHeadKey);
    if (CT_ErrorManager::spco_Get()->n_GetErrorCode() == platform::kErrorSharingViolation) {
        fresh.Leave();
    }
    for (unsigned int i = 0; i < kPartCount; ++i) records.v_AddResource(i + 1, &parts[i]);
    records.v_AddResource(kHeadKey, &head_part);
    records.v_Flush();
    records.v_Close(TRUE);
    return !Failed() && fresh.Replace() ? TRUE : FALSE;
}

BOOL CT_GlossaryFile::sb_Load(CT_BiLingualUWordList* list, const char16_t* file) {
    if (list == nullptr || file == nullptr) return RefuseNull();
    const CT_UString name(file);
    const CT_WinFile named(&name, kFileBufferSize);
    CT_RecordManager records(&named);
    records.v_Open(CT_RecordManager::kModeRead, CT_RecordManager::kMapNever);
    CT_Buffer head;
    if (records.b_ResourceExists(kHeadKey) != FALSE) records.v_GetResource(kHeadKey, &head);
    Parts parts;
    for (unsigned int i = 0; i < kPartCount; ++i) {
        if (records.b_ResourceExists(i + 1) != FALSE) records.v_GetResource(i + 1, &parts[i]);
    }
    records.v_Close(TRUE);
    if (Failed()) return FALSE;
    const auto* const bytes = static_cast<const std::byte*>(head.qcv_Get());
    if (head.n_GetUsedSize() != kHeadSize || std::memcmp(bytes, kStamp, sizeof kStamp) != 0 ||
        LoadU32(bytes + kVersionAt) != kVersion) {
        return Refuse(file, kForeign, u"No glossary in %s");
    }
    CT_BiLingualUWordList loaded;
    if (std::memcmp(MakeHead(LoadU32(bytes + kCountAt), parts).data(), bytes, kHeadSize) != 0 ||
        loaded.b_Set(&parts[0], &parts[1], &parts[2], &parts[3]) == FALSE ||
        loaded.n_GetCount() != LoadU32(bytes + kCountAt)) {
        return Refuse(file, kCorrupt, u"Corrupt data in %s");
    }
    list->v_Set(&loaded);
    return TRUE;
}
