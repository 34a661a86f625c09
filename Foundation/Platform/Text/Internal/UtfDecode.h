// UTF-8 to UTF-16 over a vector type.
//
// At every byte position the unit is worked out that a character starting there would give; the
// positions that start one (and the third byte of four, which gives the second surrogate) are then
// pushed together. Nothing branches on where characters start, and vectors follow each other at a
// fixed distance, so a character may straddle two. Pushing together by table-driven shuffles is the
// idea of Lemire and Keiser 2022, "Transcoding billions of Unicode characters per second with SIMD
// instructions".
#ifndef FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFDECODE_H
#define FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFDECODE_H

#include "Foundation/Platform/Text/Internal/UtfScalar.h"
#include "Foundation/Platform/Text/Internal/UtfVector128.h"

namespace zelkor::platform::detail {
namespace {

constexpr std::size_t kBehind = 2;  // bytes before a vector that decoding looks at
constexpr std::size_t kAhead = 2;   // and behind it

template <class V>
struct Window {
    UTF_PART explicit Window(const char* at)
        : before2(V::Load(at - 2)),
          before(V::Load(at - 1)),
          lead(V::Load(at)),
          second(V::Load(at + 1)),
          third(V::Load(at + 2)) {}
    // Of a whole text: nothing stands before or behind it.
    UTF_PART explicit Window(typename V::Raw text)
        : before2(V::template BytesBefore<2>(text)),
          before(V::template BytesBefore<1>(text)),
          lead(text),
          second(V::template BytesBehind<1>(text)),
          third(V::template BytesBehind<2>(text)) {}
    typename V::Raw before2, before, lead, second, third;
};

// The units at all positions as two vectors of bytes, and which positions count.
template <class V>
struct PlacedUnits {
    typename V::Raw low, high, kept;
};

template <class V>
UTF_PART typename V::Raw AtLeast(typename V::Raw v, int limit) {
    return V::EqualBytes(V::Largest(v, V::Bytes(limit)), v);
}

template <class V>
UTF_PART typename V::Raw Trails(typename V::Raw v) {
    return V::SignedLess(v, V::Bytes(0xC0));
}

// The top bit of each byte tells whether the byte behind it must be the third of a character or the
// fourth.
template <class V>
UTF_PART typename V::Raw SecondIsLaterTrail(const Window<V>& window) {
    return V::LessOrZero(window.before, 0xE0 - 0x80) | V::LessOrZero(window.before2, 0xF0 - 0x80);
}

template <class V>
UTF_PART bool HasFourByteLead(const Window<V>& window) {
    return V::TopBits(V::LessOrZero(V::Largest(window.lead, window.before2), 0xF0 - 0x80)) != 0;
}

// The first surrogate is D7C0 plus the bits from 10 up: three of the lead byte, six of the second
// and two of the third. The second one's low byte is already right.
template <class V>
UTF_PART void AddSurrogates(const Window<V>& window, PlacedUnits<V>& units) {
    const auto first = AtLeast<V>(window.lead, 0xF0);
    const auto second = AtLeast<V>(window.before2, 0xF0);
    const auto low = (V::template Left<2>(window.second) & V::Bytes(0xFC)) |
                     (V::template Right<4>(window.third) & V::Bytes(0x03));
    const auto borrow = V::EqualBytes(window.second & V::Bytes(0x30), V::Zero());
    const auto high = V::AddBytes((window.lead & V::Bytes(0x07)) | V::Bytes(0xD8), borrow);
    units.low = V::Select(first, V::AddBytes(low, V::Bytes(0xC0)), units.low);
    units.high = V::Select(first, high, units.high) | (second & V::Bytes(0xDC));
    units.kept = units.kept | second;
}

template <class V>
UTF_PART PlacedUnits<V> Compose(const Window<V>& window) {
    const auto three = AtLeast<V>(window.lead, 0xE0);
    const auto other = V::SignedLess(window.lead, V::Zero());
    const auto upper = V::Select(three, window.second, window.lead);
    const auto lower = V::Select(three, window.third, window.second);
    const auto low = (V::template Left<6>(upper) & V::Bytes(0xC0)) | (lower & V::Bytes(0x3F));
    const auto high2 = V::template Right<2>(window.lead) & V::Bytes(0x07);
    const auto high3 = (V::template Left<4>(window.lead) & V::Bytes(0xF0)) |
                       (V::template Right<2>(window.second) & V::Bytes(0x0F));
    PlacedUnits<V> units{V::Select(other, low, window.lead), V::Select(three, high3, high2) & other,
                         ~Trails<V>(window.lead)};
    if (HasFourByteLead<V>(window)) AddSurrogates<V>(window, units);
    return units;
}

template <class V>
UTF_PART bool AreAscii(const char* at) {
    auto all = V::Load(at);
    for (std::size_t i = V::kBytes; i < kBlock; i += V::kBytes) all = all | V::Load(at + i);
    return V::TopBits(all) == 0;
}

// What is done with decoded vectors: written out, or only counted.
struct UnitWriter {
    char16_t* to;
    const char16_t* limit;

    [[nodiscard]] std::size_t Room() const { return static_cast<std::size_t>(limit - to); }
    template <class V>
    UTF_PART void AddAscii(typename V::Raw bytes) {
        V::Widen(bytes, to);
        to += V::kBytes;
    }
    template <class V>
    UTF_PART void Add(const Window<V>& window) {
        to = V::Keep(Compose<V>(window), to);
    }
    void Add(std::uint32_t value) { to += WriteUtf16(value, to); }
    void Remove(std::size_t units) { to -= units; }
};

struct UnitCounter {
    std::size_t count;

    [[nodiscard]] static std::size_t Room() { return SIZE_MAX; }
    template <class V>
    UTF_PART void AddAscii(typename V::Raw) {
        count += V::kBytes;
    }
    template <class V>
    UTF_PART void Add(const Window<V>& window) {
        const auto seconds = V::LessOrZero(window.before2, 0xF0 - 0x80);
        const std::uint32_t trails = V::TopBits(Trails<V>(window.lead) & ~seconds);
        count += V::kBytes - static_cast<std::size_t>(__builtin_popcount(trails));
    }
    void Add(std::uint32_t value) { count += value < 0x10000 ? 1 : 2; }
    void Remove(std::size_t units) { count -= units; }
};

// A text on its way through the vectors.
template <class Result>
struct Decoding {
    const char* at;
    const char* end;
    Result result;

    [[nodiscard]] std::size_t Left() const { return static_cast<std::size_t>(end - at); }
    [[nodiscard]] bool Fits(std::size_t bytes, std::size_t ahead) const {
        return Left() >= bytes + ahead && result.Room() >= bytes;
    }

    // One character; false when it is ill formed or does not fit.
    bool AddOne() {
        const UtfCharacter next = ReadUtf8(at, Left());
        if (next.length == 0 || result.Room() < (next.value < 0x10000 ? 1 : 2)) return false;
        at += next.length;
        result.Add(next.value);
        return true;
    }

    // Back to the start of the character that `at` is inside of, if it is; what was added for it is
    // one unit or, behind its third byte of four, two.
    void GoBackToLead() {
        if (!IsTrail(*at)) return;
        std::size_t back = 1;
        while (IsTrail(*(at - back))) ++back;
        at -= back;
        result.Remove(back == 3 ? 2 : 1);
    }

    template <class V>
    UTF_PART void AddAscii() {
        for (std::size_t i = 0; i < kBlock; i += V::kBytes) {
            result.template AddAscii<V>(V::Load(at + i));
        }
        at += kBlock;
    }

    // Blocks from a character's start with kBehind bytes before it, until the next one is ASCII or
    // does not fit. False when one is ill formed; it is not taken.
    template <class V>
    UTF_PART bool AddBlocks() {
        if (IsTrail(*at)) return false;
        bool fine = true;
        while (fine) {
            const Result before = result;
            auto errors = V::Zero();
            for (std::size_t i = 0; i < kBlock; i += V::kBytes) {
                const Window<V> window(at + i);
                errors = errors | V::Errors(window);
                result.template Add<V>(window);
            }
            fine = !V::AnySet(errors);
            if (fine) {
                at += kBlock;
            } else {
                result = before;
            }
            if (!Fits(kBlock, kAhead) || AreAscii<V>(at)) break;
        }
        GoBackToLead();
        return fine;
    }

    // At most a vector of whole characters, from a character's start; the room is a vector's. False
    // when they are ill formed; nothing is taken then.
    template <class V>
    UTF_PART bool AddPiece() {
        auto bytes = V::Zero();
        std::size_t size = V::kBytes;
        if (Left() < V::kBytes) {
            size = Left();
            bytes = V::LoadPart(at, size);
        } else if (Left() == V::kBytes || !IsTrail(at[size])) {
            bytes = V::Load(at);
        } else {
            do --size;
            while (size > V::kBytes - 3 && IsTrail(at[size]));
            bytes = V::LoadPart(at, size);
        }
        if (V::TopBits(bytes) == 0) {
            result.template AddAscii<V>(bytes);
        } else {
            const Window<V> window(bytes);
            if (IsTrail(*at) || V::AnySet(V::Errors(window))) return false;
            result.template Add<V>(window);
        }
        at += size;
        result.Remove(V::kBytes - size);
        return true;
    }
};

template <class V, class Result>
UTF_PART void DecodeAll(Decoding<Result>& work) {
    using Half = typename V::Half;
    const char* const text = work.at;
    bool fine = true;
    while (fine && work.Fits(kBlock, kAhead)) {
        if (AreAscii<V>(work.at)) {
            work.template AddAscii<V>();
        } else if (work.at < text + kBehind) {
            fine = work.template AddPiece<Half>();
        } else {
            fine = work.template AddBlocks<V>();
        }
    }
    while (fine && work.Left() != 0 && work.result.Room() >= Half::kBytes) {
        fine = work.template AddPiece<Half>();
    }
    while (work.at < work.end && work.AddOne()) {
    }
}

template <class V>
UTF_KERNEL UtfProgress Decode(const char* text, std::size_t length, char16_t* out,
                              std::size_t capacity) noexcept {
    Decoding<UnitWriter> work{text, text + length, {out, out + capacity}};
    DecodeAll<V>(work);
    return {static_cast<std::size_t>(work.at - text),
            static_cast<std::size_t>(work.result.to - out)};
}

template <class V>
UTF_KERNEL UtfProgress DecodedLength(const char* text, std::size_t length) noexcept {
    Decoding<UnitCounter> work{text, text + length, {0}};
    DecodeAll<V>(work);
    return {static_cast<std::size_t>(work.at - text), work.result.count};
}

}  // namespace
}  // namespace zelkor::platform::detail

#endif
