// zelkor records info, check, repair, compact, map: what a record file is made of.
#include <Foundation/Core/Error/ErrorManager.h>
#include <Foundation/Database/RecordManager/RecordCheck.h>
#include <Foundation/Database/RecordManager/RecordFormat.h>
#include <Foundation/Database/RecordManager/RecordRepair.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "Console.h"
#include "Records.h"

namespace zelkor {

namespace {

// By CT_RecordCheck::et_Owner.
struct Look {
    const char* name;
    char letter;
    const char* color;
};
constexpr std::array<Look, CT_RecordCheck::kOwners> kLooks{{
    {"leaked", '?', "#d62728"},
    {"heads", 'H', "#1f4e9c"},
    {"bodies", 'b', "#7fa8dc"},
    {"resources", 'R', "#8c5fb0"},
    {"free", '.', "#e4e4e4"},
    {"unfinished", '!', "#ff9f1c"},
}};

// Checks the file; the findings are in the object.
void Examine(CT_RecordCheck& check) {
    check.b_Check();
    ThrowRecordedError();
}

void Info(const std::string& name) {
    const NamedFile path(name);
    CT_RecordCheck check(path);
    Examine(check);
    RecordFile file(name);
    file.OpenToRead();
    namespace format = foundation::record_format;
    std::printf("records         %s\n", Grouped(file->n_GetRecordCount()).c_str());
    std::printf("resource keys   %u of %u\n", file->n_GetResourceCount(),
                file->n_GetResourceMaxCount());
    std::printf("block size      %u\n", file->n_GetBlockSize());
    std::printf("record header   %u\n", file->n_GetRecordHeaderSize());
    std::printf("data end        %s\n", Grouped(file->n_GetSize()).c_str());
    std::printf("references      %u to %u\n", file->n_GetMinReference(), file->n_GetMaxReference());
    file.Close();
    std::ifstream bytes(name, std::ios::binary);
    format::HeaderImage header{};
    bytes.read(reinterpret_cast<char*>(header.data()), format::kHeaderSize);
    const auto field = [&](unsigned int at) { return format::LoadU32(header.data() + at); };
    std::printf("changes         header %u, resources %u, free space %u\n",
                field(format::kHeaderCounterAt), field(format::kResourceCounterAt),
                field(format::kFreeCounterAt));
    std::printf("free table      %u of %u\n", field(format::kFreeCountAt),
                field(format::kCapacityAt));
    const double all = std::max(1u, check.n_GetBlockCount());
    for (unsigned int i = 0; i < kLooks.size(); ++i) {
        const auto owner = static_cast<CT_RecordCheck::et_Owner>(i);
        const unsigned int blocks = check.n_GetBlockCount(owner);
        const auto size = std::uint64_t{blocks} * check.n_GetBlockSize();
        std::printf("%-15s %s bytes in %u runs, %.1f %%\n", kLooks[i].name, Grouped(size).c_str(),
                    check.n_GetRunCount(owner), 100 * blocks / all);
    }
    const unsigned int free = check.n_GetBlockCount(CT_RecordCheck::kFreeOwner);
    const unsigned int runs = check.n_GetRunCount(CT_RecordCheck::kFreeOwner);
    std::printf("fragmentation   %.1f %%\n", free < 2 ? 0.0 : 100.0 * (runs - 1) / (free - 1));
    if (check.n_GetFindingCount() != 0) {
        std::printf("findings        %u\n", check.n_GetFindingCount());
    }
}

void Check(const std::string& name) {
    const NamedFile path(name);
    CT_RecordCheck check(path);
    Examine(check);
    for (unsigned int i = 1; i <= check.n_GetListedCount(); ++i) {
        const auto finding = check.so_GetFindingAt(i);
        std::printf("%u\t%u\t%s (%u)\n", finding.offset, finding.size,
                    CT_RecordCheck::sqccz_GetText(finding.kind), finding.other);
    }
    const unsigned int count = check.n_GetFindingCount();
    if (count != 0) throw Failure(name + ": " + Grouped(count) + " findings");
    std::printf("%s: sound, %s records\n", name.c_str(), Grouped(check.n_GetRecordCount()).c_str());
}

struct RepairOptions {
    std::string source, target;
    bool references = false;
    unsigned int block = 0, header = 0, resources = 0;
};

void Repair(const RepairOptions& options, bool sound_only) {
    const NamedFile source(options.source);
    const NamedFile target(options.target);
    if (sound_only) {
        CT_RecordCheck check(source);
        Examine(check);
        if (check.n_GetFindingCount() != 0) {
            throw Failure(options.source + ": damaged; see check and repair");
        }
    }
    CT_RecordRepair repair(source);
    if (options.block != 0) repair.v_SetLayout(options.header, options.block, options.resources);
    repair.b_Repair(target);
    ThrowRecordedError();
    for (unsigned int i = 1; options.references && i <= repair.n_GetMovedCount(); ++i) {
        const auto moved = repair.so_GetMovedAt(i);
        std::printf("%u\t%u\n", moved.old_reference, moved.new_reference);
    }
    unsigned int lost = 0;
    for (unsigned int i = 1; i <= repair.n_GetLostCount(); ++i) {
        const auto loss = repair.so_GetLostAt(i);
        lost += loss.copied ? 0 : loss.count;
        const bool records = loss.kind == CT_RecordCheck::kRecordCount;
        if (records || loss.kind == CT_RecordCheck::kResourceCount) {
            std::fprintf(stderr, "zelkor: missing: %s %s that the header counts\n",
                         Grouped(loss.count).c_str(), records ? "records" : "resources");
            continue;
        }
        const bool record = loss.reference != 0;
        std::fprintf(stderr, "zelkor: %s %s %u: %s\n",
                     loss.copied ? "doubtful:" : "lost:", record ? "record" : "resource",
                     record ? loss.reference : loss.key, CT_RecordCheck::sqccz_GetText(loss.kind));
    }
    std::fprintf(stderr, "%s: %s records\n", options.target.c_str(),
                 Grouped(repair.n_GetMovedCount()).c_str());
    if (lost != 0) throw Failure(Grouped(lost) + " records or resources were lost");
}

// ---- The picture --------------------------------------------------------------------------------

constexpr unsigned int kColumns = 64;
constexpr unsigned int kMostCells = kColumns * 32;

// The owners of equally long stretches of the file: the one that has most of each.
std::vector<CT_RecordCheck::et_Owner> Cells(const CT_RecordCheck& check, unsigned int* blocks) {
    const unsigned int count = check.n_GetBlockCount();
    *blocks = std::max(1u, (count + kMostCells - 1) / kMostCells);
    std::vector<CT_RecordCheck::et_Owner> cells;
    for (unsigned int first = 0; first < count; first += *blocks) {
        std::array<unsigned int, CT_RecordCheck::kOwners> shares{};
        const unsigned int last = std::min(count, first + *blocks);
        for (unsigned int i = first; i < last; ++i) {
            ++shares[check.eo_GetOwnerAt(check.n_GetMinReference() + i)];
        }
        cells.push_back(static_cast<CT_RecordCheck::et_Owner>(std::ranges::max_element(shares) -
                                                              shares.begin()));
    }
    return cells;
}

void PrintMap(const std::vector<CT_RecordCheck::et_Owner>& cells, unsigned int first,
              unsigned int blocks) {
    for (std::size_t row = 0; row < cells.size(); row += kColumns) {
        std::printf("%10u  ", first + static_cast<unsigned int>(row) * blocks);
        for (std::size_t i = row; i < std::min(cells.size(), row + kColumns); ++i) {
            std::putchar(kLooks[cells[i]].letter);
        }
        std::putchar('\n');
    }
    for (const Look& look : kLooks) std::printf("%c %s  ", look.letter, look.name);
    std::printf("(%u block%s a letter)\n", blocks, blocks == 1 ? "" : "s");
}

void DrawMap(const std::vector<CT_RecordCheck::et_Owner>& cells, const std::string& name) {
    constexpr unsigned int kCell = 12;
    const auto rows = static_cast<unsigned int>((cells.size() + kColumns - 1) / kColumns);
    std::ofstream file(name);
    file << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << kColumns * kCell
         << "\" height=\"" << rows * kCell + 30
         << "\" font-family=\"sans-serif\" font-size=\"12\">\n";
    for (std::size_t i = 0; i < cells.size(); ++i) {
        file << "<rect x=\"" << i % kColumns * kCell << "\" y=\"" << i / kColumns * kCell
             << "\" width=\"" << kCell - 1 << "\" height=\"" << kCell - 1 << "\" fill=\""
             << kLooks[cells[i]].color << "\"/>\n";
    }
    for (unsigned int i = 0; i < kLooks.size(); ++i) {
        const unsigned int x = i * 120;
        file << "<rect x=\"" << x << "\" y=\"" << rows * kCell + 10
             << "\" width=\"12\" height=\"12\" fill=\"" << kLooks[i].color << "\"/><text x=\""
             << x + 18 << "\" y=\"" << rows * kCell + 20 << "\">" << kLooks[i].name << "</text>\n";
    }
    file << "</svg>\n";
    if (!file.flush()) throw Failure(name + ": cannot be written");
}

void Map(const std::string& name, const std::string& svg) {
    const NamedFile path(name);
    CT_RecordCheck check(path);
    Examine(check);
    if (check.n_GetBlockCount() == 0) throw Failure(name + ": no blocks to show");
    unsigned int blocks = 1;
    const auto cells = Cells(check, &blocks);
    if (svg.empty()) {
        PrintMap(cells, check.n_GetMinReference(), blocks);
    } else {
        DrawMap(cells, svg);
    }
}

void AddOnFile(CLI::App& parent, const char* verb, const char* text,
               void (*run)(const std::string&)) {
    CLI::App* command = parent.add_subcommand(verb, text);
    auto name = std::make_shared<std::string>();
    command->add_option("FILE", *name, "Record file")->required();
    command->callback([name, run] { run(*name); });
}

}  // namespace

void AddRecordInspection(CLI::App& parent) {
    AddOnFile(parent, "info", "Print counts, sizes and how the space is used.", Info);
    AddOnFile(parent, "check",
              "Print OFFSET<TAB>SIZE<TAB>FINDING of all that is wrong; status 1 if anything is.",
              Check);
    for (const bool compact : {false, true}) {
        CLI::App* command = parent.add_subcommand(
            compact ? "compact" : "repair",
            compact ? "Write a sound file anew, without its free space; references change."
                    : "Write what can be read of a damaged file into a new one.");
        auto options = std::make_shared<RepairOptions>();
        command->add_option("FILE", options->source, "Record file")->required();
        command->add_option("OUT", options->target, "Record file to make or replace")->required();
        command->add_flag("--references", options->references,
                          "Print OLD<TAB>NEW reference of every record");
        if (!compact) {
            command->add_option("--block", options->block, "Block size, when the header is lost");
            command->add_option("--header", options->header, "Record header size, with --block");
            command->add_option("--resources", options->resources, "Resource room, with --block");
        }
        command->callback([options, compact] { Repair(*options, compact); });
    }
    CLI::App* map = parent.add_subcommand("map", "Show the file block by block.");
    auto name = std::make_shared<std::string>();
    auto svg = std::make_shared<std::string>();
    map->add_option("FILE", *name, "Record file")->required();
    map->add_option("--svg", *svg, "Write a picture to this file instead");
    map->callback([name, svg] { Map(*name, *svg); });
}

}  // namespace zelkor
