// A program as a stranger would write it: the umbrella header and nothing else.
#include <Foundation/Foundation.h>

#include <cstdio>

int main() {
    CT_UString text(u"packed", 0xFFFFFFFF);
    CT_CompList list(CT_CompList::kTwoBytes, 4, FALSE, TRUE, 128, 0);
    const BOOL added = list.b_Add(&text, 7);
    const unsigned int handle = list.n_Search(&text, nullptr);
    std::printf("%d %u %u\n", added, handle, CT_BasisDLLMain::sn_GetVersion());
    return added && handle == 7 && CT_BasisDLLMain::sn_GetVersion() == 7 ? 0 : 1;
}
