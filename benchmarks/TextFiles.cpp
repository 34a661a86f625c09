#include "TextFiles.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "Foundation/Platform/CodePages/CodePages.h"
#include "Texts.h"

namespace platform = zelkor::platform;

namespace bench {

namespace {

constexpr std::size_t kSize = 50'000'000;

struct File {
    explicit File(std::filesystem::path path) : name(path.string()) {}
    ~File() { std::filesystem::remove(name); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    std::string name;
};

std::string Content(TextFile text) {
    if (text == TextFile::Utf8) return Utf8Text(Language::German, kSize);
    const std::u16string units = Utf16Text(Language::German, kSize);
    std::string bytes(units.size(), '\0');
    const int count = platform::WideCharToMultiByte(
        1252, 0, units.data(), static_cast<int>(units.size()), bytes.data(),
        static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(count));
    return bytes;
}

std::unique_ptr<File> Make(TextFile text) {
    const std::string name = "zelkor-bench-" + std::to_string(getpid()) +
                             (text == TextFile::Utf8 ? "-utf8.txt" : "-1252.txt");
    auto file = std::make_unique<File>(std::filesystem::temp_directory_path() / name);
    const std::string content = Content(text);
    std::ofstream(file->name, std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
    return file;
}

}  // namespace

const std::string& FileOf(TextFile text) {
    static const std::unique_ptr<File> utf8 = Make(TextFile::Utf8);
    static const std::unique_ptr<File> narrow = Make(TextFile::Windows1252);
    return (text == TextFile::Utf8 ? utf8 : narrow)->name;
}

}  // namespace bench
