// The thread's last error and the system's texts.
#include "Foundation/Platform/LastError.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace zelkor::platform;

TEST(LastErrorTest, EachThreadHasItsOwn) {
    SetLastError(kErrorDiskFull);
    std::thread other([] {
        EXPECT_EQ(LastError(), kErrorSuccess);
        SetLastError(kErrorAccessDenied);
    });
    other.join();
    EXPECT_EQ(LastError(), kErrorDiskFull);
    SetLastError(0);
}

TEST(LastErrorTest, TextsEndAsTheSystemEndsThem) {
    EXPECT_EQ(SystemText(0), u"The operation completed successfully.\r\n");
    EXPECT_EQ(SystemText(5), u"Access is denied.\r\n");
    EXPECT_EQ(
        SystemText(1113),
        u"No mapping for the Unicode character exists in the target multi-byte code page.\r\n");
    EXPECT_EQ(SystemText(0x80004005), u"Unspecified error\r\n");
    EXPECT_EQ(SystemText(0x800401D0), u"OpenClipboard Failed\r\n");
    EXPECT_EQ(SystemText(0x80070005), SystemText(5)) << "the system's facility";
    EXPECT_EQ(SystemText(0x80080005), u"Server execution failed\r\n") << "the last entry";
    for (const std::uint32_t none : {35u, 31050u, 60003u, 0x80070023u, 0x20000005u, 0xFFFFFFFFu}) {
        EXPECT_TRUE(SystemText(none).empty()) << none;
    }
}

TEST(LastErrorTest, EveryNumberThatTheGroundSetsHasAText) {
    for (const std::uint32_t number :
         {1u,   2u,    3u,    4u,    5u,    6u,    8u,    15u,   17u,   18u,   19u,  25u,
          31u,  32u,   33u,   50u,   59u,   80u,   87u,   109u,  112u,  120u,  121u, 122u,
          123u, 126u,  131u,  145u,  158u,  183u,  206u,  222u,  223u,  267u,  487u, 995u,
          998u, 1004u, 1006u, 1113u, 1117u, 1131u, 1142u, 1167u, 1224u, 1450u, 1921u}) {
        EXPECT_TRUE(SystemText(number).ends_with(u"\r\n")) << number;
    }
}

}  // namespace
