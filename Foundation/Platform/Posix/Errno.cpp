#include "Foundation/Platform/Posix/Internal/Errno.h"

#include <algorithm>
#include <array>

#include "Foundation/Platform/LastError.h"

namespace zelkor::platform::posix {

namespace {

struct Number {
    int number;
    std::uint32_t win32;
};

// Where the meaning hangs on the call (ENOENT: 2 or 3; EEXIST: 80 or 183), the call decides first.
constexpr auto kWin32 = std::to_array<Number>({
    {EPERM, 5},       {ENOENT, 2},      {EINTR, 995},  // operation aborted
    {EIO, 1117},      {ENXIO, 1167},                   // no such device
    {EBADF, 6},       {EAGAIN, 33},     {ENOMEM, 8},       {EACCES, 5},
    {EFAULT, 998},  // no access to the memory
    {EBUSY, 32},      {EEXIST, 183},    {EXDEV, 17},       {ENODEV, 1167},
    {ENOTDIR, 3},     {EISDIR, 5},      {EINVAL, 87},      {ENFILE, 4},
    {EMFILE, 4},      {ENOTTY, 1},      {ETXTBSY, 32},     {EFBIG, 223},
    {ENOSPC, 112},    {ESPIPE, 25},     {EROFS, 19},       {EMLINK, 1142},
    {EPIPE, 109},     {EDEADLK, 1131},  {ENAMETOOLONG, 3}, {ENOLCK, 1450},
    {ENOSYS, 120},    {ENOTEMPTY, 145}, {ELOOP, 1921},     {EOVERFLOW, 223},
    {EOPNOTSUPP, 50}, {ETIMEDOUT, 121}, {ESTALE, 59},      {EDQUOT, 112},
});

}  // namespace

std::uint32_t Win32FromErrno(int number) noexcept {
    const auto row = std::ranges::find(kWin32, number, &Number::number);
    return row == kWin32.end() ? kErrorGenFailure : row->win32;
}

int RuntimeFromErrno(int number) noexcept {
    switch (number) {
        case ENOTDIR:
        case ELOOP:
            return 2;
        case EROFS:
            return 13;
        case ENAMETOOLONG:
            return 38;
        case ENOTEMPTY:
            return 41;
        default:
            // The classic numbers are the same everywhere.
            return number > 0 && number <= ERANGE ? number : 22;
    }
}

bool Fail(std::uint32_t win32_number) noexcept {
    SetLastError(win32_number);
    return false;
}

bool FailWithErrno(int number) noexcept {
    return Fail(Win32FromErrno(number));
}

}  // namespace zelkor::platform::posix
