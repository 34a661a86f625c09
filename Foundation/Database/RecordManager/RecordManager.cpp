#include "Foundation/Database/RecordManager/RecordManager.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <span>

#include "Foundation/Database/RecordManager/Internal/RecordManagerDetail.h"
#include "Foundation/Database/RecordManager/Internal/RecordSurveyDetail.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Memory.h"

namespace platform = zelkor::platform;

namespace format = zelkor::record_format;
using format::Failed;
using format::LoadU32;
using format::StoreU32;

namespace {

constexpr unsigned int kTableGrowth = 8;
constexpr unsigned int kScratchGrowth = 32;
constexpr unsigned int kMapMinimum = 0xFFFFF;
constexpr unsigned int kPiece = 4096;

// The tables' entries as words in the order of this machine.
void FromFile(std::byte* entries, std::uint32_t size) {
    for (std::uint32_t at = 0; at < size; at += format::kWord) {
        const std::uint32_t word = LoadU32(entries + at);
        std::memcpy(entries + at, &word, sizeof word);
    }
}

}  // namespace

static_assert(sizeof(CT_RecordManager::st_Resource) == format::kEntrySize);

CT_RecordManager::CT_RecordManager(const CT_WinFile* file)
    : CT_WinFile(zelkor::detail::OrNone(file)),
      free_table_(sizeof(FreeEntry), kTableGrowth, 0),
      directory_(sizeof(st_Resource), si_Compare, kTableGrowth, 0),
      scratch_(0, kScratchGrowth) {}

CT_RecordManager::~CT_RecordManager() = default;

void* CT_RecordManager::operator new(std::size_t size) {
    return platform::Allocate(size);
}

void CT_RecordManager::operator delete(void* block) {
    platform::Free(block);
}

// ---- Creating and opening -----------------------------------------------------------------------

void CT_RecordManager::v_Create(unsigned int record_header_size, unsigned int block_size,
                                unsigned int resource_max_count) {
    if (Failed()) return;
    const bool good = block_size >= format::kSmallestBlock &&
                      format::DataStart(format::kCapacity, resource_max_count, block_size) <=
                          format::kLargestFile &&
                      format::Round(std::uint64_t{record_header_size} + format::kHeadDataAt,
                                    block_size) <= format::kLargestFile;
    if (!good) return SystemFailure(platform::kErrorInvalidParameter);
    ForgetTables();
    vv_Open(kReadWriteAccess, kCreateAlways, kShareNone, kAttributeNormal, kFlagRandomAccess);
    if (Failed()) return;
    debts_.v_SetSize(0, FALSE);
    FillHeader(record_header_size, block_size, resource_max_count);
    v_Write(0, header_.data(), format::kHeaderSize);
    if (Failed()) return CloseFailed(0);
    open_mode_ = kModeReadWrite;
    header_copy_ = free_copy_ = resource_copy_ = 1;
    opened_size_ = 0;
    changed_ = true;
}

void CT_RecordManager::FillHeader(unsigned int record_header_size, unsigned int block_size,
                                  unsigned int resource_max_count) {
    header_.fill(std::byte{0});
    std::ranges::copy(std::as_bytes(std::span(format::kText)), header_.begin());
    header_[format::kTextEndAt] = format::kTextEnd;
    Put(format::kStampAt, format::kStamp);
    Put(format::kFormatAt, format::kFormat);
    Put(format::kBlockSizeAt, block_size);
    Put(format::kRecordHeaderSizeAt, record_header_size);
    Put(format::kCapacityAt, format::kCapacity);
    Put(format::kResourceMaxCountAt, resource_max_count);
    Put(format::kHeaderCounterAt, 1);
    Put(format::kResourceCounterAt, 1);
    Put(format::kFreeCounterAt, 1);
    JudgeLayout();
    Put(format::kDataEndAt, static_cast<unsigned int>(data_start_));
    JudgeLayout();  // with the data end
}

void CT_RecordManager::v_Open(et_OpenMode mode, et_MappingMode mapping) {
    if (Failed()) return;
    open_mode_ = mode;
    const bool writing = mode == kModeReadWrite;
    vv_Open(writing ? kReadWriteAccess : kReadAccess, kOpenExisting,
            writing ? kShareNone : kShareRead, kAttributeNormal, kFlagRandomAccess);
    if (Failed()) return;
    const unsigned int size = opened_size_ = vn_GetSize();
    // The header is judged before a mapping may extend the file: a foreign one stays as it is.
    if (!ReadHeader()) return CloseFailed(0);
    if (mapping == kMapAlways || (mapping == kMapSmall && b_CanMap())) {
        v_CreateMap(kMapMinimum);
        if (Failed()) return CloseFailed(size);
    }
    loose_end_known_ = false;
    changed_ = false;
    if (!ReadTables()) CloseFailed(size);
}

bool CT_RecordManager::ReadHeader() {
    window_.v_SetUsedSize(0);
    debts_.v_SetSize(0, FALSE);
    const unsigned int read = ReadAt(header_.data(), 0, format::kHeaderSize);
    if (Failed()) return false;
    std::fill(header_.begin() + read, header_.end(), std::byte{0});
    header_copy_ = Get(format::kHeaderCounterAt);
    JudgeLayout();
    if (read == format::kHeaderSize && Get(format::kStampAt) == format::kStamp &&
        Get(format::kFormatAt) <= format::kFormat) {
        return true;
    }
    v_SetError(format::kWrongFormat);
    return false;
}

bool CT_RecordManager::ReadTables() {
    if (open_mode_ == kModeReadWrite) {
        const unsigned int counter = Get(format::kFreeCounterAt);
        if (counter == 0 || counter != free_copy_ ||
            free_table_.n_GetCount() != Get(format::kFreeCountAt)) {
            if (!ReadFreeTable()) return false;
            free_copy_ = counter;
        }
    }
    const unsigned int counter = Get(format::kResourceCounterAt);
    if (counter == 0 || counter != resource_copy_ ||
        directory_.n_GetCount() != n_GetResourceCount()) {
        if (!ReadDirectory()) return false;
        resource_copy_ = counter;
    }
    return true;
}

bool CT_RecordManager::ReadFreeTable() {
    const unsigned int count = Get(format::kFreeCountAt);
    free_copy_ = 0;
    free_table_.v_Set(kTableGrowth, 0, FALSE);
    chain_bound_ = 0xFFFFFFFF;
    chain_end_seen_ = false;
    if (count == 0) return true;
    if (count > Get(format::kCapacityAt) ||
        format::kFreeTableAt + std::uint64_t{count} * format::kEntrySize > TablesEnd()) {
        v_SetError(format::kCorrupt);
        return false;
    }
    v_Read(&scratch_, format::kFreeTableAt, count * format::kEntrySize);
    if (Failed()) return false;
    FromFile(static_cast<std::byte*>(scratch_.qv_Get()), scratch_.n_GetUsedSize());
    const CT_VoidArray entries(&scratch_, sizeof(FreeEntry));
    free_table_.v_Append(&entries, 1, CT_VoidArray::kRest);
    return true;
}

// Keys of a sound file ascend; those of a damaged one are put in order, so that each can be found.
// Of entries that are there twice, as a killed process may leave them, one can be read; but as
// writing the directory would drop the other, such a file cannot be changed.
bool CT_RecordManager::ReadDirectory() {
    const unsigned int count = n_GetResourceCount();
    const std::uint64_t at = format::DirectoryAt(Get(format::kCapacityAt));
    resource_copy_ = 0;
    directory_.v_Set(kTableGrowth, 0, FALSE);
    if (count == 0) return true;
    if (count > n_GetResourceMaxCount() ||
        at + std::uint64_t{count} * format::kEntrySize > TablesEnd()) {
        v_SetError(format::kCorrupt);
        return false;
    }
    v_Read(&scratch_, static_cast<unsigned int>(at), count * format::kEntrySize);
    if (Failed()) return false;
    auto* const entries = static_cast<std::byte*>(scratch_.qv_Get());
    FromFile(entries, scratch_.n_GetUsedSize());
    const std::span<st_Resource> resources(reinterpret_cast<st_Resource*>(entries), count);
    const bool sorted_once =
        std::ranges::is_sorted(resources, std::ranges::less_equal(), &st_Resource::key);
    changeable_ = changeable_ && (sorted_once || !KeepOneOfEach(resources));
    const CT_VoidArray sorted(&scratch_, sizeof(st_Resource));
    directory_.v_Set(&sorted);
    directory_.v_SetGrowth(kTableGrowth);
    return true;
}

// Whether there were any to drop.
bool CT_RecordManager::KeepOneOfEach(std::span<st_Resource> resources) {
    std::ranges::sort(resources, {}, [](const st_Resource& one) {
        return std::uint64_t{one.key} << 32 | one.offset;
    });
    const auto rest = std::unique(
        resources.begin(), resources.end(),
        [](const st_Resource& one, const st_Resource& other) { return one.key == other.key; });
    const auto kept = static_cast<unsigned int>(rest - resources.begin());
    if (kept == resources.size()) return false;
    scratch_.v_SetUsedSize(kept * format::kEntrySize);
    Put(format::kResourceCountAt, kept);
    return true;
}

void CT_RecordManager::ForgetTables() {
    free_table_.v_Set(kTableGrowth, 0, FALSE);
    directory_.v_Set(kTableGrowth, 0, FALSE);
    scratch_.v_SetSize(0, FALSE);
    window_.v_SetSize(0, FALSE);
    header_copy_ = free_copy_ = resource_copy_ = 0;
    chain_bound_ = 0xFFFFFFFF;
    chain_end_seen_ = false;
}

// Closes after a failed opening; a mapping that extended the file gives it its length back.
void CT_RecordManager::CloseFailed(unsigned int length) {
    v_CloseMap(length);
    vv_Close();
}

// Changes need blocks that hold a free block's words, lie on block boundaries and start behind the
// tables, and heads that fit into the data area when there are records.
void CT_RecordManager::JudgeLayout() {
    const unsigned int block = n_GetBlockSize();
    const bool power = block > 1 && std::has_single_bit(block);
    block_mask_ = power ? block - 1 : 0;
    block_shift_ = power ? static_cast<unsigned int>(std::countr_zero(block)) : 0;
    data_start_ = format::DataStart(Get(format::kCapacityAt), n_GetResourceMaxCount(), block);
    head_size_ = Round(std::uint64_t{n_GetRecordHeaderSize()} + format::kHeadDataAt);
    changeable_ =
        block >= format::kSmallestBlock && Get(format::kCapacityAt) != 0 &&
        data_start_ <= n_GetSize() && n_GetSize() % block == 0 &&
        head_size_ <= (n_GetRecordCount() == 0 ? format::kLargestFile : n_GetSize() - data_start_);
}

// ---- Flushing and closing -----------------------------------------------------------------------

void CT_RecordManager::v_Flush() {
    v_WriteHeader();
    if (Failed()) return;
    if (b_GetMapping()) {
        v_FlushMap();
        TellFlushFailure();
    } else {
        vv_Flush();
    }
    Failed();
}

void CT_RecordManager::v_Close(BOOL clear) {
    if (b_IsOpen()) {
        v_WriteHeader();
        if (Failed()) return;
        if (b_GetMapping()) {
            const unsigned int length = LengthToKeep();
            if (!Failed()) v_CloseMap(length);
            if (Failed()) return;
        }
        vv_Close();
        if (Failed()) return;
    }
    window_.v_SetSize(0, FALSE);
    if (clear) ForgetTables();
}

// Where the bytes end that the file held behind its data end when it was opened: blocks of a writer
// that was killed, or all that a damaged data end leaves out. 0: there are none but zeros.
unsigned int CT_RecordManager::LooseEnd() {
    if (loose_end_known_) return loose_end_;
    std::byte piece[kPiece];
    loose_end_ = 0;
    for (unsigned int to = opened_size_; to > n_GetSize() && loose_end_ == 0;) {
        const unsigned int from = to - std::min(kPiece, to - n_GetSize());
        const unsigned int read = ReadAt(piece, from, to - from);
        if (Failed()) return 0;
        const auto last = std::find_if(std::make_reverse_iterator(piece + read),
                                       std::make_reverse_iterator(piece),
                                       [](std::byte one) { return one != std::byte{0}; });
        if (last.base() != piece)
            loose_end_ = from + static_cast<unsigned int>(last.base() - piece);
        to = from;
    }
    loose_end_known_ = true;
    return loose_end_;
}

// Of a mapped file that is being closed.
unsigned int CT_RecordManager::LengthToKeep() {
    const unsigned int end = n_GetSize();
    if (open_mode_ != kModeReadWrite) return end;  // it is not cut
    if (changed_) return std::max(end, LooseEnd());
    if (end == opened_size_) return end;
    zelkor::detail::RecordSurvey survey;
    survey.Take({MappedBytes(), opened_size_}, nullptr);
    return survey.finding_count == 0 ? end : opened_size_;
}

// ---- Facts --------------------------------------------------------------------------------------

unsigned int CT_RecordManager::n_GetMinReference() const {
    return n_GetBlockSize() == 0 ? 0 : static_cast<unsigned int>(data_start_ / n_GetBlockSize());
}

unsigned int CT_RecordManager::n_GetMaxReference() const {
    return n_GetBlockSize() == 0 ? 0 : n_GetSize() / n_GetBlockSize();
}

void CT_RecordManager::v_PrintLists(const char* /*title*/, CT_TestOut* /*out*/) {}
void CT_RecordManager::v_PrintHeader(const char* /*title*/, CT_TestOut* /*out*/) {}
void CT_RecordManager::v_Print(const char* /*title*/, CT_TestOut* /*out*/) {}
void CT_RecordManager::v_ConsistencyReport(const char* /*title*/, CT_TestOut* /*out*/) {}

int CT_RecordManager::si_Compare(const void* a, const void* b) {
    if (a == nullptr || b == nullptr) return (a != nullptr ? 1 : 0) - (b != nullptr ? 1 : 0);
    st_Resource left;
    st_Resource right;
    std::memcpy(&left, a, sizeof left);
    std::memcpy(&right, b, sizeof right);
    if (left.key == right.key) return 0;
    return left.key > right.key ? 1 : -1;
}
