// Sixteen bytes at once, with what every x86-64 processor has. UtfDecode.h, UtfEncode.h and
// UtfAscii.h are written over such a vector type; UtfSse41.h and UtfAvx2.cpp have wider ones.
// Included behind a definition of UTF_INSTRUCTIONS, the instruction sets of the including file,
// which every function must carry so that it can be inlined there.
#ifndef FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFVECTOR128_H
#define FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFVECTOR128_H

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#define UTF_KERNEL __attribute__((target(UTF_INSTRUCTIONS)))
#define UTF_PART UTF_KERNEL __attribute__((always_inline)) inline

namespace zelkor::platform::detail {
namespace {

constexpr std::size_t kBlock = 64;  // bytes (decoding) or units (encoding) between two tests

// Masks are all ones or all zeros in each element. Every vector type has these operations, and the
// level's own: AnySet, Errors, Keep, JoinTwoBytes, JoinThreeBytes.
struct Vector128 {
    using Raw = __m128i;
    static constexpr std::size_t kBytes = 16;
    static constexpr std::size_t kUnits = 8;

    UTF_PART static Raw Load(const void* from) {
        return _mm_loadu_si128(static_cast<const Raw*>(from));
    }
    // `size` bytes, less than a vector, and zeros behind them.
    UTF_PART static Raw LoadPart(const void* from, std::size_t size) {
        const auto* bytes = static_cast<const unsigned char*>(from);
        std::uint64_t low = 0;
        std::uint64_t high = 0;
        if (size >= 8) {
            low = LoadWord<std::uint64_t>(bytes);
            high = LoadWord<std::uint64_t>(bytes + size - 8) >> 1 >> (127 - 8 * size);
        } else if (size >= 4) {
            low = LoadWord<std::uint32_t>(bytes);
            low |= LoadWord<std::uint32_t>(bytes + size - 4) << 8 * (size - 4);
        } else if (size != 0) {
            const auto byte = [bytes](std::size_t i) { return std::uint64_t{bytes[i]} << 8 * i; };
            low = byte(0) | byte(size / 2) | byte(size - 1);
        }
        return _mm_set_epi64x(static_cast<long long>(high), static_cast<long long>(low));
    }
    template <class Word>
    UTF_PART static std::uint64_t LoadWord(const unsigned char* from) {
        Word word;
        std::memcpy(&word, from, sizeof word);
        return word;
    }
    UTF_PART static void Store(void* to, Raw v) { _mm_storeu_si128(static_cast<Raw*>(to), v); }
    UTF_PART static Raw Bytes(int value) { return _mm_set1_epi8(static_cast<char>(value)); }
    UTF_PART static Raw Units(int value) { return _mm_set1_epi16(static_cast<short>(value)); }
    UTF_PART static Raw Zero() { return _mm_setzero_si128(); }

    UTF_PART static Raw EqualBytes(Raw a, Raw b) { return _mm_cmpeq_epi8(a, b); }
    UTF_PART static Raw EqualUnits(Raw a, Raw b) { return _mm_cmpeq_epi16(a, b); }
    UTF_PART static Raw SignedLess(Raw a, Raw b) { return _mm_cmpgt_epi8(b, a); }
    UTF_PART static Raw Largest(Raw a, Raw b) { return _mm_max_epu8(a, b); }
    UTF_PART static Raw AddBytes(Raw a, Raw b) { return _mm_add_epi8(a, b); }
    UTF_PART static Raw AddUnits(Raw a, Raw b) { return _mm_add_epi16(a, b); }
    UTF_PART static Raw LessOrZero(Raw v, int value) { return _mm_subs_epu8(v, Bytes(value)); }
    // Shifts move whole units; bits that cross into the neighbouring byte are the caller's to mask.
    template <int count>
    UTF_PART static Raw Left(Raw v) {
        return _mm_slli_epi16(v, count);
    }
    template <int count>
    UTF_PART static Raw Right(Raw v) {
        return _mm_srli_epi16(v, count);
    }
    // The byte `count` before or behind each byte; 0 where there is none.
    template <int count>
    UTF_PART static Raw BytesBefore(Raw v) {
        return _mm_slli_si128(v, count);
    }
    template <int count>
    UTF_PART static Raw BytesBehind(Raw v) {
        return _mm_srli_si128(v, count);
    }
    UTF_PART static Raw UnitsBefore(Raw v) { return BytesBefore<2>(v); }
    UTF_PART static Raw Select(Raw mask, Raw yes, Raw no) { return (mask & yes) | (~mask & no); }
    // One bit a byte: its top bit.
    UTF_PART static std::uint32_t TopBits(Raw v) {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(v));
    }
    static constexpr std::uint32_t kAllBits = 0xFFFF;

    UTF_PART static void Widen(Raw bytes, char16_t* to) {
        Store(to, _mm_unpacklo_epi8(bytes, Zero()));
        Store(to + 8, _mm_unpackhi_epi8(bytes, Zero()));
    }
    UTF_PART static void Narrow(Raw first, Raw second, char* to) {
        Store(to, _mm_packus_epi16(first, second));
    }
};

}  // namespace
}  // namespace zelkor::platform::detail

#endif
