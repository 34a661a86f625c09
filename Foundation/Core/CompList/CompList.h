// CT_CompList: a word list packed into one byte image, for lookup and for storage alike. Every word
// carries a numeric handle. The image's bytes are described in docs/formats/compressed-list.md.
//
// Units: sizes and positions are 32-bit bytes, lengths are characters. Keys are zero-terminated;
// null counts as empty. 8-bit keys belong to lists of element size 1, UTF-16 keys to element size
// 2; with any other list a key is not found and not added.
// Cost: searching and adding take time in the word's length. The image of a list that grew is
// written when it is asked for, in time linear in the list; so is what the first b_Add on an
// adopted image needs. A large adopted image that is searched often gets an index beside it in
// memory, built in the midst of one of the searches: a third of the image's size to its size for
// dictionaries, up to three times its size for short words that have little in common.
// Memory: in the form in which it grows a list takes some 16 bytes for each character that words do
// not share, and as much for each word: beside its image three to six times its size for
// dictionaries, up to 14 times for long words of one-byte elements that have nothing in common.
// When it is complete, `list.v_Set(list.pcco_GetBuffer())` leaves it with the image alone.
// Foreign images: reading never leaves the image and always ends. What is damaged is not found, and
// an image whose elements do not hang together is never changed: b_Add answers FALSE. Whether an
// image is whole is what b_IsSound tells.
// Errors: records none. Running out of memory throws CT_SmartHeapException and leaves the list as
// it was.
// Threads: one object, one thread at a time for changes; any number of threads may search and read
// one list while none changes it.
#ifndef FOUNDATION_CORE_COMPLIST_COMPLIST_H
#define FOUNDATION_CORE_COMPLIST_COMPLIST_H

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_CString;
class CT_UString;

namespace zelkor::detail::complist {

class GrowingList;
class Index;
struct View;
struct Outcome;

struct Release {
    void operator()(GrowingList* list) const noexcept;
    void operator()(Index* index) const noexcept;
};

}  // namespace zelkor::detail::complist

class ZELKOR_API CT_CompList {
public:
    // Bytes per character in the image. Lists of four can be made and adopted, but no key fits.
    enum et_ElementSize : unsigned int { kOneByte = 1, kTwoBytes = 2, kFourBytes = 4 };
    enum et_WalkMode : unsigned int {
        kExact = 0,    // whether the word is there
        kPartial = 1,  // also how much of it
        kInsert = 2,
    };
    static constexpr unsigned int kNotFound = 0xFFFFFFFF;

    // A new empty list. The handle size is 1, 2 or 4 (others are rounded up to these); larger
    // handles lose their high bits. Without long offsets the distance between two alternatives of a
    // branch stays below 65536 bytes, which suits lists up to about 64 KiB. The growth is the
    // buffer's, at least 128; the code page is kept for the caller.
    CT_CompList(et_ElementSize element_size, unsigned int handle_size, BOOL empty_string_support,
                BOOL long_offset_support, unsigned int growth, unsigned int code_page);
    // Adopts a packed image in constant time, sharing the buffer. Null or an empty buffer makes a
    // list without image, in which nothing is found. Bytes behind the image's end stay behind it
    // when the list grows.
    explicit CT_CompList(const CT_Buffer* image);
    // Shares the other's image.
    explicit CT_CompList(const CT_CompList* other);
    CT_CompList(const CT_CompList& other) : CT_CompList(&other) {}
    CT_CompList& operator=(const CT_CompList& other) {
        v_Set(&other);
        return *this;
    }
    ~CT_CompList();

    // As the constructors.
    void v_Set(et_ElementSize element_size, unsigned int handle_size, BOOL empty_string_support,
               BOOL long_offset_support, unsigned int growth, unsigned int code_page);
    void v_Set(const CT_Buffer* image);
    void v_Set(const CT_CompList* other);

    // Adds a word; TRUE when it was added. FALSE, and nothing changes, when
    //   it is there already (its handle stays)
    //   it is empty and the list has no empty-string support
    //   it contains one of the characters 10, 13, 25 and 26, which mark the image's structure
    //   a 2-byte offset of the image would pass 65535, or the image 4 GiB
    //   the list was adopted from an image that does not hang together, or has none
    // The empty word is always taken where it is supported: a further one replaces the handle and
    // counts as a further entry.
    BOOL b_Add(const char* key, unsigned int handle);
    BOOL b_Add(const char16_t* key, unsigned int handle);
    BOOL b_Add(const CT_CString* key, unsigned int handle);
    BOOL b_Add(const CT_UString* key, unsigned int handle);

    // Makes room, so that adding one word of up to that many characters needs no memory. Does
    // nothing to a list that takes no words.
    void v_Reserve(unsigned int length);

    // The word's handle, 0xFFFFFFFF when it is absent (a word stored with that handle cannot be
    // told from an absent one). `matched`, which may be null, receives the length of the word; of
    // an absent one its length when stored words begin with it, the length of the stored word that
    // it only continues, else 0. The empty word without empty-string support gives 0.
    [[nodiscard]] unsigned int n_Search(const char* key, unsigned int* matched = nullptr) const;
    [[nodiscard]] unsigned int n_Search(const char16_t* key, unsigned int* matched = nullptr) const;
    [[nodiscard]] unsigned int n_Search(const CT_CString* key,
                                        unsigned int* matched = nullptr) const;
    [[nodiscard]] unsigned int n_Search(const CT_UString* key,
                                        unsigned int* matched = nullptr) const;

    // Whether n_Search gives anything but 0xFFFFFFFF.
    template <typename Key>
    [[nodiscard]] BOOL b_Search(const Key* key, unsigned int* matched = nullptr) const {
        return n_Search(key, matched) != kNotFound ? TRUE : FALSE;
    }

    // The buffer with the image, null when the list has none. It is the list's own: the bytes are
    // good until the list changes, and after a change they are there when this is asked again.
    [[nodiscard]] const CT_Buffer* pcco_GetBuffer() const;

    // The image's header. Without an image all are 0.
    [[nodiscard]] unsigned int n_GetEnd() const noexcept;
    [[nodiscard]] unsigned int n_GetCodePage() const noexcept;
    [[nodiscard]] unsigned int n_GetNrOfEntries() const noexcept;
    [[nodiscard]] unsigned int n_GetElementSize() const noexcept;
    [[nodiscard]] unsigned int n_GetHandleSize() const noexcept;
    [[nodiscard]] BOOL b_IsInNetworkByteOrder() const noexcept;
    [[nodiscard]] BOOL b_HasEmptyStringSupport() const noexcept;
    [[nodiscard]] BOOL b_HasLongOffsetSupport() const noexcept;
    [[nodiscard]] BOOL b_IsEmpty() const noexcept;
    // Whether a word was added since the list was made or set.
    [[nodiscard]] BOOL b_IsChanged() const noexcept { return changed_; }

    // Whether the whole image is one that adding words can have written. TRUE promises that
    //   enumerating it gives n_GetNrOfEntries words, each once (less the empty word, as often as
    //     it was added), none of them empty
    //   each of these is found, with the handle that it is enumerated with, and nothing else is
    //   words can be added to it, and it is sound again then
    // and rests on a look at every element: the header agrees with itself and with the buffer;
    // markers, handles and distances lie inside and the stream ends where the image does; each row
    // of characters up to the end of its branch is led to exactly once, from before it, so that no
    // paths meet or turn back; no branching point has the same character twice; no character is 0;
    // entries of the jump table are 0 or right; the number of entries is that of the words.
    // FALSE also for a list without an image, an image in network byte order, and one of four-byte
    // elements that holds anything. Bytes behind the image's end do not count.
    // Takes time linear in the image, damaged or not, and an eighth of its size in memory.
    [[nodiscard]] BOOL b_IsSound() const;

    // Bytes of memory that the list holds beside its image: the form in which it grows, the index.
    [[nodiscard]] std::size_t MemoryBesideImage() const noexcept;

private:
    friend class CT_CompListIterator;

    template <typename Unit>
    [[nodiscard]] unsigned int n_Walk(const Unit* key, et_WalkMode mode,
                                      unsigned int* matched) const;
    template <typename Unit>
    [[nodiscard]] zelkor::detail::complist::Outcome WalkAdopted(const Unit* key, bool exact) const;
    template <typename Unit>
    BOOL b_Insert(const Unit* key, unsigned int handle);
    [[nodiscard]] zelkor::detail::complist::View Image() const;
    void WriteImage() const;
    void BuildIndex() const;
    bool MakeGrowing();
    void Adopt();
    void Forget() noexcept;

    // The image as of the last time it was needed; bytes_ is null while words came after that.
    mutable CT_Buffer buffer_;
    mutable std::atomic<const std::byte*> bytes_{nullptr};
    std::uint32_t first_;
    BOOL changed_;
    bool damaged_ = false;  // the image was found not to hang together when a word was added
    std::uint32_t offset_size_;
    std::uint32_t limit_ = 0;              // readable bytes of an adopted image, 0 when it is none
    CT_Buffer behind_;                     // what stood behind the image that the list grew from
    std::array<std::byte, 132> header_{};  // always current, but for the jump table
    std::unique_ptr<zelkor::detail::complist::GrowingList, zelkor::detail::complist::Release>
        growing_;
    mutable std::atomic<zelkor::detail::complist::Index*> index_{nullptr};
    mutable std::atomic<std::uint32_t> skipped_{0};  // alternatives passed over without an index
    mutable std::mutex lock_;  // held while one of several readers writes the image or the index
};

#endif
