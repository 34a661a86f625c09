// A glossary: reads pairs of words, stores them, loads them again and looks words up in both
// directions.
//   glossary TABLE WORD...          TABLE: a word, a tab and its translation in each line, UTF-8
#include <Foundation/Foundation.h>

#include <cstdio>
#include <string>

namespace {

constexpr unsigned int kUtf8 = 65001, kToEnd = 0xFFFFFFFF, kFileBuffer = 16384;

std::string Utf8(const CT_UString& text) {
    const CT_CString bytes(&text, kUtf8);
    return bytes.qccz_Get();
}

// Shows the thread's error, if there is one, and clears it.
bool Failed() {
    CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
    if (!errors.b_IsSetError()) return false;
    CT_UString message;
    errors.v_GetErrorMessage(message);
    std::printf("%s\n", Utf8(message).c_str());
    errors.v_ClearError();
    return true;
}

void ReadTable(const CT_UString& name, CT_BiLingualUWordList& glossary) {
    CT_WinFile file(&name, kFileBuffer);
    CT_FileStream stream(&file);
    CT_StreamTextReader reader(&stream, CT_Codepage(kUtf8), TRUE);  // TRUE: heed a byte-order mark
    CT_UString line;
    while (reader.b_ReadLine(line)) {
        const unsigned int tab = line.vn_Find(u'\t');
        if (tab == kToEnd) continue;  // no pair
        const CT_UString source(line.qcuz_Get(), tab);
        const CT_UString target(line.qcuz_Get() + tab + 1);
        glossary.v_Insert(&source, &target);
    }
}

void LookUp(const CT_BiLingualUWordList& glossary, const CT_UString& word) {
    const char16_t* translation = glossary.qcuz_FindSource(&word);
    if (translation == nullptr) translation = glossary.qcuz_FindTarget(&word);
    const CT_UString answer(translation != nullptr ? translation : u"not in the glossary");
    std::printf("%s: %s\n", Utf8(word).c_str(), Utf8(answer).c_str());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return std::puts("usage: glossary TABLE WORD..."), 2;
    const CT_UString table(argv[1], kToEnd, kUtf8);
    CT_BiLingualUWordList built(TRUE);  // TRUE: room for more than some thousand words
    ReadTable(table, built);
    if (Failed()) return 1;

    const char16_t* const store = u"example.glossary";
    CT_GlossaryFile::sb_Save(&built, store);
    CT_BiLingualUWordList glossary;
    CT_GlossaryFile::sb_Load(&glossary, store);
    if (Failed()) return 1;

    std::printf("%u pairs\n", glossary.n_GetCount());
    for (int i = 2; i < argc; ++i) LookUp(glossary, CT_UString(argv[i], kToEnd, kUtf8));
    return 0;
}
