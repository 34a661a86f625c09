#include "Foundation/Core/String/Compare.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Runtime.h"
#include "Foundation/Platform/Scan.h"

namespace platform = zelkor::platform;

namespace {

using zelkor::detail::View;

template <typename Number>
int Order(Number a, Number b) noexcept {
    return (a > b) - (a < b);
}

// The value that an item points to; 0, or null, for no item.
template <typename Value>
Value At(const Value* item) noexcept {
    return item == nullptr ? Value{} : *item;
}

template <typename Unit>
const Unit* OrEmpty(const Unit* text) noexcept {
    static constexpr Unit kEmpty[1] = {};
    return text == nullptr ? kEmpty : text;
}

// Most texts that are sorted or searched differ in their first character.
int Case(const char* left, const char* right) noexcept {
    const char *const a = OrEmpty(left), *const b = OrEmpty(right);
    if (*a != *b) return Order(static_cast<unsigned char>(*a), static_cast<unsigned char>(*b));
    return platform::CompareText(a, b);
}

int Case(const char16_t* a, const char16_t* b) noexcept {
    return platform::CompareText(OrEmpty(a), OrEmpty(b));
}

template <typename Unit>
int NoCase(const Unit* a, const Unit* b) noexcept {
    return platform::CompareNoCase(OrEmpty(a), OrEmpty(b));
}

int Case(const CT_CString* a, const CT_CString* b) noexcept {
    return Case(View(a).data(), View(b).data());
}
int NoCase(const CT_CString* a, const CT_CString* b) noexcept {
    return platform::CompareNoCase(View(a), View(b));
}

// A zero inside a string ends it. Where one string is the beginning of the other its zero decides.
int Case(const CT_UString* left, const CT_UString* right) noexcept {
    const std::u16string_view a = View(left), b = View(right);
    if (*a.data() != *b.data()) return Order(*a.data(), *b.data());
    const std::size_t length = std::min(a.size(), b.size());
    const std::size_t common = platform::CommonLength(a.data(), b.data(), length);
    return Order(a.data()[common], b.data()[common]);
}
int NoCase(const CT_UString* left, const CT_UString* right) noexcept {
    const std::u16string_view a = View(left), b = View(right);
    const int first = platform::ToLower(*a.data()) - platform::ToLower(*b.data());
    return first != 0 ? first : platform::CompareNoCase(a, b);
}

// The UTF-16 form of a string, which is made only when the string is not UTF-16 itself.
class Wide {
public:
    explicit Wide(const CT_String* text) {
        if (text == nullptr) return;
        const CT_Type* const type = CT_UString::spcco_GetType();
        string_ = text->vpcco_GetType() == type
                      ? static_cast<const CT_UString*>(text)
                      : static_cast<const CT_UString*>(text->vpv_IsKindOf(type));
        if (string_ == nullptr) string_ = &converted_.emplace(text);
    }
    const CT_UString* Get() const noexcept { return string_; }

private:
    std::optional<CT_UString> converted_;
    const CT_UString* string_ = nullptr;
};

int Case(const CT_String* a, const CT_String* b) {
    return Case(Wide(a).Get(), Wide(b).Get());
}
int NoCase(const CT_String* a, const CT_String* b) {
    return NoCase(Wide(a).Get(), Wide(b).Get());
}

}  // namespace

// ---- Numbers ------------------------------------------------------------------------------------

int CT_Compare::si_CompareN(unsigned int a, unsigned int b) noexcept {
    return Order(a, b);
}
int CT_Compare::si_CompareN4(std::uint32_t a, std::uint32_t b) noexcept {
    return Order(a, b);
}
int CT_Compare::si_CompareI(int a, int b) noexcept {
    return Order(a, b);
}
int CT_Compare::si_ComparePN(const unsigned int* a, const unsigned int* b) noexcept {
    return Order(At(a), At(b));
}
int CT_Compare::si_ComparePN4(const std::uint32_t* a, const std::uint32_t* b) noexcept {
    return Order(At(a), At(b));
}
int CT_Compare::si_ComparePI(const int* a, const int* b) noexcept {
    return Order(At(a), At(b));
}

// ---- 8-bit texts -------------------------------------------------------------------------------

int CT_Compare::si_CompareCaseQCCZ(const char* a, const char* b) noexcept {
    return Case(a, b);
}
int CT_Compare::si_CompareCaseQCZ(char* a, char* b) noexcept {
    return Case(a, b);
}
int CT_Compare::si_CompareCasePQCCZ(const char** a, const char** b) noexcept {
    return Case(At(a), At(b));
}
int CT_Compare::si_CompareCasePQCZ(char** a, char** b) noexcept {
    return Case(At(a), At(b));
}

int CT_Compare::si_CompareNoCaseQCCZ(const char* a, const char* b) noexcept {
    return NoCase(a, b);
}
int CT_Compare::si_CompareNoCaseQCZ(char* a, char* b) noexcept {
    return NoCase(a, b);
}
int CT_Compare::si_CompareNoCasePQCCZ(const char** a, const char** b) noexcept {
    return NoCase(At(a), At(b));
}
int CT_Compare::si_CompareNoCasePQCZ(char** a, char** b) noexcept {
    return NoCase(At(a), At(b));
}

// ---- UTF-16 texts ------------------------------------------------------------------------------

int CT_Compare::si_CompareCaseQCUZ(const char16_t* a, const char16_t* b) noexcept {
    return Case(a, b);
}
int CT_Compare::si_CompareCaseQUZ(char16_t* a, char16_t* b) noexcept {
    return Case(a, b);
}
int CT_Compare::si_CompareCasePQCUZ(const char16_t** a, const char16_t** b) noexcept {
    return Case(At(a), At(b));
}
int CT_Compare::si_CompareCasePQUZ(char16_t** a, char16_t** b) noexcept {
    return Case(At(a), At(b));
}

int CT_Compare::si_CompareNoCaseQCUZ(const char16_t* a, const char16_t* b) noexcept {
    return NoCase(a, b);
}
int CT_Compare::si_CompareNoCaseQUZ(char16_t* a, char16_t* b) noexcept {
    return NoCase(a, b);
}
int CT_Compare::si_CompareNoCasePQCUZ(const char16_t** a, const char16_t** b) noexcept {
    return NoCase(At(a), At(b));
}
int CT_Compare::si_CompareNoCasePQUZ(char16_t** a, char16_t** b) noexcept {
    return NoCase(At(a), At(b));
}

// ---- 8-bit strings -----------------------------------------------------------------------------

int CT_Compare::si_CompareCStringPCCO(const CT_CString* a, const CT_CString* b) noexcept {
    return Case(a, b);
}
int CT_Compare::si_CompareCStringPCO(CT_CString* a, CT_CString* b) noexcept {
    return Case(a, b);
}
int CT_Compare::si_CompareCStringPPCCO(const CT_CString** a, const CT_CString** b) noexcept {
    return Case(At(a), At(b));
}
int CT_Compare::si_CompareCStringPPCO(CT_CString** a, CT_CString** b) noexcept {
    return Case(At(a), At(b));
}

int CT_Compare::si_CompareCStringNoCasePCCO(const CT_CString* a, const CT_CString* b) noexcept {
    return NoCase(a, b);
}
int CT_Compare::si_CompareCStringNoCasePCO(CT_CString* a, CT_CString* b) noexcept {
    return NoCase(a, b);
}
int CT_Compare::si_CompareCStringNoCasePPCCO(const CT_CString** a, const CT_CString** b) noexcept {
    return NoCase(At(a), At(b));
}
int CT_Compare::si_CompareCStringNoCasePPCO(CT_CString** a, CT_CString** b) noexcept {
    return NoCase(At(a), At(b));
}

// ---- UTF-16 strings ----------------------------------------------------------------------------

int CT_Compare::si_CompareUStringPCCO(const CT_UString* a, const CT_UString* b) noexcept {
    return Case(a, b);
}
int CT_Compare::si_CompareUStringPCO(CT_UString* a, CT_UString* b) noexcept {
    return Case(a, b);
}
int CT_Compare::si_CompareUStringPPCCO(const CT_UString** a, const CT_UString** b) noexcept {
    return Case(At(a), At(b));
}
int CT_Compare::si_CompareUStringPPCO(CT_UString** a, CT_UString** b) noexcept {
    return Case(At(a), At(b));
}

int CT_Compare::si_CompareUStringNoCasePCCO(const CT_UString* a, const CT_UString* b) noexcept {
    return NoCase(a, b);
}
int CT_Compare::si_CompareUStringNoCasePCO(CT_UString* a, CT_UString* b) noexcept {
    return NoCase(a, b);
}
int CT_Compare::si_CompareUStringNoCasePPCCO(const CT_UString** a, const CT_UString** b) noexcept {
    return NoCase(At(a), At(b));
}
int CT_Compare::si_CompareUStringNoCasePPCO(CT_UString** a, CT_UString** b) noexcept {
    return NoCase(At(a), At(b));
}

// ---- Strings of either kind --------------------------------------------------------------------

int CT_Compare::si_CompareStringPCCO(const CT_String* a, const CT_String* b) {
    return Case(a, b);
}
int CT_Compare::si_CompareStringPCO(CT_String* a, CT_String* b) {
    return Case(a, b);
}
int CT_Compare::si_CompareStringPPCCO(const CT_String** a, const CT_String** b) {
    return Case(At(a), At(b));
}
int CT_Compare::si_CompareStringPPCO(CT_String** a, CT_String** b) {
    return Case(At(a), At(b));
}

int CT_Compare::si_CompareStringNoCasePCCO(const CT_String* a, const CT_String* b) {
    return NoCase(a, b);
}
int CT_Compare::si_CompareStringNoCasePCO(CT_String* a, CT_String* b) {
    return NoCase(a, b);
}
int CT_Compare::si_CompareStringNoCasePPCCO(const CT_String** a, const CT_String** b) {
    return NoCase(At(a), At(b));
}
int CT_Compare::si_CompareStringNoCasePPCO(CT_String** a, CT_String** b) {
    return NoCase(At(a), At(b));
}
