#include "TemporaryFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "Console.h"
#include "InputFile.h"

namespace zelkor::cli {

namespace {

constexpr const char* kName = ".zelkor-XXXXXX";
constexpr std::string_view kBeside = ".new";

// The names that the handler removes.
struct Slot {
    std::atomic<bool> used{false};
    char name[PATH_MAX];
    char beside[PATH_MAX + kBeside.size()];
};
std::array<Slot, 4> slots;

extern "C" void RemoveTemporaries(int signal) {
    for (const Slot& slot : slots) {
        if (!slot.used) continue;
        unlink(slot.name);
        unlink(slot.beside);
    }
    raise(signal);  // the handler is taken off by now, so that this ends the process
}

void CatchSignals() {
    static bool caught = false;
    if (caught) return;
    caught = true;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) {
        struct sigaction action {};
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
        action.sa_handler = RemoveTemporaries;
        action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
        sigaction(signal, &action, nullptr);
    }
}

void Register(const std::string& name) {
    CatchSignals();
    for (Slot& slot : slots) {
        if (slot.used || name.size() >= sizeof slot.name) continue;
        std::snprintf(slot.name, sizeof slot.name, "%s", name.c_str());
        std::snprintf(slot.beside, sizeof slot.beside, "%s.new", name.c_str());
        slot.used = true;
        return;
    }
}

void Forget(const std::string& name) {
    for (Slot& slot : slots) {
        if (slot.used && name == slot.name) slot.used = false;
    }
}

}  // namespace

bool TemporaryFile::Make(const std::string& folder) {
    std::string name = folder + kName;
    descriptor_ = mkostemp(name.data(), O_CLOEXEC);
    if (descriptor_ < 0) return false;
    name_ = name;
    Register(name_);
    return true;
}

bool TemporaryFile::Make() {
    const char* const folder = std::getenv("TMPDIR");
    const bool set = folder != nullptr && *folder != 0;
    return Make(std::string(set ? folder : "/tmp") + "/");
}

void TemporaryFile::Remove() {
    Close();
    if (!is_there()) return;
    unlink(name_.c_str());
    unlink((name_ + std::string(kBeside)).c_str());
    Keep();
}

void TemporaryFile::Keep() {
    Close();
    Forget(name_);
    name_.clear();
}

void TemporaryFile::Close() {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = -1;
}

bool TemporaryFile::Reopen() {
    Close();
    descriptor_ = open(name_.c_str(), O_RDWR | O_CLOEXEC);
    return descriptor_ >= 0;
}

SeekableFile::SeekableFile(const std::string& name) : name_(Printable(name)) {
    struct stat status {};
    const bool stream = name == "-" || (stat(name.c_str(), &status) == 0 &&
                                        !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode));
    path_ = FileName(name);
    if (!stream) return;
    InputFile input(name);
    name_ = input.name();
    if (!copy_.Make()) throw Failure(std::strerror(errno));
    std::string piece(1 << 16, '\0');
    for (std::size_t read = 0; (read = input.Read(piece.data(), piece.size())) != 0;) {
        WriteAll(copy_.descriptor(), {piece.data(), read}, "temporary file");
    }
    copy_.Close();
    path_ = FileName(copy_.name());
}

void WriteAll(int descriptor, std::string_view bytes, const std::string& name) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            throw Failure(name + ": " + std::strerror(errno));
        }
    }
}

}  // namespace zelkor::cli
