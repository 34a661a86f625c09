// Buffers from and to text, for tests.
#ifndef TESTS_CORE_BUFFER_BUFFERTEXTS_H
#define TESTS_CORE_BUFFER_BUFFERTEXTS_H

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Support/Errors.h"

namespace test {

inline constexpr std::uint32_t kAll = 0xFFFFFFFF;

inline CT_Buffer Make(std::string_view text, std::uint32_t growth = 32) {
    return CT_Buffer(text.data(), static_cast<std::uint32_t>(text.size()), growth);
}
inline std::string Content(const CT_Buffer& buffer) {
    return std::string(static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize());
}

}  // namespace test

#endif
