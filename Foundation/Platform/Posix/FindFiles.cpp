#include "Foundation/Platform/FindFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "Foundation/Platform/FileNameCase.h"
#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Posix/Internal/Errno.h"
#include "Foundation/Platform/Posix/Internal/FileFaults.h"
#include "Foundation/Platform/Posix/Internal/FileInternals.h"

namespace zelkor::platform {

namespace {

using posix::Fail;
using posix::Kind;
using posix::Object;

using Text = std::basic_string<char16_t, std::char_traits<char16_t>, Allocator<char16_t>>;

// The names found when the search began, one zero-terminated text after the other, and where each
// begins, in the order of delivery.
struct Search {
    Text names;
    std::vector<std::uint32_t, Allocator<std::uint32_t>> starts;
    std::size_t next = 0;
    int folder = -1;

    Search() = default;
    ~Search() {
        if (folder >= 0) close(folder);
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    static void* operator new(std::size_t size) {
        void* block = Allocate(size);
        if (block == nullptr) throw std::bad_alloc();
        return block;
    }
    static void operator delete(void* block) { Free(block); }
};

bool ComesBefore(const char16_t* a, const char16_t* b) {
    for (; *a != 0 && *b != 0; ++a, ++b) {
        const char16_t upper_a = FileNameUpper(*a);
        const char16_t upper_b = FileNameUpper(*b);
        if (upper_a != upper_b) return upper_a < upper_b;
    }
    return *a == 0 && *b != 0;
}

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

// Fills the search with the matching names of its folder; false with the last error set.
bool Collect(Search& search, std::u16string_view pattern) {
    const int copy = fcntl(search.folder, F_DUPFD_CLOEXEC, 0);
    if (copy < 0) return posix::FailWithErrno();
    const std::unique_ptr<DIR, CloseFolder> folder(fdopendir(copy));
    if (folder == nullptr) {
        const int error = errno;
        close(copy);
        return posix::FailWithErrno(error);
    }
    char16_t name[kMaxPath];
    errno = 0;
    while (const dirent* entry = readdir(folder.get())) {
        const std::size_t length = PathFromNative(entry->d_name, name);
        if (length != 0 && MatchesPattern({name, length}, pattern)) {
            search.starts.push_back(static_cast<std::uint32_t>(search.names.size()));
            search.names.append(name, length + 1);
        }
        errno = 0;
    }
    if (errno != 0) return posix::FailWithErrno();
    std::ranges::sort(search.starts, [&names = search.names](std::uint32_t a, std::uint32_t b) {
        const char16_t* first = names.data() + a;
        const char16_t* second = names.data() + b;
        if (ComesBefore(first, second)) return true;
        return !ComesBefore(second, first) && std::u16string_view(first) < second;
    });
    return true;
}

// The next name that still exists.
bool Deliver(Search& search, FoundFile* found) {
    while (search.next < search.starts.size()) {
        const std::u16string_view name = search.names.data() + search.starts[search.next++];
        // Behind ".\", so that "a:b" is not taken for a drive.
        char16_t relative[kMaxPath + 2] = u".\\";
        std::ranges::copy(name, relative + 2);
        relative[name.size() + 2] = 0;
        char native[kMaxNativePath];
        struct stat status;
        timespec birth;
        if (NativePath(relative, native) == 0) continue;
        if (!posix::Inspect(search.folder, native, &status, &birth)) continue;
        const posix::Times times = posix::TimesOf(status, birth);
        found->attributes = posix::AttributesOf(search.folder, native, status);
        found->creation = times.creation;
        found->access = times.access;
        found->write = times.write;
        found->size = S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
        std::ranges::copy(name, found->name);
        found->name[name.size()] = 0;
        return true;
    }
    return Fail(kErrorNoMoreFiles);
}

// Opens the folder that the pattern names in front of its last separator.
int OpenFolder(const PathParts& parts) {
    char16_t folder[kMaxNativePath];
    const PathParts only = {parts.drive, parts.directory, {}, {}};
    const std::size_t length = MakePath(folder, only);
    if (length >= kMaxNativePath) {
        SetLastError(kErrorPathNotFound);
        return -1;
    }
    const posix::NativeName name(length == 0 ? u"." : folder);
    if (!name.ok()) return -1;
    const int descriptor =
        posix::Retry([&] { return open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    const bool missing = descriptor < 0 && (errno == ENOENT || errno == ENOTDIR);
    if (missing) {
        SetLastError(kErrorPathNotFound);
    } else if (descriptor < 0) {
        posix::FailWithErrno();
    }
    return descriptor;
}

}  // namespace

HANDLE FindFirst(const char16_t* given, FoundFile* found) {
    if (posix::Strikes(FileCall::kFind)) return INVALID_HANDLE_VALUE;
    const std::u16string_view pattern = given == nullptr ? u"" : given;
    if (pattern.empty()) {
        SetLastError(kErrorPathNotFound);
        return INVALID_HANDLE_VALUE;
    }
    const PathParts parts = SplitPath(pattern);
    std::unique_ptr<Search> search(new Search);
    search->folder = OpenFolder(parts);
    if (search->folder < 0) return INVALID_HANDLE_VALUE;
    const std::size_t skipped = parts.drive.size() + parts.directory.size();
    if (!Collect(*search, pattern.substr(skipped))) return INVALID_HANDLE_VALUE;
    if (!Deliver(*search, found)) {
        SetLastError(kErrorFileNotFound);
        return INVALID_HANDLE_VALUE;
    }
    Object* object = posix::NewObject(Kind::kSearch);
    if (object == nullptr) return INVALID_HANDLE_VALUE;
    object->search = search.release();
    return posix::Publish(object);
}

bool FindNext(HANDLE handle, FoundFile* found) {
    const Object* object = posix::Find(handle, Kind::kSearch);
    if (object == nullptr || posix::Strikes(FileCall::kFind)) return false;
    return Deliver(*static_cast<Search*>(object->search), found);
}

bool FindClose(HANDLE handle) noexcept {
    Object* object = posix::Find(handle, Kind::kSearch);
    if (object == nullptr) return false;
    posix::Retire(object);
    delete static_cast<Search*>(object->search);
    posix::Release(object);
    return true;
}

}  // namespace zelkor::platform
