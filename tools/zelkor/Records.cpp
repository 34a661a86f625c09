#include "Records.h"

#include <Foundation/Core/Error/ErrorManager.h>
#include <Foundation/Database/RecordManager/RecordCheck.h>
#include <Foundation/Database/RecordManager/RecordFormat.h>

#include <signal.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <filesystem>

#include "Console.h"
#include "InputFile.h"
#include "OutputFile.h"

namespace zelkor::cli {

namespace {

constexpr unsigned int kFileBufferSize = 16384;

int HexDigit(char digit) {
    constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
    const std::size_t value = kDigits.find(digit);
    if (value == std::string_view::npos) throw Failure("\\x needs two hexadecimal digits");
    return static_cast<int>(value < 16 ? value : value - 6);
}

volatile std::sig_atomic_t interrupted = 0;

extern "C" void NoteSignal(int) {
    interrupted = 1;
}

// A process that ends in the middle of changes leaves a file to repair. So a first signal only asks
// it to end, and a write that no one takes, or that finds no room, fails like any other.
void HoldSignals() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        struct sigaction action {};
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
        action.sa_handler = NoteSignal;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigaction(signal, &action, nullptr);
    }
    for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
}

// Tells what cannot be read on the standard error, the first ones of many.
class Complaints {
public:
    void Add(const char* kind, unsigned int number, const std::string& what) {
        if (++count_ <= kMost) {
            std::fprintf(stderr, "zelkor: %s %u: %s\n", kind, number, what.c_str());
        } else if (count_ == kMost + 1) {
            std::fputs("zelkor: ... and more of the kind\n", stderr);
        }
    }
    // Whether there was a recorded error to tell.
    bool Recorded(const char* kind, unsigned int number) {
        try {
            ThrowRecordedError();
            return false;
        } catch (const Failure& failure) {
            Add(kind, number, failure.what());
            return true;
        }
    }
    [[nodiscard]] unsigned int Count() const { return count_; }

private:
    static constexpr unsigned int kMost = 20;
    unsigned int count_ = 0;
};

}  // namespace

NamedFile::NamedFile(const CT_UString& path) : path_(path), file_(&path_, kFileBufferSize) {}

RecordFile::RecordFile(const CT_UString& path) : file_(path), manager_(file_) {}

RecordFile::~RecordFile() {
    if (!manager_.b_IsOpen()) return;
    manager_.v_Close(TRUE);
    CT_ErrorManager::spco_Get()->v_ClearError();
}

RecordFile& RecordFile::OpenToRead() {
    manager_.v_Open(CT_RecordManager::kModeReadAndCheck, CT_RecordManager::kMapSmall);
    ThrowRecordedError();
    return *this;
}

void RecordFile::OpenToWrite() {
    HoldSignals();
    manager_.v_Open(CT_RecordManager::kModeReadWrite, CT_RecordManager::kMapNever);
    ThrowRecordedError();
}

void RecordFile::ThrowIfInterrupted() {
    if (interrupted != 0) throw Failure("interrupted");
}

void RecordFile::Close() {
    manager_.v_Close(TRUE);
    ThrowRecordedError();
}

CT_Buffer RecordFile::Padded(std::string_view bytes) const {
    const unsigned int header = manager_.n_GetRecordHeaderSize();
    if (bytes.size() >= header) return ToBuffer(bytes);
    std::string padded(bytes);
    padded.resize(header);
    return ToBuffer(padded);
}

void Change(const std::string& name, const std::function<void(RecordFile& file)>& change) {
    RecordFile file(name);
    file.OpenToWrite();
    const unsigned int before = file->n_GetRecordCount();
    try {
        change(file);
    } catch (const Failure& failure) {
        std::string message = failure.what();
        const unsigned int now = file->n_GetRecordCount();
        try {
            file.Close();
            if (now > before) {
                message += "; before that " + Counted(now - before, "record", "records") +
                           " went into " + Printable(name);
            }
            CT_RecordCheck check(NamedFile{name});
            check.b_Check();
            ThrowRecordedError();
            if (check.n_GetFindingCount() != 0) {
                message += "; " + Printable(name) + " is not sound now, see check and repair";
            }
        } catch (const Failure& closing) {
            message += std::string("; then ") + closing.what();
        }
        throw Failure(message, failure.status());
    }
    file.Close();
}

std::string ReadRecords(const std::string& name, RecordFile& file, const RecordUse& use) {
    CT_RecordCheck check(NamedFile{name});
    check.b_Check();
    ThrowRecordedError();
    Complaints complaints;
    for (unsigned int i = 1; i <= check.n_GetListedCount(); ++i) {
        const auto finding = check.so_GetFindingAt(i);
        if (finding.kind != CT_RecordCheck::kBody) continue;
        complaints.Add("record", finding.offset / check.n_GetBlockSize(),
                       CT_RecordCheck::sqccz_GetText(finding.kind));
    }
    const unsigned int counted = file->n_GetRecordCount();
    const std::uint64_t expected = std::max<std::uint64_t>(
        counted, std::uint64_t{check.n_GetRecordCount()} + complaints.Count());
    Progress progress(name, expected);
    CT_Buffer data;
    std::uint64_t read = 0;
    for (unsigned int next = 0; (next = check.n_GetNextReference(next)) != 0;) {
        file->v_GetRecord(next, &data, 0);
        if (complaints.Recorded("record", next)) continue;
        use(next, ToBytes(data));
        if ((++read & 0xFFF) == 0) progress.Advance(read);
    }
    if (read != expected) {
        return Printable(name) + ": " + Grouped(read) + " of " + Grouped(expected) +
               " records could be read; see check and repair";
    }
    if (read != counted) {
        return Printable(name) + ": the header counts " + Grouped(counted) + " of the " +
               Grouped(read) + " records; see check and repair";
    }
    return {};
}

std::string ReadResources(const std::string& name, RecordFile& file, const RecordUse& use) {
    CT_Buffer data;
    Complaints complaints;
    const unsigned int count = file->n_GetResourceCount();
    unsigned int read = 0;
    for (unsigned int i = 1; i <= count; ++i) {
        const unsigned int key = file->n_GetResourceKeyAt(i);
        if (i > 1 && key == file->n_GetResourceKeyAt(i - 1)) continue;
        file->v_GetResource(key, &data);
        if (complaints.Recorded("resource", key)) continue;
        use(key, ToBytes(data));
        ++read;
    }
    if (read == count) return {};
    return Printable(name) + ": " + Grouped(read) + " of " +
           Counted(count, "resource", "resources") + " could be read; see check and repair";
}

void MustBeNew(const std::string& name) {
    if (name == "-" || !std::filesystem::exists(name)) return;
    throw Failure(Printable(name) + ": is there; --force replaces it", 2);
}

bool ReadHeader(const std::string& name, zelkor::record_format::HeaderImage* header) {
    namespace format = zelkor::record_format;
    InputFile file(name);
    return file.Read(reinterpret_cast<char*>(header->data()), format::kHeaderSize) ==
               format::kHeaderSize &&
           format::LoadU32(header->data() + format::kStampAt) == format::kStamp;
}

void MustBeRecordFile(const std::string& name) {
    std::error_code error;
    const auto status = std::filesystem::status(name, error);
    zelkor::record_format::HeaderImage header{};
    if (!std::filesystem::is_regular_file(status) || std::filesystem::file_size(name, error) == 0 ||
        ReadHeader(name, &header)) {
        return;
    }
    throw Failure(Printable(name) + ": is there and is no record file; --force replaces it", 2);
}

bool SameFile(const std::string& one, const std::string& other) {
    std::error_code error;
    return std::filesystem::equivalent(one, other, error);
}

void Replace(const std::string& name, const std::function<void(const CT_UString& path)>& make) {
    OutputFile output(name);
    const CT_UString path = output.Staged();
    try {
        make(path);
    } catch (const Failure& failure) {
        // the user knows the file by its own name
        std::string message = failure.what();
        const std::string given = ToUtf8(path);
        for (const std::string& staged : {std::filesystem::absolute(given).string(), given}) {
            const std::size_t at = message.find(staged);
            if (at != std::string::npos) message.replace(at, staged.size(), output.name());
        }
        throw Failure(message, failure.status());
    }
    output.Finish();
}

void MustFit(unsigned int header, unsigned int block, unsigned int resources, int status) {
    namespace format = zelkor::record_format;
    if (block < format::kSmallestBlock) {
        throw Failure("a block size of " + std::to_string(block) + " is too small: 8 is the least",
                      status);
    }
    const std::uint64_t start = format::DataStart(format::kCapacity, resources, block);
    const std::uint64_t head = format::Round(std::uint64_t{header} + format::kHeadDataAt, block);
    if (start + head <= 0xFFFFFFFF) return;
    throw Failure("these sizes leave no room for a record below 4 GiB", status);
}

void ThrowRecordedError(const char* kind, unsigned int number) {
    try {
        ThrowRecordedError();
    } catch (const Failure& failure) {
        throw Failure(std::string(kind) + ' ' + std::to_string(number) + ": " + failure.what());
    }
}

CT_Buffer ToBuffer(std::string_view bytes) {
    return CT_Buffer(bytes.data(), static_cast<unsigned int>(bytes.size()), 32);
}

std::string_view ToBytes(const CT_Buffer& buffer) {
    return {static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize()};
}

void WriteOut(std::string_view bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size()) {
        throw Failure("the output cannot be written");
    }
}

std::string Escape(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\\') {
            text += "\\\\";
        } else if (c == '\n') {
            text += "\\n";
        } else if (c == '\t') {
            text += "\\t";
        } else if (byte >= 0x20 && byte < 0x7F) {
            text += c;
        } else {
            constexpr std::string_view kDigits = "0123456789abcdef";
            text += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
        }
    }
    return text;
}

std::string Unescape(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            bytes += text[i];
            continue;
        }
        if (++i == text.size()) throw Failure("a line ends in a single \\");
        if (text[i] == 'x') {
            if (text.size() - i < 3) throw Failure("\\x needs two hexadecimal digits");
            bytes += static_cast<char>(HexDigit(text[i + 1]) << 4 | HexDigit(text[i + 2]));
            i += 2;
        } else if (text[i] == 'n' || text[i] == 't' || text[i] == '\\') {
            bytes += text[i] == 'n' ? '\n' : text[i] == 't' ? '\t' : '\\';
        } else {
            throw Failure(std::string("unknown escape \\") + text[i]);
        }
    }
    return bytes;
}

}  // namespace zelkor::cli
