// CT_BiLingualUWordList and CT_BiLingualCWordList: pairs of words, found by either one of them.
//
// The words stand one behind the other, each with its terminating zero, in two buffers; a packed
// word list over each leads from a word to its partner in the other. Buffers and packed lists can
// be stored as they are, and a list made of them again with b_Set.
// Units: words are zero-terminated texts, UTF-16 (U) or 8-bit in the caller's code page (C); null
// counts as empty. They may lie in the list itself.
// What is found: a word that stands in several pairs leads to the partner of the first. Every pair
// is kept, counted and iterated, but a word is not found when it is empty, when it contains one of
// the characters 10, 13, 25 and 26, or when the packed list refused it; b_Insert tells. With 2-byte
// offsets, which
// are the default, packed lists begin to do that when they pass 64 KiB: with some 2,500 words in no
// order, 10,000 and more in alphabetical order. With long offsets they grow to 4 GiB, as the
// buffers do.
// Copies share everything until one of them changes.
// Cost: as CT_CompList.
// Errors: records none. Running out of memory throws CT_SmartHeapException and leaves the list as
// it was.
// Threads: one object, one thread at a time for changes; any number of threads may search and
// iterate over a list while none changes it.
#ifndef FOUNDATION_CORE_SYMBOLTABLE_BILINGUALWORDLIST_H
#define FOUNDATION_CORE_SYMBOLTABLE_BILINGUALWORDLIST_H

#include <cstdint>

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/CompList/CompList.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_CString;
class CT_UString;

class ZELKOR_API CT_BiLingualWordListBasis {
public:
    virtual ~CT_BiLingualWordListBasis();

    // The list's own; good until it changes.
    [[nodiscard]] const CT_CompList* pcco_GetSourceIndex() const noexcept { return &source_index_; }
    [[nodiscard]] const CT_CompList* pcco_GetTargetIndex() const noexcept { return &target_index_; }
    [[nodiscard]] const CT_Buffer* pcco_GetSourceBuffer() const noexcept { return &source_words_; }
    [[nodiscard]] const CT_Buffer* pcco_GetTargetBuffer() const noexcept { return &target_words_; }
    // Number of pairs.
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept { return count_; }

    // Removes all pairs; the kind of offsets stays.
    void v_Set();
    // Makes a list of stored parts again, sharing the buffers and the images (as pcco_GetBuffer of
    // the indexes gave them), in one pass over them. FALSE, and nothing changes, when they do not
    // fit together: words that do not end, a null buffer, more of them on one side, a damaged
    // image, a word that leads where no word begins. Whatever the parts are, searching stays inside
    // them.
    BOOL b_Set(const CT_Buffer* source_words, const CT_Buffer* target_words,
               const CT_Buffer* source_image, const CT_Buffer* target_image);

protected:
    CT_BiLingualWordListBasis(CT_CompList::et_ElementSize element_size, BOOL long_offsets);
    CT_BiLingualWordListBasis(const CT_BiLingualWordListBasis& other) = default;
    // Null makes an empty list.
    CT_BiLingualWordListBasis(const CT_BiLingualWordListBasis* other,
                              CT_CompList::et_ElementSize element_size)
        : CT_BiLingualWordListBasis(element_size, FALSE) {
        v_Set(other);
    }
    CT_BiLingualWordListBasis& operator=(const CT_BiLingualWordListBasis& other) {
        v_Set(&other);
        return *this;
    }

    void v_Set(const CT_BiLingualWordListBasis* other);
    template <typename Unit>
    BOOL Insert(const Unit* source, const Unit* target);
    template <typename Unit>
    [[nodiscard]] const Unit* FindSource(const Unit* word) const;
    template <typename Unit>
    [[nodiscard]] const Unit* FindTarget(const Unit* word) const;

private:
    template <typename Unit>
    [[nodiscard]] bool IsOwn(const Unit* word) const noexcept;

    CT_Buffer source_words_;
    CT_Buffer target_words_;
    std::uint32_t count_ = 0;
    CT_CompList source_index_;  // to offsets in target_words_
    CT_CompList target_index_;  // to offsets in source_words_
};

class ZELKOR_API CT_BiLingualCWordList : public CT_BiLingualWordListBasis,
                                         public zelkor::detail::PoolObject<CT_BiLingualCWordList> {
public:
    explicit CT_BiLingualCWordList(BOOL long_offsets = FALSE)
        : CT_BiLingualWordListBasis(CT_CompList::kOneByte, long_offsets) {}
    explicit CT_BiLingualCWordList(const CT_BiLingualCWordList* other)
        : CT_BiLingualWordListBasis(other, CT_CompList::kOneByte) {}
    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    using CT_BiLingualWordListBasis::v_Set;
    void v_Set(const CT_BiLingualCWordList* other) { CT_BiLingualWordListBasis::v_Set(other); }

    // Adds a pair, in any case. TRUE when both its words are found from now on, be it with partners
    // that they had before; FALSE when one is not, for the reasons above.
    BOOL b_Insert(const char* source, const char* target);
    BOOL b_Insert(const CT_CString* source, const CT_CString* target);
    // The same for those who do not ask.
    void v_Insert(const char* source, const char* target) { b_Insert(source, target); }
    void v_Insert(const CT_CString* source, const CT_CString* target) { b_Insert(source, target); }
    // The target word of a source word, and the source word of a target word: null when there is
    // none. It stands in the list, good until the list changes.
    [[nodiscard]] const char* qccz_FindSource(const char* source) const;
    [[nodiscard]] const char* qccz_FindSource(const CT_CString* source) const;
    [[nodiscard]] const char* qccz_FindTarget(const char* target) const;
    [[nodiscard]] const char* qccz_FindTarget(const CT_CString* target) const;
};

class ZELKOR_API CT_BiLingualUWordList : public CT_BiLingualWordListBasis,
                                         public zelkor::detail::PoolObject<CT_BiLingualUWordList> {
public:
    explicit CT_BiLingualUWordList(BOOL long_offsets = FALSE)
        : CT_BiLingualWordListBasis(CT_CompList::kTwoBytes, long_offsets) {}
    explicit CT_BiLingualUWordList(const CT_BiLingualUWordList* other)
        : CT_BiLingualWordListBasis(other, CT_CompList::kTwoBytes) {}
    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    using CT_BiLingualWordListBasis::v_Set;
    void v_Set(const CT_BiLingualUWordList* other) { CT_BiLingualWordListBasis::v_Set(other); }

    // As those of the 8-bit list.
    BOOL b_Insert(const char16_t* source, const char16_t* target);
    BOOL b_Insert(const CT_UString* source, const CT_UString* target);
    void v_Insert(const char16_t* source, const char16_t* target) { b_Insert(source, target); }
    void v_Insert(const CT_UString* source, const CT_UString* target) { b_Insert(source, target); }
    [[nodiscard]] const char16_t* qcuz_FindSource(const char16_t* source) const;
    [[nodiscard]] const char16_t* qcuz_FindSource(const CT_UString* source) const;
    [[nodiscard]] const char16_t* qcuz_FindTarget(const char16_t* target) const;
    [[nodiscard]] const char16_t* qcuz_FindTarget(const CT_UString* target) const;
};

// A walk over all pairs in the order of their insertion, from before the first one ("at home"). A
// null list has none.
class ZELKOR_API CT_BiWordListIteratorBasis {
public:
    // Whether no pair was stepped to yet; whether the current pair is the last one, or there are
    // none.
    [[nodiscard]] BOOL b_AtHome() const noexcept { return number_ == 0 ? TRUE : FALSE; }
    [[nodiscard]] BOOL b_AtEnd() const noexcept { return number_ == n_GetCount() ? TRUE : FALSE; }
    // Number of pairs in the list.
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept {
        return list_ == nullptr ? 0 : list_->n_GetCount();
    }

protected:
    explicit CT_BiWordListIteratorBasis(const CT_BiLingualWordListBasis* list) noexcept;
    ~CT_BiWordListIteratorBasis() = default;
    CT_BiWordListIteratorBasis(const CT_BiWordListIteratorBasis&) noexcept = default;
    CT_BiWordListIteratorBasis& operator=(const CT_BiWordListIteratorBasis&) noexcept = default;

    const CT_BiLingualWordListBasis* list_;
    const CT_Buffer* source_words_;
    const CT_Buffer* target_words_;
    std::uint32_t source_at_ = 0;  // byte offsets of the current words
    std::uint32_t target_at_ = 0;
    std::uint32_t number_ = 0;  // of the current pair; 0 at home
};

// The list is borrowed and must not change meanwhile.
class ZELKOR_API CT_BiUWordListIterator : public CT_BiWordListIteratorBasis {
public:
    explicit CT_BiUWordListIterator(const CT_BiLingualUWordList* list) noexcept
        : CT_BiWordListIteratorBasis(list) {}
    explicit CT_BiUWordListIterator(const CT_BiUWordListIterator* other) noexcept
        : CT_BiUWordListIterator(static_cast<const CT_BiLingualUWordList*>(nullptr)) {
        v_Set(other);
    }

    // Goes home, in another list; to the place of another iterator.
    void v_Set(const CT_BiLingualUWordList* list) noexcept { *this = CT_BiUWordListIterator(list); }
    void v_Set(const CT_BiUWordListIterator* other) noexcept {
        if (other == nullptr) return v_Set(static_cast<const CT_BiLingualUWordList*>(nullptr));
        *this = *other;
    }

    // Steps to the next pair; FALSE when there is none.
    BOOL b_Next() noexcept;
    // The current words, in the list; at home those of the first pair, empty ones in an empty list.
    // Either may be null.
    void v_Get(const char16_t** source, const char16_t** target) const noexcept;
    void v_Get(CT_UString* source, CT_UString* target) const;
    // Same list and same place.
    [[nodiscard]] BOOL b_IsEqual(const CT_BiUWordListIterator* other) const noexcept;
};

#endif
