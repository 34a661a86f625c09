// Any bytes as a record file: reading, changing, checking and repairing end without harm, the check
// and the repair leave the file as it was, and a repaired file has nothing wrong with it.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Database/RecordManager/RecordCheck.h"
#include "Foundation/Database/RecordManager/RecordManager.h"
#include "Foundation/Database/RecordManager/RecordRepair.h"

namespace {

constexpr std::size_t kLargest = 0x10000;
constexpr unsigned int kMostRecords = 2000;

void Require(bool holds) {
    if (!holds) std::abort();
}

void ClearError() {
    CT_ErrorManager::spco_Get()->v_ClearError();
}

// Two files of this process, gone at its end.
class Files {
public:
    Files()
        : folder_(std::filesystem::temp_directory_path() /
                  ("zelkor-fuzz-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directories(folder_);
    }
    ~Files() { std::filesystem::remove_all(folder_); }
    [[nodiscard]] std::filesystem::path Path(const char* name) const { return folder_ / name; }

private:
    std::filesystem::path folder_;
};

std::string Content(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void Read(CT_RecordManager& manager) {
    CT_Buffer out;
    unsigned int cursor = 0;
    for (unsigned int n = 0; n < kMostRecords; ++n) {
        const unsigned int next = manager.n_GetNextRecord(cursor, &out);
        if (next == 0) break;
        Require(next > cursor);
        cursor = next;
    }
    ClearError();
    cursor = 0;
    for (unsigned int n = 0; n < kMostRecords; ++n) {
        if ((cursor = manager.n_GetNextRecordRobust(cursor, &out)) == 0) break;
    }
    ClearError();
    static_cast<void>(manager.b_IsCorrupt());
    ClearError();
    for (unsigned int i = 1; i <= 8; ++i) {
        manager.v_GetResource(manager.n_GetResourceKeyAt(i), &out);
        ClearError();
    }
}

void Change(CT_RecordManager& manager) {
    const std::string bytes(300, 'x');
    for (const unsigned int length : {5u, 60u, 300u}) {
        const CT_Buffer data(bytes.data(), length, 32);
        manager.n_AddRecord(&data);
        ClearError();
        const unsigned int cursor = manager.n_GetNextRecord(0, nullptr);
        ClearError();
        manager.v_UpdateRecord(cursor - 1, &data);
        ClearError();
        manager.v_UpdateResource(manager.n_GetResourceKeyAt(1), &data);
        ClearError();
        if (length == 60) manager.v_DeleteRecord(cursor - 1);
        ClearError();
        manager.v_DeleteResource(manager.n_GetResourceKeyAt(2));
        ClearError();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Files files;
    if (size > kLargest) return 0;
    const std::filesystem::path source = files.Path("source.rec");
    const std::filesystem::path target = files.Path("target.rec");
    std::ofstream(source, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    const CT_UString source_name(source.u16string().c_str());
    const CT_UString target_name(target.u16string().c_str());
    const CT_WinFile source_file(&source_name, 16384);
    const CT_WinFile target_file(&target_name, 16384);

    CT_RecordCheck check(&source_file);
    check.b_Check();
    ClearError();
    CT_RecordRepair repair(&source_file);
    repair.b_Repair(&target_file);
    if (CT_ErrorManager::spco_Get()->b_IsSetError()) {
        ClearError();
    } else {
        CT_RecordCheck repaired(&target_file);
        Require(repaired.b_Check());
        Require(repaired.n_GetRecordCount() == repair.n_GetMovedCount());
    }
    const std::string before = Content(source);
    Require(before == std::string(reinterpret_cast<const char*>(data), size));

    for (const auto mapping : {CT_RecordManager::kMapNever, CT_RecordManager::kMapAlways}) {
        CT_RecordManager manager(&source_file);
        manager.v_Open(CT_RecordManager::kModeReadAndCheck, mapping);
        ClearError();
        if (manager.b_IsOpen()) Read(manager);
        if (manager.b_IsOpen()) manager.v_Close(TRUE);
        ClearError();
    }
    Require(Content(source) == before);
    for (const auto mapping : {CT_RecordManager::kMapAlways, CT_RecordManager::kMapNever}) {
        std::ofstream(source, std::ios::binary)
            .write(before.data(), static_cast<std::streamsize>(size));
        CT_RecordManager manager(&source_file);
        manager.v_Open(CT_RecordManager::kModeReadWrite, mapping);
        ClearError();
        if (!manager.b_IsOpen()) continue;
        Change(manager);
        Read(manager);
        manager.v_Close(TRUE);
        ClearError();
    }
    return 0;
}
