// Compressed lists. The first byte chooses what the rest is.
//   an image, or an element stream that gets a header: searching and enumerating end without
//     reading outside it. When it is called sound, all that is enumerated is as much as the header
//     says, each word once and found with its handle, and a new word can be added, with which it is
//     sound again. When a word can be added, all but the number of entries holds as well.
//   words: a list that grows and one that is adopted anew, when the input says so, give the same
//     image, find the same words with the same handles and enumerate each of them once.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "Foundation/Core/CompList/CompList.h"
#include "Foundation/Core/CompList/CompListIterator.h"

namespace {

// Of input: what is wrong shows in short ones, soon. Words cost more, and are cut.
constexpr std::size_t kMostBytes = 600;
constexpr std::size_t kMostWordBytes = 64;
constexpr unsigned kMostHandles = 128;  // so each word has its own

void Require(bool holds) {
    if (!holds) std::abort();
}

using Word = std::u16string;
using Entries = std::vector<std::pair<Word, unsigned>>;

// A key in the list's own kind.
template <typename Use>
auto With(const CT_CompList& list, const Word& word, Use use) {
    if (list.n_GetElementSize() == 2) return use(word.c_str());
    return use(std::string(word.begin(), word.end()).c_str());
}

unsigned Search(const CT_CompList& list, const Word& word, unsigned* matched) {
    return With(list, word, [&](const auto* key) { return list.n_Search(key, matched); });
}

bool Add(CT_CompList& list, const Word& word, unsigned handle) {
    return With(list, word, [&](const auto* key) { return list.b_Add(key, handle) != FALSE; });
}

// All words with their handles; their number is bounded by the image.
Entries Enumerate(const CT_CompList& list) {
    Entries entries;
    CT_UCompListIterator iterator(&list);
    CT_UString word;
    unsigned handle = 0;
    for (unsigned left = list.n_GetEnd(); iterator.b_GetNext(&word, &handle) != FALSE; --left) {
        Require(left != 0);
        entries.emplace_back(word.qcuz_Get(), handle);
    }
    return entries;
}

// A path through a sound image cannot meet the same word twice, or a zero character.
void RequireSound(const CT_CompList& list, Entries entries) {
    for (const auto& [word, handle] : entries) {
        unsigned matched = 0;
        Require(!word.empty() && Search(list, word, &matched) == handle && matched == word.size());
    }
    std::sort(entries.begin(), entries.end());
    for (std::size_t i = 1; i < entries.size(); ++i) {
        Require(entries[i - 1].first != entries[i].first);
    }
}

void TryImage(const CT_Buffer& buffer) {
    CT_CompList list(&buffer);
    for (const char* key : {"", "a", "abc", "z\x80", "\x0A"}) {
        unsigned matched = 0;
        (void)list.n_Search(key, &matched);
        const Word wide(key, key + std::char_traits<char>::length(key));
        (void)list.n_Search(wide.c_str(), &matched);
        Require(matched <= wide.size());
    }
    const Entries entries = Enumerate(list);
    const bool sound = list.b_IsSound() != FALSE;
    if (sound) {
        RequireSound(list, entries);
        const bool empties = list.b_HasEmptyStringSupport() != FALSE;
        Require(empties ? list.n_GetNrOfEntries() >= entries.size()
                        : list.n_GetNrOfEntries() == entries.size());
    }
    const Word fresh(20, u'q');
    const bool known = std::any_of(entries.begin(), entries.end(),
                                   [&fresh](const auto& entry) { return entry.first == fresh; });
    const bool added = Add(list, fresh, 1);
    // No key fits elements of four bytes, and distances of two can be used up only by more.
    Require(added || known || !sound || list.n_GetElementSize() == 4);
    if (!added) return;
    Require(!known);
    if (!sound) RequireSound(CT_CompList(&buffer), entries);
    const Entries more = Enumerate(list);
    Require(more.size() == entries.size() + 1);
    RequireSound(list, more);
    Require(!sound || list.b_IsSound() != FALSE);
}

// The stream with a header that suits it, in which further bytes change some: the number of them
// stands first, then position and value of each.
void TryStream(std::uint8_t shape, const std::uint8_t* data, std::size_t size) {
    const CT_CompList empty((shape & 1) != 0 ? CT_CompList::kTwoBytes : CT_CompList::kOneByte,
                            1U << (shape >> 1 & 1), (shape >> 2 & 1) != 0 ? TRUE : FALSE,
                            (shape >> 3 & 1) != 0 ? TRUE : FALSE, 0, 0);
    const auto* const header = static_cast<const std::uint8_t*>(empty.pcco_GetBuffer()->qcv_Get());
    std::vector<std::uint8_t> image(header, header + 132);
    const std::size_t changes = std::min<std::size_t>(data[0] % 4, (size - 1) / 2);
    image.insert(image.end(), data + 1 + 2 * changes, data + size);
    image[4] = static_cast<std::uint8_t>(image.size());
    image[5] = static_cast<std::uint8_t>(image.size() >> 8);
    const auto adopt = [&image] {
        return CT_Buffer(image.data(), static_cast<std::uint32_t>(image.size()), 1);
    };
    const CT_Buffer made = adopt();
    const std::size_t words = Enumerate(CT_CompList(&made)).size();
    image[120] = static_cast<std::uint8_t>(words);
    image[121] = static_cast<std::uint8_t>(words >> 8);
    for (std::size_t i = 0; i < changes; ++i) image[data[1 + 2 * i] % 132] = data[2 + 2 * i];
    TryImage(adopt());
}

void TryWords(std::uint8_t shape, const std::uint8_t* data, std::size_t size) {
    const unsigned handle_size = 1U << (shape >> 1 & 1);
    CT_CompList grown(CT_CompList::kTwoBytes, handle_size, FALSE, (shape & 1) != 0 ? TRUE : FALSE,
                      0, 0);
    CT_CompList adopted(&grown);
    std::vector<Word> words(kMostHandles);  // by their handles; empty where none was added
    unsigned handle = 0;
    std::size_t anew = size * (shape >> 3 & 7) / 8;  // where the other one is adopted anew
    for (std::size_t at = 0; at < size;) {
        Word word;
        for (; at < size && data[at] != 0; ++at) word += static_cast<char16_t>(data[at] & 0x3F);
        ++at;
        word.resize(std::min(word.find(u'\0'), word.size()));
        Require(++handle < kMostHandles);
        unsigned matched = 0;
        const bool known = grown.n_Search(word.c_str(), &matched) != CT_CompList::kNotFound;
        const bool added = grown.b_Add(word.c_str(), handle) != FALSE;
        Require(!(added && known));
        if (at >= anew) {
            anew = SIZE_MAX;
            const CT_Buffer image(adopted.pcco_GetBuffer());
            adopted.v_Set(&image);
        }
        Require((adopted.b_Add(word.c_str(), handle) != FALSE) == added);
        if (added) words[handle] = std::move(word);
    }
    const CT_Buffer* const a = grown.pcco_GetBuffer();
    const CT_Buffer* const b = adopted.pcco_GetBuffer();
    Require(a->n_GetUsedSize() == b->n_GetUsedSize());
    Require(a->b_IsEqual(b, 0, 0xFFFFFFFF, 0) != FALSE);
    Require(grown.b_IsSound() != FALSE);
    const CT_CompList loaded(a);
    for (const CT_CompList* const list : {&std::as_const(grown), &loaded}) {
        for (unsigned i = 0; i <= handle; ++i) {
            unsigned matched = 0;
            if (words[i].empty()) continue;
            Require(Search(*list, words[i], &matched) == i && matched == words[i].size());
        }
    }
    for (const auto& [word, found] : Enumerate(grown)) {
        Require(!word.empty() && std::exchange(words[found], Word()) == word);
    }
    for (const Word& word : words) Require(word.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || size > kMostBytes) return 0;
    if (data[0] < 0x40) {
        TryImage(CT_Buffer(data + 1, static_cast<std::uint32_t>(size - 1), 1));
    } else if (data[0] < 0x80) {
        TryStream(data[0], data + 1, size - 1);
    } else {
        TryWords(data[0], data + 1, std::min(size - 1, kMostWordBytes));
    }
    return 0;
}
