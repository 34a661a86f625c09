// Compressed lists. The first byte chooses what the rest is.
//   an image: searching and enumerating end without reading outside it. When a word can be added,
//     the image is sound: all that was enumerated is found before and after with its handle, and
//     the new word too.
//   words: a list that grows and one that is adopted anew again and again give the same image,
//     find the same words with the same handles and enumerate each of them once.
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "Foundation/Core/CompList/CompList.h"
#include "Foundation/Core/CompList/CompListIterator.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

using Entries = std::map<std::u16string, unsigned>;

// Every word once; their number is bounded by the image.
Entries Enumerate(const CT_CompList& list, bool sound) {
    Entries entries;
    CT_UCompListIterator iterator(&list);
    CT_UString word;
    unsigned handle = 0;
    for (unsigned left = list.n_GetEnd(); iterator.b_GetNext(&word, &handle) != FALSE; --left) {
        Require(left != 0);
        const bool fresh = entries.emplace(word.qcuz_Get(), handle).second;
        Require(fresh || !sound);
    }
    return entries;
}

void RequireFound(const CT_CompList& list, const Entries& entries) {
    for (const auto& [word, handle] : entries) {
        unsigned matched = 0;
        Require(list.n_Search(word.c_str(), &matched) == handle && matched == word.size());
    }
}

void TryImage(const std::uint8_t* data, std::size_t size) {
    const CT_Buffer buffer(data, static_cast<std::uint32_t>(size), 1);
    CT_CompList list(&buffer);
    for (const char* key : {"", "a", "abc", "z\x80", "\x0A"}) {
        unsigned matched = 0;
        (void)list.n_Search(key, &matched);
        const std::u16string wide(key, key + std::char_traits<char>::length(key));
        (void)list.n_Search(wide.c_str(), &matched);
        Require(matched <= wide.size());
    }
    const Entries entries = Enumerate(list, false);
    const CT_CompList before(&buffer);
    const std::u16string fresh(40, u'q');
    const bool known = list.b_Search(fresh.c_str()) != FALSE;
    if (list.b_Add(fresh.c_str(), 1) == FALSE) return;
    Require(!known);
    // A path through a sound image cannot meet the same word twice, or a zero character.
    Require(Enumerate(before, true) == entries);
    RequireFound(before, entries);
    RequireFound(list, entries);
    Require(list.b_Search(fresh.c_str()) != FALSE);
    Require(Enumerate(list, true).size() == entries.size() + 1);
}

void TryWords(std::uint8_t shape, const std::uint8_t* data, std::size_t size) {
    const unsigned handle_size = 1U << (shape >> 1 & 1);
    CT_CompList grown(CT_CompList::kTwoBytes, handle_size, FALSE, (shape & 1) != 0 ? TRUE : FALSE,
                      0, 0);
    CT_CompList adopted(&grown);
    Entries entries;
    unsigned handle = 0;
    for (std::size_t at = 0; at < size;) {
        std::u16string word;
        for (; at < size && data[at] != 0; ++at) word += static_cast<char16_t>(data[at] & 0x3F);
        ++at;
        word.resize(word.find(u'\0') == std::u16string::npos ? word.size() : word.find(u'\0'));
        handle = (handle + 1) & 0x7F;
        const bool added = grown.b_Add(word.c_str(), handle) != FALSE;
        if (handle % 8 == 0) {
            const CT_Buffer image(adopted.pcco_GetBuffer());
            adopted.v_Set(&image);
        }
        Require((adopted.b_Add(word.c_str(), handle) != FALSE) == added);
        if (added) Require(entries.emplace(word, handle).second);
    }
    const CT_Buffer* const a = grown.pcco_GetBuffer();
    const CT_Buffer* const b = adopted.pcco_GetBuffer();
    Require(a->n_GetUsedSize() == b->n_GetUsedSize());
    Require(a->b_IsEqual(b, 0, 0xFFFFFFFF, 0) != FALSE);
    RequireFound(grown, entries);
    Require(Enumerate(grown, true) == entries);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    if (data[0] < 0x80) {
        TryImage(data + 1, size - 1);
    } else {
        TryWords(data[0], data + 1, size - 1);
    }
    return 0;
}
