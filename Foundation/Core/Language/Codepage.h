// CT_Codepage: one text encoding, as a value of the library's own list with its Windows code-page
// number and its character-set names (MIME, XML, HTML; IANA aliases).
//
// The object is one word, passed and stored by value; the conversions are CT_StringConvert's.
// The list is closed: pages that are served but are not in it (437, 852, 866, 28605, 54936 and
// more, see CodePages.h) are kUnknown here. Text in them goes by the number, through CT_CString and
// CT_StringConvert. Readers and writers of text take values, not numbers: with kUnknown they use
// the system's ANSI page, so ask b_IsValid before handing them what a look-up gave.
//
// Errors: none recorded unless a member says so; a failed look-up gives kUnknown, number 0 or a
// null name. Threads: plain values, any thread.
#ifndef FOUNDATION_CORE_LANGUAGE_CODEPAGE_H
#define FOUNDATION_CORE_LANGUAGE_CODEPAGE_H

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_UString;

class ZELKOR_API CT_Codepage : public zelkor::detail::HeapObject {
public:
    // Stored in files and settings: the values never change.
    enum et_Codepage : unsigned int {
        kUsAscii = 0,
        kDos720 = 1,
        kWindows850 = 2,
        kDos862 = 3,
        kWindows874 = 4,
        kShiftJis = 5,
        kGb2312 = 6,
        kKorean = 7,
        kBig5 = 8,
        kUnicode = 9,
        kWindows1250 = 10,
        kWindows1251 = 11,
        kWindows1252 = 12,
        kWindows1253 = 13,
        kWindows1254 = 14,
        kWindows1255 = 15,
        kIso8859_8 = 16,
        kWindows1256 = 17,
        kWindows1257 = 18,
        kWindows1258 = 19,
        kIso2022Kr = 20,
        kKoi8R = 21,
        kIso8859_2 = 22,
        kIso8859_3 = 23,
        kIso8859_4 = 24,
        kIso8859_5 = 25,
        kIso8859_7 = 26,
        kIso8859_9 = 27,
        kIso2022Jp = 28,
        kEucJp = 29,
        kHzGb2312 = 30,
        kUtf7 = 31,
        kUtf8 = 32,
        kUtf16 = 33,
        kUtf16BigEndian = 34,
        kMacRoman = 35,
        kMacJapanese = 36,
        kMacTraditionalChinese = 37,
        kMacKorean = 38,
        kMacArabic = 39,
        kMacHebrew = 40,
        kMacGreek = 41,
        kMacCyrillic = 42,
        kMacSimplifiedChinese = 43,
        kMacRomanian = 44,
        kMacUkraine = 45,
        kMacThai = 46,
        kMacLatin2 = 47,
        kMacIcelandic = 48,
        kMacTurkish = 49,
        kMacCroatia = 50,
        kPseudoAnsi = 51,  // the platform's pages as pseudo page numbers 0, 1, 2 and 3
        kPseudoOem = 52,
        kPseudoMac = 53,
        kPseudoThread = 54,
        kSystemAnsi = 55,  // the platform's pages, resolved to their numbers
        kSystemOem = 56,
        kUnknown = 57,  // a look-up found nothing
        kNotSet = 58,   // default-constructed
    };

    CT_Codepage() = default;
    // From a value (not checked), a Windows number or a name in any case. A number that several
    // values share gives the first: 1200 kUnicode, 1255 kWindows1255. ISO 8859-1 is
    // windows-1252. A null pointer gives kUnknown.
    CT_Codepage(et_Codepage value);
    explicit CT_Codepage(unsigned int number);
    explicit CT_Codepage(const CT_UString* name);
    explicit CT_Codepage(const CT_Codepage* other);
    CT_Codepage(const CT_Codepage&) = default;
    CT_Codepage& operator=(const CT_Codepage&) = default;

    void v_Set();
    void v_Set(et_Codepage value);
    void v_Set(unsigned int number);
    void v_Set(const CT_UString* name);
    void v_Set(const CT_Codepage* other);

    [[nodiscard]] et_Codepage eo_Get() const { return value_; }
    // The Windows number: the system's own for kSystemAnsi and kSystemOem, 0 for unknown
    // values.
    [[nodiscard]] unsigned int n_Get() const;
    // The main name of the number, or null: values that share a number share the name, kIso8859_8
    // is named windows-1255 and kUtf16 Unicode; pseudo pages have none. Borrowed, constant.
    [[nodiscard]] const char16_t* qcuz_Get() const;

    [[nodiscard]] BOOL b_IsValid() const;
    [[nodiscard]] BOOL b_IsValidAndInstalled() const;
    [[nodiscard]] BOOL b_IsWindowsCodepage() const;
    // Macintosh Thai and the Macintosh pseudo page are not counted.
    [[nodiscard]] BOOL b_IsMacCodepage() const;
    // kUtf16BigEndian is counted by neither of these.
    [[nodiscard]] BOOL b_IsUnicode() const;
    [[nodiscard]] BOOL b_Is16BitUnicode() const;
    [[nodiscard]] BOOL b_IsDBCS() const;
    [[nodiscard]] BOOL b_IsDBCSLeadByte(unsigned char byte) const;
    // Equal values; equal numbers.
    [[nodiscard]] BOOL b_IsEqual(const CT_Codepage& other) const;
    [[nodiscard]] BOOL b_IsSame(const CT_Codepage& other) const;

    // Whether text survives conversion to this page and back, all of its length. Always TRUE for
    // the forms of Unicode that b_IsUnicode counts, FALSE for a null text in others. A page without
    // conversion (1201) leaves the system error of the conversion recorded and answers FALSE.
    [[nodiscard]] BOOL b_IsStringSupported(const CT_UString* text) const;
    [[nodiscard]] BOOL b_IsCharSupported(char16_t unit) const;

    [[nodiscard]] static BOOL sb_IsDBCS(unsigned int number);
    [[nodiscard]] static BOOL sb_IsDBCSLeadByte(unsigned int number, unsigned char byte);
    // The ground answers from a constant table, so there is nothing to cache.
    [[nodiscard]] static BOOL sb_IsValidCodePage(unsigned int number);

    // The encoding that the first 100 bytes of a file suggest: kUtf8 for its byte-order mark,
    // kUtf16 for text that looks like UTF-16, else kSystemAnsi. A file that cannot be read
    // gives kSystemAnsi and leaves no error behind; with an error already set the file is not
    // touched.
    [[nodiscard]] static CT_Codepage sco_GuessEncoding(const CT_UString* file_name);

private:
    void v_Init();
    void v_Init(et_Codepage value);
    void v_Init(unsigned int number);
    void v_Init(const CT_UString* name);
    void v_Init(const CT_Codepage* other);

    static et_Codepage seo_Codepage(unsigned int number);
    static et_Codepage seo_Codepage(const CT_UString* name);
    static unsigned int sn_Codepage(et_Codepage value);

    et_Codepage value_ = kNotSet;
};

static_assert(sizeof(CT_Codepage) == sizeof(unsigned int));

#endif
