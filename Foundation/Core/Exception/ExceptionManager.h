// CT_ExceptionManager: for each thread the exception in flight and the places it passed, from the
// one that threw it. Who throws adds a location with code and text, who lets it pass one without;
// who has handled it calls v_Clear.
//
// There are 10 records and 100 locations. What finds none left is dropped, and a text for which
// there is no memory stays empty: the exception itself travels on. A thread that never clears its
// record keeps it in use, also beyond its end. File names and texts are copied; null ones are
// empty. Threads: every operation acts on the calling thread's own record unless it is given a
// thread.
#ifndef FOUNDATION_CORE_EXCEPTION_EXCEPTIONMANAGER_H
#define FOUNDATION_CORE_EXCEPTION_EXCEPTIONMANAGER_H

#include "Foundation/Core/Base/CriticalSection.h"
#include "Foundation/Core/Base/Init.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_TestOut;

class ZELKOR_API CT_ExceptionManager {
public:
    struct st_Location {
        st_Location* next;  // the next older one
        CT_UString file;
        unsigned int line;
        unsigned int code;
        CT_UString text;  // shared with the record's
    };

    struct st_ExceptionInfo {
        st_ExceptionInfo* next;
        st_Location* locations;  // the newest first
        unsigned int thread;     // platform::CurrentThreadId() of the owner
        unsigned int code;
        CT_UString text;
    };

    static constexpr unsigned int kNoException = 0xFFFFFFFF;    // as a code
    static constexpr unsigned int kCallingThread = 0xFFFFFFFF;  // as a thread

    // Null before start-up and after shut-down.
    [[nodiscard]] static CT_ExceptionManager* spco_Get() noexcept;

    // The place that throws: sets the record's code and text and adds the place. 8-bit file names
    // are taken as code page 0.
    void v_AddLocation(const char16_t* file, unsigned int line, unsigned int code,
                       const char16_t* text) noexcept;
    void v_AddLocation(const char* file, unsigned int line, unsigned int code,
                       const char16_t* text) noexcept;
    // A place that the exception passes; nothing without a record.
    void v_AddLocation(const char16_t* file, unsigned int line) noexcept;
    void v_AddLocation(const char* file, unsigned int line) noexcept;

    void v_Clear() noexcept;
    [[nodiscard]] BOOL b_InException() const noexcept;
    // kNoException and null without a record. The text stays valid until the record changes.
    [[nodiscard]] unsigned int n_GetCurrentCode() const noexcept;
    [[nodiscard]] const char16_t* qcuz_GetCurrentText() const noexcept;

    // Writes a thread's record, a line for each place, newest first, or that there is none.
    void v_Dump(CT_TestOut* out, unsigned int thread = kCallingThread) const;

    // Shows the record in a message box brought to the front and returns its answer; the answer
    // Abort (3) aborts the process. A null title is empty. Without a record nothing is shown and
    // the answer is 0. Running out of memory throws CT_SmartHeapException.
    int i_ExceptionLocationWindow(const char16_t* title, unsigned int flags) const;

private:
    constexpr CT_ExceptionManager() = default;
    ~CT_ExceptionManager() = default;
    CT_ExceptionManager(const CT_ExceptionManager&) = delete;
    CT_ExceptionManager& operator=(const CT_ExceptionManager&) = delete;

    static void sv_Init();
    static void sv_Exit();
    static CT_Init sco_Init;
    static CT_Exit sco_Exit;
    static CT_ExceptionManager sco_Manager;

    // The newest record of a thread; null when it has none. Like what follows, needs the lock.
    [[nodiscard]] const st_ExceptionInfo* pso_GetException(unsigned int thread) const noexcept;
    // Null when all are in use.
    [[nodiscard]] st_ExceptionInfo* pso_AllocExceptionInfo() noexcept;
    [[nodiscard]] st_Location* pso_AllocLocation() noexcept;
    void v_DechainExceptionInfo(const st_ExceptionInfo* info) noexcept;
    void v_FreeExceptionInfo(st_ExceptionInfo* info) noexcept;
    void v_FreeLocationList(st_Location* newest) noexcept;
    void v_PushLocation(st_ExceptionInfo* info, CT_UString&& file, unsigned int line) noexcept;

    void v_AddThrow(CT_UString&& file, unsigned int line, unsigned int code,
                    CT_UString&& text) noexcept;
    void v_AddPassage(CT_UString&& file, unsigned int line) noexcept;

    st_ExceptionInfo* active_ = nullptr;
    st_ExceptionInfo* free_infos_ = nullptr;
    st_Location* free_locations_ = nullptr;
    unsigned int info_count_ = 0;         // taken from the pool so far
    unsigned int location_count_ = 0;     // taken from the pool so far
    mutable CT_CriticalSection section_;  // guards everything above
};

#endif
