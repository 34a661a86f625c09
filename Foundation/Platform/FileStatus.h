// _stat: what the C runtime's stat answers, with the layout that callers of the interface know.
#ifndef FOUNDATION_PLATFORM_FILESTATUS_H
#define FOUNDATION_PLATFORM_FILESTATUS_H

#if defined(_WIN32)
#include <sys/stat.h>
#else
#include <cstdint>

// The system's own headers may define st_atime and its like as macros (st_atim.tv_sec); both
// spellings reach the same number here.
#pragma push_macro("st_atime")
#pragma push_macro("st_mtime")
#pragma push_macro("st_ctime")
#undef st_atime
#undef st_mtime
#undef st_ctime
struct _stat {
    struct Seconds {
        std::int32_t tv_sec;
    };
    std::uint32_t st_dev;
    std::uint16_t st_ino;
    std::uint16_t st_mode;
    std::int16_t st_nlink;
    std::int16_t st_uid;
    std::int16_t st_gid;
    std::uint32_t st_rdev;
    std::uint32_t st_size;
    union {
        std::int32_t st_atime;  // seconds since 1970-01-01 UTC, as the next two
        Seconds st_atim;
    };
    union {
        std::int32_t st_mtime;
        Seconds st_mtim;
    };
    union {
        std::int32_t st_ctime;  // of creation
        Seconds st_ctim;
    };
};
#pragma pop_macro("st_ctime")
#pragma pop_macro("st_mtime")
#pragma pop_macro("st_atime")
#endif

#endif
