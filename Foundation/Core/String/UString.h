// CT_UString: UTF-16 text, the library's main text type. Copies share storage and copy on write.
// Units, errors and threads are those of CT_String; a character is one UTF-16 unit.
#ifndef FOUNDATION_CORE_STRING_USTRING_H
#define FOUNDATION_CORE_STRING_USTRING_H

#include <concepts>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include "Foundation/Core/String/String.h"

class CT_CString;

class ZELKOR_API CT_UString : public CT_String {
public:
    CT_UString() noexcept = default;
    // Empty, with room for that many characters.
    explicit CT_UString(std::uint32_t capacity);
    explicit CT_UString(const char* text, std::uint32_t length = kToEnd,
                        std::uint32_t code_page = 0);
    explicit CT_UString(const char16_t* text, std::uint32_t length = kToEnd);
    explicit CT_UString(const CT_String* other);
    explicit CT_UString(const CT_Buffer* buffer) : CT_String(buffer) {}
    // The literals nullptr and 0, as in CT_String.
    explicit CT_UString(std::nullptr_t, std::uint32_t /*length*/ = kToEnd,
                        std::uint32_t /*code_page*/ = 0) noexcept {}
    template <std::same_as<int> Capacity>
    explicit CT_UString(Capacity capacity) : CT_UString(static_cast<std::uint32_t>(capacity)) {}
    CT_UString(const CT_UString& other) noexcept = default;
    // Leaves the other empty, without a block.
    CT_UString(CT_UString&& other) noexcept = default;
    ~CT_UString() override {
        if (buffer_.qcv_Get() == nullptr) v_LeavePrototype();
    }
    CT_UString& operator=(const CT_UString& other) noexcept {
        buffer_ = other.buffer_;
        return *this;
    }
    CT_UString& operator=(CT_UString&& other) noexcept {
        buffer_ = std::move(other.buffer_);
        return *this;
    }
    CT_UString& operator=(const CT_String& other) {
        v_Set(&other);
        return *this;
    }

    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept;
    static void operator delete(void*, void*) noexcept {}
    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    [[nodiscard]] static const CT_Type* spcco_GetType() noexcept;

    [[nodiscard]] const CT_Type* vpcco_GetType() const override;
    [[nodiscard]] void* vpv_IsA(const CT_Type* type) const override;
    [[nodiscard]] void* vpv_IsKindOf(const CT_Type* type) const override;
    using CT_String::vi_Compare;
    using CT_String::vv_Init;
    void vv_SetSize(std::uint32_t length, BOOL keep) override;
    void vv_SetMinSize(std::uint32_t length, BOOL keep) override;
    void vv_ToLower() override;
    void vv_ToUpper() override;
    void vv_Remove(std::uint32_t count, std::uint32_t at) override;
    void vv_Update() override;
    void vv_Strip(const CT_String* set) override;
    void vv_StripRight() override;
    void vv_StripLeft() override;
    // 8-bit text is taken as code page 0, a CT_CString by its own (1252 for 1200, 0 for
    // 0xFFFFFFFF): equality agrees with what the CT_CString finds.
    [[nodiscard]] int vi_Compare(const CT_String* other, std::uint32_t from = 0,
                                 std::uint32_t length = kToEnd,
                                 std::uint32_t at = 0) const override;
    [[nodiscard]] int vi_Compare(const char16_t* text, std::uint32_t length = kToEnd,
                                 std::uint32_t at = 0) const override;
    [[nodiscard]] int vi_Compare(const char* text, std::uint32_t length = kToEnd,
                                 std::uint32_t at = 0) const override;
    void vv_Translate(const CT_String* from, const CT_String* to) override;
    void vv_SetLength(std::uint32_t length) override;
    [[nodiscard]] std::uint32_t vn_GetLength() const override { return n_GetLength(); }
    [[nodiscard]] std::uint32_t vn_GetMaximumLength() const override {
        const std::uint32_t size = buffer_.n_GetMaximumSize();
        return size < 2 ? 0 : size / 2 - 1;
    }
    void vv_SetGrowth(std::uint32_t growth) override;
    [[nodiscard]] std::uint32_t vn_GetGrowth() const override;
    void vv_Init(const CT_Buffer* buffer) override;
    void vv_Init(const char16_t* text, std::uint32_t length = kToEnd) override;
    void vv_Init(const char* text, std::uint32_t length = kToEnd,
                 std::uint32_t code_page = 0) override;
    void vv_Init(const CT_String* other) override;
    void vv_Init(std::uint32_t capacity) override;
    void vv_Init() override;

    // Writes `count` copies from `at` on and a terminator after them, growing as needed; count
    // 0xFFFFFFFF means the current length. The text ends there: the length becomes at + count, also
    // when that is below the old length.
    virtual void vv_Replace(char16_t character, std::uint32_t count, std::uint32_t at);
    [[nodiscard]] virtual char16_t vu_GetAt(std::uint32_t index) const { return u_GetAt(index); }
    // A zero character cuts the string at `index`. At the length the character is appended; behind
    // it nothing is done.
    virtual void vv_SetAt(char16_t character, std::uint32_t index);
    // First position at or after `from`. An empty text is found at `from`, a null text nowhere.
    [[nodiscard]] virtual std::uint32_t vn_Find(char16_t character, std::uint32_t from = 0) const;
    [[nodiscard]] virtual std::uint32_t vn_Find(const CT_UString* text,
                                                std::uint32_t from = 0) const;
    // Case-sensitive match of the whole string: '*' is any run, '?' one character; an empty or null
    // pattern matches anything. Takes time in text length times pattern length at worst.
    [[nodiscard]] virtual BOOL vb_Match(const CT_UString* pattern) const;
    // Formatted assignment with the conventions of the platform's C runtime (see
    // Platform/Runtime.h). The format and its texts may be this string's own. An empty result
    // empties the string, so the content is always the last result.
    virtual void vv_Format(const CT_UString* format, va_list arguments);
    virtual void vv_Format(const CT_UString* format, ...);

    // The text, zero-terminated, never null.
    [[nodiscard]] const char16_t* qcuz_Get() const noexcept {
        const auto* header = Header();
        return header == nullptr || header->used_size == 0 ? u"" : Units();
    }
    // The characters for writing, after a private copy; null without a block. Follow with
    // vv_Update when a zero was written.
    [[nodiscard]] char16_t* quz_Get() { return static_cast<char16_t*>(buffer_.qv_Get()); }
    [[nodiscard]] std::uint32_t n_GetLength() const noexcept {
        const std::uint32_t size = buffer_.n_GetUsedSize();
        return size < 2 ? 0 : size / 2 - 1;
    }
    [[nodiscard]] char16_t u_GetAt(std::uint32_t index) const noexcept { return qcuz_Get()[index]; }
    void v_SetAt(char16_t character, std::uint32_t index) { vv_SetAt(character, index); }
    [[nodiscard]] std::uint32_t n_Find(const char16_t* text, std::uint32_t from = 0) const;
    [[nodiscard]] BOOL b_Match(const char16_t* pattern) const;
    // FALSE for a null text, TRUE for an empty one.
    [[nodiscard]] BOOL b_StartsWith(const char16_t* text) const;
    [[nodiscard]] BOOL b_EndsWith(const char16_t* text) const;

    // A zero character is ignored. A full block grows to twice the new size.
    void v_Append(char16_t character) {
        auto* const header = Header();
        if (header == nullptr || character == 0) return v_AppendSlow(character);
        // Neither size changes while the block is shared, so they may be read before that is asked.
        const std::uint32_t used = header->used_size;
        const std::uint32_t size = used + static_cast<std::uint32_t>(sizeof(char16_t));
        if (size > header->maximum_size || used == 0 ||
            header->use_count.load(std::memory_order_acquire) != 1) {
            return v_AppendSlow(character);
        }
        auto* const end =
            reinterpret_cast<char16_t*>(reinterpret_cast<std::byte*>(header + 1) + used);
        end[-1] = character;
        end[0] = 0;
        header->used_size = size;
    }
    void v_Append(const char16_t* text, std::uint32_t length = kToEnd);
    void v_Append(const CT_UString* text);
    // Converted from its code page.
    void v_Append(const CT_CString* text);
    // The literals nullptr and 0 add nothing.
    void v_Append(std::nullptr_t, std::uint32_t /*length*/ = kToEnd) noexcept {}
    template <std::same_as<int> Character>
    void v_Append(Character character) {
        v_Append(static_cast<char16_t>(character));
    }
    void v_Insert(std::nullptr_t, std::uint32_t /*length*/, std::uint32_t /*at*/) noexcept {}
    void v_Insert(const char16_t* text, std::uint32_t length, std::uint32_t at);
    void v_Insert(const CT_UString* text, std::uint32_t length, std::uint32_t at);
    // Writes the text at `at` and ends the string right after it.
    void v_Replace(const char16_t* text, std::uint32_t length, std::uint32_t at) {
        auto* header = Header();
        const std::uint64_t size = 2 * (std::uint64_t{at} + length + 1);
        if (header == nullptr || text == nullptr || length == 0 || size > header->maximum_size ||
            header->use_count.load(std::memory_order_acquire) != 1) {
            v_ReplaceSlow(text, length, at);
            return;
        }
        auto* units = const_cast<char16_t*>(Units());
        std::memmove(units + at, text, 2 * std::size_t{length});
        units[at + length] = 0;
        header->used_size = static_cast<std::uint32_t>(size);
    }
    void v_Replace(const CT_UString* text, std::uint32_t from, std::uint32_t length,
                   std::uint32_t at);
    // As vv_Format.
    void v_Format(const char16_t* format, ...);
    void v_Format(const char16_t* format, va_list arguments);
    // A single zero is a value to be formatted, never a null argument list.
    template <typename T>
    requires(std::integral<T> || std::is_null_pointer_v<T>) void v_Format(const char16_t* format,
                                                                          T value) {
        v_Format(format, value, 0);
    }
    template <typename T>
    requires(std::integral<T> || std::is_null_pointer_v<T>) void vv_Format(const CT_UString* format,
                                                                           T value) {
        vv_Format(format, value, 0);
    }

protected:
    // For prototypes only.
    explicit CT_UString(const CT_Type* type);

    void v_StringInsert(const char16_t* text, std::uint32_t length, std::uint32_t at);
    void v_StringReplace(const char16_t* text, std::uint32_t length, std::uint32_t at);

private:
    [[nodiscard]] CT_Buffer::st_BufferData* Header() const noexcept {
        return zelkor::detail::BufferAccess::Header(buffer_);
    }
    [[nodiscard]] const char16_t* Units() const noexcept {
        return static_cast<const char16_t*>(buffer_.qcv_Get());
    }
    [[nodiscard]] static BOOL b_RMatch(std::u16string_view text, std::u16string_view pattern);
    [[nodiscard]] int i_ComparePart(const CT_String* other, std::uint32_t from,
                                    std::uint32_t length, std::uint32_t at) const;
    void v_AppendSlow(char16_t character);
    void v_ReplaceSlow(const char16_t* text, std::uint32_t length, std::uint32_t at);

    // Only a string without a block can be the prototype; others skip the question.
    void v_LeavePrototype() noexcept;

    static CT_Type sco_Type;
    static CT_UString sco_Object;
};

namespace zelkor::detail {

// The text of a string without its terminator; good until the string changes.
[[nodiscard]] inline std::u16string_view View(const CT_UString& text) noexcept {
    return {text.qcuz_Get(), text.n_GetLength()};
}
// The same, empty for null.
[[nodiscard]] inline std::u16string_view View(const CT_UString* text) noexcept {
    return text == nullptr ? std::u16string_view(u"") : View(*text);
}

}  // namespace zelkor::detail

#endif
