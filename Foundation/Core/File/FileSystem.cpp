#include "Foundation/Core/File/FileSystem.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <random>

#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/File/Internal/FileDetail.h"
#include "Foundation/Core/String/Internal/PlatformName.h"
#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Paths.h"
#include "Foundation/Platform/Threads.h"

namespace platform = zelkor::platform;

namespace {

using zelkor::detail::Assign;
using zelkor::detail::IsOlderFamily;
using zelkor::detail::kSeparators;
using zelkor::detail::PassPlatform;
using zelkor::detail::PlatformName;
using zelkor::detail::Seconds;
using zelkor::detail::View;

using PathArea = std::array<char16_t, platform::kMaxPath>;

constexpr unsigned int kMessageCallFailed = 60003;
constexpr unsigned int kSemanticError = 60012;
constexpr std::size_t kTemporaryFolderArea = 1024;

enum Kind : unsigned int { kNothing, kFile, kFolder, kPipe, kDevice };

Kind KindOf(std::uint32_t mode) {
    switch (mode & platform::kModeKind) {
        case platform::kModeFolder:
            return kFolder;
        case platform::kModePipe:
            return kPipe;
        case platform::kModeFile:
            return kFile;
        case platform::kModeDevice:
            return kDevice;
        default:
            return kNothing;
    }
}

// The C runtime's error number for the last error of asking for a folder.
unsigned int RuntimeError() {
    switch (platform::LastError()) {
        case platform::kErrorFileNotFound:
        case platform::kErrorPathNotFound:
            return 2;
        case platform::kErrorNotEnoughMemory:
            return 12;
        case platform::kErrorInvalidDrive:
        case platform::kErrorAccessDenied:
            return 13;
        case platform::kErrorInsufficientBuffer:
        case platform::kErrorFilenameExceedsRange:
            return 34;
        default:
            return 22;
    }
}

// What a routine that writes into an area left there, as it comes from the platform.
void Take(CT_UString* out, const char16_t* area, std::size_t length) {
    Assign(*out, {area, length});
    PassPlatform(out);
}

// The absolute form, or no change and false.
bool MakeAbsolute(CT_UString* path) {
    PathArea area;
    const std::size_t length = platform::FullPath(PlatformName(path).Get(), area);
    if (length == 0) return false;
    Take(path, area.data(), length);
    return true;
}

void CreateTempFileByPlatform(CT_UString* path, const char16_t* prefix, const char16_t* extension) {
    constexpr std::size_t kMadeExtension = 3;  // "tmp"
    std::array<char16_t, kTemporaryFolderArea> folder;
    PathArea area;
    if (platform::TemporaryFolder(folder) == 0 ||
        platform::CreateTemporaryFile(folder.data(), prefix, 0, area) == 0) {
        return;
    }
    const std::u16string_view made(area.data());
    Assign(*path, made);
    if (extension == nullptr) return;
    path->vv_Remove(CT_UString::kToEnd, static_cast<unsigned int>(made.size() - kMadeExtension));
    path->v_Append(extension);
    platform::RenameFile(area.data(), path->qcuz_Get(), false, false);
}

void FindTempName(CT_UString* path, const char16_t* prefix, const char16_t* extension) {
    PathArea area;
    const std::size_t length = platform::TemporaryFolder(area);
    if (length == 0) return;
    CT_UString folder;
    Take(&folder, area.data(), length);
    if (kSeparators.find(area[length - 1]) == kSeparators.npos) folder.v_Append(u'\\');
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    std::minstd_rand random(static_cast<std::minstd_rand::result_type>(now));
    do {
        path->v_Format(u"%s%s%d%d.%s", folder.qcuz_Get(), prefix, platform::CurrentThreadId(),
                       static_cast<int>(random() & 0x7FFF),
                       extension == nullptr ? u"tmp" : extension);
        PassPlatform(path);
    } while (CT_FileSystem::sb_IsExistent(path));
    MakeAbsolute(path);
}

}  // namespace

void CT_FileSystem::sv_SplitPath(const CT_UString* path, CT_UString* drive, CT_UString* directory,
                                 CT_UString* name, CT_UString* extension) {
    const CT_UString kept(path);  // an output may be the path itself
    const PlatformName text(&kept);
    const platform::PathParts parts = platform::SplitPath(text.Get());
    if (drive != nullptr) Assign(*drive, parts.drive);
    if (directory != nullptr) Assign(*directory, parts.directory);
    if (name != nullptr) Assign(*name, parts.name);
    if (extension != nullptr) Assign(*extension, parts.extension);
}

void CT_FileSystem::sv_MakePath(CT_UString* path, const CT_UString* drive,
                                const CT_UString* directory, const CT_UString* name,
                                const CT_UString* extension) {
    if (path == nullptr) return;
    const platform::PathParts parts{View(drive), View(directory), View(name), View(extension)};
    const std::size_t length = platform::MakePath({}, parts);
    CT_UString made(static_cast<unsigned int>(length + 1));
    if (platform::MakePath({made.quz_Get(), length + 1}, parts) != 0) made.vv_Update();
    PassPlatform(&made);
    path->v_Set(&made);
}

void CT_FileSystem::sv_FullPath(CT_UString* path) {
    if (path != nullptr && !MakeAbsolute(path)) {
        zelkor::detail::Record({kSemanticError, kSemanticError}, path->qcuz_Get());
    }
}

void CT_FileSystem::sv_MakeDisplayString(CT_UString* path, unsigned int maximum) {
    const std::u16string_view text = View(path);
    if (path == nullptr || text.size() <= maximum) return;
    std::size_t start = platform::SplitPath(text).drive.size();
    if (start < text.size() && kSeparators.find(text[start]) != kSeparators.npos) ++start;
    std::size_t removed = 0;
    for (std::size_t from = start;;) {
        std::size_t separator = text.find(u'\\', from);
        if (separator == text.npos) separator = text.find(u'/', from);
        if (separator == text.npos) break;
        removed = separator - start;
        if (text.size() + 3 - removed <= maximum) break;
        from = separator + 1;
    }
    if (removed == 0) return;
    path->vv_Remove(static_cast<unsigned int>(removed), static_cast<unsigned int>(start));
    path->v_Insert(u"...", 3, static_cast<unsigned int>(start));
}

void CT_FileSystem::sv_GetCurrentPath(CT_UString* path, unsigned int drive) {
    if (path == nullptr) return;
    PathArea area;
    const std::size_t length = platform::CurrentFolder(drive, area);
    if (length != 0) return Take(path, area.data(), length);
    const unsigned int error = RuntimeError();
    path->vv_Init();
    zelkor::detail::Record({error, kMessageCallFailed}, path->qcuz_Get(),
                           IsOlderFamily() ? u"getdcwd" : u"tgetdcwd", error);
}

BOOL CT_FileSystem::sb_IsExistent(const CT_UString* path) {
    return platform::Exists(PlatformName(path).Get()) ? TRUE : FALSE;
}

BOOL CT_FileSystem::sb_IsFolder(const CT_UString* path) {
    if (sso_GetStat(path).n_Kind == kFolder) return TRUE;
    if (View(path).empty()) return FALSE;
    CT_UString inside(path);
    inside.v_Append(u"\\.");
    return sso_GetStat(&inside).n_Kind == kFolder ? TRUE : FALSE;
}

BOOL CT_FileSystem::sb_IsFile(const CT_UString* path) {
    return sso_GetStat(path).n_Kind == kFile ? TRUE : FALSE;
}

BOOL CT_FileSystem::sb_IsPipe(const CT_UString* path) {
    return sso_GetStat(path).n_Kind == kPipe ? TRUE : FALSE;
}

BOOL CT_FileSystem::sb_IsDevice(const CT_UString* path) {
    return sso_GetStat(path).n_Kind == kDevice ? TRUE : FALSE;
}

CT_FileSystem::st_Stat CT_FileSystem::sso_GetStat(const CT_UString* path) {
    platform::FileStatus status{};
    if (View(path).empty() || platform::QueryStatus(PlatformName(path).Get(), &status) != 0) {
        return {};
    }
    constexpr std::uint64_t kLargest = 0xFFFFFFFF;
    return {.n_Kind = KindOf(status.mode),
            .n_Size = static_cast<unsigned int>(std::min(status.size, kLargest)),
            .i_Creation = Seconds(status.creation),
            .i_Access = Seconds(status.access),
            .i_Modification = Seconds(status.modification)};
}

unsigned int CT_FileSystem::sn4_GetSize(const CT_UString* path) {
    return sso_GetStat(path).n_Size;
}

int CT_FileSystem::si4_GetCreationDate(const CT_UString* path) {
    return sso_GetStat(path).i_Creation;
}

int CT_FileSystem::si4_GetModificationDate(const CT_UString* path) {
    return sso_GetStat(path).i_Modification;
}

int CT_FileSystem::si4_GetAccessDate(const CT_UString* path) {
    return sso_GetStat(path).i_Access;
}

BOOL CT_FileSystem::sb_ChangePath(const CT_UString* path) {
    return platform::ChangeFolder(PlatformName(path).Get()) ? TRUE : FALSE;
}

BOOL CT_FileSystem::sb_MakePath(const CT_UString* path) {
    return platform::CreateFolder(PlatformName(path).Get()) ? TRUE : FALSE;
}

BOOL CT_FileSystem::sb_RemovePath(const CT_UString* path) {
    return platform::RemoveFolder(PlatformName(path).Get()) ? TRUE : FALSE;
}

void CT_FileSystem::sv_CreateTempFile(CT_UString* path, const char16_t* prefix,
                                      const char16_t* extension) {
    if (path == nullptr) return;
    const CT_UString kept_prefix(prefix), kept_extension(extension);  // they may lie in `path`
    path->vv_Init();
    const char16_t* const wanted = extension == nullptr ? nullptr : kept_extension.qcuz_Get();
    if (IsOlderFamily()) {
        FindTempName(path, kept_prefix.qcuz_Get(), wanted);
    } else {
        CreateTempFileByPlatform(path, kept_prefix.qcuz_Get(), wanted);
    }
}
