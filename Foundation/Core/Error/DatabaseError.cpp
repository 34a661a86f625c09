#include "Foundation/Core/Error/DatabaseError.h"

#include <algorithm>
#include <cstdarg>
#include <iterator>

#include "Foundation/Core/Error/Internal/MessageText.h"

namespace {

struct Message {
    unsigned int code;
    const char16_t* format;
};

constexpr Message kMessages[] = {
    {31000, u"Invalid file format in %s"},
    {31001, u"Could not obtain lock for %s"},
    {31002, u"Could not release lock on %s"},
    {31003, u"Unsufficient lock to perform this operation on file %s"},
    {31004, u"Buffer overflow (user data, file %s)"},
    {31005, u"Corrupt data in %s"},
    {31050, u"Invalid RecordManager file format in %s"},
    {31051, u"Invalid record reference in %s"},
    {31052, u"Resource max count exceeded in %s"},
    {31053, u"Resource not found in %s"},
    {31054, u"Resource already exists in %s"},
    {31055, u"Invalid RecordManager file version in %s"},
    {31100, u"Invalid index file format in %s"},
    {31101, u"Reference too large in %s"},
    {31102, u"Key too long in %s"},
    {31103, u"Index full in %s"},
    {31104, u"Key already exists in %s"},
    {31105, u"Key not found in %s"},
    {31106, u"Locale not installed"},
    {31107, u"Unicode to MBCS conversion failed in %s"},
    {31150, u"Matrix row has been already deleted"},
    {32000, u"Illegal file format"},
    {32001, u"Illegal file version stamp"},
    {32002, u"File corrupt"},
    {32003, u"Read past end of column"},
    {32004, u"Required column entry not found"},
    {32005, u"Illegal matrix state"},
    {32006, u"Matrix opened read only"},
    {32007, u"Lock request timed out"},
    {32008, u"Matrix is locked"},
    {32009, u"Required lock is not obtained"},
    {32010, u"Size mismatch for user block"},
    {32011, u"No compatible encoder found"},
    {32012, u"Matrix locking error"},
    {32013, u"No features computed by feature encoder"},
    {32014, u"Feature space exceeded"},
};

}  // namespace

const char16_t* CT_DatabaseError::sqcuz_GetErrorMessage(unsigned int code,
                                                        unsigned int /*unused*/) {
    const auto* const found = std::ranges::find(kMessages, code, &Message::code);
    return found != std::end(kMessages) ? found->format : nullptr;
}

void CT_DatabaseError::sv_FormatError(char16_t* buffer, unsigned int size, unsigned int code, ...) {
    if (size == 0 || buffer == nullptr) return;
    const char16_t* format = sqcuz_GetErrorMessage(code);
    if (format == nullptr) format = u"Unspecified Database Error";
    va_list arguments;
    va_start(arguments, code);
    zelkor::detail::FormatCut(buffer, size, format, arguments);
    va_end(arguments);
}
