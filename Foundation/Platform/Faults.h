// Test seam: failures of the calls that the ground makes of the system's files.
//
// A fault is set for the calling thread and one kind of call: it lets `after` calls of that kind
// pass and strikes the next one, once, or with `sticky` every one from there on. Calls are counted
// as the library makes them, one for each service of Files.h or FindFiles.h that is called.
// Off, the seam costs one relaxed load per call.
#ifndef FOUNDATION_PLATFORM_FAULTS_H
#define FOUNDATION_PLATFORM_FAULTS_H

#include <cstdint>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

enum class FileCall : std::uint32_t {
    kOpen,
    kClose,
    kRead,
    kWrite,
    kSeek,
    kSetEnd,
    kFlush,
    kSize,
    kInformation,
    kLock,
    kUnlock,
    kCreateMapping,
    kMapView,
    kGrowView,
    kUnmapView,
    kFlushView,
    kRemove,
    kRename,
    kCopy,
    kAttributes,  // asking and setting
    kStatus,      // QueryStatus and Exists
    kFolder,      // creating, removing, changing and asking for folders
    kTemporary,
    kFind,
};
inline constexpr std::uint32_t kFileCalls = static_cast<std::uint32_t>(FileCall::kFind) + 1;

// The call fails with a Win32 error number and does nothing. (QueryStatus answers the C runtime
// number that goes with it.) A number of 0 counts the call without harm.
ZELKOR_API void FailFileCall(FileCall call, std::uint32_t after, std::uint32_t error,
                             bool sticky = false) noexcept;

// The read or write succeeds, but transfers at most `limit` bytes.
ZELKOR_API void ShortenFileCall(FileCall call, std::uint32_t after, std::uint32_t limit,
                                bool sticky = false) noexcept;

// The write stores at most `limit` bytes and fails with 112, and so does every one after it.
ZELKOR_API void FillDisk(std::uint32_t after, std::uint32_t limit) noexcept;

// Ends every fault of this thread; answers how many calls of that kind were made since it was set.
ZELKOR_API std::uint32_t ClearFileFaults(FileCall counted = FileCall::kOpen) noexcept;

}  // namespace zelkor::platform

#endif
