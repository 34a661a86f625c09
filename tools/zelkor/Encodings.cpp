#include "Encodings.h"

#include <Foundation/Core/Language/Codepage.h>
#include <Foundation/Platform/CodePages/CodePages.h>
#include <Foundation/Platform/CodePages/TextPieces.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "Console.h"
#include "Surrogates.h"

namespace zelkor::cli {

namespace {

struct Alias {
    std::string_view name;  // letters and digits alone, small
    unsigned int page;
};
constexpr unsigned int kHebrew = 28598;
constexpr unsigned int kJohab = 1361;

// Names in common use beside those that CT_Codepage knows, and those that it takes for a Windows
// page with more characters, or others, than a file of that name may have; 0: not served.
constexpr auto kAliases = std::to_array<Alias>({{"ascii", 646},
                                                {"big5", 950},
                                                {"cp819", kLatin1},
                                                {"csiso2022kr", 0},
                                                {"csisolatin1", kLatin1},
                                                {"csisolatinhebrew", kHebrew},
                                                {"eucjp", 51932},
                                                {"euckr", 949},
                                                {"gb18030", 54936},
                                                {"gb2312", 936},
                                                {"gbk", 936},
                                                {"hebrew", kHebrew},
                                                {"hz", 52936},
                                                {"ibm819", kLatin1},
                                                {"iso2022jp", kIso2022Jp},
                                                {"iso2022kr", 0},
                                                {"iso88591", kLatin1},
                                                {"iso885911987", kLatin1},
                                                {"iso885913", 28603},
                                                {"iso885915", 28605},
                                                {"iso88598", kHebrew},
                                                {"iso885981988", kHebrew},
                                                {"isoir100", kLatin1},
                                                {"isoir138", kHebrew},
                                                {"johab", kJohab},
                                                {"koi8u", 21866},
                                                {"l1", kLatin1},
                                                {"latin1", kLatin1},
                                                {"latin9", 28605},
                                                {"shiftjis", 932},
                                                {"sjis", 932},
                                                {"utf16", kUtf16Little},
                                                {"utf16be", kUtf16Big},
                                                {"utf16le", kUtf16Little},
                                                {"utf7", 65000},
                                                {"utf8", kUtf8Number},
                                                {"windows31j", 932}});
// In front of the number of a page.
constexpr auto kPrefixes =
    std::to_array<std::string_view>({"", "codepage", "cp", "dos", "ibm", "windows"});

bool IsServed(unsigned int page) {
    return page == kUtf16Little || page == kUtf16Big || platform::IsValidCodePage(page);
}

// The letters, made small, and the digits of a name.
std::string Bare(std::string_view name) {
    std::string bare;
    for (const char c : name) {
        const bool capital = c >= 'A' && c <= 'Z';
        if (capital || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
            bare += static_cast<char>(capital ? c | 0x20 : c);
        }
    }
    return bare;
}

// The number behind one of the prefixes, or 0.
unsigned int NumberIn(std::string_view bare) {
    for (const std::string_view prefix : kPrefixes) {
        if (!bare.starts_with(prefix)) continue;
        unsigned int number = 0;
        const char* const last = bare.data() + bare.size();
        const auto [end, error] = std::from_chars(bare.data() + prefix.size(), last, number);
        if (error == std::errc() && end == last) return number;
    }
    return 0;
}

unsigned int FindPage(const std::string& name) {
    const std::string bare = Bare(name);
    const auto alias = std::ranges::find(kAliases, bare, &Alias::name);
    if (alias != kAliases.end()) return alias->page;
    const CT_UString text = FromUtf8(name);
    const CT_Codepage known(&text);
    return known.b_IsValid() != FALSE ? known.n_Get() : NumberIn(bare);
}

}  // namespace

Encoding ParseEncoding(const std::string& name) {
    const unsigned int page = FindPage(name);
    if (!IsServed(page)) {
        throw Failure("'" + Printable(name) +
                          "' is no encoding known here; give a name such as UTF-8, iso-8859-1, "
                          "windows-1250, Shift_JIS or a code-page number such as 1252",
                      2);
    }
    const std::string bare = Bare(name);
    return {page, bare == "utf16" || bare == "unicode"};
}

std::string NameOf(const Encoding& encoding) {
    if (encoding.either_order) return "UTF-16";
    if (encoding.IsUtf16()) return encoding.page == kUtf16Little ? "UTF-16LE" : "UTF-16BE";
    if (encoding.page == kLatin1) return "iso-8859-1";
    if (encoding.page == kHebrew) return "iso-8859-8";
    if (encoding.page == kJohab) return "Johab";
    const char16_t* name = CT_Codepage(encoding.page).qcuz_Get();
    return name == nullptr ? "cp" + std::to_string(encoding.page) : ToUtf8(CT_UString(name));
}

std::string Describe(const Encoding& encoding) {
    return NameOf(encoding) + " (" + std::to_string(encoding.page) + ")";
}

std::string_view MarkOf(const Encoding& encoding) {
    if (encoding.page == kUtf16Little) return "\xFF\xFE";
    if (encoding.page == kUtf16Big) return "\xFE\xFF";
    return encoding.page == kUtf8Number ? "\xEF\xBB\xBF" : "";
}

bool DecodeExactly(unsigned int page, std::string_view bytes, std::u16string& units) {
    units.resize(bytes.size());
    const auto done =
        platform::TextDecoder(page).Decode(bytes.data(), bytes.size(), true, units.data());
    units.resize(done.written);
    return done.taken == bytes.size() && done.faults == 0 && FindUnpaired(units) == units.size();
}

bool EncodeExactly(unsigned int page, std::u16string_view units, std::string& bytes) {
    platform::TextEncoder encoder(page);
    bytes.resize(encoder.MaxBytes(units.size()));
    const auto done = encoder.Encode(units.data(), units.size(), true, bytes.data());
    bytes.resize(done.written);
    return done.taken == units.size() && done.faults == 0 && FindUnpaired(units) == units.size();
}

std::optional<Encoding> EncodingOfMark(std::string_view bytes) {
    for (const unsigned int page : {kUtf8Number, kUtf16Little, kUtf16Big}) {
        if (bytes.starts_with(MarkOf({page}))) return Encoding{page};
    }
    return std::nullopt;
}

}  // namespace zelkor::cli
