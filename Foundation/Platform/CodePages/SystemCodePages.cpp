// The configured ANSI and OEM pages, which are those of the system's default locale at load.
#include <atomic>

#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/Locales/Internal/LocaleDetail.h"
#include "Foundation/Platform/Locales/Locales.h"

namespace zelkor::platform {
namespace {

constexpr std::uint32_t kWestern = 1252;
constexpr std::uint32_t kWesternOem = 850;
constexpr std::uint32_t kUnitedStatesOem = 437;

constexpr std::uint32_t Packed(std::uint32_t ansi, std::uint32_t oem) {
    return oem << 16 | ansi;
}

// Both pages in one word, the OEM page in the high half: those in force and those found at load.
constinit std::atomic<std::uint32_t> configured{Packed(kWestern, kUnitedStatesOem)};
constinit std::atomic<std::uint32_t> found{Packed(kWestern, kUnitedStatesOem)};

// Languages without pages have those of Western Europe.
std::uint32_t PagesOf(LCID lcid) noexcept {
    const std::uint32_t ansi = LocaleNumber(lcid, kLocaleAnsiCodePage).value_or(0);
    if (ansi == 0) return Packed(kWestern, kWesternOem);
    return Packed(ansi, LocaleNumber(lcid, kLocaleOemCodePage).value_or(ansi));
}

std::uint32_t Configured() noexcept {
    return configured.load(std::memory_order_relaxed);
}

}  // namespace

void nls::TakeSystemPages(LCID system) noexcept {
    found.store(PagesOf(system), std::memory_order_relaxed);
    SetSystemCodePages(0, 0);
}

std::uint32_t AnsiCodePage() noexcept {
    return Configured() & 0xFFFF;
}

std::uint32_t OemCodePage() noexcept {
    return Configured() >> 16;
}

void SetSystemCodePages(std::uint32_t ansi, std::uint32_t oem) noexcept {
    const bool given = ansi != 0 || oem != 0;
    configured.store(given ? Packed(ansi, oem) : found.load(std::memory_order_relaxed),
                     std::memory_order_relaxed);
}

}  // namespace zelkor::platform
