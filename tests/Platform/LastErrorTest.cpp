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

}  // namespace
