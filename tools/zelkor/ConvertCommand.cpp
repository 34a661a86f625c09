// zelkor convert: a text file from one encoding to another, line ends and all. Text that the
// input's encoding does not allow, or that the output's lacks, is replaced, counted and told.
#include <Foundation/Core/Buffer/Buffer.h>
#include <Foundation/Core/File/WinFile.h>
#include <Foundation/Core/Output/Output.h>
#include <Foundation/Platform/Nls/CodePages.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "Console.h"
#include "Encodings.h"

namespace zelkor {

namespace {

constexpr unsigned int kFileBufferSize = 16384;
constexpr unsigned int kChunk = 1 << 20;
constexpr unsigned int kUtf8 = 65001;

struct ConvertOptions {
    std::string input;
    std::string output;
    std::string from;
    std::string to;
    bool mark = false;
    bool no_mark = false;
};

bool IsUtf16(const CT_Codepage& encoding) {
    return encoding.b_Is16BitUnicode() || encoding.eo_Get() == CT_Codepage::kUtf16BigEndian;
}

bool IsBigEndian(const CT_Codepage& encoding) {
    return encoding.eo_Get() == CT_Codepage::kUtf16BigEndian;
}

// Turns pieces of text that end at line ends into units.
class Decoder {
public:
    explicit Decoder(const CT_Codepage& encoding) : encoding_(encoding) {}

    void Decode(const std::string& bytes, std::u16string& units) {
        if (IsUtf16(encoding_)) return DecodeUtf16(bytes, units);
        units.resize(bytes.size());
        const unsigned int page = encoding_.n_Get();
        int count = Convert(page, StrictFlags(page), bytes, units);
        if (count == 0 && !bytes.empty()) {
            count = Convert(page, 0, bytes, units);
            damaged_ = true;
        }
        units.resize(static_cast<std::size_t>(count));
    }

    // Whether any piece held text that the encoding does not allow.
    [[nodiscard]] bool damaged() const { return damaged_; }

private:
    // Pages without a strict form are asked without flags.
    static unsigned int StrictFlags(unsigned int page) {
        const bool strict = page == platform::kUtf8Page || platform::TakesTableFlags(page);
        return strict ? static_cast<unsigned int>(platform::kErrorOnInvalidChars) : 0;
    }

    static int Convert(unsigned int page, unsigned int flags, const std::string& bytes,
                       std::u16string& units) {
        return platform::MultiByteToWideChar(page, flags, bytes.data(),
                                             static_cast<int>(bytes.size()), units.data(),
                                             static_cast<int>(units.size()));
    }

    void DecodeUtf16(const std::string& bytes, std::u16string& units) {
        const int low = IsBigEndian(encoding_) ? 1 : 0;
        units.resize(bytes.size() / 2);
        for (std::size_t i = 0; i < units.size(); ++i) {
            const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
            units[i] = static_cast<char16_t>(byte(2 * i + static_cast<std::size_t>(low)) |
                                             byte(2 * i + static_cast<std::size_t>(1 - low)) << 8);
        }
        if (bytes.size() % 2 != 0) {
            units += u'\uFFFD';
            damaged_ = true;
        }
    }

    CT_Codepage encoding_;
    bool damaged_ = false;
};

class Encoder {
public:
    explicit Encoder(const CT_Codepage& encoding) : encoding_(encoding) {}

    void Encode(const std::u16string& units, std::string& bytes) {
        if (IsUtf16(encoding_)) return EncodeUtf16(units, bytes);
        const unsigned int page = encoding_.n_Get();
        platform::CodePageInfo info{};
        platform::GetCodePageInfo(page, &info);
        const bool tells = info.max_char_size <= 2 && page != 50220 && page != 52936;
        BOOL used_default = FALSE;
        bytes.resize(platform::MaxBytes(page, units.size()));
        const int count = platform::WideCharToMultiByte(
            page, 0, units.data(), static_cast<int>(units.size()), bytes.data(),
            static_cast<int>(bytes.size()), nullptr, tells ? &used_default : nullptr);
        bytes.resize(static_cast<std::size_t>(count));
        if (used_default) lossy_ = true;
    }

    // Whether any piece held characters that the encoding lacks, as far as it tells.
    [[nodiscard]] bool lossy() const { return lossy_; }

private:
    void EncodeUtf16(const std::u16string& units, std::string& bytes) const {
        bytes.clear();
        bytes.reserve(2 * units.size());
        for (const char16_t unit : units) {
            const char low = static_cast<char>(unit & 0xFF);
            const char high = static_cast<char>(unit >> 8);
            bytes += IsBigEndian(encoding_) ? high : low;
            bytes += IsBigEndian(encoding_) ? low : high;
        }
    }

    CT_Codepage encoding_;
    bool lossy_ = false;
};

std::string MarkOf(const CT_Codepage& encoding) {
    if (IsUtf16(encoding)) return IsBigEndian(encoding) ? "\xFE\xFF" : "\xFF\xFE";
    return encoding.n_Get() == kUtf8 ? "\xEF\xBB\xBF" : "";
}

// Hands out the input in pieces that end behind a line feed, so that no character is cut and every
// stateful encoding is back at its start.
class Pieces {
public:
    Pieces(CT_WinFile& file, std::size_t unit) : file_(file), unit_(unit) {}

    bool Next(std::string& piece) {
        piece = std::move(rest_);
        rest_.clear();
        std::size_t end = 0;
        while (end == 0 && !at_end_) {
            const std::size_t before = piece.size();
            piece.resize(before + kChunk);
            const unsigned int read = file_.vn_Read(piece.data() + before, kChunk);
            ThrowRecordedError();
            piece.resize(before + read);
            at_end_ = read == 0;
            end = LastLineEnd(piece);
        }
        if (!at_end_) {
            rest_ = piece.substr(end);
            piece.resize(end);
        }
        return !piece.empty();
    }

private:
    // Position behind the last line feed of a text, or 0.
    [[nodiscard]] std::size_t LastLineEnd(const std::string& text) const {
        if (unit_ == 2) return text.size() / 2 * 2;
        return text.rfind('\n') + 1;
    }

    CT_WinFile& file_;
    std::size_t unit_;
    std::string rest_;
    bool at_end_ = false;
};

void Open(CT_WinFile& file, bool writing) {
    file.vv_Open(writing ? CT_File::kWriteAccess : CT_File::kReadAccess,
                 writing ? CT_File::kCreateAlways : CT_File::kOpenExisting,
                 writing ? CT_File::kShareNone : CT_File::kShareRead, CT_File::kAttributeNormal, 0);
    ThrowRecordedError();
}

void Write(CT_WinFile& file, const std::string& bytes) {
    const unsigned int written =
        file.vn_Write(bytes.data(), static_cast<unsigned int>(bytes.size()));
    ThrowRecordedError();
    if (written != bytes.size()) throw Failure("not everything could be written");
}

void Convert(const ConvertOptions& options) {
    const CT_Codepage from = ParseEncoding(options.from);
    const CT_Codepage to = ParseEncoding(options.to);
    const CT_UString input_path = FromUtf8(options.input);
    const CT_UString output_path = FromUtf8(options.output);
    CT_WinFile input(&input_path, kFileBufferSize);
    CT_WinFile output(&output_path, kFileBufferSize);
    Open(input, false);
    Open(output, true);
    const std::string mark = MarkOf(to);
    if (options.mark ? !mark.empty() : !options.no_mark && IsUtf16(to)) Write(output, mark);

    Decoder decoder(from);
    Encoder encoder(to);
    Pieces pieces(input, IsUtf16(from) ? 2 : 1);
    Progress progress(options.input, input.vn_GetSize());
    std::string piece;
    std::u16string units;
    std::uint64_t done = 0;
    while (pieces.Next(piece)) {
        if (done == 0 && !MarkOf(from).empty() && piece.starts_with(MarkOf(from))) {
            piece.erase(0, MarkOf(from).size());
        }
        done += piece.size();
        decoder.Decode(piece, units);
        if (units.empty()) continue;
        encoder.Encode(units, piece);
        Write(output, piece);
        progress.Advance(done);
    }
    output.vv_Close();
    ThrowRecordedError();
    if (decoder.damaged()) {
        throw Failure(options.input + ": not valid " + Describe(from) +
                      "; what could not be read was replaced");
    }
    if (encoder.lossy()) {
        throw Failure(Describe(to) + " lacks some of the characters; they were replaced by '?'");
    }
}

}  // namespace

void AddConvertCommand(CLI::App& app) {
    CLI::App* command =
        app.add_subcommand("convert", "Convert a text file from one encoding to another.");
    auto options = std::make_shared<ConvertOptions>();
    command->add_option("--from", options->from, "Encoding of INPUT: a name or a number")
        ->required();
    command->add_option("--to", options->to, "Encoding of OUTPUT: a name or a number")->required();
    CLI::Option* mark = command->add_flag(
        "--bom", options->mark, "Begin UTF-8 and UTF-16 with a byte-order mark (default: UTF-16)");
    command->add_flag("--no-bom", options->no_mark, "Write no byte-order mark")->excludes(mark);
    command->add_option("INPUT", options->input, "Text file to read")->required();
    command->add_option("OUTPUT", options->output, "File to write")->required();
    command->callback([options] { Convert(*options); });
}

}  // namespace zelkor
