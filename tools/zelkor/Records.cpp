#include "Records.h"

#include <Foundation/Core/Error/ErrorManager.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>

#include "Console.h"

namespace zelkor {

namespace {

constexpr unsigned int kFileBufferSize = 16384;

int HexDigit(char digit) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    const std::size_t value = kDigits.find(digit);
    if (value == std::string_view::npos) throw Failure("\\x needs two hexadecimal digits");
    return static_cast<int>(value);
}

}  // namespace

NamedFile::NamedFile(const std::string& name)
    : path_(FromUtf8(name)), file_(&path_, kFileBufferSize) {}

RecordFile::RecordFile(const std::string& name) : file_(name), manager_(file_) {}

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

RecordFile& RecordFile::OpenToWrite() {
    manager_.v_Open(CT_RecordManager::kModeReadWrite, CT_RecordManager::kMapNever);
    ThrowRecordedError();
    return *this;
}

void RecordFile::Close() {
    manager_.v_Close(TRUE);
    ThrowRecordedError();
}

CT_Buffer ToBuffer(std::string_view bytes) {
    return CT_Buffer(bytes.data(), static_cast<unsigned int>(bytes.size()), 32);
}

std::string_view ToBytes(const CT_Buffer& buffer) {
    return {static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize()};
}

std::string ReadAll(const std::string& name) {
    constexpr std::size_t kLargest = 0xFFFFFFF0;
    std::string bytes;
    if (name == "-") {
        bytes.assign(std::istreambuf_iterator<char>(std::cin), {});
    } else {
        std::ifstream file(name, std::ios::binary);
        if (!file) throw Failure(name + ": cannot be opened");
        bytes.assign(std::istreambuf_iterator<char>(file), {});
    }
    if (bytes.size() > kLargest) throw Failure(name + ": too large for a record");
    return bytes;
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

}  // namespace zelkor
