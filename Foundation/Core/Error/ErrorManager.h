// CT_ErrorManager: the one error record of each thread, with its message and the chain of source
// locations it travelled through. Record, locate, return: the first error of a thread wins.
//
// Reporting allocates nothing: 20 records and 100 locations are made at start-up. When all records
// are in use by other threads a further block of 20 is made; when there is no memory for that, the
// report is dropped. When all locations are in use, further ones are dropped.
// A thread that ends without clearing its record keeps it in use until the library is unloaded.
// Units: messages are at most 1023 UTF-16 units, longer ones are cut.
// Threads: every operation acts on the calling thread's own record; no thread sees another's.
#ifndef FOUNDATION_CORE_ERROR_ERRORMANAGER_H
#define FOUNDATION_CORE_ERROR_ERRORMANAGER_H

#include <atomic>
#include <cstdarg>
#include <type_traits>

#include "Foundation/Core/Base/CriticalSection.h"
#include "Foundation/Core/Base/Init.h"
#include "Foundation/Platform/ErrorFlag.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_UString;

namespace zelkor::detail {
struct ErrorRecordBlock;
struct ErrorMapping;
}  // namespace zelkor::detail

class ZELKOR_API CT_ErrorManager {
public:
    struct st_location {
        const char* file;  // borrowed: a string literal in practice
        unsigned int line;
        st_location* next;
    };

    struct st_error {
        HINSTANCE module;     // whose string resources hold the format
        unsigned int thread;  // platform::CurrentThreadId() of the owner
        unsigned int code;
        unsigned int formatID;  // 0 when the message was given as text
        char16_t message[1024];
        unsigned int locationCount;
        st_location* firstLocation;
        st_location* lastLocation;
        st_error* next;
        BOOL ignore;  // while TRUE the error counts as not set
    };

    // Writes the message of an error itself. Gets the output, its size in bytes (always 2048), the
    // code, the format id (the code again for formats given as text) and the arguments; answers
    // nonzero when it has written the zero-terminated message.
    using t_MapFunction = int (*)(char16_t* output, unsigned int size, unsigned int code,
                                  unsigned int formatID, va_list arguments);

    struct st_mapItem {
        unsigned int key;  // platform::CurrentThreadId() of the thread it serves
        t_MapFunction function;
    };

    // Null before start-up and after shut-down.
    [[nodiscard]] static CT_ErrorManager* spco_Get();

    // Sets the module whose string resources serve a null module argument.
    static void sv_SetInstance(HINSTANCE instance);

    // Recording. Each does nothing when the thread already has an active record, and replaces a
    // held one. Messages read "(code): text", the code as a signed number. In formats %s takes
    // UTF-16 text and %S 8-bit text; a null format is empty.
    void v_SetError(unsigned int code, HINSTANCE module, unsigned int formatID, ...);
    void v_SetError(unsigned int code, const char16_t* format, ...);

    // Code 0 and the text alone.
    void v_SetMessageError(const char16_t* format, ...);
    template <typename List>
    requires(!std::is_null_pointer_v<List> && requires(void (*take)(va_list), List list) {
        take(list);
    }) void v_SetMessageError(const char16_t* format, List arguments) {
        v_SetMessageErrorList(format, arguments);
    }

    // The thread's last system error with the system's text (empty message when it has none), and
    // with " [context]" behind it. Resets the last system error to 0.
    void v_SetSystemError();
    void v_SetSystemError(const char16_t* format, ...);

    // A failing HRESULT: the description of the thread's component error object, or else of the
    // HRESULT, behind the context text. A description that begins with a number in parentheses, as
    // our own messages do, gives the code. Takes the error object; a success records nothing.
    void v_SetCOMError(HRESULT hresult, const char16_t* context);

    // Appends a location to the active record.
    void v_AddLocation(const char* file, unsigned int line);

    // An active record that is not ignored; a held record.
    [[nodiscard]] BOOL b_IsSetError() const { return zelkor::platform::ErrorFlag() ? TRUE : FALSE; }
    [[nodiscard]] BOOL b_IsHoldError() const;

    // Reading the active record, or else the held one; 0 and empty texts without either. Texts stay
    // valid until the record is cleared. Locations count from 1, the innermost first; other
    // positions read as null and 0.
    [[nodiscard]] unsigned int n_GetErrorCode() const;
    [[nodiscard]] unsigned int n_GetFormatID() const;
    [[nodiscard]] const char16_t* qcuz_GetErrorMessage() const;
    void v_GetErrorMessage(CT_UString& message) const;
    [[nodiscard]] unsigned int n_GetLocationCount() const;
    [[nodiscard]] const char* qccz_GetLocationFileAt(unsigned int position) const;
    [[nodiscard]] unsigned int n_GetLocationLineAt(unsigned int position) const;

    // A thread has one record at most: active, or held until the next error replaces it.
    void v_ClearError();                 // the active record, or else the held one
    void v_HoldError();                  // active becomes held
    void v_UnHoldError();                // held becomes active
    void v_SetIgnoreError(BOOL ignore);  // for the active record

    // Registers a message function for a thread id; the latest of a key serves it. Removing takes
    // away the latest. Running out of memory throws CT_SmartHeapException.
    void v_SetMapFunction(t_MapFunction function, unsigned int key);
    void v_RemoveMapFunction(unsigned int key);

    // Two flags kept for the application; the library never reads them.
    void v_SetInterruptOnError(BOOL interrupt);
    [[nodiscard]] BOOL b_GetInterruptOnError() const;
    void v_SetDebugMessageOnError(BOOL message);
    [[nodiscard]] BOOL b_GetDebugMessageOnError() const;
    static void sv_OutputDebugMessage(const char16_t* text);  // does nothing

    // Shows message and locations in a message box brought to the front and returns its answer; the
    // answer Abort (3) aborts the process. The caption is the title, or else the string resource
    // titleID of the error's module. Caption and text together are cut to 1024 units with their
    // zeros. Without an error nothing is shown and the answer is 0.
    int i_ErrorLocationWindow(unsigned int titleID, const char16_t* title, unsigned int flags);

    // "NAME (description)" of a known HRESULT, the system's text of another, or else
    // "[No error description found.]".
    static void sv_GetHRESULTDescription(HRESULT hresult, CT_UString& description);
    // The description of the thread's component error object, which is taken, or else the above;
    // empty for success.
    static void sv_GetCOMErrorDescription(HRESULT hresult, CT_UString& description);

private:
    constexpr CT_ErrorManager() = default;
    ~CT_ErrorManager() = default;
    CT_ErrorManager(const CT_ErrorManager&) = delete;
    CT_ErrorManager& operator=(const CT_ErrorManager&) = delete;

    static void sv_Init();
    static void sv_Exit();
    static CT_Init sco_Init;
    static CT_Exit sco_Exit;
    static CT_ErrorManager sco_Manager;

    void v_SetMessageErrorList(const char16_t* format, va_list arguments);
    // A blank record at the head of the active list; null when the thread has an active one already
    // or no record can be had.
    st_error* pso_CreateNewError(unsigned int code, HINSTANCE module, unsigned int formatID);
    // The same with its message, from the thread's message function or else from the format.
    st_error* pso_CreateError(unsigned int code, HINSTANCE module, unsigned int formatID,
                              const char16_t* format, va_list arguments);
    // The thread's active record, or else its held one.
    [[nodiscard]] static st_error* pso_GetError();
    st_error* pso_SystemError();
    static void v_SystemError(st_error* error, const char16_t* format, va_list arguments);
    void v_DestroyError(st_error* error);
    void v_AddLocation(st_error* error, const char* file, unsigned int line);
    [[nodiscard]] static const st_location* pso_GetLocationAt(unsigned int position);
    [[nodiscard]] t_MapFunction pso_GetMapping(unsigned int key);
    static void sv_StripSystemError(char16_t* message);
    static void sv_FormatSystemError(unsigned int code, char16_t* message);
    void v_EnterCS() { section_.v_Enter(); }
    void v_LeaveCS() { section_.v_Leave(); }
    [[nodiscard]] static unsigned int n_GetThread();

    st_error* pso_TakeRecord();
    static void sv_Unlink(st_error** list, const st_error* error);
    static void sv_InsertPrefix(st_error* error);

    std::atomic<zelkor::detail::ErrorMapping*> mappings_{nullptr};  // the latest first
    zelkor::detail::ErrorRecordBlock* blocks_ = nullptr;            // of records
    st_error* free_errors_ = nullptr;
    st_error* active_errors_ = nullptr;
    st_error* held_errors_ = nullptr;
    unsigned int location_count_ = 0;  // taken from the pool so far
    st_location* free_locations_ = nullptr;
    CT_CriticalSection section_;  // guards everything above
    std::atomic<HINSTANCE> default_module_{nullptr};
    std::atomic<BOOL> interrupt_on_error_{FALSE};
    std::atomic<BOOL> debug_message_on_error_{TRUE};
};

#endif
