// CT_OS's classification and CT_SysInfo's answers, with the platform's answers forced.
#include "Foundation/System/SysInfo/SysInfo.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <array>
#include <sstream>
#include <string>
#include <tuple>

#include "Foundation/Core/Base/OS.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/System.h"
#include "Support/Errors.h"
#include "Support/Platform.h"
#include "Support/Text.h"

namespace platform = zelkor::platform;

namespace {

// Forced answers are the test's own.
class SysInfoTest : public testing::Test {
protected:
    ~SysInfoTest() override {
        platform::SetSystemAnswers({});
        zelkor::detail::ClassifySystemAgain();
    }

    platform::SystemAnswers answers;
};

using OSTest = SysInfoTest;

// The flags in the order 32s 95 OSR2 98 Me CE NT 2K XP, as digits.
std::string Flags() {
    std::string flags;
    for (BOOL (*const ask)() :
         {CT_OS::sb_GetIsWindows32s, CT_OS::sb_GetIsWindows95, CT_OS::sb_GetIsWindows95OSR2,
          CT_OS::sb_GetIsWindows98, CT_OS::sb_GetIsWindowsMe, CT_OS::sb_GetIsWindowsCE,
          CT_OS::sb_GetIsWindowsNT, CT_OS::sb_GetIsWindows2K, CT_OS::sb_GetIsWindowsXP}) {
        flags += ask() ? '1' : '0';
    }
    return flags;
}

TEST_F(OSTest, ClassifiesFamilyAndVersion) {
    // Family, major, minor, build, version, flags, stored build; hexadecimal but for the flags.
    std::istringstream cases(
        "0 3 1 20067 1 100000000 67  1 4 0 40003B6 2 010000000 3B6  1 4 0 4000457 3 011000000 457 "
        "1 4 A 40A07CE 4 010100000 7CE  1 4 5A 45A0BB8 4 010100000 BB8  1 4 A 457 4 010100000 457 "
        "2 4 0 565 7 000000100 565  2 5 0 893 8 000000110 893  2 5 1 A28 9 000000101 A28 "
        "2 5 2 ECE 9 000000101 ECE  2 6 0 1770 7 000000100 1770  3 4 14 10001 5 000001000 1 "
        "2 A 0 12345678 7 000000100 12345678  4 5 1 10001 7 000000100 10001");
    unsigned int family, major, minor, build, stored;
    int version;
    std::string flags;
    while (cases >> std::hex >> family >> major >> minor >> build >> version >> flags >> stored) {
        SCOPED_TRACE(testing::Message() << family << ' ' << major << '.' << minor);
        const test::ForcedVersion forced(family, major, minor, build, u"Service Pack 3");
        EXPECT_EQ(CT_OS::seo_GetVersion(), version);
        EXPECT_EQ(Flags(), flags);
        EXPECT_EQ(CT_OS::sn_GetOsVersionMajor(), major);
        EXPECT_EQ(CT_OS::sn_GetOsVersionMinor(), minor);
        EXPECT_EQ(CT_OS::sn_GetOsVersionBuild(), stored);
        EXPECT_EQ(test::Utf8(CT_OS::sqcuz_GetOsVersionString()), "Service Pack 3");
    }
    EXPECT_TRUE(cases.eof()) << "every row was read";
}

// A failed query leaves the generation that speaks UTF-16, which this machine's own is too.
TEST_F(OSTest, ThisMachineAndAFailedQueryCountAsNewest) {
    EXPECT_EQ(CT_OS::seo_GetVersion(), CT_OS::WindowsNT);
    EXPECT_EQ(CT_OS::sn_GetOsVersionMajor(), 10u);
    EXPECT_FALSE(std::u16string_view(CT_OS::sqcuz_GetOsVersionString()).empty());
    answers.version = [](platform::SystemVersion* version) {
        *version = platform::SystemVersion{1, 1, 1, 1, {}};
        return false;
    };
    platform::SetSystemAnswers(answers);
    zelkor::detail::ClassifySystemAgain();
    EXPECT_EQ(CT_OS::seo_GetVersion(), CT_OS::WindowsNT);
    EXPECT_EQ(CT_OS::sn_GetOsVersionMajor(), 0u);
}

// ---- CT_SysInfo --------------------------------------------------------------------------------

platform::ProcessorInfo processor;

TEST_F(SysInfoTest, ProcessorsByLevelOrByType) {
    const std::tuple<platform::ProcessorInfo, unsigned int, int> cases[] = {
        {{2, true, 3, 0}, 2, 0},    {{2, true, 4, 0}, 2, 1},   {{2, true, 5, 0}, 2, 2},
        {{2, true, 6, 0}, 2, 3},    {{2, true, 2, 386}, 2, 4}, {{2, true, 25, 0}, 2, 4},
        {{2, false, 6, 586}, 2, 5}, {{2, true, 6, 386}, 1, 0}, {{2, true, 6, 486}, 1, 1},
        {{2, true, 3, 586}, 1, 2},  {{2, true, 6, 0}, 1, 4},   {{2, false, 3, 386}, 1, 5},
    };
    answers.processors = [] { return processor; };
    for (const auto& [info, family, expected] : cases) {
        const test::ForcedVersion version(family, family == 2 ? 5 : 4, 0);
        processor = info;
        platform::SetSystemAnswers(answers);
        EXPECT_EQ(CT_SysInfo::seo_GetProcessor(), expected) << info.level << ' ' << family;
    }
    platform::SetSystemAnswers(answers);
    processor = {0, true, 6, 0};
    EXPECT_EQ(CT_SysInfo::sn_GetNumCPU(), 1u);
    processor.count = 12;
    EXPECT_EQ(CT_SysInfo::sn_GetNumCPU(), 12u);
}

TEST_F(SysInfoTest, AmountsOf4GiBAndMoreAreCut) {
    answers.memory = [] {
        constexpr std::uint64_t kGiB = 1u << 30;
        return platform::MemoryStatus{17, 8 * kGiB, 3 * kGiB, 4 * kGiB - 1, 4 * kGiB, 5, 6};
    };
    platform::SetSystemAnswers(answers);
    using Values = std::array<unsigned int, 7>;
    Values v{};
    CT_SysInfo::sv_GetMemoryInfo(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6]);
    using I = CT_SysInfo;
    EXPECT_EQ(v, (Values{17, 0xFFFFFFFF, 3u << 30, 0xFFFFFFFF, 0xFFFFFFFF, 5, 6}));
    unsigned int (*const singly[])() = {I::sn_GetMemoryLoad,
                                        I::sn_GetPhysicalMemoryTotal,
                                        I::sn_GetPhysicalMemoryAvailable,
                                        I::sn_GetVirtualMemoryTotal,
                                        I::sn_GetVirtualMemoryAvailable,
                                        I::sn_GetPagingMemoryTotal,
                                        I::sn_GetPagingMemoryAvailable};
    for (std::size_t i = 0; i < v.size(); ++i) EXPECT_EQ(singly[i](), v[i]) << i;
    CT_SysInfo::sv_GetMemoryInfo(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
}

TEST_F(SysInfoTest, ThisMachineHasPlausibleFacts) {
    EXPECT_LE(CT_SysInfo::sn_GetMemoryLoad(), 100u);
    cpu_set_t usable;
    ASSERT_EQ(sched_getaffinity(getpid(), sizeof usable, &usable), 0);
    EXPECT_EQ(CT_SysInfo::sn_GetNumCPU(), static_cast<unsigned int>(CPU_COUNT(&usable)));
    cpu_set_t one{};
    for (std::size_t i = 0; CPU_COUNT(&one) == 0; ++i) {
        if (CPU_ISSET(i, &usable)) CPU_SET(i, &one);
    }
    EXPECT_EQ(sched_setaffinity(getpid(), sizeof one, &one), 0);
    EXPECT_EQ(CT_SysInfo::sn_GetNumCPU(), 1u);
    EXPECT_EQ(sched_setaffinity(getpid(), sizeof usable, &usable), 0);

    const platform::MemoryStatus memory = platform::QueryMemory();
    EXPECT_GT(memory.physical_total, 1u << 24);
    EXPECT_LE(memory.physical_available, memory.physical_total);
    EXPECT_GE(memory.paging_total, memory.physical_total);
    EXPECT_GT(memory.physical_available, 0u);
    EXPECT_LT(memory.virtual_available, memory.virtual_total);
    EXPECT_GT(memory.virtual_available, 0u);
    const platform::MemoryStatus totals = platform::QueryMemory(platform::kMemoryTotals);
    EXPECT_EQ(totals.physical_total, memory.physical_total);
    EXPECT_EQ(totals.paging_total, memory.paging_total);
    EXPECT_EQ(totals.virtual_total, memory.virtual_total);
    EXPECT_NE(platform::QueryMemory(platform::kMemoryAvailable).paging_available, 0u);
    EXPECT_NE(platform::QueryMemory(platform::kMemoryAddresses).virtual_available, 0u);
    EXPECT_TRUE(CT_SysInfo::sb_GetNetworkAttached());
    EXPECT_FALSE(CT_SysInfo::sb_GetKanjiWindow());
    for (const unsigned int page : {1252u, 932u, 1255u, 1256u}) {
        platform::SetSystemCodePages(page, 437);
        EXPECT_EQ(CT_SysInfo::sb_GetDBCSEnabled(), page == 932) << page;
        EXPECT_EQ(CT_SysInfo::sb_GetMidEastEnabled(), page >= 1255) << page;
    }
    platform::SetSystemCodePages(0, 0);
    CT_SysInfo::sv_GetComputerName(nullptr);
}

TEST_F(SysInfoTest, TheComputerNameOrTheSystemError) {
    CT_UString name(u"old");
    answers.computer_name = [](char16_t* text, std::uint32_t capacity) {
        EXPECT_EQ(capacity, 16u);
        text[0] = u'p';
        text[1] = 0;
        return true;
    };
    platform::SetSystemAnswers(answers);
    CT_SysInfo::sv_GetComputerName(&name);
    EXPECT_EQ(test::Utf8(name.qcuz_Get()), "p");
    answers.computer_name = [](char16_t*, std::uint32_t) {
        platform::SetLastError(platform::kErrorInsufficientBuffer);
        return false;
    };
    platform::SetSystemAnswers(answers);
    CT_SysInfo::sv_GetComputerName(&name);
    EXPECT_TRUE(test::TakeError(122, {}, "Foundation/System/SysInfo/SysInfo.cpp"));
    EXPECT_EQ(name.n_GetLength(), 0u);

    platform::SetSystemAnswers({});
    char16_t text[256];
    EXPECT_TRUE(platform::ComputerName(text, 256));
    EXPECT_EQ(std::u16string_view(text).find(u'.'), std::u16string_view::npos);
    EXPECT_FALSE(platform::ComputerName(text, 1));
    EXPECT_EQ(platform::LastError(), 122u);
}

}  // namespace
