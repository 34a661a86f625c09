// CT_ErrorManager: making records and writing their messages.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/Error/Internal/HResult.h"
#include "Foundation/Core/Error/Internal/MessageText.h"
#include "Foundation/Platform/ErrorInfo.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Memory.h"

namespace platform = zelkor::platform;

namespace {

using zelkor::detail::CutText;
using zelkor::detail::FormatCut;

constexpr std::size_t kMessageSize = 1024;
constexpr unsigned int kMessageBytes = 2048;

// Appends to a text of `length` units what fits `size` units with the zero; answers the length.
std::size_t Append(char16_t* out, std::size_t size, std::size_t length, std::u16string_view text) {
    text = CutText(text, size - 1 - length);
    *std::ranges::copy(text, out + length).out = 0;
    return length + text.size();
}

// "(code): ", the code as a signed number.
std::u16string_view Prefix(unsigned int code, char16_t (&area)[16]) {
    const auto number = static_cast<int>(code);
    unsigned int rest = number < 0 ? 0u - code : code;
    char16_t* const end = std::end(area);
    char16_t* at = end;
    for (const char16_t unit : {u' ', u':', u')'}) *--at = unit;
    do {
        *--at = static_cast<char16_t>(u'0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (number < 0) *--at = u'-';
    *--at = u'(';
    return {at, static_cast<std::size_t>(end - at)};
}

// The code of a description that begins as our own messages do, "(number)". The description loses
// what stands up to its first colon.
bool TakeCode(std::u16string_view& description, unsigned int& code) {
    if (!description.starts_with(u'(')) return false;
    const std::size_t close = description.find(u')');
    std::u16string_view digits = description.substr(1, close - 1);
    const bool negative = digits.starts_with(u'-');
    if (negative) digits.remove_prefix(1);
    const bool number = !digits.empty() && std::ranges::all_of(digits, [](char16_t unit) {
        return unit >= u'0' && unit <= u'9';
    });
    if (close == description.npos || !number) return false;
    code = 0;
    for (const char16_t unit : digits) code = code * 10 + static_cast<unsigned int>(unit - u'0');
    if (negative) code = 0u - code;
    const std::size_t colon = description.find(u':');
    if (colon != description.npos) description.remove_prefix(colon + 1);
    return true;
}

}  // namespace

CT_ErrorManager::st_error* CT_ErrorManager::pso_CreateError(unsigned int code, HINSTANCE module,
                                                            unsigned int formatID,
                                                            const char16_t* format,
                                                            va_list arguments) {
    st_error* const error = pso_CreateNewError(code, module, formatID);
    if (error == nullptr) return nullptr;
    if (const t_MapFunction map = pso_GetMapping(error->thread)) {
        va_list copy;
        va_copy(copy, arguments);
        const int written =
            map(error->message, kMessageBytes, code, format != nullptr ? code : formatID, copy);
        va_end(copy);
        error->message[kMessageSize - 1] = 0;
        if (written != 0) {
            sv_InsertPrefix(error);
            return error;
        }
    }
    char16_t resource[kMessageSize];
    if (format == nullptr) {
        zelkor::detail::LoadResource(resource, kMessageSize, error->module, formatID);
        format = resource;
    }
    FormatCut(error->message, kMessageSize, format, arguments);
    sv_InsertPrefix(error);
    return error;
}

void CT_ErrorManager::sv_InsertPrefix(st_error* error) {
    char16_t area[16];
    const std::u16string_view prefix = Prefix(error->code, area);
    char16_t* const message = error->message;
    const std::size_t length = CutText(message, kMessageSize - 1 - prefix.size()).size();
    std::memmove(message + prefix.size(), message, length * sizeof(char16_t));
    std::ranges::copy(prefix, message);
    message[prefix.size() + length] = 0;
}

void CT_ErrorManager::v_SetError(unsigned int code, HINSTANCE module, unsigned int formatID, ...) {
    va_list arguments;
    va_start(arguments, formatID);
    pso_CreateError(code, module, formatID, nullptr, arguments);
    va_end(arguments);
}

void CT_ErrorManager::v_SetError(unsigned int code, const char16_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    pso_CreateError(code, nullptr, 0, format != nullptr ? format : u"", arguments);
    va_end(arguments);
}

void CT_ErrorManager::v_SetMessageError(const char16_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_SetMessageErrorList(format, arguments);
    va_end(arguments);
}

void CT_ErrorManager::v_SetMessageErrorList(const char16_t* format, va_list arguments) {
    st_error* const error = pso_CreateNewError(0, nullptr, 0);
    if (error != nullptr) FormatCut(error->message, kMessageSize, format, arguments);
}

// ---- System errors ------------------------------------------------------------------------------

void CT_ErrorManager::sv_FormatSystemError(unsigned int code, char16_t* message) {
    message[0] = 0;
    const std::u16string_view text = platform::SystemText(code);
    if (text.empty()) return;
    char16_t area[16];
    Append(message, kMessageSize, Append(message, kMessageSize, 0, Prefix(code, area)), text);
}

// Line breaks at the end go, others become one blank.
void CT_ErrorManager::sv_StripSystemError(char16_t* message) {
    const auto is_break = [](char16_t unit) { return unit == u'\r' || unit == u'\n'; };
    char16_t* end = message + std::u16string_view(message).size();
    while (end != message && is_break(end[-1])) --end;
    char16_t* out = message;
    for (const char16_t* at = message; at != end; ++at) {
        if (!is_break(*at)) {
            *out++ = *at;
        } else if (out == message || out[-1] != u' ') {
            *out++ = u' ';
        }
    }
    *out = 0;
}

CT_ErrorManager::st_error* CT_ErrorManager::pso_SystemError() {
    const std::uint32_t code = platform::LastError();
    st_error* const error = pso_CreateNewError(code, nullptr, 0);
    if (error == nullptr) return nullptr;
    sv_FormatSystemError(code, error->message);
    sv_StripSystemError(error->message);
    platform::SetLastError(platform::kErrorSuccess);
    return error;
}

// Puts " [context]" behind the message; of a long context as much as leaves room for the bracket.
void CT_ErrorManager::v_SystemError(st_error* error, const char16_t* format, va_list arguments) {
    char16_t* const message = error->message;
    std::size_t length = std::u16string_view(message).size();
    if (length != 0 && message[length - 1] == u' ') --length;
    length = Append(message, kMessageSize - 2, length, u" [");
    length += FormatCut(message + length, kMessageSize - 1 - length, format, arguments);
    Append(message, kMessageSize, length, u"]");
}

void CT_ErrorManager::v_SetSystemError() {
    pso_SystemError();
}

void CT_ErrorManager::v_SetSystemError(const char16_t* format, ...) {
    st_error* const error = pso_SystemError();
    if (error == nullptr) return;
    va_list arguments;
    va_start(arguments, format);
    v_SystemError(error, format, arguments);
    va_end(arguments);
}

// ---- Component errors -------------------------------------------------------------------------

void CT_ErrorManager::v_SetCOMError(HRESULT hresult, const char16_t* context) {
    char16_t* const object = platform::TakeErrorInfo();
    if (hresult < 0) {
        auto code = static_cast<unsigned int>(hresult);
        char16_t area[kMessageSize];
        std::u16string_view description;
        if (object != nullptr) {
            description = object;
            TakeCode(description, code);
        } else {
            description = zelkor::detail::DescribeHResult(hresult, area);
        }
        char16_t text[kMessageSize];
        text[0] = 0;
        Append(text, kMessageSize,
               Append(text, kMessageSize, 0, context != nullptr ? context : u""), description);
        v_SetError(code, u"%s", text);
    }
    platform::Free(object);
}

// ---- The idiom of the library's own sources -----------------------------------------------------

namespace zelkor::detail {

void AddLocation(const char* file, unsigned int line) noexcept {
    if (CT_ErrorManager* const manager = CT_ErrorManager::spco_Get()) {
        manager->v_AddLocation(file, line);
    }
}

void RecordSystemError(const char* file, unsigned int line) {
    CT_ErrorManager* const manager = CT_ErrorManager::spco_Get();
    if (manager == nullptr) return;
    if (!ErrorIsSet()) manager->v_SetSystemError();
    manager->v_AddLocation(file, line);
}

void RecordSystemError(const char16_t* context, const char* file, unsigned int line) {
    CT_ErrorManager* const manager = CT_ErrorManager::spco_Get();
    if (manager == nullptr) return;
    if (!ErrorIsSet()) manager->v_SetSystemError(u"%s", context);
    manager->v_AddLocation(file, line);
}

void ClearError() noexcept {
    if (CT_ErrorManager* const manager = CT_ErrorManager::spco_Get()) manager->v_ClearError();
}

}  // namespace zelkor::detail
