// UTF-16 to UTF-8 over a vector type. The bytes of all units are worked out at once, three a unit,
// and the unused ones are then squeezed out by table-driven shuffles, as in Lemire and Keiser 2022,
// "Transcoding billions of Unicode characters per second with SIMD instructions". A surrogate gives
// two bytes: the first one of a pair the first two of its four, the second one the others.
#ifndef FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFENCODE_H
#define FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFENCODE_H

#include "Foundation/Platform/Text/Internal/UtfScalar.h"
#include "Foundation/Platform/Text/Internal/UtfVector128.h"

namespace zelkor::platform::detail {
namespace {

constexpr std::size_t kOverrun = 4;  // bytes that a vector may write behind three a unit

// Units and which of them take one byte and at most two.
template <class V>
struct Sized {
    UTF_PART explicit Sized(typename V::Raw v)
        : units(v),
          one(V::EqualUnits(v & V::Units(0xFF80), V::Zero())),
          two(V::EqualUnits(v & V::Units(0xF800), V::Zero())) {}

    UTF_PART bool NoneTakesThree() const { return V::TopBits(two) == V::kAllBits; }
    UTF_PART typename V::Raw Surrogates() const {
        return V::EqualUnits(units & V::Units(0xF800), V::Units(0xD800));
    }
    // Two bits a unit: one byte, at most two.
    UTF_PART std::uint32_t Codes() const {
        return V::TopBits(V::Select(V::Units(0x00FF), one, two));
    }
    typename V::Raw units, one, two;
};

// The bytes of a unit, ending with the last of `back`: lead byte in the upper half of `front`.
template <class V>
struct UnitBytes {
    typename V::Raw front, back;
};

template <class V>
UTF_PART typename V::Raw TwoBytes(const Sized<V>& source) {
    const auto bytes = V::template Right<6>(source.units) |
                       (V::template Left<8>(source.units) & V::Units(0x3F00)) | V::Units(0x80C0);
    return V::Select(source.one, source.units, bytes);
}

template <class V>
UTF_PART UnitBytes<V> ThreeBytes(const Sized<V>& source) {
    const auto last = V::template Left<8>(source.units);
    const auto middle = (V::template Right<6>(source.units) & V::Units(0x3F)) |
                        (source.two & V::Units(0x40)) | V::Units(0x8080);
    const auto front = (V::template Right<4>(source.units) & V::Units(0x0F00)) | V::Units(0xE000);
    return {front, V::Select(source.one, last, (last & V::Units(0x3F00)) | middle)};
}

enum class Pairs { None, Whole, LastIsCut, IllFormed };

// Puts in the bytes of the surrogates and makes them two-byte units. The first half of a pair may
// be the last unit; a second half is never the first.
template <class V>
UTF_PART Pairs PairSurrogates(Sized<V>& source, UnitBytes<V>& bytes) {
    const auto kinds = source.units & V::Units(0xFC00);
    const auto first = V::EqualUnits(kinds, V::Units(0xD800));
    const auto second = V::EqualUnits(kinds, V::Units(0xDC00));
    const std::uint32_t firsts = V::TopBits(first);
    if ((firsts << 2 & V::kAllBits) != V::TopBits(second)) return Pairs::IllFormed;
    const auto upper = V::AddUnits(source.units, V::Units(0x2840));  // the character's bits from 10
    const auto first_bytes = V::template Right<8>(upper) |
                             (V::template Left<6>(upper) & V::Units(0x3F00)) | V::Units(0x80F0);
    const auto second_bytes = (V::template Left<4>(V::UnitsBefore(source.units)) & V::Units(0x30)) |
                              (V::template Right<6>(source.units) & V::Units(0x0F)) |
                              (V::template Left<8>(source.units) & V::Units(0x3F00)) |
                              V::Units(0x8080);
    bytes.back = V::Select(first, first_bytes, V::Select(second, second_bytes, bytes.back));
    source.two = source.two | first | second;
    return (firsts & ~(V::kAllBits >> 1)) != 0 ? Pairs::LastIsCut : Pairs::Whole;
}

// Writes a vector from a character's start on; the number of units taken, 0 when it is ill formed
// or, three bytes a unit, might not fit the room. That is at least one vector.
template <class V>
UTF_PART std::size_t EncodeVector(typename V::Raw units, char*& to, std::size_t room) {
    Sized<V> source(units);
    if (source.NoneTakesThree()) {
        to = V::JoinTwoBytes(TwoBytes<V>(source), source.one, to);
        return V::kUnits;
    }
    if (room < 3 * V::kUnits + kOverrun) return 0;
    UnitBytes<V> bytes = ThreeBytes<V>(source);
    Pairs pairs = Pairs::None;
    if (V::TopBits(source.Surrogates()) != 0) {
        pairs = PairSurrogates<V>(source, bytes);
        if (pairs == Pairs::IllFormed) return 0;
    }
    to = V::JoinThreeBytes(bytes, source, to);
    if (pairs != Pairs::LastIsCut) return V::kUnits;
    to -= 2;
    return V::kUnits - 1;
}

// Adds to `size` what EncodeVector would write.
template <class V>
UTF_PART std::size_t MeasureVector(typename V::Raw units, std::size_t& size) {
    Sized<V> source(units);
    Pairs pairs = Pairs::None;
    if (V::TopBits(source.Surrogates()) != 0) {
        UnitBytes<V> bytes{};
        pairs = PairSurrogates<V>(source, bytes);
        if (pairs == Pairs::IllFormed) return 0;
    }
    size += 3 * V::kUnits - static_cast<std::size_t>(__builtin_popcount(source.Codes()));
    if (pairs != Pairs::LastIsCut) return V::kUnits;
    size -= 2;
    return V::kUnits - 1;
}

template <class V>
UTF_PART bool AreAscii(const char16_t* at, std::size_t count) {
    auto all = V::Load(at);
    for (std::size_t i = V::kUnits; i < count; i += V::kUnits) all = all | V::Load(at + i);
    return Sized<V>(all).Codes() == V::kAllBits;
}

// What is done with encoded vectors: written out, or only measured.
struct ByteWriter {
    char* to;
    const char* limit;

    [[nodiscard]] std::size_t Room() const { return static_cast<std::size_t>(limit - to); }
    template <class V>
    UTF_PART void AddAscii(const char16_t* at) {
        V::Narrow(V::Load(at), V::Load(at + V::kUnits), to);
        to += V::kBytes;
    }
    template <class V>
    UTF_PART std::size_t Add(typename V::Raw units) {
        return EncodeVector<V>(units, to, Room());
    }
    void Add(std::uint32_t value) { to += WriteUtf8(value, to); }
    void Remove(std::size_t bytes) { to -= bytes; }
};

struct ByteCounter {
    std::size_t count;

    [[nodiscard]] static std::size_t Room() { return SIZE_MAX; }
    template <class V>
    UTF_PART void AddAscii(const char16_t*) {
        count += V::kBytes;
    }
    template <class V>
    UTF_PART std::size_t Add(typename V::Raw units) {
        return MeasureVector<V>(units, count);
    }
    void Add(std::uint32_t value) { count += Utf8Size(value); }
    void Remove(std::size_t bytes) { count -= bytes; }
};

template <class Result>
struct Encoding {
    const char16_t* at;
    const char16_t* end;
    Result result;

    [[nodiscard]] std::size_t Left() const { return static_cast<std::size_t>(end - at); }
    [[nodiscard]] bool Fits(std::size_t units, std::size_t bytes) const {
        return Left() >= units && result.Room() >= bytes;
    }

    // One character; false when it is ill formed or does not fit.
    bool AddOne() {
        const UtfCharacter next = ReadUtf16(at, Left());
        if (next.length == 0 || result.Room() < Utf8Size(next.value)) return false;
        at += next.length;
        result.Add(next.value);
        return true;
    }

    template <class V>
    UTF_PART void AddAscii(std::size_t units) {
        for (std::size_t i = 0; i < units; i += V::kBytes) result.template AddAscii<V>(at + i);
        at += units;
    }

    // As many vectors as `units` units hold; false when one is ill formed, which is not taken.
    template <class V>
    UTF_PART bool AddVectors(std::size_t units) {
        const char16_t* const last = at + (units - V::kUnits);
        while (at <= last) {
            const std::size_t taken = result.template Add<V>(V::Load(at));
            if (taken == 0) return false;
            at += taken;
        }
        return true;
    }

    // What is left, less than a vector; zeros fill it up.
    template <class V>
    UTF_PART bool AddRest() {
        const std::size_t units = Left();
        if (result.template Add<V>(V::LoadPart(at, 2 * units)) == 0) return false;
        at += units;
        result.Remove(V::kUnits - units);
        return true;
    }
};

template <class V, class Result>
UTF_PART void EncodeAll(Encoding<Result>& work) {
    using Half = typename V::Half;
    bool fine = true;
    while (fine && work.Fits(kBlock, 3 * kBlock + kOverrun)) {
        if (AreAscii<V>(work.at, kBlock)) {
            work.template AddAscii<V>(kBlock);
        } else {
            fine = work.template AddVectors<V>(kBlock);
        }
    }
    while (fine && work.Fits(Half::kBytes, Half::kBytes) && AreAscii<Half>(work.at, Half::kBytes)) {
        work.template AddAscii<Half>(Half::kBytes);
    }
    while (fine && work.Fits(Half::kUnits, Half::kBytes)) {
        fine = work.template AddVectors<Half>(Half::kUnits);
    }
    if (fine && work.Left() != 0 && work.Fits(0, Half::kBytes)) work.template AddRest<Half>();
    while (work.at < work.end && work.AddOne()) {
    }
}

template <class V>
UTF_KERNEL UtfProgress Encode(const char16_t* text, std::size_t length, char* out,
                              std::size_t capacity) noexcept {
    Encoding<ByteWriter> work{text, text + length, {out, out + capacity}};
    EncodeAll<V>(work);
    return {static_cast<std::size_t>(work.at - text),
            static_cast<std::size_t>(work.result.to - out)};
}

template <class V>
UTF_KERNEL UtfProgress EncodedLength(const char16_t* text, std::size_t length) noexcept {
    Encoding<ByteCounter> work{text, text + length, {0}};
    EncodeAll<V>(work);
    return {static_cast<std::size_t>(work.at - text), work.result.count};
}

}  // namespace
}  // namespace zelkor::platform::detail

#endif
