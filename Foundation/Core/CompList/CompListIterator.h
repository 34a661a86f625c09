// CT_CompListIterator: the words of a compressed list with their handles, one after the other;
// CT_CCompListIterator collects them as 8-bit text, CT_UCompListIterator as UTF-16.
//
// Order: depth first; of the alternatives at a branch the last comes first; a word comes before the
// longer ones that continue it. The empty word is not among them.
// The list is borrowed. Adding words to it while an iterator runs makes the rest of the run
// meaningless (but safe): set the iterator anew.
// Cost: a run takes time linear in the image when each call is given the same string, of the
// iterator's kind and as the last call left it, or none. The string shares the iterator's block
// then. Else every word is copied, and words that continue one another can be many times the image.
// Foreign images: a run through a damaged image ends early; it visits no more than there is.
// Errors: records none. Threads: one object, one thread.
#ifndef FOUNDATION_CORE_COMPLIST_COMPLISTITERATOR_H
#define FOUNDATION_CORE_COMPLIST_COMPLISTITERATOR_H

#include <cstdint>

#include "Foundation/Core/Container/VoidArray.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_CompList;

class ZELKOR_API CT_CompListIterator {
public:
    // A null list has no words.
    explicit CT_CompListIterator(const CT_CompList* list);
    virtual ~CT_CompListIterator();

    // Starts again, on this list.
    virtual void vv_Set(const CT_CompList* list);

    // The next word and its handle, either of which may be null; FALSE at the end, where both stay
    // as they are (where a damaged image ends early the word may have become empty). The word may
    // be of either kind; it is converted when it is not the iterator's.
    BOOL b_GetNext(CT_String* word, unsigned int* handle);

protected:
    // The characters of the path to the current position. Characters are cut to the string's width.
    [[nodiscard]] virtual const CT_String* vpcco_GetCollectedString() const = 0;
    // Removes the last character and returns it.
    virtual unsigned int vn_PopCharacter() = 0;
    virtual void vv_AppendCharacter(unsigned int character) = 0;

private:
    // An alternative that was left for the ones behind it.
    struct Branch {
        std::uint32_t position;  // of its alternative marker
        std::uint32_t length;    // collected before its first character
        std::uint32_t character;
    };
    [[nodiscard]] bool LeaveAlternative(std::uint32_t target);
    void Start(const CT_CompList* list);
    void Backtrack(std::uint32_t jump);
    void MakeOwn(CT_String* word) const;
    void CutCollected(std::uint32_t length);

    static constexpr std::uint32_t kStackGrowth = 16;

    const CT_CompList* list_;
    std::uint32_t position_ = 0;
    CT_VoidArray stack_;
    bool branch_ended_ = false;        // behind the latest word
    std::uint32_t elements_left_ = 0;  // more than a sound image has in all
};

class ZELKOR_API CT_CCompListIterator : public CT_CompListIterator {
public:
    // The words have the list's code page.
    explicit CT_CCompListIterator(const CT_CompList* list);
    void vv_Set(const CT_CompList* list) override;

protected:
    [[nodiscard]] const CT_String* vpcco_GetCollectedString() const override;
    unsigned int vn_PopCharacter() override;
    void vv_AppendCharacter(unsigned int character) override;

private:
    CT_CString collected_;
};

class ZELKOR_API CT_UCompListIterator : public CT_CompListIterator {
public:
    explicit CT_UCompListIterator(const CT_CompList* list) : CT_CompListIterator(list) {}

protected:
    [[nodiscard]] const CT_String* vpcco_GetCollectedString() const override;
    unsigned int vn_PopCharacter() override;
    void vv_AppendCharacter(unsigned int character) override;

private:
    CT_UString collected_;
};

#endif
