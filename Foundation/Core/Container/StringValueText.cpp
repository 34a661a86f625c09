// The text form of value collections.
#include <algorithm>
#include <array>
#include <bit>
#include <optional>
#include <vector>

#include "Foundation/Core/Container/HashFunction.h"
#include "Foundation/Core/Container/StringValueCollection.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Scan.h"

namespace platform = zelkor::platform;

using zelkor::detail::View;

namespace {

using TextView = std::u16string_view;
using Collection = CT_StringValueCollection;

constexpr char16_t kBar = u'|';
constexpr char16_t kEscape = u'\\';
constexpr TextView kHexDigits = u"0123456789ABCDEF";

// The bytes that begin a number: its type, its size and 0.
constexpr std::uint64_t kIntegerMark = 0x000402;
constexpr std::uint64_t kDoubleMark = 0x000803;
constexpr std::size_t kMarkBytes = 3;

constexpr unsigned int kLargestHash = 0xFFFFFFFF;

constexpr char16_t TypeUnit(Collection::et_Type type) {
    return static_cast<char16_t>(type + 1);
}

void Append(CT_UString& text, TextView part) {
    text.v_Append(part.data(), static_cast<std::uint32_t>(part.size()));
}

std::size_t FindBar(TextView text, std::size_t from) {
    const std::size_t hit = platform::FindUnit(text.data() + from, text.size() - from, kBar);
    return hit == platform::kNoHit ? hit : from + hit;
}

void AppendEscaped(CT_UString& text, TextView part) {
    for (std::size_t bar; (bar = FindBar(part, 0)) != platform::kNoHit;) {
        Append(text, part.substr(0, bar));
        Append(text, u"\\|");
        part.remove_prefix(bar + 1);
    }
    Append(text, part);
}

// The lowest bytes of a number, the lowest first.
void AppendBytes(CT_UString& text, std::uint64_t number, std::size_t bytes) {
    for (; bytes != 0; --bytes, number >>= 8) {
        text.v_Append(kHexDigits[number >> 4 & 0xF]);
        text.v_Append(kHexDigits[number & 0xF]);
    }
}

// A number from its mark and the digits of all its bytes; nothing when they are not that.
std::optional<std::uint64_t> ReadBytes(TextView digits, std::uint64_t mark, std::size_t bytes) {
    if (digits.size() != 2 * (kMarkBytes + bytes)) return {};
    std::uint64_t found_mark = 0;
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < kMarkBytes + bytes; ++i) {
        const std::uint64_t high = kHexDigits.find(digits[2 * i]);
        const std::uint64_t low = kHexDigits.find(digits[2 * i + 1]);
        if (high > 0xF || low > 0xF) return {};
        const std::uint64_t byte = high << 4 | low;
        if (i < kMarkBytes) {
            found_mark |= byte << 8 * i;
        } else {
            number |= byte << 8 * (i - kMarkBytes);
        }
    }
    return found_mark == mark ? std::optional(number) : std::nullopt;
}

// Takes the text up to the next bar without a backslash right before it, and the bar, from `rest`.
bool TakeField(TextView& rest, TextView& field) {
    std::size_t bar = FindBar(rest, 0);
    while (bar != platform::kNoHit && bar > 0 && rest[bar - 1] == kEscape) {
        bar = FindBar(rest, bar + 1);
    }
    if (bar == platform::kNoHit) return false;
    field = rest.substr(0, bar);
    rest.remove_prefix(bar + 1);
    return true;
}

// Up to the first zero character, where zero-terminated text ends.
CT_UString Unescaped(TextView field) {
    field = field.substr(0, field.find(u'\0'));
    CT_UString text;
    text.vv_Init(static_cast<std::uint32_t>(field.size()));
    for (std::size_t bar; (bar = FindBar(field, 0)) != platform::kNoHit;) {
        Append(text, field.substr(0, bar - 1));  // without the backslash that stands there
        text.v_Append(kBar);
        field.remove_prefix(bar + 1);
    }
    Append(text, field);
    return text;
}

bool ReadValue(TextView field, Collection::st_Element& element) {
    if (field.empty()) return false;
    const char16_t type = field.front();
    field.remove_prefix(1);
    if (type == TypeUnit(Collection::kString)) {
        element.type = Collection::kString;
        element.string_value = Unescaped(field);
        return true;
    }
    if (type == TypeUnit(Collection::kInteger)) {
        const auto number = ReadBytes(field, kIntegerMark, sizeof(std::int32_t));
        element.type = Collection::kInteger;
        element.integer_value = static_cast<std::int32_t>(number.value_or(0));
        return number.has_value();
    }
    if (type == TypeUnit(Collection::kDouble)) {
        const auto number = ReadBytes(field, kDoubleMark, sizeof(double));
        element.type = Collection::kDouble;
        element.double_value = std::bit_cast<double>(number.value_or(0));
        return number.has_value();
    }
    return false;
}

}  // namespace

void CT_StringValueCollection::v_Serialize(CT_UString& out) const {
    CT_UString text;
    text.vv_SetGrowth(out.vn_GetGrowth());
    for (const st_Element* element : elements_) {
        AppendEscaped(text, View(element->key));
        text.v_Append(kBar);
        text.v_Append(TypeUnit(element->type));
        if (element->type == kString) {
            AppendEscaped(text, View(element->string_value));
        } else if (element->type == kInteger) {
            AppendBytes(text, kIntegerMark, kMarkBytes);
            AppendBytes(text, static_cast<std::uint32_t>(element->integer_value),
                        sizeof(std::int32_t));
        } else {
            AppendBytes(text, kDoubleMark, kMarkBytes);
            AppendBytes(text, std::bit_cast<std::uint64_t>(element->double_value), sizeof(double));
        }
        text.v_Append(kBar);
    }
    out = std::move(text);
}

BOOL CT_StringValueCollection::b_Deserialize(const CT_UString& in) {
    CT_StringValueCollection read;
    TextView rest = View(in);
    while (!rest.empty()) {
        TextView key, value;
        auto element = std::make_unique<st_Element>();
        bool good = TakeField(rest, key) && TakeField(rest, value);
        if (good) element->key = Unescaped(key);
        good = good && element->key.n_GetLength() != 0 && ReadValue(value, *element);
        if (!good) {
            v_Clear();
            return FALSE;
        }
        read.Append(std::move(element));
    }
    read.KeepLastValues();
    std::swap(elements_, read.elements_);
    return TRUE;
}

// Of elements with equal keys the first one stays, with the value of the last one. Sorting finds
// them in a time that hostile texts cannot make quadratic.
void CT_StringValueCollection::KeepLastValues() {
    struct Place {
        std::uint32_t hash, position;
    };
    const auto key = [this](const Place& place) {
        return View(elements_.o_GetAt(place.position)->key);
    };
    std::vector<Place, platform::Allocator<Place>> places(n_GetCount());
    for (std::uint32_t i = 0; i < places.size(); ++i) {
        places[i].position = i + 1;
        places[i].hash = CT_HashFunction::sn_HashCaseQCUZ(key(places[i]).data(), kLargestHash);
    }
    std::ranges::sort(places, [&](const Place& left, const Place& right) {
        if (left.hash != right.hash) return left.hash < right.hash;
        const int compared = key(left).compare(key(right));
        return compared != 0 ? compared < 0 : left.position < right.position;
    });
    Elements kept(CT_VoidArray::kDefaultGrowth, n_GetCount());
    st_Element* const none = nullptr;
    for (std::size_t first = 0, end = 0; first < places.size(); first = end) {
        const Place& place = places[first];
        for (end = first + 1; end < places.size() && places[end].hash == place.hash; ++end) {
            if (key(places[end]) != key(place)) break;
        }
        if (end - first > 1) {
            std::swap(*elements_.o_GetAt(place.position),
                      *elements_.o_GetAt(places[end - 1].position));
        }
        for (std::size_t i = first + 1; i < end; ++i) {
            delete elements_.o_GetAt(places[i].position);
            elements_.v_SetAt(none, places[i].position);
        }
    }
    for (st_Element* const element : elements_) {
        if (element != nullptr) kept.v_Insert(element);
    }
    elements_ = kept;
}
