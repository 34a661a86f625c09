#include "Foundation/Core/String/Internal/StringCore.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "Foundation/Core/Buffer/Internal/Blocks.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/Runtime.h"
#include "Foundation/Platform/Scan.h"

namespace zelkor::detail {

namespace {

constexpr std::uint32_t kToEnd = CT_String::kToEnd;
constexpr std::uint32_t kNotFound = CT_String::kNotFound;

template <typename Unit>
constexpr Unit kEmpty[1] = {};

std::size_t LengthOf(const char* text) {
    return std::strlen(text);
}
std::size_t LengthOf(const char16_t* text) {
    return platform::TextLength(text);
}

// Bytes of `units` units as a buffer size; more than a buffer can hold counts as exhausted memory.
template <typename Unit>
std::uint32_t Bytes(std::uint64_t units) {
    const std::uint64_t size = units * sizeof(Unit);
    if (size > kLargestBlock) ReportExhausted();
    return static_cast<std::uint32_t>(size);
}

template <typename Unit>
Unit* Units(CT_Buffer& buffer) {
    return reinterpret_cast<Unit*>(BufferAccess::Data(buffer));
}

// Writes the terminator at `length` of an unshared block and sets the used size.
template <typename Unit>
void Finish(CT_Buffer& buffer, std::size_t length) {
    Units<Unit>(buffer)[length] = 0;
    BufferAccess::Header(buffer)->used_size =
        static_cast<std::uint32_t>((length + 1) * sizeof(Unit));
}

// Room for `length` units in an unshared block that holds at least the terminator.
template <typename Unit>
void MakeRoom(CT_Buffer& buffer, std::uint64_t length) {
    BufferAccess::MakeRoom(buffer, Bytes<Unit>(length + 1));
    if (buffer.n_GetUsedSize() == 0) Finish<Unit>(buffer, 0);
}

bool IsAscii(std::string_view text) {
    unsigned char bits = 0;
    for (const char byte : text) bits |= static_cast<unsigned char>(byte);
    return bits < 0x80;
}

template <typename Unit>
CT_Buffer Hold(const CT_Buffer& buffer, std::basic_string_view<Unit> text, std::uint64_t length) {
    const bool grows = (length + 1) * sizeof(Unit) > buffer.n_GetMaximumSize();
    return BufferAccess::HoldIfOwn(buffer, text.data(), grows);
}

}  // namespace

template <typename Unit>
auto StringCore<Unit>::Of(const Unit* text, std::uint32_t length) noexcept -> View {
    if (text == nullptr) return View(kEmpty<Unit>, 0);
    return View(text, length == kToEnd ? LengthOf(text) : length);
}

template <typename Unit>
auto StringCore<Unit>::UpToZero(const Unit* text, std::uint32_t length) noexcept -> View {
    if (text == nullptr || length == kToEnd) return Of(text, length);
    std::uint32_t end = 0;
    while (end < length && text[end] != 0) ++end;
    return View(text, end);
}

template <typename Unit>
void StringCore<Unit>::SetSize(CT_Buffer& buffer, std::uint32_t length, bool keep) {
    if (length == 0) return buffer.v_SetSize(0, FALSE);
    const bool kept = keep && buffer.n_GetUsedSize() != 0;
    const std::size_t old_length = Text(buffer).size();
    buffer.v_SetSize(Bytes<Unit>(std::uint64_t{length} + 1), keep ? TRUE : FALSE);
    if (!kept) {
        Finish<Unit>(buffer, 0);
    } else if (old_length > length) {
        Finish<Unit>(buffer, length);
    }
}

template <typename Unit>
void StringCore<Unit>::SetLength(CT_Buffer& buffer, std::uint32_t length) {
    if (length == 0) {
        buffer.v_SetSize(sizeof(Unit), FALSE);
    } else if (length < Text(buffer).size()) {
        return Remove(buffer, kToEnd, length);
    } else {
        MakeRoom<Unit>(buffer, length);
    }
    Finish<Unit>(buffer, length);
}

// What was written directly may pass the used size, but only in a block that is not shared.
template <typename Unit>
void StringCore<Unit>::Update(CT_Buffer& buffer) {
    const bool shared = buffer.n_GetUseCount() != 1;
    const std::uint32_t size = shared ? buffer.n_GetUsedSize() : buffer.n_GetMaximumSize();
    const std::size_t units = size / sizeof(Unit);
    if (units == 0) return;
    const auto* const text = static_cast<const Unit*>(buffer.qcv_Get());
    const std::size_t zero = platform::FindUnit(text, units, Unit{0});
    const std::size_t length = zero == platform::kNoHit ? units - 1 : zero;
    if (shared) return Remove(buffer, kToEnd, static_cast<std::uint32_t>(length));
    Finish<Unit>(buffer, length);
}

template <typename Unit>
void StringCore<Unit>::Assign(CT_Buffer& buffer, View text) {
    if (text.empty()) return buffer.v_SetSize(0, FALSE);
    const CT_Buffer hold = BufferAccess::HoldIfOwn(buffer, text.data(), true);
    buffer.v_SetSize(Bytes<Unit>(text.size() + 1), FALSE);
    std::memcpy(Units<Unit>(buffer), text.data(), text.size() * sizeof(Unit));
    Finish<Unit>(buffer, text.size());
}

template <typename Unit>
void StringCore<Unit>::Format(CT_Buffer& buffer, const Unit* format, std::va_list arguments) {
    if (format == nullptr) return Assign(buffer, View());
    std::array<Unit, 2048> area;
    std::va_list again;
    va_copy(again, arguments);
    const std::size_t length = platform::FormatWhole(area.data(), area.size(), format, arguments);
    if (length <= area.size()) {
        const std::size_t zero = platform::FindUnit(area.data(), length, Unit{0});
        Assign(buffer, View(area.data(), std::min(zero, length)));
    } else {
        CT_Buffer fresh(0u, buffer.n_GetGrowth());
        fresh.v_SetSize(Bytes<Unit>(std::uint64_t{length} + 1), FALSE);
        (void)platform::FormatWhole(Units<Unit>(fresh), length, format, again);
        const std::size_t zero = platform::FindUnit(Units<Unit>(fresh), length, Unit{0});
        Finish<Unit>(fresh, std::min(zero, length));
        buffer = std::move(fresh);
    }
    va_end(again);
}

template <typename Unit>
void StringCore<Unit>::AppendUnit(CT_Buffer& buffer, Unit unit) {
    if (unit == 0) return;
    const std::size_t length = Text(buffer).size();
    const std::uint64_t size = Bytes<Unit>(length + 2);
    if (buffer.n_GetUsedSize() == 0) MakeRoom<Unit>(buffer, 0);
    const bool fits = size <= buffer.n_GetMaximumSize();
    BufferAccess::MakeRoom(buffer, fits ? size : std::min(2 * size, kLargestBlock - kHeaderSize));
    Units<Unit>(buffer)[length] = unit;
    Finish<Unit>(buffer, length + 1);
}

template <typename Unit>
void StringCore<Unit>::Append(CT_Buffer& buffer, View text) {
    if (text.empty()) return;
    const std::size_t length = Text(buffer).size();
    const CT_Buffer hold = Hold(buffer, text, length + text.size());
    MakeRoom<Unit>(buffer, length + text.size());
    std::memmove(Units<Unit>(buffer) + length, text.data(), text.size() * sizeof(Unit));
    Finish<Unit>(buffer, length + text.size());
}

template <typename Unit>
void StringCore<Unit>::Insert(CT_Buffer& buffer, View text, std::uint32_t at) {
    if (text.empty()) return;
    const std::size_t length = Text(buffer).size() + text.size();
    // The units behind the gap move, so an own text is always held.
    const CT_Buffer hold = BufferAccess::HoldIfOwn(buffer, text.data(), true);
    MakeRoom<Unit>(buffer, length);
    Unit* const gap = Units<Unit>(buffer) + at;
    std::memmove(gap + text.size(), gap, (length - text.size() - at) * sizeof(Unit));
    std::memcpy(gap, text.data(), text.size() * sizeof(Unit));
    Finish<Unit>(buffer, length);
}

template <typename Unit>
void StringCore<Unit>::Replace(CT_Buffer& buffer, View text, std::uint32_t at) {
    const std::size_t length = at + text.size();
    if (length == 0) return buffer.v_SetSize(0, FALSE);
    if (text.empty() && at < Text(buffer).size()) return Remove(buffer, kToEnd, at);
    const CT_Buffer hold = Hold(buffer, text, length);
    MakeRoom<Unit>(buffer, length);
    std::memmove(Units<Unit>(buffer) + at, text.data(), text.size() * sizeof(Unit));
    Finish<Unit>(buffer, length);
}

template <typename Unit>
void StringCore<Unit>::Fill(CT_Buffer& buffer, Unit unit, std::uint32_t count, std::uint32_t at) {
    const std::uint64_t copies = count == kToEnd ? Text(buffer).size() : count;
    const std::uint64_t length = at + copies;
    MakeRoom<Unit>(buffer, length);
    std::fill_n(Units<Unit>(buffer) + at, copies, unit);
    Finish<Unit>(buffer, length);
}

template <typename Unit>
void StringCore<Unit>::SetAt(CT_Buffer& buffer, Unit unit, std::uint32_t index) {
    const std::size_t length = Text(buffer).size();
    if (unit == 0) return Remove(buffer, kToEnd, index);
    if (index == length) return AppendUnit(buffer, unit);
    if (index > length) return;
    buffer.v_CopyWeWrite();
    Units<Unit>(buffer)[index] = unit;
}

template <typename Unit>
void StringCore<Unit>::Remove(CT_Buffer& buffer, std::uint32_t count, std::uint32_t at) {
    const std::size_t length = Text(buffer).size();
    if (count == 0 || at >= length) return;
    const std::size_t removed = std::min<std::size_t>(count, length - at);
    buffer.v_Remove(static_cast<std::uint32_t>(removed * sizeof(Unit)),
                    static_cast<std::uint32_t>(at * sizeof(Unit)));
    Finish<Unit>(buffer, length - removed);
}

template <typename Unit>
void StringCore<Unit>::StripLeft(CT_Buffer& buffer) {
    const View text = Text(buffer);
    const auto is_space = [](Unit unit) { return platform::IsSpace(unit); };
    const auto first = std::find_if_not(text.begin(), text.end(), is_space);
    Remove(buffer, static_cast<std::uint32_t>(first - text.begin()), 0);
}

template <typename Unit>
void StringCore<Unit>::StripRight(CT_Buffer& buffer) {
    const View text = Text(buffer);
    const auto is_space = [](Unit unit) { return platform::IsSpace(unit); };
    const auto last = std::find_if_not(text.rbegin(), text.rend(), is_space);
    Remove(buffer, kToEnd, static_cast<std::uint32_t>(text.rend() - last));
}

template <typename Unit>
void StringCore<Unit>::Strip(CT_Buffer& buffer, View set) {
    const View text = Text(buffer);
    const std::size_t last = text.find_last_not_of(set);
    const std::size_t first = text.find_first_not_of(set);
    if (last == View::npos) return Remove(buffer, kToEnd, 0);
    Remove(buffer, kToEnd, static_cast<std::uint32_t>(last + 1));
    Remove(buffer, static_cast<std::uint32_t>(first), 0);
}

template <typename Unit>
void StringCore<Unit>::Translate(CT_Buffer& buffer, View from, View to) {
    const View text = Text(buffer);
    const std::size_t first = text.find_first_of(from);
    if (first == View::npos) return;
    const std::size_t length = text.size();
    buffer.v_CopyWeWrite();
    Unit* const units = Units<Unit>(buffer);
    std::size_t kept = first;
    for (std::size_t i = first; i < length; ++i) {
        const std::size_t place = platform::FindUnit(from.data(), from.size(), units[i]);
        if (place == platform::kNoHit) {
            units[kept++] = units[i];
        } else if (place < to.size()) {
            units[kept++] = to[place];
        }
    }
    Finish<Unit>(buffer, kept);
}

template <typename Unit>
std::uint32_t StringCore<Unit>::Find(View text, Unit unit, std::uint32_t from) noexcept {
    if (from >= text.size()) return kNotFound;
    const std::size_t hit = platform::FindUnit(text.data() + from, text.size() - from, unit);
    return hit == platform::kNoHit ? kNotFound : from + static_cast<std::uint32_t>(hit);
}

template <typename Unit>
std::uint32_t StringCore<Unit>::Find(View text, View wanted, std::uint32_t from) noexcept {
    if (from > text.size()) return kNotFound;
    const std::size_t hit =
        platform::FindText(text.data() + from, text.size() - from, wanted.data(), wanted.size());
    return hit == platform::kNoHit ? kNotFound : from + static_cast<std::uint32_t>(hit);
}

// Only the last '*' is ever tried again: a longer run for an earlier one could not reach a place
// that the last one cannot reach too.
template <typename Unit>
int StringCore<Unit>::Compare(View left, const Unit* right, std::uint32_t limit) noexcept {
    if (limit == kToEnd) return Compare(left, Of(right, kToEnd), kToEnd);
    return platform::CompareText(left.data(), right == nullptr ? kEmpty<Unit> : right, limit);
}

template <typename Unit>
bool StringCore<Unit>::Match(View text, View pattern) noexcept {
    if (pattern.empty()) return true;
    std::size_t t = 0;
    std::size_t p = 0;
    std::size_t behind_star = View::npos;
    std::size_t run_end = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == Unit{'*'}) {
            behind_star = ++p;
            run_end = t;
        } else if (p < pattern.size() && (pattern[p] == Unit{'?'} || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (behind_star != View::npos) {
            p = behind_star;
            t = ++run_end;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(Unit{'*'}, p) == View::npos;
}

std::string_view DefaultPageText(const char* text, std::uint64_t count) noexcept {
    if (text == nullptr || count >= kToEnd) return StringCore<char>::Of(text, kToEnd);
    // Each character has a byte at least. Where all of these are ASCII they are the characters.
    const auto* const zero = static_cast<const char*>(std::memchr(text, 0, count));
    const std::string_view least(text,
                                 zero == nullptr ? count : static_cast<std::size_t>(zero - text));
    platform::CodePageInfo info{};
    if (IsAscii(least) || (platform::GetCodePageInfo(0, &info) && info.max_char_size == 1)) {
        return least;
    }
    const auto takes_two = [&info](unsigned char byte) {
        const unsigned char* range = info.lead_bytes;
        while (range[0] != 0 && (byte < range[0] || byte > range[1])) range += 2;
        return range[0] != 0;
    };
    std::size_t end = 0;
    for (std::uint64_t done = 0; done < count && text[end] != 0; ++done) {
        if (takes_two(static_cast<unsigned char>(text[end++])) && text[end] != 0) ++end;
    }
    return {text, end};
}

template struct StringCore<char>;
template struct StringCore<char16_t>;

}  // namespace zelkor::detail
