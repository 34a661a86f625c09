// CT_LogFacility: where log messages go; applications derive from it and register their own with
// CT_ErrorBroadcast. CT_LogFacilityDummy: takes everything and keeps nothing.
//
// Every form ends in the abstract UTF-16 vv_Log. Source and category are free texts, severity and
// value free numbers: all are passed on as they are. Texts are borrowed.
// Errors: records none; the string and 8-bit forms may throw CT_SmartHeapException.
// Threads: as the derived class says; the forms given here share nothing.
#ifndef FOUNDATION_CORE_EXCEPTION_LOGFACILITY_H
#define FOUNDATION_CORE_EXCEPTION_LOGFACILITY_H

#include <cstdint>

#include "Foundation/Platform/Export.h"

class CT_UString;

class ZELKOR_API CT_LogFacility {
public:
    // Names for common use; the library gives them no meaning, and other values pass as well.
    enum et_Severity : int { Information = 0, Warning = 1, Error = 2, Fatal = 3 };

    virtual ~CT_LogFacility();
    // Null strings stay null texts, empty ones become empty texts.
    virtual void vv_Log(const CT_UString* message, const CT_UString* source,
                        const CT_UString* category, et_Severity severity, std::int32_t value);
    virtual void vv_Log(const char16_t* message, const char16_t* source, const char16_t* category,
                        et_Severity severity, std::int32_t value) = 0;
    // The message is formatted as Platform/Runtime.h tells and cut to 1023 characters. 8-bit texts
    // are taken as code page 0; null ones become empty. UTF-16 texts may be null and stay so.
    virtual void vv_Logf(const char* source, const char* category, et_Severity severity,
                         std::int32_t value, const char* format, ...);
    virtual void vv_Logf(const char16_t* source, const char16_t* category, et_Severity severity,
                         std::int32_t value, const char16_t* format, ...);
};

class ZELKOR_API CT_LogFacilityDummy : public CT_LogFacility {
public:
    ~CT_LogFacilityDummy() override;
    void vv_Log(const CT_UString* message, const CT_UString* source, const CT_UString* category,
                et_Severity severity, std::int32_t value) override;
    void vv_Log(const char16_t* message, const char16_t* source, const char16_t* category,
                et_Severity severity, std::int32_t value) override;
    void vv_Logf(const char* source, const char* category, et_Severity severity, std::int32_t value,
                 const char* format, ...) override;
    void vv_Logf(const char16_t* source, const char16_t* category, et_Severity severity,
                 std::int32_t value, const char16_t* format, ...) override;
};

#endif
