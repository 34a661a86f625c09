// Folders, the current folder and drive, and temporary files.
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <string_view>

#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Posix/Internal/CurrentDrive.h"
#include "Foundation/Platform/Posix/Internal/Errno.h"
#include "Foundation/Platform/Posix/Internal/FileFaults.h"
#include "Foundation/Platform/Posix/Internal/FileInternals.h"

namespace zelkor::platform {

namespace {

using posix::Fail;
using posix::NativeName;
using posix::Strikes;

constexpr char16_t kDigits[] = u"0123456789abcdef";

constinit std::atomic<char16_t> current_drive{u'C'};
constinit std::atomic<std::uint32_t> temporary_files{0};

std::size_t CopyText(std::u16string_view text, std::span<char16_t> out) {
    if (text.size() >= out.size()) return 0;
    std::ranges::copy(text, out.data());
    out[text.size()] = 0;
    return text.size();
}

std::uint32_t Deliver(std::u16string_view text, std::span<char16_t> out) {
    const std::size_t length = CopyText(text, out);
    if (length == 0) SetLastError(kErrorInsufficientBuffer);
    return static_cast<std::uint32_t>(length);
}

// The name of a temporary file with its number, which has four digits at most.
bool BuildName(const char16_t* folder, const char16_t* prefix, std::uint32_t number,
               std::span<char16_t> name) {
    std::size_t length = 0;
    const auto add = [&](char16_t unit) {
        if (length < name.size()) name[length] = unit;
        ++length;
    };
    for (; *folder != 0; ++folder) add(*folder);
    if (length > 0 && folder[-1] != u'\\' && folder[-1] != u'/') add(u'\\');
    for (int i = 0; i < 3 && *prefix != 0; ++i) add(*prefix++);
    int shift = 12;
    while (shift > 0 && number >> shift == 0) shift -= 4;
    for (; shift >= 0; shift -= 4) add(kDigits[number >> shift & 0xF]);
    for (const char16_t unit : std::u16string_view(u".tmp")) add(unit);
    add(0);
    return length <= name.size() || Fail(kErrorInsufficientBuffer);
}

// Differs between processes, threads and calls; any number serves.
std::uint32_t FirstNumber() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const auto mixed = static_cast<std::uint64_t>(now.tv_nsec) * 0x9E3779B97F4A7C15u +
                       static_cast<std::uint64_t>(getpid()) * 0xBF58476D1CE4E5B9u +
                       temporary_files.fetch_add(1, std::memory_order_relaxed) * 0x94D049BBu;
    return static_cast<std::uint32_t>(mixed >> 40);
}

// 0 made, else the last error; 183: the name is taken.
std::uint32_t MakeEmpty(const char16_t* given) {
    const NativeName name(given);
    if (!name.ok()) return LastError();
    if (!name.MayBeCreated()) return kErrorInvalidName;
    const int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
    const int descriptor = posix::Retry([&] { return open(name.c_str(), flags, 0600); });
    if (descriptor < 0) {
        const bool no_folder = errno == ENOENT || errno == ENOTDIR;
        return no_folder ? kErrorDirectory : posix::Win32FromErrno(errno);
    }
    close(descriptor);
    return 0;
}

}  // namespace

namespace posix {

char16_t CurrentDrive() noexcept {
    return current_drive.load(std::memory_order_relaxed);
}

void SetCurrentDrive(char16_t letter) noexcept {
    current_drive.store(letter, std::memory_order_relaxed);
}

}  // namespace posix

bool CreateFolder(const char16_t* given) noexcept {
    const NativeName name(given);
    if (!name.ok() || Strikes(FileCall::kFolder)) return false;
    struct stat status;
    if (!name.MayBeCreated() && lstat(name.c_str(), &status) != 0) return Fail(kErrorInvalidName);
    if (mkdir(name.c_str(), 0777) == 0) return true;
    // The name itself is not there: what is missing is its folder.
    if (errno == ENOENT || errno == ENOTDIR) return Fail(kErrorPathNotFound);
    return posix::FailWithErrno();
}

bool RemoveFolder(const char16_t* given) noexcept {
    const NativeName name(given);
    if (!name.ok() || Strikes(FileCall::kFolder)) return false;
    if (rmdir(name.c_str()) == 0) return true;
    const int error = errno;
    struct stat status;
    const bool found = stat(name.c_str(), &status) == 0;
    if (error == ENOTDIR && found) return Fail(kErrorDirectory);
    if (error == EEXIST) return Fail(kErrorDirNotEmpty);
    if (error == EINVAL) return Fail(kErrorSharingViolation);  // the current folder by its dot
    return name.Fail(error);
}

bool ChangeFolder(const char16_t* given) noexcept {
    const NativeName name(given);
    if (!name.ok() || Strikes(FileCall::kFolder)) return false;
    if (chdir(name.c_str()) != 0) {
        if (errno == ENOTDIR) return Fail(kErrorDirectory);
        return errno == ENOENT ? Fail(kErrorFileNotFound) : posix::FailWithErrno();
    }
    const char16_t letter = static_cast<char16_t>(given[0] & ~0x20);
    if (letter >= u'A' && letter <= u'Z' && given[1] == u':') posix::SetCurrentDrive(letter);
    return true;
}

std::uint32_t CurrentFolder(std::uint32_t drive, std::span<char16_t> folder) noexcept {
    if (Strikes(FileCall::kFolder)) return 0;
    if (drive > 26) {
        SetLastError(kErrorInvalidDrive);
        return 0;
    }
    const char16_t letter =
        drive == 0 ? posix::CurrentDrive() : static_cast<char16_t>(u'A' + drive - 1);
    if (letter != posix::CurrentDrive()) {
        const char16_t root[] = {letter, u':', u'\\', 0};
        return Deliver(root, folder);
    }
    std::array<char, kMaxNativePath> native;
    std::array<char16_t, kMaxNativePath> text;
    if (getcwd(native.data(), native.size()) == nullptr) {
        posix::FailWithErrno();
        return 0;
    }
    const std::size_t length = PathFromNative(native.data(), text);
    return length == 0 ? 0 : Deliver({text.data(), length}, folder);
}

std::uint32_t TemporaryFolder(std::span<char16_t> folder) noexcept {
    if (Strikes(FileCall::kTemporary)) return 0;
    const char* named = std::getenv("TMPDIR");
    if (named == nullptr || *named != '/') named = "/tmp";
    std::array<char16_t, kMaxNativePath> text;
    std::size_t length = PathFromNative(named, std::span(text).first(text.size() - 1));
    if (length == 0) return 0;
    if (text[length - 1] != u'\\') text[length++] = u'\\';
    return Deliver({text.data(), length}, folder);
}

std::uint32_t CreateTemporaryFile(const char16_t* folder, const char16_t* prefix,
                                  std::uint32_t unique, std::span<char16_t> name) noexcept {
    if (Strikes(FileCall::kTemporary)) return 0;
    if (folder == nullptr) folder = u"";
    if (prefix == nullptr) prefix = u"";
    if ((unique & 0xFFFF) != 0) {
        return BuildName(folder, prefix, unique & 0xFFFF, name) ? unique & 0xFFFF : 0;
    }
    constexpr std::uint32_t kFirst = 0x1000, kNumbers = 0xF000;  // all of four digits
    const std::uint32_t start = FirstNumber();
    for (std::uint32_t i = 0; i < kNumbers; ++i) {
        const std::uint32_t number = kFirst + (start + i) % kNumbers;
        if (!BuildName(folder, prefix, number, name)) return 0;
        const std::uint32_t error = MakeEmpty(name.data());
        if (error == 0) return number;
        if (error == kErrorAlreadyExists) continue;
        SetLastError(error);
        return 0;
    }
    SetLastError(kErrorFileExists);
    return 0;
}

}  // namespace zelkor::platform
