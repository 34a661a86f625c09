#include "Foundation/Core/Message/LoadString.h"

#include "Foundation/Core/Error/Internal/MessageText.h"
#include "Foundation/Core/String/UString.h"

namespace {

constexpr unsigned int kAreaSize = 2048;

// Formats the resource into `buffer`, cut to `size` units with the zero.
void Format(char16_t* buffer, unsigned int size, HINSTANCE module, unsigned int id,
            va_list arguments) {
    if (size == 0 || buffer == nullptr) return;
    char16_t format[kAreaSize];
    CT_LoadString::sv_LoadString(format, kAreaSize, module, id);
    zelkor::detail::FormatCut(buffer, size, format, arguments);
}

}  // namespace

void CT_LoadString::sv_LoadString(CT_UString* text, HINSTANCE module, unsigned int id) {
    if (text == nullptr) return;
    char16_t area[kAreaSize];
    sv_LoadString(area, kAreaSize, module, id);
    text->v_Set(area);
}

void CT_LoadString::sv_LoadString(char16_t* buffer, unsigned int size, HINSTANCE module,
                                  unsigned int id) {
    zelkor::detail::LoadResource(buffer, size, module, id);
}

void CT_LoadString::sv_LoadStringVA(char16_t* buffer, unsigned int size, HINSTANCE module,
                                    unsigned int id, ...) {
    va_list arguments;
    va_start(arguments, id);
    Format(buffer, size, module, id, arguments);
    va_end(arguments);
}

void CT_LoadString::sv_LoadStringVA(CT_UString* text, HINSTANCE module, unsigned int id, ...) {
    char16_t area[kAreaSize];
    va_list arguments;
    va_start(arguments, id);
    Format(area, kAreaSize, module, id, arguments);
    va_end(arguments);
    if (text != nullptr) text->v_Set(area);
}

void CT_LoadString::sv_LoadStringVaList(CT_UString* text, HINSTANCE module, unsigned int id,
                                        va_list arguments) {
    char16_t area[kAreaSize];
    Format(area, kAreaSize, module, id, arguments);
    if (text != nullptr) text->v_Set(area);
}
