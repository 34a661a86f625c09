// Bilingual lists out of stored parts: those of a sound list, in which the bytes change some.
//   parts that are refused change nothing
//   from parts that are taken, every search ends inside them and at a word's end; the pairs are as
//     many as the list says; the list can grow, stays what it was, and can be loaded again.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "Foundation/Core/CompList/CompListIterator.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Core/SymbolTable/BiLingualWordList.h"

namespace {

constexpr std::size_t kMostBytes = 1 + 5 * 20;  // of input: twenty changes

void Require(bool holds) {
    if (!holds) std::abort();
}

using Pairs = std::vector<std::u16string>;

Pairs Contents(const CT_BiLingualUWordList& list) {
    Pairs pairs;
    CT_BiUWordListIterator iterator(&list);
    const char16_t* source = nullptr;
    const char16_t* target = nullptr;
    while (iterator.b_Next() != FALSE) {
        iterator.v_Get(&source, &target);
        pairs.emplace_back(std::u16string(source) + u'=' + target);
    }
    Require(pairs.size() == list.n_GetCount());
    return pairs;
}

// What each word leads to is a text of the buffer, read to its end.
void Search(const CT_BiLingualUWordList& list, const char16_t* word) {
    for (const char16_t* const found : {list.qcuz_FindSource(word), list.qcuz_FindTarget(word)}) {
        if (found != nullptr) Require(std::u16string(found).size() < 0x100000);
    }
}

// A sound list, part by part, in which the bytes replace some.
std::array<std::vector<std::uint8_t>, 4> Parts(const std::uint8_t* data, std::size_t size) {
    CT_BiLingualUWordList list((data[0] & 1) != 0 ? TRUE : FALSE);
    for (const char16_t* word : {u"a", u"ab", u"b", u"", u"haus", u"ha", u"a"}) {
        list.v_Insert(word, (std::u16string(u"x") + word).c_str());
    }
    std::array<std::vector<std::uint8_t>, 4> parts;
    const CT_Buffer* const buffers[] = {list.pcco_GetSourceBuffer(), list.pcco_GetTargetBuffer(),
                                        list.pcco_GetSourceIndex()->pcco_GetBuffer(),
                                        list.pcco_GetTargetIndex()->pcco_GetBuffer()};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto* const bytes = static_cast<const std::uint8_t*>(buffers[i]->qcv_Get());
        parts[i].assign(bytes, bytes + buffers[i]->n_GetUsedSize());
    }
    // part, position (2 bytes), kind of change, value
    for (std::size_t at = 1; at + 5 <= size; at += 5) {
        std::vector<std::uint8_t>& part = parts[data[at] % 4];
        const std::size_t number = data[at + 1] + 256U * data[at + 2];
        const std::size_t position = number % (part.size() + 1);
        if (data[at + 3] == 0) {
            part.resize(position);
        } else if (data[at + 3] < 0x40 || position == part.size()) {
            part.insert(part.begin() + static_cast<std::ptrdiff_t>(position), data[at + 4]);
        } else {
            part[position] = data[at + 4];
        }
    }
    return parts;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > kMostBytes) return 0;
    const auto parts = Parts(data, size);
    std::vector<CT_Buffer> buffers;
    for (const auto& part : parts) {
        buffers.emplace_back(part.data(), static_cast<std::uint32_t>(part.size()), 1);
    }
    CT_BiLingualUWordList list;
    list.v_Insert(u"old", u"alt");
    if (list.b_Set(&buffers[0], &buffers[1], &buffers[2], &buffers[3]) == FALSE) {
        Require(Contents(list) == Pairs{u"old=alt"});
        return 0;
    }
    Pairs pairs = Contents(list);
    for (const CT_CompList* index : {list.pcco_GetSourceIndex(), list.pcco_GetTargetIndex()}) {
        CT_UCompListIterator words(index);
        for (CT_UString word; words.b_GetNext(&word, nullptr) != FALSE;) {
            Search(list, word.qcuz_Get());
        }
    }
    for (const char16_t* word : {u"", u"a", u"ab", u"haus", u"xhaus", u"zz"}) Search(list, word);
    list.v_Insert(u"neu", u"new");
    pairs.emplace_back(u"neu=new");
    Require(Contents(list) == pairs);
    CT_BiLingualUWordList again;
    Require(again.b_Set(list.pcco_GetSourceBuffer(), list.pcco_GetTargetBuffer(),
                        list.pcco_GetSourceIndex()->pcco_GetBuffer(),
                        list.pcco_GetTargetIndex()->pcco_GetBuffer()) != FALSE);
    Require(Contents(again) == pairs);
    return 0;
}
