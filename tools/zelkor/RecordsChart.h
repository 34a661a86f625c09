// What zelkor records map shows: the data area of a record file as cells of equally many blocks.
#ifndef TOOLS_ZELKOR_RECORDSCHART_H
#define TOOLS_ZELKOR_RECORDSCHART_H

#include <Foundation/Database/RecordManager/RecordCheck.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zelkor::cli {

// How blocks are shown, by CT_RecordCheck::et_Owner.
struct Look {
    const char* name;
    const char* text;  // in the picture
    char letter;
    const char* color;
    bool damage;
};
inline constexpr std::array<Look, CT_RecordCheck::kOwners> kLooks{{
    {"leaked", "leaked: nothing owns it", '?', "#e4572e", true},
    {"heads", "record heads", 'H', "#1f4e9c", false},
    {"bodies", "record bodies", 'b', "#8fb4e3", false},
    {"resources", "resources", 'R', "#8c5fb0", false},
    {"free", "free space", '.', "#e7ebf0", false},
    {"unfinished", "unfinished records", '!', "#ffb000", true},
}};
inline constexpr char kDamagedLetter = 'X';

struct Chart {
    // Blocks of each owner in a stretch of the file, and whether something is wrong in one of them
    // that ownership does not show.
    struct Cell {
        std::array<std::uint32_t, CT_RecordCheck::kOwners> blocks{};
        bool damaged = false;

        // The owner that stands for all of them: damage wins, else who has most.
        [[nodiscard]] CT_RecordCheck::et_Owner Shown() const;
    };
    struct Total {
        std::uint64_t blocks = 0;
        std::uint32_t runs = 0;
    };
    static constexpr unsigned int kColumns = 64;
    static constexpr unsigned int kMostRows = 32;

    // Requires a check that has been made and found blocks.
    Chart(const CT_RecordCheck& check, std::string file_name);

    [[nodiscard]] std::uint64_t Rows() const { return (cells.size() + kColumns - 1) / kColumns; }
    // Of the first block of a cell.
    [[nodiscard]] std::uint64_t ReferenceOf(std::size_t cell) const {
        return first + std::uint64_t{cell} * blocks_per_cell;
    }

    std::string name;
    std::uint64_t first;  // reference of the first block
    std::uint64_t block_size;
    std::uint64_t block_count;
    std::uint64_t blocks_per_cell = 1;  // a power of two
    std::uint64_t record_count;
    std::uint64_t finding_count;
    std::vector<CT_RecordCheck::st_Finding> findings;
    std::array<Total, CT_RecordCheck::kOwners> totals{};
    std::vector<Cell> cells;
};

// The chart as an SVG image.
[[nodiscard]] std::string DrawChart(const Chart& chart);

}  // namespace zelkor::cli

#endif
