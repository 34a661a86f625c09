// Forced answers of the platform.
#ifndef TESTS_SUPPORT_PLATFORM_H
#define TESTS_SUPPORT_PLATFORM_H

#include <cstdint>

namespace test {

// While it lives, the platform is of this family and version (older family: 1, NT line: 2), and
// CT_OS has classified it so. One at a time.
class ForcedVersion {
public:
    ForcedVersion(std::uint32_t family, std::uint32_t major, std::uint32_t minor,
                  std::uint32_t build = 0, const char16_t* text = u"");
    ~ForcedVersion();
    ForcedVersion(const ForcedVersion&) = delete;
    ForcedVersion& operator=(const ForcedVersion&) = delete;
};

}  // namespace test

#endif
