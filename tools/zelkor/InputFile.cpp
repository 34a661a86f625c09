#include "InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "Console.h"

namespace zelkor::cli {

namespace {

[[noreturn]] void FailWith(const std::string& name, int error) {
    throw Failure(name + ": " + std::strerror(error));
}

}  // namespace

InputFile::InputFile(const std::string& name)
    : name_(name == "-" ? "standard input" : Printable(name)),
      descriptor_(name == "-" ? STDIN_FILENO : open(name.c_str(), O_RDONLY | O_CLOEXEC)) {
    struct stat status {};
    if (descriptor_ < 0 || fstat(descriptor_, &status) != 0) FailWith(name_, errno);
    if (S_ISREG(status.st_mode)) size_ = static_cast<std::uint64_t>(status.st_size);
}

InputFile::~InputFile() {
    if (descriptor_ > STDIN_FILENO) close(descriptor_);
}

bool InputFile::IsOpenAs(int descriptor) const {
    struct stat own {};
    struct stat other {};
    return fstat(descriptor_, &own) == 0 && fstat(descriptor, &other) == 0 &&
           S_ISREG(own.st_mode) && own.st_dev == other.st_dev && own.st_ino == other.st_ino;
}

std::size_t InputFile::Read(char* out, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t read = ::read(descriptor_, out + done, count - done);
        if (read == 0) break;
        if (read > 0) {
            done += static_cast<std::size_t>(read);
        } else if (errno != EINTR) {
            FailWith(name_, errno);
        }
    }
    return done;
}

std::string InputFile::ReadAll(std::size_t most) {
    constexpr std::size_t kPiece = 1 << 20;
    std::string bytes;
    std::size_t wanted = std::max<std::size_t>(kPiece, size_);
    for (std::size_t read = 1; read != 0; wanted = kPiece) {
        const std::size_t before = bytes.size();
        wanted = std::min(wanted, most - before) + 1;
        bytes.resize(before + wanted);
        read = Read(bytes.data() + before, wanted);
        bytes.resize(before + read);
        if (bytes.size() > most) throw Failure(name_ + ": larger than " + Grouped(most) + " bytes");
    }
    return bytes;
}

}  // namespace zelkor::cli
