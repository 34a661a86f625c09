// zelkor records: record files, their records and resources.
#include <Foundation/Core/Error/ErrorManager.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "Console.h"
#include "Records.h"

namespace zelkor {

namespace {

constexpr std::size_t kShown = 40;  // bytes of a record in a list

struct AddOptions {
    std::string file;
    std::vector<std::string> inputs;
    bool lines = false;
};

void AddOne(RecordFile& file, std::string_view bytes) {
    const CT_Buffer data = ToBuffer(bytes);
    const unsigned int reference = file->n_AddRecord(&data);
    ThrowRecordedError();
    std::printf("%u\n", reference);
}

void AddLines(RecordFile& file, const std::string& name) {
    std::ifstream opened;
    if (name != "-") opened.open(name, std::ios::binary);
    std::istream& input = name == "-" ? std::cin : opened;
    if (!input) throw Failure(name + ": cannot be opened");
    std::uint64_t size = 0;
    if (name != "-" && opened.seekg(0, std::ios::end)) {
        size = static_cast<std::uint64_t>(opened.tellg());
        opened.seekg(0);
    }
    Progress progress(name, size);
    std::uint64_t done = 0;
    unsigned int count = 0;
    for (std::string line; std::getline(input, line);) {
        AddOne(file, line);
        done += line.size() + 1;
        if ((++count & 0xFFF) == 0) progress.Advance(done);
    }
    if (input.bad()) throw Failure(name + ": cannot be read");
}

void Add(const AddOptions& options) {
    RecordFile file(options.file);
    file.OpenToWrite();
    if (options.lines) {
        for (const std::string& input : options.inputs) AddLines(file, input);
    } else {
        Progress progress(options.file, options.inputs.size());
        for (std::uint64_t i = 0; i < options.inputs.size(); ++i) {
            AddOne(file, ReadAll(options.inputs[i]));
            progress.Advance(i + 1);
        }
    }
    file.Close();
}

void Get(const std::string& name, unsigned int reference) {
    RecordFile file(name);
    CT_Buffer data;
    file.OpenToRead()->v_GetRecord(reference, &data, 0);
    ThrowRecordedError();
    WriteOut(ToBytes(data));
}

void Set(const std::string& name, unsigned int reference, const std::string& input) {
    const CT_Buffer data = ToBuffer(ReadAll(input));
    RecordFile file(name);
    file.OpenToWrite()->v_UpdateRecord(reference, &data);
    ThrowRecordedError();
    file.Close();
}

void Delete(const std::string& name, const std::vector<unsigned int>& references) {
    RecordFile file(name);
    file.OpenToWrite();
    for (const unsigned int reference : references) {
        file->v_DeleteRecord(reference);
        ThrowRecordedError();
    }
    file.Close();
}

// A JSON text of the bytes, each as the character of its number.
std::string Quoted(std::string_view bytes) {
    std::string text = "\"";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7F && c != '"' && c != '\\') {
            text += c;
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", byte);
            text += escape;
        }
    }
    return text + '"';
}

void List(const std::string& name, bool robust, bool json) {
    RecordFile file(name);
    file.OpenToRead();
    CT_Buffer data;
    const char* separator = "";
    if (json) std::fputs("[", stdout);
    for (unsigned int cursor = 0;;) {
        cursor = robust ? file->n_GetNextRecordRobust(cursor, &data)
                        : file->n_GetNextRecord(cursor, &data);
        ThrowRecordedError();
        if (cursor == 0) break;
        const std::string_view bytes = ToBytes(data);
        const std::string_view start = bytes.substr(0, kShown);
        if (json) {
            std::printf("%s\n{\"reference\": %u, \"length\": %zu, \"start\": %s}", separator,
                        cursor - 1, bytes.size(), Quoted(start).c_str());
            separator = ",";
        } else {
            std::printf("%u\t%zu\t%s\n", cursor - 1, bytes.size(), Escape(start).c_str());
        }
    }
    if (json) std::fputs("\n]\n", stdout);
}

// ---- Resources ----------------------------------------------------------------------------------

void PutResource(const std::string& name, unsigned int key, const std::string& input, bool add) {
    const CT_Buffer data = ToBuffer(ReadAll(input));
    RecordFile file(name);
    file.OpenToWrite();
    if (add) {
        file->v_AddResource(key, &data);
    } else {
        file->v_UpdateResource(key, &data);
    }
    ThrowRecordedError();
    file.Close();
}

void GetResource(const std::string& name, unsigned int key) {
    RecordFile file(name);
    CT_Buffer data;
    file.OpenToRead()->v_GetResource(key, &data);
    ThrowRecordedError();
    WriteOut(ToBytes(data));
}

void DeleteResource(const std::string& name, unsigned int key) {
    RecordFile file(name);
    file.OpenToWrite()->v_DeleteResource(key);
    ThrowRecordedError();
    file.Close();
}

void ListResources(const std::string& name) {
    RecordFile file(name);
    file.OpenToRead();
    CT_Buffer data;
    for (unsigned int i = 1; i <= file->n_GetResourceCount(); ++i) {
        const unsigned int key = file->n_GetResourceKeyAt(i);
        file->v_GetResource(key, &data);
        ThrowRecordedError();
        const std::string_view bytes = ToBytes(data);
        std::printf("%u\t%zu\t%s\n", key, bytes.size(), Escape(bytes.substr(0, kShown)).c_str());
    }
}

// ---- Options ------------------------------------------------------------------------------------

// A command on a file, perhaps with a number and an input.
struct Target {
    std::string file;
    unsigned int number = 0;
    std::string input = "-";
};

std::shared_ptr<Target> AddTarget(CLI::App* command, const char* number, bool input) {
    auto target = std::make_shared<Target>();
    command->add_option("FILE", target->file, "Record file")->required();
    if (number != nullptr) command->add_option(number, target->number, "Its number")->required();
    if (input) command->add_option("INPUT", target->input, "File with the bytes (default: -)");
    return target;
}

void AddCreate(CLI::App& parent) {
    CLI::App* command = parent.add_subcommand("create", "Make an empty record file.");
    struct Sizes {
        unsigned int block = 64, header = 16, resources = 100;
    };
    auto target = AddTarget(command, nullptr, false);
    auto sizes = std::make_shared<Sizes>();
    command->add_option("--block", sizes->block, "Block size in bytes (default: 64)");
    command->add_option("--header", sizes->header, "Record header size in bytes (default: 16)");
    command->add_option("--resources", sizes->resources, "Room for resources (default: 100)");
    command->callback([target, sizes] {
        RecordFile file(target->file);
        file->v_Create(sizes->header, sizes->block, sizes->resources);
        ThrowRecordedError();
        file.Close();
    });
}

void AddAdd(CLI::App& parent) {
    CLI::App* command = parent.add_subcommand(
        "add", "Add records, one per input or line; prints one reference a line.");
    auto options = std::make_shared<AddOptions>();
    command->add_option("FILE", options->file, "Record file")->required();
    command->add_option("INPUT", options->inputs, "Files with the bytes (default: -)");
    command->add_flag("--lines", options->lines, "One record per line, without its line end");
    command->callback([options] {
        if (options->inputs.empty()) options->inputs.emplace_back("-");
        Add(*options);
    });
}

void AddRecordCommands(CLI::App& parent) {
    CLI::App* get = parent.add_subcommand("get", "Write a record's bytes to the output.");
    auto from = AddTarget(get, "REF", false);
    get->callback([from] { Get(from->file, from->number); });
    CLI::App* set = parent.add_subcommand("set", "Replace a record's bytes.");
    auto to = AddTarget(set, "REF", true);
    set->callback([to] { Set(to->file, to->number, to->input); });
    CLI::App* remove = parent.add_subcommand("delete", "Delete records.");
    auto gone = AddTarget(remove, nullptr, false);
    auto references = std::make_shared<std::vector<unsigned int>>();
    remove->add_option("REF", *references, "References")->required();
    remove->callback([gone, references] { Delete(gone->file, *references); });
    CLI::App* list = parent.add_subcommand(
        "list", "Print REF<TAB>LENGTH<TAB>FIRST BYTES of every record, escaped.");
    auto listed = AddTarget(list, nullptr, false);
    auto robust = std::make_shared<bool>(false);
    auto json = std::make_shared<bool>(false);
    list->add_flag("--robust", *robust, "Look at every block, for damaged files");
    list->add_flag("--json", *json, "As JSON; bytes are the characters of their numbers");
    list->callback([listed, robust, json] { List(listed->file, *robust, *json); });
}

// The verbs of "resource FILE": the file belongs to the command above them.
CLI::App* AddResourceVerb(CLI::App* resource, const char* verb, const char* text,
                          const std::shared_ptr<Target>& target, bool key) {
    CLI::App* command = resource->add_subcommand(verb, text);
    if (key) command->add_option("KEY", target->number, "Its key")->required();
    return command;
}

void AddResourceCommands(CLI::App& parent) {
    CLI::App* resource = parent.add_subcommand("resource", "Keyed resources of a record file.");
    resource->require_subcommand(1);
    auto target = AddTarget(resource, nullptr, false);
    for (const bool add : {true, false}) {
        CLI::App* put =
            AddResourceVerb(resource, add ? "add" : "set",
                            add ? "Add a resource." : "Replace a resource's bytes.", target, true);
        put->add_option("INPUT", target->input, "File with the bytes (default: -)");
        put->callback(
            [target, add] { PutResource(target->file, target->number, target->input, add); });
    }
    AddResourceVerb(resource, "get", "Write a resource's bytes to the output.", target, true)
        ->callback([target] { GetResource(target->file, target->number); });
    AddResourceVerb(resource, "delete", "Delete a resource.", target, true)->callback([target] {
        DeleteResource(target->file, target->number);
    });
    AddResourceVerb(resource, "list", "Print KEY<TAB>LENGTH<TAB>FIRST BYTES.", target, false)
        ->callback([target] { ListResources(target->file); });
}

}  // namespace

void AddRecordsCommand(CLI::App& app) {
    CLI::App* command = app.add_subcommand("records", "Fill, read, check and repair record files.");
    command->require_subcommand(1);
    AddCreate(*command);
    AddAdd(*command);
    AddRecordCommands(*command);
    AddResourceCommands(*command);
    AddRecordInspection(*command);
    AddRecordText(*command);
}

}  // namespace zelkor
