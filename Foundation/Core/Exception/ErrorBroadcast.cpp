#include "Foundation/Core/Exception/ErrorBroadcast.h"

CT_ErrorBroadcast::CT_ErrorBroadcast() : facilities_(sizeof(CT_LogFacility*), 8, 8) {}

CT_ErrorBroadcast::~CT_ErrorBroadcast() = default;

CT_ErrorBroadcast* CT_ErrorBroadcast::spco_GetErrorBroadcast() {
    static CT_ErrorBroadcast broadcast;
    return &broadcast;
}

void CT_ErrorBroadcast::vv_Report(const char* /*file*/, unsigned int /*line*/,
                                  unsigned int /*code*/, const char16_t* /*text*/) {}

void CT_ErrorBroadcast::vv_Log(const char16_t* /*text*/) {}

void CT_ErrorBroadcast::v_RegisterLogFacility(CT_LogFacility* facility) {
    if (facility == nullptr) return;
    const CT_CriticalSectionMarker lock(section_);
    facilities_.v_Insert(&facility);
}

CT_VoidArray CT_ErrorBroadcast::co_GetLogFacilities() const {
    const CT_CriticalSectionMarker lock(section_);
    return facilities_;
}
