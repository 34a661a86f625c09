// zelkor records map: who owns the blocks of a record file, as letters or as a picture.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

#include "Console.h"
#include "OutputFile.h"
#include "Records.h"
#include "RecordsChart.h"

namespace zelkor::cli {

CT_RecordCheck::et_Owner Chart::Cell::Shown() const {
    for (std::size_t i = 0; i < kLooks.size(); ++i) {
        if (kLooks[i].damage && blocks[i] != 0) return static_cast<CT_RecordCheck::et_Owner>(i);
    }
    return static_cast<CT_RecordCheck::et_Owner>(std::ranges::max_element(blocks) - blocks.begin());
}

Chart::Chart(const CT_RecordCheck& check, std::string file_name)
    : name(std::move(file_name)),
      first(check.n_GetMinReference()),
      block_size(check.n_GetBlockSize()),
      block_count(check.n_GetBlockCount()),
      record_count(check.n_GetRecordCount()),
      finding_count(check.n_GetFindingCount()) {
    while (blocks_per_cell * kColumns * kMostRows < block_count) blocks_per_cell *= 2;
    cells.resize((block_count + blocks_per_cell - 1) / blocks_per_cell);
    auto before = static_cast<CT_RecordCheck::et_Owner>(CT_RecordCheck::kOwners);
    for (std::uint64_t i = 0; i < block_count; ++i) {
        const auto owner = check.eo_GetOwnerAt(static_cast<unsigned int>(first + i));
        ++cells[i / blocks_per_cell].blocks[owner];
        ++totals[owner].blocks;
        if (std::exchange(before, owner) != owner) ++totals[owner].runs;
    }
    for (unsigned int i = 1; i <= check.n_GetListedCount(); ++i) {
        findings.push_back(check.so_GetFindingAt(i));
        const auto& finding = findings.back();
        // these two are owners of their own
        if (finding.kind == CT_RecordCheck::kLeak || finding.kind == CT_RecordCheck::kUnfinished) {
            continue;
        }
        const std::uint64_t block = finding.offset / block_size;
        if (block >= first && block - first < block_count) {
            cells[(block - first) / blocks_per_cell].damaged = true;
        }
    }
}

namespace {

std::string Letters(const Chart& chart) {
    std::string text;
    for (std::size_t i = 0; i < chart.cells.size(); ++i) {
        if (i % Chart::kColumns == 0) {
            char label[24];
            std::snprintf(label, sizeof label, "%s%10llu  ", i == 0 ? "" : "\n",
                          static_cast<unsigned long long>(chart.ReferenceOf(i)));
            text += label;
        }
        const Chart::Cell& cell = chart.cells[i];
        text += cell.damaged ? kDamagedLetter : kLooks[cell.Shown()].letter;
    }
    text += '\n';
    for (const Look& look : kLooks) text += std::string(1, look.letter) + ' ' + look.name + "  ";
    return text + kDamagedLetter + " damaged\n" +
           Counted(chart.blocks_per_cell, "block", "blocks") + " a letter, " +
           Counted(chart.blocks_per_cell * chart.block_size, "byte", "bytes") + '\n';
}

struct MapOptions {
    std::string file;
    std::string svg;
    bool force = false;
};

void Map(const MapOptions& options) {
    if (!options.svg.empty() && !options.force) MustBeNew(options.svg);
    const NamedFile path(options.file);
    CT_RecordCheck check(path);
    check.b_Check();
    ThrowRecordedError();
    if (check.n_GetBlockCount() == 0) {
        throw Failure(Printable(options.file) + ": no blocks to show" +
                      (check.n_GetFindingCount() == 0 ? "" : "; see zelkor records check"));
    }
    const Chart chart(check, options.file);
    if (options.svg.empty()) {
        WriteOut(Letters(chart));
    } else {
        OutputFile output(options.svg);
        output.Write(DrawChart(chart));
        output.Finish();
    }
}

}  // namespace

void AddRecordMap(CLI::App& parent) {
    CLI::App* map = parent.add_subcommand("map", "Show the file block by block.");
    auto options = std::make_shared<MapOptions>();
    map->add_option("FILE", options->file, "Record file")->required();
    map->add_option("--svg", options->svg, "Make a picture of it instead (-: standard output)");
    map->add_flag("--force", options->force, "Replace a picture, or what else has its name");
    map->callback([options] { Map(*options); });
}

}  // namespace zelkor::cli
