// Any bytes as a record file: reading, changing, checking and repairing end without harm. The
// check, the repair, reading, and opening and closing a damaged file leave it as it was. A repaired
// file has nothing wrong with it, and a repair that says so has saved all that is there. Files lie
// in memory, and an input is mapped in one half of the jobs only: many small inputs find more than
// few.
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Database/RecordManager/RecordCheck.h"
#include "Foundation/Database/RecordManager/RecordManager.h"
#include "Foundation/Database/RecordManager/RecordRepair.h"

namespace {

constexpr std::size_t kLargest = 0x2000;
constexpr unsigned int kMostRecords = 2000;
constexpr std::size_t kDataEndAt = 80;
constexpr unsigned int kFarthest = 0x100000;  // changes behind it would make long files

void Require(bool holds) {
    if (!holds) std::abort();
}

void ClearError() {
    CT_ErrorManager::spco_Get()->v_ClearError();
}

// Two files of this process, gone at its end.
class Files {
public:
    Files() : folder_(Memory() / ("zelkor-fuzz-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directories(folder_);
    }
    ~Files() { std::filesystem::remove_all(folder_); }
    [[nodiscard]] std::filesystem::path Path(const char* name) const { return folder_ / name; }

private:
    static std::filesystem::path Memory() {
        const std::filesystem::path memory = "/dev/shm";
        return std::filesystem::is_directory(memory) ? memory
                                                     : std::filesystem::temp_directory_path();
    }
    std::filesystem::path folder_;
};

// The input as a file that this process alone knows of.
class Source {
public:
    Source(const std::filesystem::path& path, std::string_view input)
        : descriptor_(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)), input_(input) {
        Restore();
    }
    ~Source() { ::close(descriptor_); }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    void Restore() const {
        Require(::ftruncate(descriptor_, static_cast<off_t>(input_.size())) == 0);
        Require(::pwrite(descriptor_, input_.data(), input_.size(), 0) ==
                static_cast<ssize_t>(input_.size()));
    }
    [[nodiscard]] bool IsUnchanged() const {
        char bytes[kLargest + 1];
        const ssize_t size = ::pread(descriptor_, bytes, sizeof bytes, 0);
        return size >= 0 && std::string_view(bytes, static_cast<std::size_t>(size)) == input_;
    }

private:
    int descriptor_;
    std::string_view input_;
};

// Gives the references that the robust enumeration shows.
std::vector<unsigned int> Read(CT_RecordManager& manager) {
    std::vector<unsigned int> seen;
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
        seen.push_back(cursor - 1);
    }
    ClearError();
    static_cast<void>(manager.b_IsCorrupt());
    ClearError();
    for (unsigned int i = 1; i <= 8; ++i) {
        manager.v_GetResource(manager.n_GetResourceKeyAt(i), &out);
        ClearError();
    }
    return seen;
}

// A repair that answers TRUE has moved every record that any look at the file shows.
void RequireAll(const std::vector<unsigned int>& seen, const CT_RecordCheck& check,
                const CT_RecordRepair& repair) {
    unsigned int position = 1;
    for (const unsigned int reference : seen) {  // both ascend
        while (repair.so_GetMovedAt(position).old_reference < reference &&
               position < repair.n_GetMovedCount()) {
            ++position;
        }
        Require(check.eo_GetOwnerAt(reference) != CT_RecordCheck::kHeadOwner ||
                repair.so_GetMovedAt(position).old_reference == reference);
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
    static const std::filesystem::path source_path = files.Path("source.rec");
    static const CT_UString source_name(source_path.u16string().c_str());
    static const CT_UString target_name(files.Path("target.rec").u16string().c_str());
    const CT_WinFile source_file(&source_name, 16384);
    const CT_WinFile target_file(&target_name, 16384);
    const Source source(source_path, {reinterpret_cast<const char*>(data), size});

    CT_RecordCheck check(&source_file);
    const bool sound = check.b_Check() != FALSE;
    ClearError();
    CT_RecordRepair repair(&source_file);
    const bool saved = repair.b_Repair(&target_file) != FALSE;
    if (CT_ErrorManager::spco_Get()->b_IsSetError()) {
        ClearError();
    } else {
        Require(saved || !sound);
        Require(saved == (repair.n_GetLostCount() == 0));
        CT_RecordCheck repaired(&target_file);
        Require(repaired.b_Check());
        Require(repaired.n_GetRecordCount() == repair.n_GetMovedCount());
    }
    constexpr CT_RecordManager::et_MappingMode kMappings[] = {CT_RecordManager::kMapNever,
                                                              CT_RecordManager::kMapAlways};
    // mapping a file for writing takes longer than all the rest, so few inputs do
    const unsigned int turn = size == 0 ? 0 : data[size - 1] % 32;
    CT_RecordManager manager(&source_file);
    manager.v_Open(CT_RecordManager::kModeReadAndCheck, kMappings[turn % 2]);
    ClearError();
    if (manager.b_IsOpen()) {
        const std::vector<unsigned int> seen = Read(manager);
        if (saved) Require(manager.n_GetRecordCount() <= repair.n_GetMovedCount());
        if (saved) RequireAll(seen, check, repair);
        manager.v_Close(TRUE);
        ClearError();
    }
    Require(source.IsUnchanged());
    manager.v_Open(CT_RecordManager::kModeReadWrite, kMappings[turn == 0]);
    if (manager.b_IsOpen()) manager.v_Close(TRUE);
    ClearError();
    Require(sound || source.IsUnchanged());
    const auto end =
        size < kDataEndAt + 4
            ? 0
            : zelkor::record_format::LoadU32(reinterpret_cast<const std::byte*>(data) + kDataEndAt);
    if (end > kFarthest) return 0;
    source.Restore();
    manager.v_Open(CT_RecordManager::kModeReadWrite, kMappings[turn == 1]);
    ClearError();
    if (!manager.b_IsOpen()) return 0;
    Change(manager);
    Read(manager);
    manager.v_Close(TRUE);
    ClearError();
    return 0;
}
