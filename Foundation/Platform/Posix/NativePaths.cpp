#include <sys/stat.h>

#include <algorithm>
#include <cstring>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Paths.h"
#include "Foundation/Platform/Posix/Internal/CurrentDrive.h"
#include "Foundation/Platform/Posix/Internal/Errno.h"
#include "Foundation/Platform/Posix/Internal/NativeName.h"

namespace zelkor::platform {

namespace {

constexpr char16_t kBackslashInName = 0xF05C;
constexpr char16_t kRawByte = 0xDC00;  // plus the byte, 0x80 to 0xFF

constexpr bool IsSeparator(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}
constexpr bool IsHigh(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool IsLow(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

// Appends with room for the terminator; false in `fits` once something did not.
template <typename Unit>
class Writer {
public:
    explicit Writer(std::span<Unit> out) : out_(out), fits_(!out.empty()) {}
    void Put(char32_t unit) {
        if (length_ + 1 < out_.size()) {
            out_[length_++] = static_cast<Unit>(unit);
        } else {
            fits_ = false;
        }
    }
    [[nodiscard]] bool fits() const { return fits_; }
    std::size_t Finish() {
        out_[length_] = 0;
        return length_;
    }

private:
    std::span<Unit> out_;
    std::size_t length_ = 0;
    bool fits_;
};

void PutUtf8(Writer<char>& out, char32_t code) {
    if (code < 0x80) return out.Put(code);
    if (code < 0x800) {
        out.Put(0xC0 | code >> 6);
    } else {
        if (code < 0x10000) {
            out.Put(0xE0 | code >> 12);
        } else {
            out.Put(0xF0 | code >> 18);
            out.Put(0x80 | (code >> 12 & 0x3F));
        }
        out.Put(0x80 | (code >> 6 & 0x3F));
    }
    out.Put(0x80 | (code & 0x3F));
}

// Takes one character off the text and writes its bytes; false for one that no file name has.
bool PutUnit(Writer<char>& out, const char16_t*& text) {
    const char16_t unit = *text++;
    if (unit == u'\\') {
        out.Put('/');
    } else if (unit == kBackslashInName) {
        out.Put('\\');
    } else if (IsHigh(unit) && IsLow(*text)) {
        PutUtf8(out, 0x10000 + ((unit & 0x3FFu) << 10 | (*text++ & 0x3FFu)));
    } else if (unit >= kRawByte + 0x80 && unit <= kRawByte + 0xFF) {
        out.Put(unit - kRawByte);
    } else if (IsHigh(unit) || IsLow(unit)) {
        return false;
    } else {
        PutUtf8(out, unit);
    }
    return true;
}

// What stands for the prefix of a path, which is skipped: "/" for a root, "" for the current
// folder.
const char* TakePrefix(const char16_t*& text) {
    const auto starts_with = [&text](char16_t third) {
        return IsSeparator(text[0]) && IsSeparator(text[1]) && text[2] == third &&
               IsSeparator(text[3]);
    };
    const bool device = starts_with(u'.');
    if (device || starts_with(u'?')) text += 4;
    if (device) {
        const std::u16string_view name(text);
        const auto is = [name](const char16_t* lower) {
            if (name.size() != 3) return false;
            for (int i = 0; i < 3; ++i) {
                if ((name[static_cast<std::size_t>(i)] | 0x20) != lower[i]) return false;
            }
            return true;
        };
        const char* node = is(u"nul") ? "/dev/null" : is(u"con") ? "/dev/tty" : nullptr;
        if (node != nullptr) {
            text += 3;
            return node;
        }
    }
    const char16_t letter = static_cast<char16_t>(text[0] & ~0x20);
    if (letter < u'A' || letter > u'Z' || text[1] != u':') return "";
    text += 2;
    if (!IsSeparator(*text)) return letter == posix::CurrentDrive() ? (*text ? "" : ".") : "/";
    return "";
}

// Length of the well-formed UTF-8 character at the start of the text, 0 when there is none.
std::size_t CharacterLength(const unsigned char* text) {
    const unsigned char lead = text[0];
    if (lead < 0x80) return 1;
    const std::size_t length = lead < 0xC2   ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0) return 0;
    const unsigned char first = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char last = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (text[1] < first || text[1] > last) return 0;
    for (std::size_t i = 2; i < length; ++i) {
        if ((text[i] & 0xC0) != 0x80) return 0;  // the terminator ends the loop here too
    }
    return length;
}

void PutCharacter(Writer<char16_t>& out, const unsigned char*& text) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) return out.Put(kRawByte + char32_t{*text++});
    char32_t code = length == 1 ? text[0] : text[0] & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) code = code << 6 | (text[i] & 0x3Fu);
    text += length;
    if (code == '/') {
        out.Put(u'\\');
    } else if (code == '\\') {
        out.Put(kBackslashInName);
    } else if (code >= 0x10000) {
        out.Put(0xD7C0 + (code >> 10));
        out.Put(0xDC00 + (code & 0x3FF));
    } else {
        out.Put(code);
    }
}

}  // namespace

std::size_t NativePath(const char16_t* path, std::span<char> out) noexcept {
    Writer<char> writer(out);
    bool named = true;
    if (path != nullptr && *path != 0) {
        for (const char* prefix = TakePrefix(path); *prefix != 0; ++prefix) {
            writer.Put(static_cast<unsigned char>(*prefix));
        }
        while (named && *path != 0) named = PutUnit(writer, path);
    }
    if (!named) {
        SetLastError(kErrorInvalidName);
        return 0;
    }
    const std::size_t length = writer.fits() ? writer.Finish() : 0;
    if (length == 0) SetLastError(kErrorPathNotFound);
    return length;
}

std::size_t PathFromNative(const char* native, std::span<char16_t> out) noexcept {
    Writer<char16_t> writer(out);
    if (*native == '/') {
        writer.Put(posix::CurrentDrive());
        writer.Put(u':');
    }
    for (auto text = reinterpret_cast<const unsigned char*>(native); *text != 0;) {
        PutCharacter(writer, text);
    }
    const std::size_t length = writer.fits() ? writer.Finish() : 0;
    if (length == 0) SetLastError(kErrorPathNotFound);
    return length;
}

namespace posix {

void NativeName::DropSeparators() noexcept {
    while (EndsInSeparator()) bytes_[--length_] = 0;
}

bool NativeName::MayBeCreated() const noexcept {
    std::string_view name = view().substr(0, view().find_last_not_of('/') + 1);
    name.remove_prefix(name.rfind('/') + 1);  // npos + 1 is 0
    const auto is_control = [](char byte) { return static_cast<unsigned char>(byte) < 32; };
    return std::ranges::none_of(name, is_control) &&
           name.find_first_of("<>:\"|?*") == std::string_view::npos;
}

std::uint32_t NativeName::MissingError() const noexcept {
    if (!MayBeCreated()) return kErrorInvalidName;
    char folder[kMaxNativePath];
    std::size_t end = length_;
    while (end > 0 && bytes_[end - 1] == '/') --end;
    while (end > 0 && bytes_[end - 1] != '/') --end;
    if (end == 0) return kErrorFileNotFound;
    std::memcpy(folder, bytes_, end);
    folder[end] = 0;
    struct stat status;
    const bool found = stat(folder, &status) == 0 && S_ISDIR(status.st_mode);
    return found ? kErrorFileNotFound : kErrorPathNotFound;
}

bool NativeName::Fail(int number) const noexcept {
    if (number == ENOENT || number == ENOTDIR) return posix::Fail(MissingError());
    return FailWithErrno(number);
}

}  // namespace posix

}  // namespace zelkor::platform
