#include "Foundation/Core/CompList/CompList.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "Foundation/Core/CompList/Internal/CompListCheck.h"
#include "Foundation/Core/CompList/Internal/CompListGrowing.h"
#include "Foundation/Core/CompList/Internal/CompListImage.h"
#include "Foundation/Core/CompList/Internal/CompListIndex.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Memory.h"

namespace platform = zelkor::platform;

using namespace zelkor::detail::complist;

namespace {

constexpr std::uint32_t kLeastGrowth = 128;
constexpr std::uint32_t kSmallImage = 4096;     // is searched without an index
constexpr std::uint32_t kNoIndex = 0xFFFFFFFF;  // as the count of skipped alternatives: never
constexpr std::uint32_t kBytesPerSkip = 4;      // of the image, for each one skipped before

// An object from the memory manager's heap.
template <typename T, typename... Arguments>
std::unique_ptr<T, Release> Make(Arguments&&... arguments) {
    platform::Allocator<T> heap;
    T* const place = heap.allocate(1);
    try {
        return std::unique_ptr<T, Release>(::new (place) T(std::forward<Arguments>(arguments)...));
    } catch (...) {
        heap.deallocate(place, 1);
        throw;
    }
}

template <typename T>
void Destroy(T* object) noexcept {
    if (object == nullptr) return;
    object->~T();
    platform::Free(object);
}

std::uint32_t HandleSize(unsigned int wanted) noexcept {
    if (wanted <= 1) return 1;
    return wanted == 2 ? 2 : 4;
}

bool IsSize(unsigned int size) noexcept {
    return size == 1 || size == 2 || size == 4;
}

const std::uint8_t* Units(const char* key) noexcept {
    return reinterpret_cast<const std::uint8_t*>(key == nullptr ? "" : key);
}

const char16_t* Units(const char16_t* key) noexcept {
    return key == nullptr ? u"" : key;
}

}  // namespace

void Release::operator()(GrowingList* list) const noexcept {
    Destroy(list);
}
void Release::operator()(Index* index) const noexcept {
    Destroy(index);
}

CT_CompList::CT_CompList(et_ElementSize element_size, unsigned int handle_size,
                         BOOL empty_string_support, BOOL long_offset_support, unsigned int growth,
                         unsigned int code_page) {
    v_Set(element_size, handle_size, empty_string_support, long_offset_support, growth, code_page);
}

CT_CompList::CT_CompList(const CT_Buffer* image) {
    v_Set(image);
}

CT_CompList::CT_CompList(const CT_CompList* other) {
    v_Set(other);
}

CT_CompList::~CT_CompList() {
    Forget();
}

void CT_CompList::v_Set(et_ElementSize element_size, unsigned int handle_size,
                        BOOL empty_string_support, BOOL long_offset_support, unsigned int growth,
                        unsigned int code_page) {
    const unsigned int element = IsSize(element_size) ? element_size : unsigned{kTwoBytes};
    std::array<std::byte, kFirstElement + 4> image{};
    const std::uint32_t end = kFirstElement + element;
    Store(&image[kStampAt], kStamp);
    Store(&image[kEndAt], end);
    Store(&image[kCodePageAt], code_page);
    Store(&image[kEmptyHandleAt], kAbsent);
    image[kElementSizeAt] = static_cast<std::byte>(element);
    image[kHandleSizeAt] = static_cast<std::byte>(HandleSize(handle_size));
    image[kFlagsAt] =
        static_cast<std::byte>((empty_string_support != FALSE ? kEmptyStringFlag : 0) |
                               (long_offset_support != FALSE ? kLongOffsetFlag : 0));
    image[kVersionAt] = std::byte{1};
    image[kFirstElement] = std::byte{kEndOfStream};
    const CT_Buffer fresh(image.data(), end, std::max(growth, kLeastGrowth));
    v_Set(&fresh);
}

void CT_CompList::v_Set(const CT_Buffer* image) {
    if (image == &buffer_) (void)Image();
    buffer_.v_Set(image);
    Forget();
    Adopt();
}

void CT_CompList::v_Set(const CT_CompList* other) {
    if (other == this) return;
    if (other == nullptr) return v_Set(static_cast<const CT_Buffer*>(nullptr));
    (void)other->Image();  // brings its buffer up to date
    v_Set(&other->buffer_);
    changed_ = other->changed_;
}

// Takes in the header of the buffer's image, and learns how much of the image can be read.
void CT_CompList::Adopt() {
    const auto* bytes = static_cast<const std::byte*>(buffer_.qcv_Get());
    const std::uint32_t used = buffer_.n_GetUsedSize();
    header_.fill(std::byte{0});
    if (bytes != nullptr) {
        std::memcpy(header_.data(), bytes, std::min<std::size_t>(used, header_.size()));
    }
    bytes_.store(bytes, std::memory_order_release);
    first_ = kFirstElement;
    changed_ = FALSE;
    damaged_ = false;
    offset_size_ = b_HasLongOffsetSupport() != FALSE ? 4 : 2;
    const bool sound = used >= kFirstElement && Load<std::uint32_t>(&header_[kStampAt]) == kStamp &&
                       IsSize(n_GetElementSize()) && IsSize(n_GetHandleSize());
    limit_ = sound ? std::min(used, n_GetEnd()) : 0;
    skipped_.store(limit_ < kSmallImage ? kNoIndex : 0, std::memory_order_relaxed);
}

// Gives up the growing form and the index.
void CT_CompList::Forget() noexcept {
    growing_.reset();
    behind_.v_SetSize(0, FALSE);
    Release()(index_.exchange(nullptr, std::memory_order_acquire));
}

// The image, written first if words were added since. Without a sound one, nothing to read.
View CT_CompList::Image() const {
    const std::byte* bytes = bytes_.load(std::memory_order_acquire);
    if (bytes == nullptr && growing_ != nullptr) {
        WriteImage();
        bytes = bytes_.load(std::memory_order_acquire);
    }
    const std::size_t limit = growing_ != nullptr ? n_GetEnd() : limit_;
    return {bytes, limit, {n_GetElementSize(), n_GetHandleSize(), offset_size_}};
}

void CT_CompList::WriteImage() const {
    const std::lock_guard guard(lock_);
    if (bytes_.load(std::memory_order_relaxed) != nullptr) return;  // another reader was faster
    const std::uint32_t end = growing_->End();
    const std::uint32_t behind = behind_.n_GetUsedSize();
    CT_Buffer image(end + behind, buffer_.n_GetGrowth());
    auto* bytes = static_cast<std::byte*>(image.qv_Get());
    std::memcpy(bytes, header_.data(), header_.size());
    growing_->Write(bytes);
    if (behind != 0) std::memcpy(bytes + end, behind_.qcv_Get(), behind);
    image.v_SetUsedSize(end + behind);
    buffer_ = std::move(image);
    bytes_.store(bytes, std::memory_order_release);
}

const CT_Buffer* CT_CompList::pcco_GetBuffer() const {
    return Image().bytes == nullptr ? nullptr : &buffer_;
}

// Brings the list into the form in which it grows.
bool CT_CompList::MakeGrowing() {
    if (growing_ != nullptr) return true;
    const View image = Image();
    if (damaged_ || image.limit != n_GetEnd()) return false;
    const auto more = static_cast<std::uint32_t>(buffer_.n_GetUsedSize() - image.limit);
    auto growing = Make<GrowingList>(image.widths, more);
    damaged_ = !growing->Read(image);
    if (damaged_) return false;
    CT_Buffer behind(image.bytes + image.limit, more, 1);
    Forget();
    growing_ = std::move(growing);
    behind_ = std::move(behind);
    return true;
}

template <typename Unit>
BOOL CT_CompList::b_Insert(const Unit* key, unsigned int handle) {
    const bool empty = *key == 0;
    if (n_GetElementSize() != sizeof(Unit) || (empty && b_HasEmptyStringSupport() == FALSE)) {
        return FALSE;
    }
    if (!MakeGrowing()) return FALSE;
    if (empty) {
        Store(&header_[kEmptyHandleAt], handle);
    } else if (!growing_->Add(key, handle)) {
        return FALSE;
    }
    Store(&header_[kEndAt], growing_->End());
    Store(&header_[kEntriesAt], n_GetNrOfEntries() + 1);
    changed_ = TRUE;
    if (bytes_.load(std::memory_order_relaxed) != nullptr) {
        bytes_.store(nullptr, std::memory_order_relaxed);
        buffer_.v_SetSize(0, FALSE);
    }
    return TRUE;
}

BOOL CT_CompList::b_Add(const char* key, unsigned int handle) {
    return b_Insert(Units(key), handle);
}
BOOL CT_CompList::b_Add(const char16_t* key, unsigned int handle) {
    return b_Insert(Units(key), handle);
}
BOOL CT_CompList::b_Add(const CT_CString* key, unsigned int handle) {
    return b_Add(key == nullptr ? nullptr : key->qccz_Get(), handle);
}
BOOL CT_CompList::b_Add(const CT_UString* key, unsigned int handle) {
    return b_Add(key == nullptr ? nullptr : key->qcuz_Get(), handle);
}

void CT_CompList::v_Reserve(unsigned int length) {
    if (MakeGrowing()) growing_->Reserve(length);
}

template <typename Unit>
unsigned int CT_CompList::n_Walk(const Unit* key, et_WalkMode mode, unsigned int* matched) const {
    if (*key == 0) {
        if (matched != nullptr) *matched = 0;
        return b_HasEmptyStringSupport() == FALSE ? 0
                                                  : Load<std::uint32_t>(&header_[kEmptyHandleAt]);
    }
    Outcome outcome{kAbsent, 0};
    if (n_GetElementSize() == sizeof(Unit)) {
        if (growing_ != nullptr) {
            outcome = growing_->Search(key, mode == kExact);
        } else if (limit_ >= kFirstElement) {
            outcome = WalkAdopted(key, mode == kExact);
        }
    }
    if (matched != nullptr) *matched = outcome.matched;
    return outcome.handle;
}

template <typename Unit>
Outcome CT_CompList::WalkAdopted(const Unit* key, bool exact) const {
    const Index* const index = index_.load(std::memory_order_acquire);
    const View image = Image();
    std::uint32_t skipped = 0;
    const Outcome outcome = WalkImage(image, key, index, exact, skipped);
    if (index != nullptr || skipped == 0) return outcome;
    // Readers at the same time may lose each other's counts; the index then comes a little later.
    const std::uint32_t before = skipped_.load(std::memory_order_relaxed);
    if (before == kNoIndex) return outcome;
    if (before + skipped < limit_ / kBytesPerSkip) {
        skipped_.store(before + skipped, std::memory_order_relaxed);
    } else {
        BuildIndex();
    }
    return outcome;
}

// The searches so far took about as long as this does. An image that is damaged, or memory that is
// short, gets no index; the image can be searched without.
void CT_CompList::BuildIndex() const {
    const std::unique_lock guard(lock_, std::try_to_lock);
    if (!guard.owns_lock() || skipped_.exchange(kNoIndex, std::memory_order_relaxed) == kNoIndex) {
        return;
    }
    try {
        auto index = Make<Index>();
        if (index->Build(Image())) index_.store(index.release(), std::memory_order_release);
    } catch (...) {
    }
}

unsigned int CT_CompList::n_Search(const char* key, unsigned int* matched) const {
    return n_Walk(Units(key), matched == nullptr ? kExact : kPartial, matched);
}
unsigned int CT_CompList::n_Search(const char16_t* key, unsigned int* matched) const {
    return n_Walk(Units(key), matched == nullptr ? kExact : kPartial, matched);
}
unsigned int CT_CompList::n_Search(const CT_CString* key, unsigned int* matched) const {
    return n_Search(key == nullptr ? nullptr : key->qccz_Get(), matched);
}
unsigned int CT_CompList::n_Search(const CT_UString* key, unsigned int* matched) const {
    return n_Search(key == nullptr ? nullptr : key->qcuz_Get(), matched);
}

unsigned int CT_CompList::n_GetEnd() const noexcept {
    return Load<std::uint32_t>(&header_[kEndAt]);
}
unsigned int CT_CompList::n_GetCodePage() const noexcept {
    return Load<std::uint32_t>(&header_[kCodePageAt]);
}
unsigned int CT_CompList::n_GetNrOfEntries() const noexcept {
    return Load<std::uint32_t>(&header_[kEntriesAt]);
}
unsigned int CT_CompList::n_GetElementSize() const noexcept {
    return Load<std::uint8_t>(&header_[kElementSizeAt]);
}
unsigned int CT_CompList::n_GetHandleSize() const noexcept {
    return Load<std::uint8_t>(&header_[kHandleSizeAt]);
}
BOOL CT_CompList::b_IsInNetworkByteOrder() const noexcept {
    return header_[kByteOrderAt] != std::byte{0} ? TRUE : FALSE;
}
BOOL CT_CompList::b_HasEmptyStringSupport() const noexcept {
    return (Load<std::uint8_t>(&header_[kFlagsAt]) & kEmptyStringFlag) != 0 ? TRUE : FALSE;
}
BOOL CT_CompList::b_HasLongOffsetSupport() const noexcept {
    return (Load<std::uint8_t>(&header_[kFlagsAt]) & kLongOffsetFlag) != 0 ? TRUE : FALSE;
}
BOOL CT_CompList::b_IsEmpty() const noexcept {
    return n_GetEnd() <= kFirstElement + n_GetElementSize() ? TRUE : FALSE;
}

BOOL CT_CompList::b_IsSound() const {
    const View image = Image();
    if (image.bytes == nullptr || image.limit == 0 || image.limit != n_GetEnd() ||
        b_IsInNetworkByteOrder() != FALSE) {
        return FALSE;
    }
    const std::optional<std::uint32_t> words = CountSoundWords(image);
    if (!words) return FALSE;
    if (b_HasEmptyStringSupport() == FALSE) return n_GetNrOfEntries() == *words ? TRUE : FALSE;
    // The empty word counts as often as it was added, and may have been given the handle of none.
    const bool empty_word = Load<std::uint32_t>(&header_[kEmptyHandleAt]) != kAbsent;
    return n_GetNrOfEntries() >= *words + (empty_word ? 1 : 0) ? TRUE : FALSE;
}

std::size_t CT_CompList::MemoryBesideImage() const noexcept {
    const Index* const index = index_.load(std::memory_order_acquire);
    return (growing_ != nullptr ? growing_->Bytes() : 0) + behind_.n_GetUsedSize() +
           (index != nullptr ? index->Bytes() : 0);
}
