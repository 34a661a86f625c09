// Record, locate, return: the idiom of every failure site inside the library.
//
//   if (!Open(name)) return detail::RecordSystemError(name), FALSE;   // the failure itself
//   Read(header);
//   if (detail::Failed()) return FALSE;                               // a caller that notices it
//   detail::Record({31050, u"Invalid file %s"}, name);                // a format, its arguments
//   detail::Record({code, 60003}, name, u"Remove", code);             // a string resource
//
// A record is made only when the thread has no error yet; the location is added in any case. The
// place is the caller's own line. For the library's sources only: guests use CT_ErrorManager.
#ifndef FOUNDATION_CORE_ERROR_INTERNAL_FAILURE_H
#define FOUNDATION_CORE_ERROR_INTERNAL_FAILURE_H

#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Platform/ErrorFlag.h"
#include "Foundation/Platform/ThreadLocal.h"

namespace zelkor::detail {

// The calling thread's records; written by the error manager alone.
struct ThreadErrors {
    CT_ErrorManager::st_error* active = nullptr;
    CT_ErrorManager::st_error* held = nullptr;
};
extern ZELKOR_THREAD_LOCAL ThreadErrors thread_errors;

// Whether the thread has an error; the same answer as b_IsSetError().
[[nodiscard]] inline bool ErrorIsSet() noexcept {
    return platform::ErrorFlag();
}

void AddLocation(const char* file, unsigned int line) noexcept;

// Whether the thread has an error; its chain then names the caller's line.
inline bool Failed(const char* file = __builtin_FILE(),
                   unsigned int line = __builtin_LINE()) noexcept {
    if (!ErrorIsSet()) [[likely]]
        return false;
    AddLocation(file, line);
    return true;
}

// Records the thread's last system error, with the context (a name, no format) in brackets.
void RecordSystemError(const char* file = __builtin_FILE(), unsigned int line = __builtin_LINE());
void RecordSystemError(const char16_t* context, const char* file = __builtin_FILE(),
                       unsigned int line = __builtin_LINE());

// Clears what a tolerated failure or a probe left behind.
void ClearError() noexcept;

// A code with its message: the number of one of the library's string resources, or a format.
struct Failure {
    Failure(unsigned int error_code, unsigned int id, const char* from = __builtin_FILE(),
            unsigned int at = __builtin_LINE())
        : code(error_code), format_id(id), file(from), line(at) {}
    Failure(unsigned int error_code, const char16_t* text, const char* from = __builtin_FILE(),
            unsigned int at = __builtin_LINE())
        : code(error_code), format(text), file(from), line(at) {}

    unsigned int code;
    unsigned int format_id = 0;
    const char16_t* format = nullptr;
    const char* file;
    unsigned int line;
};

// Arguments are plain numbers and zero-terminated UTF-16 texts, as the format says.
template <typename... Arguments>
void Record(const Failure& failure, Arguments... arguments) {
    CT_ErrorManager* const manager = CT_ErrorManager::spco_Get();
    if (manager != nullptr && !ErrorIsSet()) {
        if (failure.format != nullptr) {
            manager->v_SetError(failure.code, failure.format, arguments...);
        } else {
            manager->v_SetError(failure.code, static_cast<HINSTANCE>(nullptr), failure.format_id,
                                arguments...);
        }
    }
    AddLocation(failure.file, failure.line);
}

}  // namespace zelkor::detail

#endif
