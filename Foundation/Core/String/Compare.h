// CT_Compare: comparison functions for sorting and searching. They take two values of one kind and
// answer a negative number, 0 or a positive one; containers, std::sort by "< 0" and qsort take
// them.
//
// Comparison is by code unit: no locale, no collation. Without regard to case means that A to Z
// count as a to z; no other letter folds. Numbers and the Case functions answer -1, 0 or 1, the
// NoCase functions 0 or the difference of the first two units that differ, both in lower case.
// Names: N, N4, I are numbers; CCZ/CZ 8-bit and CUZ/UZ UTF-16 texts, zero-terminated; CString,
// UString, String are objects. A P more takes pointers to such values: items of an array. The const
// and the other form of a pair are the same.
//
// A null text or string, like a string without text, counts as empty; a null pointer to a value as
// one to 0 or null.
// Each function has one address in the whole process, so that two arrays can tell whether they are
// in the same order. Errors: records none, except that the conversion of 8-bit text in a String
// function may record a system error. Only those conversions allocate, and may throw
// CT_SmartHeapException. Threads: any.
#ifndef FOUNDATION_CORE_STRING_COMPARE_H
#define FOUNDATION_CORE_STRING_COMPARE_H

#include <cstdint>

#include "Foundation/Platform/Export.h"

class CT_CString;
class CT_String;
class CT_UString;

class ZELKOR_API CT_Compare {
public:
    // ---- Numbers ------------------------------------------------------------------------------
    [[nodiscard]] static int si_CompareN(unsigned int a, unsigned int b) noexcept;
    [[nodiscard]] static int si_CompareN4(std::uint32_t a, std::uint32_t b) noexcept;
    [[nodiscard]] static int si_CompareI(int a, int b) noexcept;
    [[nodiscard]] static int si_ComparePN(const unsigned int* a, const unsigned int* b) noexcept;
    [[nodiscard]] static int si_ComparePN4(const std::uint32_t* a, const std::uint32_t* b) noexcept;
    [[nodiscard]] static int si_ComparePI(const int* a, const int* b) noexcept;

    // ---- 8-bit texts, as unsigned bytes -------------------------------------------------------
    [[nodiscard]] static int si_CompareCaseQCCZ(const char* a, const char* b) noexcept;
    [[nodiscard]] static int si_CompareCaseQCZ(char* a, char* b) noexcept;
    [[nodiscard]] static int si_CompareCasePQCCZ(const char** a, const char** b) noexcept;
    [[nodiscard]] static int si_CompareCasePQCZ(char** a, char** b) noexcept;
    [[nodiscard]] static int si_CompareNoCaseQCCZ(const char* a, const char* b) noexcept;
    [[nodiscard]] static int si_CompareNoCaseQCZ(char* a, char* b) noexcept;
    [[nodiscard]] static int si_CompareNoCasePQCCZ(const char** a, const char** b) noexcept;
    [[nodiscard]] static int si_CompareNoCasePQCZ(char** a, char** b) noexcept;

    // ---- UTF-16 texts -------------------------------------------------------------------------
    [[nodiscard]] static int si_CompareCaseQCUZ(const char16_t* a, const char16_t* b) noexcept;
    [[nodiscard]] static int si_CompareCaseQUZ(char16_t* a, char16_t* b) noexcept;
    [[nodiscard]] static int si_CompareCasePQCUZ(const char16_t** a, const char16_t** b) noexcept;
    [[nodiscard]] static int si_CompareCasePQUZ(char16_t** a, char16_t** b) noexcept;
    [[nodiscard]] static int si_CompareNoCaseQCUZ(const char16_t* a, const char16_t* b) noexcept;
    [[nodiscard]] static int si_CompareNoCaseQUZ(char16_t* a, char16_t* b) noexcept;
    [[nodiscard]] static int si_CompareNoCasePQCUZ(const char16_t** a, const char16_t** b) noexcept;
    [[nodiscard]] static int si_CompareNoCasePQUZ(char16_t** a, char16_t** b) noexcept;

    // ---- 8-bit strings, whatever their code pages ---------------------------------------------
    [[nodiscard]] static int si_CompareCStringPCCO(const CT_CString* a,
                                                   const CT_CString* b) noexcept;
    [[nodiscard]] static int si_CompareCStringPCO(CT_CString* a, CT_CString* b) noexcept;
    [[nodiscard]] static int si_CompareCStringPPCCO(const CT_CString** a,
                                                    const CT_CString** b) noexcept;
    [[nodiscard]] static int si_CompareCStringPPCO(CT_CString** a, CT_CString** b) noexcept;
    [[nodiscard]] static int si_CompareCStringNoCasePCCO(const CT_CString* a,
                                                         const CT_CString* b) noexcept;
    [[nodiscard]] static int si_CompareCStringNoCasePCO(CT_CString* a, CT_CString* b) noexcept;
    [[nodiscard]] static int si_CompareCStringNoCasePPCCO(const CT_CString** a,
                                                          const CT_CString** b) noexcept;
    [[nodiscard]] static int si_CompareCStringNoCasePPCO(CT_CString** a, CT_CString** b) noexcept;

    // ---- UTF-16 strings -----------------------------------------------------------------------
    [[nodiscard]] static int si_CompareUStringPCCO(const CT_UString* a,
                                                   const CT_UString* b) noexcept;
    [[nodiscard]] static int si_CompareUStringPCO(CT_UString* a, CT_UString* b) noexcept;
    [[nodiscard]] static int si_CompareUStringPPCCO(const CT_UString** a,
                                                    const CT_UString** b) noexcept;
    [[nodiscard]] static int si_CompareUStringPPCO(CT_UString** a, CT_UString** b) noexcept;
    [[nodiscard]] static int si_CompareUStringNoCasePCCO(const CT_UString* a,
                                                         const CT_UString* b) noexcept;
    [[nodiscard]] static int si_CompareUStringNoCasePCO(CT_UString* a, CT_UString* b) noexcept;
    [[nodiscard]] static int si_CompareUStringNoCasePPCCO(const CT_UString** a,
                                                          const CT_UString** b) noexcept;
    [[nodiscard]] static int si_CompareUStringNoCasePPCO(CT_UString** a, CT_UString** b) noexcept;

    // ---- Strings of either kind: 8-bit text is converted from its code page to UTF-16 ---------
    [[nodiscard]] static int si_CompareStringPCCO(const CT_String* a, const CT_String* b);
    [[nodiscard]] static int si_CompareStringPCO(CT_String* a, CT_String* b);
    [[nodiscard]] static int si_CompareStringPPCCO(const CT_String** a, const CT_String** b);
    [[nodiscard]] static int si_CompareStringPPCO(CT_String** a, CT_String** b);
    [[nodiscard]] static int si_CompareStringNoCasePCCO(const CT_String* a, const CT_String* b);
    [[nodiscard]] static int si_CompareStringNoCasePCO(CT_String* a, CT_String* b);
    [[nodiscard]] static int si_CompareStringNoCasePPCCO(const CT_String** a, const CT_String** b);
    [[nodiscard]] static int si_CompareStringNoCasePPCO(CT_String** a, CT_String** b);

    CT_Compare() = delete;
    CT_Compare& operator=(const CT_Compare&) = default;
};

#endif
