// zelkor records export and import: a record file as lines of text.
//
//   zelkor-records 1 16 64 100            format, record header size, block size, resource maximum
//   record REF<TAB>BYTES                  escaped as in a list
//   resource KEY<TAB>BYTES
#include <Foundation/Database/RecordManager/RecordFormat.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "Console.h"
#include "Records.h"

namespace zelkor {

namespace {

constexpr int kFormat = 1;

// ---- Export -------------------------------------------------------------------------------------

void WriteLine(const char* kind, unsigned int number, const CT_Buffer& data) {
    std::printf("%s %u\t", kind, number);
    WriteOut(Escape(ToBytes(data)));
    std::putchar('\n');
}

void Export(const std::string& name) {
    RecordFile file(name);
    file.OpenToRead();
    std::printf("zelkor-records %d %u %u %u\n", kFormat, file->n_GetRecordHeaderSize(),
                file->n_GetBlockSize(), file->n_GetResourceMaxCount());
    Progress progress(name, file->n_GetRecordCount());
    CT_Buffer data;
    unsigned int count = 0;
    for (unsigned int cursor = 0;;) {
        cursor = file->n_GetNextRecord(cursor, &data);
        ThrowRecordedError();
        if (cursor == 0) break;
        WriteLine("record", cursor - 1, data);
        if ((++count & 0xFFF) == 0) progress.Advance(count);
    }
    for (unsigned int i = 1; i <= file->n_GetResourceCount(); ++i) {
        const unsigned int key = file->n_GetResourceKeyAt(i);
        file->v_GetResource(key, &data);
        ThrowRecordedError();
        WriteLine("resource", key, data);
    }
    if (count != file->n_GetRecordCount()) {
        throw Failure(name + ": " + Grouped(count) + " of " + Grouped(file->n_GetRecordCount()) +
                      " records could be read; see check and repair");
    }
}

// ---- Import -------------------------------------------------------------------------------------

// An exported text, which can be read more than once: the standard input goes to a file first.
class Lines {
public:
    explicit Lines(const std::string& name)
        : name_(name), file_(name == "-" ? std::tmpfile() : std::fopen(name.c_str(), "rb")) {
        if (file_ == nullptr) throw Failure(name + ": cannot be opened");
        if (name == "-") TakeInput();
        std::fseek(file_.get(), 0, SEEK_END);
        size_ = static_cast<std::uint64_t>(std::ftell(file_.get()));
        Rewind();
    }
    ~Lines() { std::free(line_); }
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    void Rewind() {
        std::rewind(file_.get());
        number_ = 0;
        done_ = 0;
    }
    // The next line without its end, good until the one after it; false at the end.
    bool Next(std::string_view* line) {
        const ssize_t length = getline(&line_, &room_, file_.get());
        if (length < 0) {
            if (std::ferror(file_.get()) != 0) throw Failure(name_ + ": cannot be read");
            return false;
        }
        *line = {line_, static_cast<std::size_t>(length)};
        if (line->ends_with('\n')) line->remove_suffix(1);
        ++number_;
        done_ += static_cast<std::uint64_t>(length);
        return true;
    }
    [[nodiscard]] Failure Wrong(const std::string& what) const {
        return Failure(name_ + ":" + std::to_string(number_) + ": " + what);
    }
    [[nodiscard]] std::uint64_t Size() const { return size_; }
    [[nodiscard]] std::uint64_t Done() const { return done_; }

private:
    void TakeInput() {
        char part[65536];
        while (const std::size_t count = std::fread(part, 1, sizeof part, stdin)) {
            if (std::fwrite(part, 1, count, file_.get()) != count) {
                throw Failure("the input finds no room in a temporary file");
            }
        }
    }

    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::string name_;
    std::unique_ptr<std::FILE, Close> file_;
    char* line_ = nullptr;
    std::size_t room_ = 0;
    std::uint64_t size_ = 0;
    std::uint64_t done_ = 0;
    unsigned int number_ = 0;
};

struct Sizes {
    unsigned int header = 0, block = 0, resources = 0;
};

struct Item {
    bool record;
    unsigned int number;  // reference or key
    std::string_view text;
};

Item Parse(const Lines& lines, std::string_view line) {
    const std::size_t tab = line.find('\t');
    Item item{line.starts_with("record "), 0, {}};
    const std::size_t start = item.record ? 7 : 9;
    if (tab != std::string_view::npos && (item.record || line.starts_with("resource "))) {
        const char* const end = line.data() + tab;
        const auto [stop, error] = std::from_chars(line.data() + start, end, item.number);
        item.text = line.substr(tab + 1);
        if (error == std::errc() && stop == end) return item;
    }
    throw lines.Wrong("not a record or resource");
}

Sizes ParseFirst(Lines& lines) {
    Sizes sizes;
    int format = 0;
    std::string_view line;
    if (!lines.Next(&line) ||
        std::sscanf(std::string(line).c_str(), "zelkor-records %d %u %u %u", &format, &sizes.header,
                    &sizes.block, &sizes.resources) != 4 ||
        format != kFormat) {
        throw lines.Wrong("not an exported record file");
    }
    return sizes;
}

// Where records are to lie when they keep their references.
class Places {
public:
    explicit Places(const Sizes& sizes)
        : block_(sizes.block),
          head_(Round(std::uint64_t{sizes.header} + 8)),
          end_(foundation::record_format::DataStart(foundation::record_format::kCapacity,
                                                    sizes.resources, sizes.block)) {}

    // The bytes between the records so far and this one's head, which is then the last one; false
    // when no file can be had that way: references that do not ascend, or too much in between.
    bool Take(unsigned int reference, std::uint64_t* gap) {
        constexpr std::uint64_t kWidest = 64 << 20;
        const std::uint64_t at = std::uint64_t{reference} * block_;
        if (block_ < 8 || at < end_ || at - end_ > kWidest) return false;
        *gap = at - end_;
        const bool good = !first_ || *gap == 0 || *gap >= head_;
        first_ = false;
        end_ = at + head_;
        return good;
    }
    [[nodiscard]] std::uint64_t HeadSize() const { return head_; }

private:
    [[nodiscard]] std::uint64_t Round(std::uint64_t size) const {
        return foundation::record_format::Round(size, block_);
    }

    unsigned int block_;
    std::uint64_t head_, end_;
    bool first_ = true;
};

// Looks at every line before anything is written; whether the references can be kept.
bool Judge(Lines& lines, const Sizes& sizes) {
    Places places(sizes);
    bool kept = true;
    std::uint64_t gap = 0;
    for (std::string_view line; lines.Next(&line);) {
        const Item item = Parse(lines, line);
        try {
            static_cast<void>(Unescape(item.text));
        } catch (const Failure& failure) {
            throw lines.Wrong(failure.what());
        }
        if (item.record) kept = kept && places.Take(item.number, &gap);
    }
    return kept;
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
        ThrowRecordedError();
    }
    if (filler != 0) file->v_DeleteRecord(filler);
    ThrowRecordedError();
}

void Import(const std::string& name, const std::string& input, bool references) {
    Lines lines(input);
    const Sizes sizes = ParseFirst(lines);
    const bool kept = Judge(lines, sizes);
    RecordFile file(name);
    file->v_Create(sizes.header, sizes.block, sizes.resources);
    ThrowRecordedError();
    lines.Rewind();
    ParseFirst(lines);
    if (kept) {
        PlaceHeads(lines, sizes, file);
        lines.Rewind();
        ParseFirst(lines);
    } else {
        std::fprintf(stderr, "%s: the records have new references\n", name.c_str());
    }
    Progress progress(name, lines.Size());
    for (std::string_view line; lines.Next(&line);) {
        const Item item = Parse(lines, line);
        const std::string bytes = Unescape(item.text);
        const CT_Buffer data = ToBuffer(bytes);
        if (!item.record) {
            file->v_AddResource(item.number, &data);
        } else if (kept) {
            file->v_UpdateRecord(item.number, &data);
        }
        const unsigned int now = item.record && !kept ? file->n_AddRecord(&data) : item.number;
        ThrowRecordedError();
        if (references && item.record) std::printf("%u\t%u\n", item.number, now);
        progress.Advance(lines.Done());
    }
    file.Close();
}

}  // namespace

void AddRecordText(CLI::App& parent) {
    CLI::App* out = parent.add_subcommand("export", "Print all of a record file as lines of text.");
    auto source = std::make_shared<std::string>();
    out->add_option("FILE", *source, "Record file")->required();
    out->callback([source] { Export(*source); });
    CLI::App* in = parent.add_subcommand(
        "import", "Make a record file of exported lines; records keep their references.");
    auto target = std::make_shared<std::string>();
    auto input = std::make_shared<std::string>("-");
    auto references = std::make_shared<bool>(false);
    in->add_option("FILE", *target, "Record file to make or replace")->required();
    in->add_option("INPUT", *input, "Exported lines (default: -)");
    in->add_flag("--references", *references, "Print OLD<TAB>NEW reference of every record");
    in->callback([target, input, references] { Import(*target, *input, *references); });
}

}  // namespace zelkor
