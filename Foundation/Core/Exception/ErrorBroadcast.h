// CT_ErrorBroadcast: reports errors and log texts to everyone who registered for them. The class
// itself keeps the registrations and does nothing more; derived broadcasters pass the reports on.
//
// Threads: any; a facility may be registered while others are served.
#ifndef FOUNDATION_CORE_EXCEPTION_ERRORBROADCAST_H
#define FOUNDATION_CORE_EXCEPTION_ERRORBROADCAST_H

#include "Foundation/Core/Base/CriticalSection.h"
#include "Foundation/Core/Container/VoidArray.h"
#include "Foundation/Platform/Export.h"

class CT_LogFacility;

class ZELKOR_API CT_ErrorBroadcast {
public:
    // Running out of memory throws CT_SmartHeapException.
    CT_ErrorBroadcast();
    CT_ErrorBroadcast(const CT_ErrorBroadcast&) = delete;
    CT_ErrorBroadcast& operator=(const CT_ErrorBroadcast&) = delete;

    // The one of the process: made by the first call, by whichever thread, gone when the library is
    // unloaded. A call that runs out of memory throws, and the next one tries again.
    [[nodiscard]] static CT_ErrorBroadcast* spco_GetErrorBroadcast();

    virtual void vv_Report(const char* file, unsigned int line, unsigned int code,
                           const char16_t* text);
    virtual void vv_Log(const char16_t* text);
    virtual ~CT_ErrorBroadcast();

    // Appends to the list, unless it is null. The facility is not owned and must outlive its use
    // here.
    void v_RegisterLogFacility(CT_LogFacility* facility);

protected:
    // The facilities as of now, CT_LogFacility* in the order registered.
    [[nodiscard]] CT_VoidArray co_GetLogFacilities() const;

private:
    mutable CT_CriticalSection section_;  // guards what follows
    CT_VoidArray facilities_;
};

#endif
