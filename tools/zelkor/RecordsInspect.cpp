// zelkor records info, check, repair, compact: what a record file is made of.
#include <Foundation/Core/Error/ErrorManager.h>
#include <Foundation/Database/RecordManager/RecordCheck.h>
#include <Foundation/Database/RecordManager/RecordFormat.h>
#include <Foundation/Database/RecordManager/RecordRepair.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Console.h"
#include "Records.h"
#include "RecordsChart.h"

namespace zelkor::cli {

namespace {

namespace format = zelkor::record_format;

// Checks the file; the findings are in the object.
void Examine(CT_RecordCheck& check) {
    check.b_Check();
    ThrowRecordedError();
}

// What the header says, whether a record manager would open the file or not, and who owns what.
void Info(const std::string& name) {
    const NamedFile path(name);
    CT_RecordCheck check(path);
    Examine(check);
    format::HeaderImage header{};
    if (!ReadHeader(name, &header)) throw Failure(Printable(name) + ": is no record file");
    const auto field = [&](unsigned int at) { return format::LoadU32(header.data() + at); };
    std::printf("records         %s\n", Grouped(field(format::kRecordCountAt)).c_str());
    std::printf("resource keys   %u of %u\n", field(format::kResourceCountAt),
                field(format::kResourceMaxCountAt));
    std::printf("block size      %u\n", field(format::kBlockSizeAt));
    std::printf("record header   %u\n", field(format::kRecordHeaderSizeAt));
    std::printf("data end        %s\n", Grouped(field(format::kDataEndAt)).c_str());
    std::printf("references      %u to %u\n", check.n_GetMinReference(),
                field(format::kDataEndAt) / std::max(1u, field(format::kBlockSizeAt)));
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
        std::printf(
            "%-15s %s in %s, %.1f %%\n", kLooks[i].name, Counted(size, "byte", "bytes").c_str(),
            Counted(check.n_GetRunCount(owner), "run", "runs").c_str(), 100.0 * blocks / all);
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
    if (count != 0) throw Failure(Printable(name) + ": " + Counted(count, "finding", "findings"));
    std::printf("%s: sound, %s\n", Printable(name).c_str(),
                Counted(check.n_GetRecordCount(), "record", "records").c_str());
}

struct RepairOptions {
    std::string source, target;
    bool references = false;
    bool force = false;
    unsigned int block = 0, header = 0, resources = 0;
};

// "record 21", "3 records"; what a loss is about.
std::string Subject(const CT_RecordRepair::st_Lost& loss) {
    switch (loss.kind) {
        case CT_RecordCheck::kRecordCount:
            return Counted(loss.count, "record", "records") + " that the header counts";
        case CT_RecordCheck::kResourceCount:
            return Counted(loss.count, "resource", "resources") + " that the header counts";
        case CT_RecordCheck::kLeak:
            return Counted(loss.count, "block", "blocks") + " from reference " +
                   std::to_string(loss.reference);
        case CT_RecordCheck::kStamp:
            return "what the header counted";
        default:
            return loss.reference != 0 ? "record " + std::to_string(loss.reference)
                                       : "resource " + std::to_string(loss.key);
    }
}

// Tells what is lost or doubtful; how many records and resources are lost.
std::uint64_t TellLosses(const CT_RecordRepair& repair) {
    std::uint64_t lost = 0;
    for (unsigned int i = 1; i <= repair.n_GetLostCount(); ++i) {
        const auto loss = repair.so_GetLostAt(i);
        lost += loss.copied ? 0 : loss.count;
        const bool missing = loss.kind == CT_RecordCheck::kRecordCount ||
                             loss.kind == CT_RecordCheck::kResourceCount;
        const char* const fate = missing ? "missing" : loss.copied ? "doubtful" : "lost";
        std::fprintf(stderr, "zelkor: %s: %s%s%s\n", fate, Subject(loss).c_str(),
                     missing ? "" : ": ", missing ? "" : CT_RecordCheck::sqccz_GetText(loss.kind));
    }
    return lost;
}

void Repair(const RepairOptions& options, bool sound_only) {
    const NamedFile source(options.source);
    if (sound_only) {
        CT_RecordCheck check(source);
        Examine(check);
        if (check.n_GetFindingCount() != 0) {
            throw Failure(Printable(options.source) + ": damaged; see check and repair");
        }
    } else if (SameFile(options.source, options.target)) {
        // what cannot be repaired today may be read by other means
        throw Failure(Printable(options.target) + ": a repaired file needs a name of its own", 2);
    }
    if (!options.force) MustBeRecordFile(options.target);
    CT_RecordRepair repair(source);
    if (options.block != 0) repair.v_SetLayout(options.header, options.block, options.resources);
    bool all = false;
    Replace(options.target, [&](const CT_UString& path) {
        all = repair.b_Repair(NamedFile(path)) != FALSE;
        ThrowRecordedError();
    });
    for (unsigned int i = 1; options.references && i <= repair.n_GetMovedCount(); ++i) {
        const auto moved = repair.so_GetMovedAt(i);
        std::printf("%u\t%u\n", moved.old_reference, moved.new_reference);
    }
    const std::uint64_t lost = TellLosses(repair);
    std::fprintf(stderr, "%s: %s\n", Printable(options.target).c_str(),
                 Counted(repair.n_GetMovedCount(), "record", "records").c_str());
    if (lost != 0)
        throw Failure(
            Counted(lost, "record or resource was lost", "records or resources were lost"));
    if (!all) throw Failure("not all is certain to be what it was");
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
        command->add_flag("--force", options->force, "Replace a file that is no record file");
        if (!compact) {
            command->add_option("--block", options->block, "Block size, when the header is lost");
            command->add_option("--header", options->header, "Record header size, with --block");
            command->add_option("--resources", options->resources, "Resource room, with --block");
        }
        command->callback([options, compact] { Repair(*options, compact); });
    }
}

}  // namespace zelkor::cli
