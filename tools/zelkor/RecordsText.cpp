// zelkor records export and import: a record file as lines of text.
//
//   zelkor-records 1 16 64 100            format, record header size, block size, resource maximum
//   record REF<TAB>BYTES                  escaped as in a list
//   resource KEY<TAB>BYTES
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>

#include "Console.h"
#include "Records.h"

namespace zelkor {

namespace {

constexpr int kFormat = 1;

void Export(const std::string& name) {
    RecordFile file(name);
    file.OpenToRead();
    std::printf("zelkor-records %d %u %u %u\n", kFormat, file->n_GetRecordHeaderSize(),
                file->n_GetBlockSize(), file->n_GetResourceMaxCount());
    CT_Buffer data;
    for (unsigned int cursor = 0;;) {
        cursor = file->n_GetNextRecord(cursor, &data);
        ThrowRecordedError();
        if (cursor == 0) break;
        std::printf("record %u\t", cursor - 1);
        WriteOut(Escape(ToBytes(data)));
        std::putchar('\n');
    }
    for (unsigned int i = 1; i <= file->n_GetResourceCount(); ++i) {
        const unsigned int key = file->n_GetResourceKeyAt(i);
        file->v_GetResource(key, &data);
        ThrowRecordedError();
        std::printf("resource %u\t", key);
        WriteOut(Escape(ToBytes(data)));
        std::putchar('\n');
    }
}

void ImportLine(RecordFile& file, const std::string& line, bool references) {
    const std::size_t tab = line.find('\t');
    unsigned int number = 0;
    char kind[10] = "";
    if (tab == std::string::npos ||
        std::sscanf(line.substr(0, tab).c_str(), "%9s %u", kind, &number) != 2) {
        throw Failure("not a record or resource: " + line.substr(0, 40));
    }
    const CT_Buffer data = ToBuffer(Unescape(std::string_view(line).substr(tab + 1)));
    if (std::string_view(kind) == "record") {
        const unsigned int added = file->n_AddRecord(&data);
        if (references) std::printf("%u\t%u\n", number, added);
    } else if (std::string_view(kind) == "resource") {
        file->v_AddResource(number, &data);
    } else {
        throw Failure(std::string("not a record or resource: ") + kind);
    }
    ThrowRecordedError();
}

void Import(const std::string& name, const std::string& input_name, bool references) {
    std::ifstream opened;
    if (input_name != "-") opened.open(input_name, std::ios::binary);
    std::istream& input = input_name == "-" ? std::cin : opened;
    std::string line;
    int format = 0;
    unsigned int header = 0;
    unsigned int block = 0;
    unsigned int resources = 0;
    if (!std::getline(input, line) ||
        std::sscanf(line.c_str(), "zelkor-records %d %u %u %u", &format, &header, &block,
                    &resources) != 4 ||
        format != kFormat) {
        throw Failure(input_name + ": not an exported record file");
    }
    RecordFile file(name);
    file->v_Create(header, block, resources);
    ThrowRecordedError();
    while (std::getline(input, line)) ImportLine(file, line, references);
    if (input.bad()) throw Failure(input_name + ": cannot be read");
    file.Close();
}

}  // namespace

void AddRecordText(CLI::App& parent) {
    CLI::App* out = parent.add_subcommand("export", "Print all of a record file as lines of text.");
    auto source = std::make_shared<std::string>();
    out->add_option("FILE", *source, "Record file")->required();
    out->callback([source] { Export(*source); });
    CLI::App* in = parent.add_subcommand("import", "Make a record file of exported lines.");
    auto target = std::make_shared<std::string>();
    auto input = std::make_shared<std::string>("-");
    auto references = std::make_shared<bool>(false);
    in->add_option("FILE", *target, "Record file to make or replace")->required();
    in->add_option("INPUT", *input, "Exported lines (default: -)");
    in->add_flag("--references", *references, "Print OLD<TAB>NEW reference of every record");
    in->callback([target, input, references] { Import(*target, *input, *references); });
}

}  // namespace zelkor
