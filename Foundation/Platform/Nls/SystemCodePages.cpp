// The configured ANSI and OEM pages, which are those of the locale that the environment asks for.
#include <atomic>

#include "Foundation/Platform/Nls/CodePages.h"
#include "Foundation/Platform/Nls/LocaleDetail.h"
#include "Foundation/Platform/Nls/Locales.h"

namespace platform {
namespace {

constexpr std::uint32_t kWestern = 1252;
constexpr std::uint32_t kWesternOem = 850;

// Both pages in one word, the OEM page in the high half; 0 before the first question.
constinit std::atomic<std::uint32_t> configured{0};

constexpr std::uint32_t Packed(std::uint32_t ansi, std::uint32_t oem) {
    return oem << 16 | ansi;
}

// Languages without pages have those of Western Europe.
std::uint32_t PagesOf(LCID lcid) noexcept {
    const std::uint32_t ansi = LocaleNumber(lcid, kLocaleAnsiCodePage).value_or(0);
    if (ansi == 0) return Packed(kWestern, kWesternOem);
    return Packed(ansi, LocaleNumber(lcid, kLocaleOemCodePage).value_or(ansi));
}

std::uint32_t Configured() noexcept {
    std::uint32_t pages = configured.load(std::memory_order_relaxed);
    if (pages != 0) return pages;
    const std::uint32_t fresh = PagesOf(nls::EnvironmentLocale());
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
