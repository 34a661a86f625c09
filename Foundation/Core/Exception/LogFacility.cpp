#include "Foundation/Core/Exception/LogFacility.h"

#include <cstdarg>
#include <cstddef>

#include "Foundation/Core/Error/Internal/MessageText.h"
#include "Foundation/Core/Exception/Internal/ExceptionDetail.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

namespace {

constexpr std::size_t kAreaSize = 1024;

const char16_t* TextOf(const CT_UString* string) {
    return string != nullptr ? string->qcuz_Get() : nullptr;
}

}  // namespace

CT_LogFacility::~CT_LogFacility() = default;

void CT_LogFacility::vv_Log(const CT_UString* message, const CT_UString* source,
                            const CT_UString* category, et_Severity severity, std::int32_t value) {
    vv_Log(TextOf(message), TextOf(source), TextOf(category), severity, value);
}

void CT_LogFacility::vv_Logf(const char* source, const char* category, et_Severity severity,
                             std::int32_t value, const char* format, ...) {
    using zelkor::detail::WidenQuietly;
    char area[kAreaSize] = {};
    va_list arguments;
    va_start(arguments, format);
    if (format != nullptr) platform::FormatText(area, kAreaSize - 1, format, arguments);
    va_end(arguments);
    const CT_UString message = WidenQuietly(area);
    const CT_UString wide_source = WidenQuietly(source);
    const CT_UString wide_category = WidenQuietly(category);
    vv_Log(&message, &wide_source, &wide_category, severity, value);
}

void CT_LogFacility::vv_Logf(const char16_t* source, const char16_t* category, et_Severity severity,
                             std::int32_t value, const char16_t* format, ...) {
    char16_t area[kAreaSize];
    va_list arguments;
    va_start(arguments, format);
    zelkor::detail::FormatCut(area, kAreaSize, format, arguments);
    va_end(arguments);
    vv_Log(area, source, category, severity, value);
}

CT_LogFacilityDummy::~CT_LogFacilityDummy() = default;

void CT_LogFacilityDummy::vv_Log(const CT_UString* /*message*/, const CT_UString* /*source*/,
                                 const CT_UString* /*category*/, et_Severity /*severity*/,
                                 std::int32_t /*value*/) {}
void CT_LogFacilityDummy::vv_Log(const char16_t* /*message*/, const char16_t* /*source*/,
                                 const char16_t* /*category*/, et_Severity /*severity*/,
                                 std::int32_t /*value*/) {}
void CT_LogFacilityDummy::vv_Logf(const char* /*source*/, const char* /*category*/,
                                  et_Severity /*severity*/, std::int32_t /*value*/,
                                  const char* /*format*/, ...) {}
void CT_LogFacilityDummy::vv_Logf(const char16_t* /*source*/, const char16_t* /*category*/,
                                  et_Severity /*severity*/, std::int32_t /*value*/,
                                  const char16_t* /*format*/, ...) {}
