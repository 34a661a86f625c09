// Loads a word list the usual way and looks words up: source name, file, text reader, packed list.
//   typical_road SOURCE WORD...
#include <Foundation/Foundation.h>

#include <cstdio>

int main(int argc, char** argv) {
    constexpr unsigned int kUtf8 = 65001, kToEnd = 0xFFFFFFFF;
    if (argc < 2) return std::puts("usage: typical_road SOURCE WORD..."), 2;
    CT_CompList list(CT_CompList::kTwoBytes, 1, FALSE, TRUE, 128, 0);
    CT_CompListReader reader(&list, TRUE);  // TRUE: lines that begin with # are comments
    const CT_UString source(argv[1], kToEnd, kUtf8);
    reader.b_ReadItems(&source);
    std::printf("%u words in %u bytes\n", list.n_GetNrOfEntries(), list.n_GetEnd());
    for (int i = 2; i < argc; ++i) {
        const CT_UString word(argv[i], kToEnd, kUtf8);
        std::printf("%s: %s\n", argv[i], list.b_Search(&word, nullptr) ? "yes" : "no");
    }
    return 0;
}
