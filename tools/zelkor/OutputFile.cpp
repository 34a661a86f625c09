#include "OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <vector>

#include "Console.h"

namespace zelkor::cli {

namespace {

// The open descriptor that a name such as "/dev/stdout" or "/dev/fd/63" stands for, or -1.
int DescriptorOf(const std::string& name) {
    if (name == "/dev/stdout") return STDOUT_FILENO;
    if (name == "/dev/stderr") return STDERR_FILENO;
    for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
        if (!name.starts_with(folder)) continue;
        int number = -1;
        const char* const last = name.data() + name.size();
        const auto [end, error] = std::from_chars(name.data() + folder.size(), last, number);
        if (error == std::errc() && end == last) return number;
    }
    return -1;
}

std::string FolderOf(const std::string& name) {
    const std::size_t slash = name.rfind('/');
    return slash == std::string::npos ? "" : name.substr(0, slash + 1);
}

// What a symbolic link leads to, one step; the name itself when it is none.
std::string Follow(const std::string& name) {
    std::string link(PATH_MAX, '\0');
    const ssize_t length = readlink(name.c_str(), link.data(), link.size());
    if (length < 0) return name;
    link.resize(static_cast<std::size_t>(length));
    return link.starts_with('/') ? link : FolderOf(name) + link;
}

// Gives a new file what an existing one has; false when owner or group cannot be kept.
bool CopyAttributes(const std::string& from, const struct stat& status, int to) {
    struct stat own {};
    if (fstat(to, &own) != 0) return false;
    const bool other_owner = own.st_uid != status.st_uid || own.st_gid != status.st_gid;
    if (other_owner && fchown(to, status.st_uid, status.st_gid) != 0) return false;
    std::vector<char> names(XATTR_LIST_MAX);
    std::vector<char> value(XATTR_SIZE_MAX);
    const ssize_t listed = listxattr(from.c_str(), names.data(), names.size());
    for (ssize_t at = 0; at < listed;) {
        const char* const name = names.data() + at;
        const ssize_t size = getxattr(from.c_str(), name, value.data(), value.size());
        if (size >= 0) fsetxattr(to, name, value.data(), static_cast<std::size_t>(size), 0);
        at += static_cast<ssize_t>(std::strlen(name)) + 1;
    }
    return fchmod(to, status.st_mode & 07777) == 0;
}

mode_t ModeOfNewFiles() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

OutputFile::OutputFile(const std::string& name)
    : name_(name == "-" ? "standard output" : Printable(name)), target_(name) {
    std::signal(SIGXFSZ, SIG_IGN);  // a write beyond a limit of size then fails as any other
    Open();
}

OutputFile::~OutputFile() {
    if (direct_ > STDERR_FILENO) close(direct_);
}

// Follows symbolic links, one at a time, so that one to "/dev/stdout" is seen.
void OutputFile::Open() {
    if (target_.empty()) throw Failure("the name of the output is empty", 2);
    if (target_ == "-") return OpenDirectly(STDOUT_FILENO);
    constexpr int kMostLinks = 40;
    for (int links = 0;; ++links) {
        const int descriptor = DescriptorOf(target_);
        if (descriptor >= 0) return OpenDirectly(descriptor);
        const std::string next = Follow(target_);
        if (next == target_) return Examine();
        if (links == kMostLinks) FailWith(ELOOP);
        target_ = next;
    }
}

bool OutputFile::is_standard_output() const {
    return direct_ == STDOUT_FILENO;
}

void OutputFile::FailWith(int error) const {
    throw Failure(name_ + ": " + std::strerror(error));
}

void OutputFile::OpenDirectly(int descriptor) {
    std::fflush(stdout);
    if (fcntl(descriptor, F_GETFD) < 0) FailWith(errno);
    direct_ = descriptor;
    target_.clear();
}

// Decides how the output is written, and begins.
void OutputFile::Examine() {
    struct stat status {};
    const bool exists = stat(target_.c_str(), &status) == 0;
    if (!exists && errno != ENOENT) FailWith(errno);
    if (exists && S_ISDIR(status.st_mode)) FailWith(EISDIR);
    if (exists && !S_ISREG(status.st_mode)) {
        direct_ = open(target_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
        if (direct_ < 0) FailWith(errno);
        target_.clear();
        return;
    }
    // A file without any right to write is not replaced, even by those who may do everything.
    if (exists && (status.st_mode & 0222) == 0) FailWith(EACCES);
    if (exists && access(target_.c_str(), W_OK) != 0) FailWith(errno);
    in_place_ = exists && status.st_nlink > 1;
    if (temporary_.Make(FolderOf(target_))) return;
    in_place_ = exists;
    if (!exists || !temporary_.Make()) FailWith(errno);
}

void OutputFile::Write(std::string_view bytes) {
    WriteAll(direct_ >= 0 ? direct_ : temporary_.descriptor(), bytes, name_);
}

CT_UString OutputFile::Staged() {
    if (!temporary_.is_there() && !temporary_.Make()) FailWith(errno);
    temporary_.Close();
    return FileName(temporary_.name());
}

void OutputFile::Finish() {
    if (!temporary_.is_there()) return;  // all is written
    if (temporary_.descriptor() < 0 && !temporary_.Reopen()) FailWith(errno);
    if (direct_ < 0 && !in_place_ && TakeOver()) return temporary_.Keep();
    if (direct_ < 0) direct_ = open(target_.c_str(), O_WRONLY | O_CLOEXEC);
    if (direct_ < 0) FailWith(errno);
    try {
        CopyInto(direct_);
    } catch (const Failure& failure) {
        // What was there may be overwritten in part: the finished bytes are kept.
        if (is_direct() || is_untouched_) throw;
        const std::string kept = Printable(temporary_.name());
        temporary_.Keep();
        throw Failure(std::string(failure.what()) + "; all of it is in " + kept);
    }
    temporary_.Remove();
}

// Renames the temporary file; false when the file that is there must be written itself.
bool OutputFile::TakeOver() {
    const int file = temporary_.descriptor();
    struct stat status {};
    const bool is_there = stat(target_.c_str(), &status) == 0;
    if (is_there) {
        if (!CopyAttributes(target_, status, file)) return false;
        // What replaces data must be stored before the data goes.
        if (fsync(file) != 0) FailWith(errno);
    } else if (fchmod(file, ModeOfNewFiles()) != 0) {
        FailWith(errno);
    }
    if (std::rename(temporary_.name().c_str(), target_.c_str()) == 0) return true;
    if (!is_there) FailWith(errno);
    return false;
}

// Copies the finished bytes. Where a file is overwritten, room for all of them is made sure first.
void OutputFile::CopyInto(int target) {
    const int file = temporary_.descriptor();
    struct stat source {};
    struct stat status {};
    if (fstat(file, &source) != 0 || fstat(target, &status) != 0) FailWith(errno);
    const bool overwrites = !is_direct();
    if (overwrites && source.st_size > status.st_size) {
        const int error = posix_fallocate(target, 0, source.st_size);
        if (error != 0 && error != EOPNOTSUPP && error != EINVAL) {
            if (ftruncate(target, status.st_size) != 0) FailWith(errno);
            FailWith(error);
        }
    }
    if (lseek(file, 0, SEEK_SET) != 0) FailWith(errno);
    is_untouched_ = false;
    std::vector<char> piece(1 << 16);
    for (;;) {
        const ssize_t read = ::read(file, piece.data(), piece.size());
        if (read < 0 && errno != EINTR) FailWith(errno);
        if (read == 0) break;
        if (read > 0) WriteAll(target, {piece.data(), static_cast<std::size_t>(read)}, name_);
    }
    if (overwrites && (ftruncate(target, source.st_size) != 0 || fsync(target) != 0)) {
        FailWith(errno);
    }
}

}  // namespace zelkor::cli
