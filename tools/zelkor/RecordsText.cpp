// zelkor records export and import: a record file as lines of text.
//
//   zelkor-records 1 16 64 100            format, record header size, block size, resource maximum
//   record REF<TAB>BYTES                  escaped as in a list
//   resource KEY<TAB>BYTES
#include <Foundation/Database/RecordManager/RecordFormat.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <memory>
#include <utility>
#include <vector>

#include "Console.h"
#include "RecordLines.h"
#include "Records.h"

namespace zelkor::cli {

namespace {

namespace format = zelkor::record_format;

constexpr unsigned int kFormat = 1;
constexpr std::uint64_t kLargestFile = 0xFFFFFFFF;

// ---- Export -------------------------------------------------------------------------------------

void WriteLine(const char* kind, unsigned int number, std::string_view bytes) {
    std::printf("%s %u\t", kind, number);
    WriteOut(Escape(bytes));
    std::putchar('\n');
}

void Export(const std::string& name) {
    RecordFile file(name);
    file.OpenToRead();
    std::printf("zelkor-records %u %u %u %u\n", kFormat, file->n_GetRecordHeaderSize(),
                file->n_GetBlockSize(), file->n_GetResourceMaxCount());
    const std::string records = ReadRecords(name, file, [](unsigned int reference, auto bytes) {
        WriteLine("record", reference, bytes);
    });
    const std::string resources = ReadResources(
        name, file, [](unsigned int key, auto bytes) { WriteLine("resource", key, bytes); });
    if (!records.empty()) throw Failure(records);
    if (!resources.empty()) throw Failure(resources);
}

// ---- Import -------------------------------------------------------------------------------------

struct Sizes {
    unsigned int header = 0, block = 0, resources = 0;
};

struct Item {
    bool record;
    unsigned int number;  // reference or key
    std::string_view text;
};

// The number that the text is, all of it; nothing else.
bool ReadNumber(std::string_view text, unsigned int* number) {
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), *number);
    return error == std::errc() && stop == text.data() + text.size();
}

Item Parse(const Lines& lines, std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);  // of an editor: an exported one is escaped
    const std::size_t tab = line.find('\t');
    Item item{line.starts_with("record "), 0, {}};
    const std::size_t start = item.record ? 7 : 9;
    if (tab != std::string_view::npos && (item.record || line.starts_with("resource ")) &&
        ReadNumber(line.substr(start, tab - start), &item.number)) {
        item.text = line.substr(tab + 1);
        return item;
    }
    throw lines.Wrong("not a record or resource");
}

std::string BytesOf(const Lines& lines, const Item& item) {
    try {
        return Unescape(item.text);
    } catch (const Failure& failure) {
        throw lines.Wrong(failure.what());
    }
}

Sizes ParseFirst(Lines& lines) {
    Sizes sizes;
    unsigned int format = 0;
    std::string_view line;
    constexpr std::string_view kName = "zelkor-records";
    bool good = lines.Next(&line) && line.starts_with(kName);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (good) line.remove_prefix(kName.size());
    for (unsigned int* number : {&format, &sizes.header, &sizes.block, &sizes.resources}) {
        good = good && line.starts_with(' ');
        if (!good) break;
        line.remove_prefix(1);
        const std::size_t end = std::min(line.find(' '), line.size());
        good = ReadNumber(line.substr(0, end), number);
        line.remove_prefix(end);
    }
    if (!good || !line.empty()) throw lines.Wrong("not an exported record file");
    if (format != kFormat) throw lines.Wrong("exported in another format");
    try {
        MustFit(sizes.header, sizes.block, sizes.resources, 1);
    } catch (const Failure& failure) {
        throw lines.Wrong(failure.what());
    }
    return sizes;
}

// Where records are to lie when they keep their references.
class Places {
public:
    explicit Places(const Sizes& sizes)
        : block_(sizes.block),
          head_(Round(std::uint64_t{sizes.header} + format::kHeadDataAt)),
          end_(format::DataStart(format::kCapacity, sizes.resources, sizes.block)) {}

    // The bytes between the records so far and this one's head, which is then the last one; false
    // when no file can be had that way: references that do not ascend, or too much in between.
    bool Take(unsigned int reference, std::uint64_t* gap) {
        constexpr std::uint64_t kWidest = 64 << 20;
        const std::uint64_t at = std::uint64_t{reference} * block_;
        if (at < end_ || at - end_ > kWidest) return false;
        *gap = at - end_;
        const bool good = !first_ || *gap == 0 || *gap >= head_;
        first_ = false;
        end_ = at + head_;
        return good;
    }
    [[nodiscard]] std::uint64_t HeadSize() const { return head_; }

private:
    [[nodiscard]] std::uint64_t Round(std::uint64_t size) const {
        return format::Round(size, block_);
    }

    unsigned int block_;
    std::uint64_t head_, end_;
    bool first_ = true;
};

// Every number once: throws with the line of the second one.
class Numbers {
public:
    explicit Numbers(const char* kind) : kind_(kind) {}

    void Add(unsigned int number, unsigned int line) { numbers_.emplace_back(number, line); }
    // The line of the one that comes after so many; 0 when there is none. Before MustDiffer alone.
    [[nodiscard]] unsigned int LineAfter(std::size_t count) const {
        return count < numbers_.size() ? numbers_[count].second : 0;
    }
    void MustDiffer(const Lines& lines) {
        std::ranges::sort(numbers_);
        const auto twice = std::ranges::adjacent_find(
            numbers_, [](const auto& a, const auto& b) { return a.first == b.first; });
        if (twice == numbers_.end()) return;
        throw lines.Wrong(std::string(kind_) + ' ' + std::to_string(twice->first) +
                              " is there twice, first in line " + std::to_string(twice->second),
                          (twice + 1)->second);
    }

private:
    const char* kind_;
    std::vector<std::pair<unsigned int, unsigned int>> numbers_;  // with their lines
};

// Looks at every line before anything is written. 0 when the records can keep their references,
// else the first line whose reference they cannot.
unsigned int Judge(Lines& lines, const Sizes& sizes) {
    Places places(sizes);
    unsigned int moved = 0;
    std::uint64_t gap = 0;
    std::uint64_t end = format::DataStart(format::kCapacity, sizes.resources, sizes.block);
    Numbers references("record");
    Numbers keys("resource");
    for (std::string_view line; lines.Next(&line);) {
        const Item item = Parse(lines, line);
        const std::uint64_t size = BytesOf(lines, item).size();
        (item.record ? references : keys).Add(item.number, lines.Number());
        if (item.record) {
            if (!places.Take(item.number, &gap) && moved == 0) moved = lines.Number();
            end += places.HeadSize();
        }
        const std::uint64_t apart = item.record ? sizes.header : 0;
        if (size > apart || !item.record) {
            end += format::Round(size - apart + format::kWord, sizes.block);
        }
        if (end > kLargestFile) throw lines.Wrong("the file would have 4 GiB or more");
    }
    const unsigned int beyond = keys.LineAfter(sizes.resources);
    references.MustDiffer(lines);
    keys.MustDiffer(lines);
    if (beyond != 0) throw lines.Wrong("the first line has no room for more resources", beyond);
    return moved;
}

// Puts an empty head at every reference. What lies in between becomes, for now, the body of the
// head before it, or at the start a record of its own.
void PlaceHeads(Lines& lines, const Sizes& sizes, RecordFile& file) {
    Places places(sizes);
    unsigned int before = 0;
    unsigned int filler = 0;
    const CT_Buffer none;
    for (std::string_view line; lines.Next(&line);) {
        const Item item = Parse(lines, line);
        std::uint64_t gap = 0;
        if (!item.record || !places.Take(item.number, &gap)) continue;
        if (gap != 0) {
            const std::uint64_t body = before == 0 ? gap - places.HeadSize() : gap;
            const std::string space(body == 0 ? 0 : sizes.header + body - 4, '\0');
            const CT_Buffer data = ToBuffer(space);
            if (before == 0) {
                filler = file->n_AddRecord(&data);
            } else {
                file->v_UpdateRecord(before, &data);
            }
        }
        before = file->n_AddRecord(&none);
        ThrowRecordedError("record", item.number);
    }
    if (filler != 0) file->v_DeleteRecord(filler);
    ThrowRecordedError();
}

struct ImportOptions {
    std::string file;
    std::string input = "-";
    bool references = false;
    bool lossy = false;
    bool force = false;
};

void Fill(Lines& lines, RecordFile& file, bool kept, bool references) {
    Progress progress(lines.Name(), lines.Size());
    for (std::string_view line; lines.Next(&line);) {
        const Item item = Parse(lines, line);
        const std::string bytes = BytesOf(lines, item);
        const CT_Buffer data = item.record ? file.Padded(bytes) : ToBuffer(bytes);
        if (!item.record) {
            file->v_AddResource(item.number, &data);
        } else if (kept) {
            file->v_UpdateRecord(item.number, &data);
        }
        const unsigned int now = item.record && !kept ? file->n_AddRecord(&data) : item.number;
        ThrowRecordedError(item.record ? "record" : "resource", item.number);
        if (references && item.record) std::printf("%u\t%u\n", item.number, now);
        progress.Advance(lines.Done());
    }
}

void Import(const ImportOptions& options) {
    if (!options.force) MustBeRecordFile(options.file);
    Lines lines(options.input, Lines::kAgain);
    const Sizes sizes = ParseFirst(lines);
    const unsigned int moved = Judge(lines, sizes);
    if (moved != 0 && !options.references && !options.lossy) {
        throw lines.Wrong(
            "no record can be put where this reference has it; --references prints "
            "new ones for all, --lossy lets them change",
            moved);
    }
    Replace(options.file, [&](const CT_UString& path) {
        const auto again = [&lines] {
            lines.Rewind();
            ParseFirst(lines);
        };
        RecordFile file(path);
        file->v_Create(sizes.header, sizes.block, sizes.resources);
        ThrowRecordedError();
        if (moved == 0) {
            again();
            PlaceHeads(lines, sizes, file);
        } else {
            std::fprintf(stderr, "%s: the records have new references\n",
                         Printable(options.file).c_str());
        }
        again();
        Fill(lines, file, moved == 0, options.references);
        file.Close();
    });
}

}  // namespace

void AddRecordText(CLI::App& parent) {
    CLI::App* out = parent.add_subcommand("export", "Print all of a record file as lines of text.");
    auto source = std::make_shared<std::string>();
    out->add_option("FILE", *source, "Record file")->required();
    out->callback([source] { Export(*source); });
    CLI::App* in = parent.add_subcommand(
        "import", "Make a record file of exported lines; records keep their references.");
    auto options = std::make_shared<ImportOptions>();
    in->add_option("FILE", options->file, "Record file to make or replace")->required();
    in->add_option("INPUT", options->input, "Exported lines (default: -)");
    in->add_flag("--references", options->references,
                 "Print OLD<TAB>NEW reference of every record");
    in->add_flag("--lossy", options->lossy, "Let records have new references where need be");
    in->add_flag("--force", options->force, "Replace a file that is no record file");
    in->callback([options] { Import(*options); });
}

}  // namespace zelkor::cli
