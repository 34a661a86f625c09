// A folder of its own for a test, gone with everything in it at the end.
//
// Files are made and looked at with the standard library, not with the code under test.
#ifndef TESTS_SUPPORT_TEMPFOLDER_H
#define TESTS_SUPPORT_TEMPFOLDER_H

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace test {

class TempFolder {
public:
    // In the folder for temporary files unless told where.
    explicit TempFolder(
        const std::filesystem::path& where = std::filesystem::temp_directory_path());
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // The folder as the library is given it ("C:\tmp\..."), and a name in it.
    [[nodiscard]] std::u16string Path() const;
    [[nodiscard]] std::u16string Name(std::u16string_view name) const;

    // The same for the standard library; "\" and "/" both separate.
    [[nodiscard]] std::filesystem::path Native() const { return folder_; }
    [[nodiscard]] std::filesystem::path Native(std::u16string_view name) const;

    void Write(std::u16string_view name, std::string_view bytes) const;
    [[nodiscard]] std::string Read(std::u16string_view name) const;
    void MakeFolder(std::u16string_view name) const;
    void Remove(std::u16string_view name) const;  // with all that is in it
    [[nodiscard]] bool Has(std::u16string_view name) const;

    // The names in it, sorted, as UTF-8.
    [[nodiscard]] std::vector<std::string> Names() const;

private:
    std::filesystem::path folder_;
};

}  // namespace test

#endif
