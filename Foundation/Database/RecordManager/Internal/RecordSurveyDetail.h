// RecordSurvey: what a record file holds, as CT_RecordCheck and CT_RecordRepair see it; never
// included by callers.
//
// Every offset is checked against the file's true size.
#ifndef FOUNDATION_DATABASE_RECORDMANAGER_INTERNAL_RECORDSURVEYDETAIL_H
#define FOUNDATION_DATABASE_RECORDMANAGER_INTERNAL_RECORDSURVEYDETAIL_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Database/RecordManager/RecordCheck.h"
#include "Foundation/Database/RecordManager/RecordFormat.h"
#include "Foundation/Platform/Memory.h"

namespace zelkor::detail {

// The file, or for null one without a name, which cannot be opened.
inline const CT_WinFile* OrNone(const CT_WinFile* file, const CT_WinFile& none = CT_WinFile()) {
    return file != nullptr ? file : &none;
}

// The file's bytes.
struct RecordBytes {
    const std::byte* bytes = nullptr;
    std::uint64_t size = 0;

    [[nodiscard]] bool Has(std::uint64_t offset, std::uint64_t count) const {
        return offset + count <= size;
    }
    [[nodiscard]] const std::byte* At(std::uint64_t offset) const { return bytes + offset; }
    // 0 beyond the end of the file.
    [[nodiscard]] std::uint32_t Word(std::uint64_t offset) const {
        return Has(offset, record_format::kWord) ? record_format::LoadU32(At(offset)) : 0;
    }
};

// A file opened for reading and mapped.
class RecordImage : public CT_WinFile {
public:
    explicit RecordImage(const CT_WinFile& file) : CT_WinFile(&file) {}

    // False with the error set. An empty file opens too.
    bool Open();
    [[nodiscard]] RecordBytes Bytes() const {
        return {static_cast<const std::byte*>(pv_GetMapping()), MappedSize()};
    }
};

struct RecordLayout {
    std::uint32_t block_size = 0;
    std::uint32_t record_header_size = 0;
    std::uint32_t capacity = record_format::kCapacity;
    std::uint32_t resource_max_count = 0;
    std::uint32_t data_end = 0;
};

struct RecordSurvey {
    template <typename T>
    using List = std::vector<T, platform::Allocator<T>>;
    using Kind = CT_RecordCheck::et_Finding;
    using Owner = CT_RecordCheck::et_Owner;

    struct Record {
        std::uint32_t head;
        std::uint32_t body;    // 0: none
        std::uint32_t length;  // of the body, with its length word
        bool readable;
        bool hidden;  // where a scan does not look
        bool shared;  // its body belongs to something else too
    };
    struct Resource {
        std::uint32_t key;
        std::uint32_t offset;
        std::uint32_t length;
        bool readable;
        bool shared;
    };
    struct Run {
        std::uint64_t offset;
        std::uint64_t size;
    };

    // Fills all of this from the file. A layout given beforehand replaces the header's.
    void Take(const RecordBytes& file, const RecordLayout* given);

    void Report(Kind kind, std::uint64_t offset, std::uint64_t size = 0, std::uint32_t other = 0);
    [[nodiscard]] std::uint64_t BlockOffset(std::size_t index) const {
        return start + index * std::uint64_t{layout.block_size};
    }
    // Records and resources that can be read and belong to nothing else.
    [[nodiscard]] std::size_t Found() const;

    RecordLayout layout;
    bool usable = false;         // the layout is one that blocks can be found with
    bool header = false;         // stamp and format number are right: so the counts mean something
    std::uint64_t start = 0;     // of the data area
    std::uint64_t data_end = 0;  // where a scan stops: the data end as far as the file holds it
    std::uint64_t end = 0;       // of what was looked at: the end of the file, in whole blocks
    std::uint64_t file_size = 0;
    List<CT_RecordCheck::st_Finding> findings;
    unsigned int finding_count = 0;
    List<Owner> owners;    // by block of the data area
    List<Record> records;  // in the order of their heads
    List<Resource> resources;
    std::uint32_t missing_records = 0;  // that the header counts and nobody found
    std::uint32_t missing_resources = 0;
    List<Run> leaks;  // blocks that nothing owns and that hold something
};

}  // namespace zelkor::detail

#endif
