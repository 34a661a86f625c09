// What the record manager's tests share: files in a folder of their own, texts as buffers.
#ifndef TESTS_DATABASE_RECORDMANAGER_RECORDFILES_H
#define TESTS_DATABASE_RECORDMANAGER_RECORDFILES_H

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Database/RecordManager/RecordCheck.h"
#include "Foundation/Database/RecordManager/RecordManager.h"
#include "Foundation/Database/RecordManager/RecordRepair.h"
#include "Support/Errors.h"
#include "Support/Faults.h"
#include "Support/TempFolder.h"

namespace test {

using Manager = CT_RecordManager;

inline CT_Buffer Data(std::string_view bytes) {
    return CT_Buffer(bytes.data(), static_cast<std::uint32_t>(bytes.size()), 32);
}

inline std::string Text(const CT_Buffer& buffer) {
    return {static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize()};
}

inline void ClearError() {
    CT_ErrorManager::spco_Get()->v_ClearError();
}

inline bool NoErrorIsSet() {
    return CT_ErrorManager::spco_Get()->b_IsSetError() == FALSE;
}

// Bytes that a seed stands for; never four equal ones that could pass for a state word.
inline std::string Bytes(std::uint32_t seed, std::size_t length) {
    std::string bytes(length, '\0');
    std::uint32_t value = seed * 2654435761u + 1;
    for (char& byte : bytes) {
        value ^= value << 13;
        value ^= value >> 17;
        value ^= value << 5;
        byte = static_cast<char>(value & 0x7F);
    }
    return bytes;
}

inline std::uint32_t WordAt(const std::string& bytes, std::size_t offset) {
    std::uint32_t word = 0;
    for (std::size_t i = 4; i-- > 0;) {
        word = word << 8 | static_cast<unsigned char>(bytes.at(offset + i));
    }
    return word;
}

inline void PutWord(std::string& bytes, std::size_t offset, std::uint32_t word) {
    for (std::size_t i = 0; i < 4; ++i) bytes.at(offset + i) = static_cast<char>(word >> 8 * i);
}

// Where files can be stored without a disk's waiting times.
inline std::filesystem::path QuickFolder() {
    const std::filesystem::path memory = "/dev/shm";
    return std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
}

// A file of the folder, as an object that gives its name.
struct Named {
    Named(const TempFolder& folder, std::u16string_view name)
        : text(folder.Name(name).c_str()), file(&text, 16384) {}
    CT_UString text;
    CT_WinFile file;
};

inline std::string Get(Manager& manager, unsigned int reference, unsigned int maximum = 0) {
    CT_Buffer out;
    manager.v_GetRecord(reference, &out, maximum);
    return Text(out);
}

inline unsigned int Add(Manager& manager, std::string_view bytes) {
    const CT_Buffer data = Data(bytes);
    return manager.n_AddRecord(&data);
}

inline void Update(Manager& manager, unsigned int reference, std::string_view bytes) {
    const CT_Buffer data = Data(bytes);
    manager.v_UpdateRecord(reference, &data);
}

// What the record reads back as: a short one is padded, with what is behind it unknown.
inline bool ReadsAs(const std::string& read, const std::string& written, std::size_t header) {
    return written.size() > header ? read == written
                                   : read.size() == header && read.starts_with(written);
}

// The findings of a check, one a line.
inline std::string Findings(const CT_WinFile& file) {
    CT_RecordCheck check(&file);
    const bool sound = check.b_Check() != FALSE;
    std::string list;
    for (unsigned int i = 1; i <= check.n_GetListedCount(); ++i) {
        const auto finding = check.so_GetFindingAt(i);
        list += std::to_string(finding.offset) + "+" + std::to_string(finding.size) + " " +
                CT_RecordCheck::sqccz_GetText(finding.kind) + "\n";
    }
    EXPECT_EQ(sound, list.empty());
    return list;
}

inline std::vector<unsigned int> References(Manager& manager, std::size_t most = 1000) {
    std::vector<unsigned int> found;
    for (unsigned int cursor = 0; found.size() < most;) {
        cursor = manager.n_GetNextRecord(cursor, nullptr);
        if (cursor == 0) break;
        found.push_back(cursor - 1);
    }
    return found;
}

}  // namespace test

#endif
