#include "Support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <iterator>
#include <random>

#include "Support/Text.h"

namespace test {

namespace fs = std::filesystem;

namespace {

// Unlike any other of this process, and most unlikely that of another one.
fs::path NewFolder(const fs::path& where) {
    static std::atomic<unsigned> count{0};
    std::random_device random;
    for (;;) {
        const std::string name =
            "zelkor-test-" + std::to_string(random()) + "-" + std::to_string(count.fetch_add(1));
        const fs::path folder = where / name;
        if (fs::create_directory(folder)) return folder;
    }
}

void AllowWriting(const fs::path& path) {
    std::error_code ignored;
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::add, ignored);
}

}  // namespace

TempFolder::TempFolder(const fs::path& where) : folder_(NewFolder(where)) {}

TempFolder::~TempFolder() {
    std::error_code error;
    fs::remove_all(folder_, error);
    EXPECT_FALSE(error) << folder_ << ": " << error.message();
}

std::u16string TempFolder::Path() const {
    std::u16string path = u"C:" + Utf16(folder_.native());
    std::ranges::replace(path, u'/', u'\\');
    return path;
}

std::u16string TempFolder::Name(std::u16string_view name) const {
    return Path() + u'\\' + std::u16string(name);
}

fs::path TempFolder::Native(std::u16string_view name) const {
    std::string native = Utf8(name);
    std::ranges::replace(native, '\\', '/');
    return folder_ / native;
}

void TempFolder::Write(std::u16string_view name, std::string_view bytes) const {
    std::ofstream file(Native(name), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    EXPECT_TRUE(file) << Utf8(name);
}

std::string TempFolder::Read(std::u16string_view name) const {
    std::ifstream file(Native(name), std::ios::binary);
    EXPECT_TRUE(file) << Utf8(name);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void TempFolder::MakeFolder(std::u16string_view name) const {
    fs::create_directories(Native(name));
}

void TempFolder::Remove(std::u16string_view name) const {
    AllowWriting(Native(name));
    fs::remove_all(Native(name));
}

bool TempFolder::Has(std::u16string_view name) const {
    return fs::exists(Native(name));
}

std::vector<std::string> TempFolder::Names() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
        names.push_back(entry.path().filename().native());
    }
    std::ranges::sort(names);
    return names;
}

}  // namespace test
