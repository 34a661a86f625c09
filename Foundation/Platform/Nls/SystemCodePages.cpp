// The configured ANSI and OEM pages, and the language of the environment that they come from.
#include <algorithm>
#include <array>
#include <atomic>
#include <string_view>

#include "Foundation/Platform/Nls/CodePages.h"
#include "Foundation/Platform/Nls/LocaleDetail.h"

namespace platform {
namespace {

struct SystemPages {
    std::uint16_t ansi;
    std::uint16_t oem;
};

struct LanguagePages {
    char name[6];  // a language, or a language and a territory
    SystemPages pages;
};

// What the system has for each language that is not like most of Western Europe.
// The OEM pages 737, 775, 852, 855, 857 and 866 are not served: the ANSI page takes their place.
constexpr auto kLanguages = std::to_array<LanguagePages>(
    {{"ar", {1256, 720}},    {"az", {1254, 1254}},   {"be", {1251, 1251}},   {"bg", {1251, 1251}},
     {"bs", {1250, 1250}},   {"cs", {1250, 1250}},   {"el", {1253, 1253}},   {"en", {1252, 437}},
     {"en_AU", {1252, 850}}, {"en_CA", {1252, 850}}, {"en_GB", {1252, 850}}, {"en_IE", {1252, 850}},
     {"en_NZ", {1252, 850}}, {"et", {1257, 1257}},   {"fa", {1256, 720}},    {"he", {1255, 862}},
     {"hr", {1250, 1250}},   {"hu", {1250, 1250}},   {"iw", {1255, 862}},    {"ja", {932, 932}},
     {"kk", {1251, 1251}},   {"ko", {949, 949}},     {"ky", {1251, 1251}},   {"lt", {1257, 1257}},
     {"lv", {1257, 1257}},   {"mk", {1251, 1251}},   {"mn", {1251, 1251}},   {"pl", {1250, 1250}},
     {"ro", {1250, 1250}},   {"ru", {1251, 1251}},   {"sk", {1250, 1250}},   {"sl", {1250, 1250}},
     {"sq", {1250, 1250}},   {"sr", {1251, 1251}},   {"tg", {1251, 1251}},   {"th", {874, 874}},
     {"tr", {1254, 1254}},   {"tt", {1251, 1251}},   {"uk", {1251, 1251}},   {"ur", {1256, 720}},
     {"uz", {1254, 1254}},   {"vi", {1258, 1258}},   {"zh", {936, 936}},     {"zh_HK", {950, 950}},
     {"zh_MO", {950, 950}},  {"zh_TW", {950, 950}}});
constexpr SystemPages kNoLanguage{1252, 437};
constexpr SystemPages kWestern{1252, 850};
constexpr SystemPages kCentralEuropean{1250, 1250};
constexpr SystemPages kCyrillic{1251, 1251};

// Both pages in one word, the OEM page in the high half; 0 before the first question.
constinit std::atomic<std::uint32_t> configured{0};

constexpr std::uint32_t Packed(std::uint32_t ansi, std::uint32_t oem) {
    return oem << 16 | ansi;
}

const LanguagePages* Find(std::string_view name) noexcept {
    const auto row = std::ranges::find(
        kLanguages, name, [](const LanguagePages& pages) { return std::string_view(pages.name); });
    return row == kLanguages.end() ? nullptr : &*row;
}

SystemPages PagesOf(const nls::EnvironmentLocale& locale) noexcept {
    if (locale.language.empty()) return kNoLanguage;
    if (locale.language == "sr" && locale.modifier == "latin") return kCentralEuropean;
    if (locale.language == "uz" && locale.modifier == "cyrillic") return kCyrillic;
    const LanguagePages* row = Find(locale.name);
    if (row == nullptr) row = Find(locale.language);
    return row == nullptr ? kWestern : row->pages;
}

std::uint32_t Configured() noexcept {
    std::uint32_t pages = configured.load(std::memory_order_relaxed);
    if (pages != 0) return pages;
    const SystemPages found = PagesOf(nls::ReadEnvironmentLocale());
    const std::uint32_t fresh = Packed(found.ansi, found.oem);
    // Another thread, or SetSystemCodePages, may have been faster; its answer stays.
    return configured.compare_exchange_strong(pages, fresh, std::memory_order_relaxed) ? fresh
                                                                                       : pages;
}

}  // namespace

std::uint32_t AnsiCodePage() noexcept {
    return Configured() & 0xFFFF;
}

std::uint32_t OemCodePage() noexcept {
    return Configured() >> 16;
}

void SetSystemCodePages(std::uint32_t ansi, std::uint32_t oem) noexcept {
    configured.store(Packed(ansi, oem), std::memory_order_relaxed);
}

}  // namespace platform
