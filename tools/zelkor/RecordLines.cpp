#include "RecordLines.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "InputFile.h"

namespace zelkor::cli {

namespace {

// Opens a file for reading; "-" is the standard input.
std::FILE* Open(const std::string& name) {
    std::FILE* const file = name == "-" ? stdin : std::fopen(name.c_str(), "rb");
    if (file == nullptr) {
        throw Failure(Printable(name) + ": " + std::strerror(errno));
    }
    return file;
}

// Hands all that is left of the file to `use`.
void ReadParts(std::FILE* file, const std::string& name, const auto& use) {
    char part[65536];
    while (const std::size_t count = std::fread(part, 1, sizeof part, file)) {
        use(std::string_view(part, count));
    }
    if (std::ferror(file) != 0) {
        throw Failure(name + ": " + std::strerror(errno));
    }
}

}  // namespace

void MustBeReadable(const std::string& name) {
    struct stat status {};
    if (name == "-") return;
    if (stat(name.c_str(), &status) != 0) {
        throw Failure(Printable(name) + ": " + std::strerror(errno));
    }
    if (S_ISDIR(status.st_mode)) throw Failure(Printable(name) + ": " + std::strerror(EISDIR));
}

std::string ReadAll(const std::string& name) {
    constexpr std::size_t kLargest = 0xFFFFFFF0;  // of a record, nearly
    return InputFile(name).ReadAll(kLargest);
}

Lines::Lines(const std::string& name, Times times)
    : name_(name == "-" ? "standard input" : Printable(name)), file_(Open(name)) {
    struct stat status {};
    if (fstat(fileno(file_.get()), &status) == 0 && S_ISREG(status.st_mode)) {
        size_ = static_cast<std::uint64_t>(status.st_size);
    } else if (times == kAgain) {
        TakeAll();
    }
}

Lines::~Lines() {
    std::free(line_);
}

void Lines::TakeAll() {
    std::unique_ptr<std::FILE, Close> copy(std::tmpfile());
    if (copy == nullptr) throw Failure(name_ + ": no temporary file can be made for it");
    bool good = true;
    ReadParts(file_.get(), name_, [&](std::string_view part) {
        good = good && std::fwrite(part.data(), 1, part.size(), copy.get()) == part.size();
        if (!good) throw Failure(name_ + ": finds no room in a temporary file");
        size_ += part.size();
    });
    if (std::fflush(copy.get()) != 0) throw Failure(name_ + ": finds no room in a temporary file");
    file_ = std::move(copy);
    Rewind();
}

bool Lines::Next(std::string_view* line) {
    const ssize_t length = getline(&line_, &room_, file_.get());
    if (length < 0) {
        if (std::ferror(file_.get()) != 0) {
            if (errno == EINTR) throw Failure("interrupted");
            throw Failure(name_ + ": " + std::strerror(errno));
        }
        return false;
    }
    *line = {line_, static_cast<std::size_t>(length)};
    if (line->ends_with('\n')) line->remove_suffix(1);
    ++number_;
    done_ += static_cast<std::uint64_t>(length);
    return true;
}

void Lines::Rewind() {
    std::rewind(file_.get());
    number_ = 0;
    done_ = 0;
}

Failure Lines::Wrong(const std::string& what, unsigned int line) const {
    return Failure(name_ + (line == 0 ? "" : ':' + std::to_string(line)) + ": " + what);
}

}  // namespace zelkor::cli
