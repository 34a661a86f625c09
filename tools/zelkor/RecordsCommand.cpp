// zelkor records: record files, their records and resources.
#include <Foundation/Core/Error/ErrorManager.h>
#include <Foundation/Database/RecordManager/RecordCheck.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "Console.h"
#include "RecordLines.h"
#include "Records.h"

namespace zelkor::cli {

namespace {

constexpr std::size_t kShown = 40;  // bytes of a record in a list

struct CreateOptions {
    std::string file;
    unsigned int header = 16, block = 64, resources = 100;
    bool force = false;
};

void Create(const CreateOptions& options) {
    MustFit(options.header, options.block, options.resources, 2);
    if (!options.force) MustBeNew(options.file);
    Replace(options.file, [&options](const CT_UString& path) {
        RecordFile file(path);
        file->v_Create(options.header, options.block, options.resources);
        ThrowRecordedError();
        file.Close();
    });
}

struct AddOptions {
    std::string file;
    std::vector<std::string> inputs;
    bool lines = false;
};

void AddOne(RecordFile& file, std::string_view bytes) {
    RecordFile::ThrowIfInterrupted();
    const CT_Buffer data = file.Padded(bytes);
    const unsigned int reference = file->n_AddRecord(&data);
    ThrowRecordedError();
    std::printf("%u\n", reference);
}

void AddLines(RecordFile& file, const std::string& name) {
    Lines lines(name, Lines::kOnce);
    Progress progress(lines.Name(), lines.Size());
    unsigned int count = 0;
    for (std::string_view line; lines.Next(&line);) {
        AddOne(file, line);
        if ((++count & 0xFFF) == 0) progress.Advance(lines.Done());
    }
}

void Add(const AddOptions& options) {
    for (const std::string& input : options.inputs) MustBeReadable(input);
    Change(options.file, [&options](RecordFile& file) {
        Progress progress(Printable(options.file), options.inputs.size());
        for (std::uint64_t i = 0; i < options.inputs.size(); ++i) {
            if (options.lines) {
                AddLines(file, options.inputs[i]);
            } else {
                AddOne(file, ReadAll(options.inputs[i]));
            }
            progress.Advance(i + 1);
        }
    });
}

// Throws, before anything is done, unless they are references of records: what only looks like a
// head is part of something else.
void MustBeRecords(const std::string& name, std::vector<unsigned int> references) {
    std::ranges::sort(references);
    if (const auto twice = std::ranges::adjacent_find(references); twice != references.end()) {
        throw Failure("record " + std::to_string(*twice) + ": given twice", 2);
    }
    CT_RecordCheck check(NamedFile{name});
    check.b_Check();
    ThrowRecordedError();
    for (const unsigned int reference : references) {
        if (reference == 0 || check.n_GetNextReference(reference - 1) != reference) {
            throw Failure("record " + std::to_string(reference) +
                          ": (31051): Invalid record reference in " + Printable(name));
        }
    }
}

void Get(const std::string& name, unsigned int reference) {
    MustBeRecords(name, {reference});
    RecordFile file(name);
    CT_Buffer data;
    file.OpenToRead()->v_GetRecord(reference, &data, 0);
    ThrowRecordedError("record", reference);
    WriteOut(ToBytes(data));
}

void Set(const std::string& name, unsigned int reference, const std::string& input) {
    const std::string bytes = ReadAll(input);
    MustBeRecords(name, {reference});
    Change(name, [&](RecordFile& file) {
        const CT_Buffer data = file.Padded(bytes);
        file->v_UpdateRecord(reference, &data);
        ThrowRecordedError("record", reference);
    });
}

void Delete(const std::string& name, const std::vector<unsigned int>& references) {
    MustBeRecords(name, references);
    Change(name, [&references](RecordFile& file) {
        for (const unsigned int reference : references) {
            file->v_DeleteRecord(reference);
            ThrowRecordedError("record", reference);
        }
    });
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

// Prints a list, as JSON or as lines.
class Listing {
public:
    explicit Listing(bool json) : json_(json) {
        if (json_) WriteOut("[");
    }
    void Add(unsigned int reference, std::string_view bytes) {
        const std::string_view start = bytes.substr(0, kShown);
        if (json_) {
            std::printf("%s\n{\"reference\": %u, \"length\": %zu, \"start\": %s}", separator_,
                        reference, bytes.size(), Quoted(start).c_str());
            separator_ = ",";
        } else {
            std::printf("%u\t%zu\t%s\n", reference, bytes.size(), Escape(start).c_str());
        }
    }
    void End() {
        if (json_) WriteOut("\n]\n");
    }

private:
    bool json_;
    const char* separator_ = "";
};

void List(const std::string& name, bool robust, bool json) {
    RecordFile file(name);
    file.OpenToRead();
    Listing listing(json);
    std::string missing;
    if (robust) {
        CT_Buffer data;
        for (unsigned int cursor = 0;;) {
            cursor = file->n_GetNextRecordRobust(cursor, &data);
            ThrowRecordedError();
            if (cursor == 0) break;
            // long ones come empty
            if (data.n_GetUsedSize() == 0) file->v_GetRecord(cursor - 1, &data, 0);
            CT_ErrorManager::spco_Get()->v_ClearError();
            listing.Add(cursor - 1, ToBytes(data));
        }
    } else {
        missing = ReadRecords(name, file, [&listing](unsigned int reference, auto bytes) {
            listing.Add(reference, bytes);
        });
    }
    listing.End();
    if (!missing.empty()) throw Failure(missing);
}

// ---- Resources ----------------------------------------------------------------------------------

void PutResource(const std::string& name, unsigned int key, const std::string& input, bool add) {
    const CT_Buffer data = ToBuffer(ReadAll(input));
    Change(name, [&](RecordFile& file) {
        if (add) {
            file->v_AddResource(key, &data);
        } else {
            file->v_UpdateResource(key, &data);
        }
        ThrowRecordedError("resource", key);
    });
}

void GetResource(const std::string& name, unsigned int key) {
    RecordFile file(name);
    CT_Buffer data;
    file.OpenToRead()->v_GetResource(key, &data);
    ThrowRecordedError("resource", key);
    WriteOut(ToBytes(data));
}

void DeleteResource(const std::string& name, unsigned int key) {
    Change(name, [key](RecordFile& file) {
        file->v_DeleteResource(key);
        ThrowRecordedError("resource", key);
    });
}

void ListResources(const std::string& name) {
    RecordFile file(name);
    file.OpenToRead();
    const std::string missing = ReadResources(name, file, [](unsigned int key, auto bytes) {
        std::printf("%u\t%zu\t%s\n", key, bytes.size(), Escape(bytes.substr(0, kShown)).c_str());
    });
    if (!missing.empty()) throw Failure(missing);
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
    auto options = std::make_shared<CreateOptions>();
    command->add_option("FILE", options->file, "Record file")->required();
    command->add_option("--block", options->block, "Block size in bytes (default: 64)");
    command->add_option("--header", options->header,
                        "Record header size in bytes (default: 16); shorter records are filled "
                        "with zeros, 0 keeps every length");
    command->add_option("--resources", options->resources, "Room for resources (default: 100)");
    command->add_flag("--force", options->force, "Replace a file of that name");
    command->callback([options] { Create(*options); });
}

void AddAdd(CLI::App& parent) {
    CLI::App* command = parent.add_subcommand(
        "add",
        "Add records, one per input or line; prints one reference a line. Records shorter than the "
        "record header are filled with zeros.");
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
    list->add_flag("--robust", *robust, "Take every block that looks like a record for one");
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
    AddRecordMap(*command);
    AddRecordText(*command);
}

}  // namespace zelkor::cli
