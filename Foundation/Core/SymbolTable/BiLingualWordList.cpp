#include "Foundation/Core/SymbolTable/BiLingualWordList.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <type_traits>

#include "Foundation/Core/CompList/CompListIterator.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"

namespace {

constinit _SHI_Pool narrow_pool(sizeof(CT_BiLingualCWordList), 16);
constinit _SHI_Pool wide_pool(sizeof(CT_BiLingualUWordList), 16);

constexpr unsigned int kHandleSize = 4;
constexpr unsigned int kGrowth = 128;

CT_CompList NewIndex(CT_CompList::et_ElementSize element_size, BOOL long_offsets) {
    return CT_CompList(element_size, kHandleSize, FALSE, long_offsets, kGrowth, 0);
}

// The words of a buffer as units.
template <typename Unit>
std::basic_string_view<Unit> Units(const CT_Buffer& words) noexcept {
    return {static_cast<const Unit*>(words.qcv_Get()), words.n_GetUsedSize() / sizeof(Unit)};
}

// Of a word with its zero. More than a buffer can hold is as much as none can.
template <typename Unit>
std::uint32_t Bytes(const Unit* word) noexcept {
    const std::size_t bytes = (std::char_traits<Unit>::length(word) + 1) * sizeof(Unit);
    return static_cast<std::uint32_t>(std::min<std::size_t>(bytes, 0xFFFFFFFF));
}

// Room for so many bytes more in a block of its own.
void Reserve(CT_Buffer& words, std::uint32_t bytes) {
    const std::uint64_t size = std::uint64_t{words.n_GetUsedSize()} + bytes;
    words.v_SetMinSize(static_cast<std::uint32_t>(std::min<std::uint64_t>(size, 0xFFFFFFFF)), TRUE);
    words.v_CopyWeWrite();
}

// Whether the last word of a buffer ends.
template <typename Unit>
bool WordsEnd(const CT_Buffer& words) noexcept {
    const std::basic_string_view<Unit> units = Units<Unit>(words);
    return words.n_GetUsedSize() % sizeof(Unit) == 0 && (units.empty() || units.back() == 0);
}

template <typename Unit>
std::size_t CountWords(const CT_Buffer& words) noexcept {
    const std::basic_string_view<Unit> units = Units<Unit>(words);
    return static_cast<std::size_t>(std::count(units.begin(), units.end(), Unit{0}));
}

// Whether an index is sound, and each of its words leads to where a word begins.
template <typename Unit>
bool LeadsInto(const CT_CompList& index, const CT_Buffer& image, const CT_Buffer& partners) {
    if (index.n_GetElementSize() != sizeof(Unit) || index.n_GetHandleSize() != kHandleSize ||
        index.b_HasEmptyStringSupport() != FALSE || index.n_GetEnd() != image.n_GetUsedSize() ||
        index.b_IsSound() == FALSE) {
        return false;
    }
    const std::basic_string_view<Unit> units = Units<Unit>(partners);
    CT_UCompListIterator words(&index);
    for (unsigned int offset = 0; words.b_GetNext(nullptr, &offset) != FALSE;) {
        const std::size_t at = offset / sizeof(Unit);
        if (offset % sizeof(Unit) != 0 || at >= units.size()) return false;
        if (at != 0 && units[at - 1] != 0) return false;
    }
    return true;
}

template <typename Unit>
const Unit* Find(const CT_CompList& index, const CT_Buffer& partners, const Unit* word) {
    if (word == nullptr || *word == 0) return nullptr;
    const unsigned int offset = index.n_Search(word);
    // A damaged image may lead anywhere.
    if (offset >= partners.n_GetUsedSize() || offset % sizeof(Unit) != 0) return nullptr;
    return Units<Unit>(partners).data() + offset / sizeof(Unit);
}

// Whether a word leads to where it is said to, or to where it did before.
template <typename Unit>
bool Index(CT_CompList& index, const Unit* word, std::uint32_t offset) {
    return index.b_Add(word, offset) != FALSE || (*word != 0 && index.b_Search(word) != FALSE);
}

template <typename String>
auto* Text(const String* word) noexcept {
    if constexpr (std::is_same_v<String, CT_UString>) {
        return word == nullptr ? nullptr : word->qcuz_Get();
    } else {
        return word == nullptr ? nullptr : word->qccz_Get();
    }
}

}  // namespace

CT_BiLingualWordListBasis::CT_BiLingualWordListBasis(CT_CompList::et_ElementSize element_size,
                                                     BOOL long_offsets)
    : source_index_(NewIndex(element_size, long_offsets)),
      target_index_(NewIndex(element_size, long_offsets)) {}

_SHI_Pool* CT_BiLingualCWordList::spso_GetMemPool() noexcept {
    return &narrow_pool;
}

_SHI_Pool* CT_BiLingualUWordList::spso_GetMemPool() noexcept {
    return &wide_pool;
}

CT_BiLingualWordListBasis::~CT_BiLingualWordListBasis() = default;

void CT_BiLingualWordListBasis::v_Set() {
    const auto element_size =
        static_cast<CT_CompList::et_ElementSize>(source_index_.n_GetElementSize());
    const CT_CompList empty = NewIndex(element_size, source_index_.b_HasLongOffsetSupport());
    source_index_ = empty;
    target_index_ = empty;
    source_words_.v_SetSize(0, FALSE);
    target_words_.v_SetSize(0, FALSE);
    count_ = 0;
}

void CT_BiLingualWordListBasis::v_Set(const CT_BiLingualWordListBasis* other) {
    if (other == nullptr) return v_Set();
    // The images are written first: whatever may fail, fails there.
    (void)other->source_index_.pcco_GetBuffer();
    (void)other->target_index_.pcco_GetBuffer();
    source_index_ = other->source_index_;
    target_index_ = other->target_index_;
    source_words_ = other->source_words_;
    target_words_ = other->target_words_;
    count_ = other->count_;
}

BOOL CT_BiLingualWordListBasis::b_Set(const CT_Buffer* source_words, const CT_Buffer* target_words,
                                      const CT_Buffer* source_image,
                                      const CT_Buffer* target_image) {
    const auto fits = [&]<typename Unit>(Unit) {
        return source_words != nullptr && target_words != nullptr && source_image != nullptr &&
               target_image != nullptr && WordsEnd<Unit>(*source_words) &&
               WordsEnd<Unit>(*target_words) &&
               CountWords<Unit>(*source_words) == CountWords<Unit>(*target_words) &&
               LeadsInto<Unit>(CT_CompList(source_image), *source_image, *target_words) &&
               LeadsInto<Unit>(CT_CompList(target_image), *target_image, *source_words);
    };
    const bool wide = source_index_.n_GetElementSize() == sizeof(char16_t);
    if (!(wide ? fits(char16_t{}) : fits(char{}))) return FALSE;
    source_index_.v_Set(source_image);
    target_index_.v_Set(target_image);
    source_words_ = *source_words;
    target_words_ = *target_words;
    count_ = static_cast<std::uint32_t>(wide ? CountWords<char16_t>(source_words_)
                                             : CountWords<char>(source_words_));
    return TRUE;
}

template <typename Unit>
bool CT_BiLingualWordListBasis::IsOwn(const Unit* word) const noexcept {
    const std::less_equal<const Unit*> before;
    for (const CT_Buffer* words : {&source_words_, &target_words_}) {
        const std::basic_string_view<Unit> units = Units<Unit>(*words);
        if (before(units.data(), word) && before(word, units.data() + units.size())) return true;
    }
    return false;
}

template <typename Unit>
BOOL CT_BiLingualWordListBasis::Insert(const Unit* source, const Unit* target) {
    static constexpr Unit kEmpty[] = {0};
    if (source == nullptr) source = kEmpty;
    if (target == nullptr) target = kEmpty;
    if (IsOwn(source) || IsOwn(target)) {
        const CT_Buffer source_copy(source, Bytes(source), 1);
        const CT_Buffer target_copy(target, Bytes(target), 1);
        return Insert(Units<Unit>(source_copy).data(), Units<Unit>(target_copy).data());
    }
    const std::uint32_t source_bytes = Bytes(source);
    const std::uint32_t target_bytes = Bytes(target);
    Reserve(source_words_, source_bytes);
    Reserve(target_words_, target_bytes);
    source_index_.v_Reserve(source_bytes / sizeof(Unit));
    target_index_.v_Reserve(target_bytes / sizeof(Unit));
    // Nothing from here on needs memory.
    const bool source_found = Index(source_index_, source, target_words_.n_GetUsedSize());
    const bool target_found = Index(target_index_, target, source_words_.n_GetUsedSize());
    source_words_.v_Append(source, source_bytes);
    target_words_.v_Append(target, target_bytes);
    ++count_;
    return source_found && target_found ? TRUE : FALSE;
}

template <typename Unit>
const Unit* CT_BiLingualWordListBasis::FindSource(const Unit* word) const {
    return Find(source_index_, target_words_, word);
}

template <typename Unit>
const Unit* CT_BiLingualWordListBasis::FindTarget(const Unit* word) const {
    return Find(target_index_, source_words_, word);
}

BOOL CT_BiLingualCWordList::b_Insert(const char* source, const char* target) {
    return Insert(source, target);
}
BOOL CT_BiLingualCWordList::b_Insert(const CT_CString* source, const CT_CString* target) {
    return Insert(Text(source), Text(target));
}
const char* CT_BiLingualCWordList::qccz_FindSource(const char* source) const {
    return FindSource(source);
}
const char* CT_BiLingualCWordList::qccz_FindSource(const CT_CString* source) const {
    return FindSource(Text(source));
}
const char* CT_BiLingualCWordList::qccz_FindTarget(const char* target) const {
    return FindTarget(target);
}
const char* CT_BiLingualCWordList::qccz_FindTarget(const CT_CString* target) const {
    return FindTarget(Text(target));
}

BOOL CT_BiLingualUWordList::b_Insert(const char16_t* source, const char16_t* target) {
    return Insert(source, target);
}
BOOL CT_BiLingualUWordList::b_Insert(const CT_UString* source, const CT_UString* target) {
    return Insert(Text(source), Text(target));
}
const char16_t* CT_BiLingualUWordList::qcuz_FindSource(const char16_t* source) const {
    return FindSource(source);
}
const char16_t* CT_BiLingualUWordList::qcuz_FindSource(const CT_UString* source) const {
    return FindSource(Text(source));
}
const char16_t* CT_BiLingualUWordList::qcuz_FindTarget(const char16_t* target) const {
    return FindTarget(target);
}
const char16_t* CT_BiLingualUWordList::qcuz_FindTarget(const CT_UString* target) const {
    return FindTarget(Text(target));
}

CT_BiWordListIteratorBasis::CT_BiWordListIteratorBasis(
    const CT_BiLingualWordListBasis* list) noexcept
    : list_(list),
      source_words_(list == nullptr ? nullptr : list->pcco_GetSourceBuffer()),
      target_words_(list == nullptr ? nullptr : list->pcco_GetTargetBuffer()) {}

BOOL CT_BiUWordListIterator::b_Next() noexcept {
    if (number_ == n_GetCount()) return FALSE;
    if (number_++ != 0) {
        const auto behind = [](const CT_Buffer& words, std::uint32_t at) {
            return at + Bytes(Units<char16_t>(words).data() + at / sizeof(char16_t));
        };
        source_at_ = behind(*source_words_, source_at_);
        target_at_ = behind(*target_words_, target_at_);
    }
    return TRUE;
}

void CT_BiUWordListIterator::v_Get(const char16_t** source,
                                   const char16_t** target) const noexcept {
    const auto give = [](const char16_t** out, const CT_Buffer* words, std::uint32_t at) {
        if (out == nullptr) return;
        const char16_t* const units = words == nullptr ? nullptr : Units<char16_t>(*words).data();
        *out = units == nullptr ? u"" : units + at / sizeof(char16_t);
    };
    give(source, source_words_, source_at_);
    give(target, target_words_, target_at_);
}

void CT_BiUWordListIterator::v_Get(CT_UString* source, CT_UString* target) const {
    const char16_t* source_word = nullptr;
    const char16_t* target_word = nullptr;
    v_Get(&source_word, &target_word);
    if (source != nullptr) *source = CT_UString(source_word);
    if (target != nullptr) *target = CT_UString(target_word);
}

BOOL CT_BiUWordListIterator::b_IsEqual(const CT_BiUWordListIterator* other) const noexcept {
    return other != nullptr && list_ == other->list_ && number_ == other->number_ ? TRUE : FALSE;
}
