// CT_CString: 8-bit text that remembers the code page of its bytes; 0 is the system's default 8-bit
// code page. Copies share storage and copy on write.
// Units, errors and threads are those of CT_String; a character is one byte.
#ifndef FOUNDATION_CORE_STRING_CSTRING_H
#define FOUNDATION_CORE_STRING_CSTRING_H

#include <concepts>
#include <cstdarg>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "Foundation/Core/String/String.h"

class CT_UString;

class ZELKOR_API CT_CString : public CT_String {
public:
    CT_CString() noexcept = default;
    explicit CT_CString(std::uint32_t code_page) noexcept : code_page_(code_page) {}
    explicit CT_CString(const char* text, std::uint32_t length = kToEnd,
                        std::uint32_t code_page = 0);
    explicit CT_CString(const char16_t* text, std::uint32_t length = kToEnd,
                        std::uint32_t code_page = 0);
    explicit CT_CString(const CT_Buffer* buffer, std::uint32_t code_page = 0)
        : CT_String(buffer), code_page_(code_page) {}
    // From a CT_CString the code page is taken over, not the one given.
    explicit CT_CString(const CT_String* other, std::uint32_t code_page = 0);
    explicit CT_CString(const CT_UString* other, std::uint32_t code_page = 0);
    explicit CT_CString(const CT_CString* other);
    // The literals nullptr and 0: a null text, and as a lone number a code page.
    explicit CT_CString(std::nullptr_t, std::uint32_t /*length*/ = kToEnd,
                        std::uint32_t code_page = 0) noexcept
        : code_page_(code_page) {}
    template <std::same_as<int> CodePage>
    explicit CT_CString(CodePage code_page) noexcept
        : code_page_(static_cast<std::uint32_t>(code_page)) {}
    CT_CString(const CT_CString& other) noexcept = default;
    // Leaves the other empty, without a block, its code page kept.
    CT_CString(CT_CString&& other) noexcept = default;
    ~CT_CString() override {
        if (buffer_.qcv_Get() == nullptr) v_LeavePrototype();
    }
    // Assignment takes the text and the code page.
    CT_CString& operator=(const CT_CString& other) noexcept {
        buffer_ = other.buffer_;
        code_page_ = other.code_page_;
        return *this;
    }
    CT_CString& operator=(CT_CString&& other) noexcept {
        buffer_ = std::move(other.buffer_);
        code_page_ = other.code_page_;
        return *this;
    }
    // As vv_Init(const CT_String*).
    CT_CString& operator=(const CT_String& other) {
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
    // Bytes compare as unsigned numbers; whole strings give -1, 0 or 1. UTF-16 text is converted to
    // this string's code page.
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
        return size == 0 ? 0 : size - 1;
    }
    void vv_SetGrowth(std::uint32_t growth) override;
    [[nodiscard]] std::uint32_t vn_GetGrowth() const override;
    void vv_Init(const CT_Buffer* buffer) override;
    // UTF-16 text is converted to this string's code page, where 1200 becomes 1252 and 0xFFFFFFFF
    // the default page, 0; the string has that page then.
    void vv_Init(const char16_t* text, std::uint32_t length = kToEnd) override;
    // The code page becomes the string's.
    void vv_Init(const char* text, std::uint32_t length = kToEnd,
                 std::uint32_t code_page = 0) override;
    // Takes the code page of a CT_CString; a CT_UString is converted to this string's code page,
    // where 0xFFFFFFFF becomes 0.
    void vv_Init(const CT_String* other) override;
    void vv_Init(std::uint32_t capacity) override;
    void vv_Init() override;

    // Writes `count` copies from `at` on and a terminator after them, growing as needed; count
    // 0xFFFFFFFF means the current length. The text ends there: the length becomes at + count, also
    // when that is below the old length.
    virtual void vv_Replace(char character, std::uint32_t count, std::uint32_t at);
    [[nodiscard]] virtual char vc_GetAt(std::uint32_t index) const { return c_GetAt(index); }
    // A zero character cuts the string at `index`. At the length the character is appended; behind
    // it nothing is done.
    virtual void vv_SetAt(char character, std::uint32_t index);
    // First position at or after `from`. An empty text is found at `from`, a null text nowhere.
    [[nodiscard]] virtual std::uint32_t vn_Find(char character, std::uint32_t from = 0) const;
    [[nodiscard]] virtual std::uint32_t vn_Find(const CT_CString* text,
                                                std::uint32_t from = 0) const;
    // Case-sensitive match of the whole string: '*' is any run, '?' one character; an empty or null
    // pattern matches anything. Takes time in text length times pattern length at worst.
    [[nodiscard]] virtual BOOL vb_Match(const CT_CString* pattern) const;
    // Formatted assignment with the conventions of the platform's C runtime (see
    // Platform/Runtime.h). The format and its texts may be this string's own. An empty result
    // empties the string, so the content is always the last result. The code page stays.
    virtual void vv_Format(const CT_CString* format, va_list arguments);
    virtual void vv_Format(const CT_CString* format, ...);

    // Code page of the bytes; setting it converts nothing.
    void v_SetCodePage(std::uint32_t code_page) noexcept { code_page_ = code_page; }
    [[nodiscard]] std::uint32_t n_GetCodePage() const noexcept { return code_page_; }

    // The text, zero-terminated, never null.
    [[nodiscard]] const char* qccz_Get() const noexcept {
        const auto* header = Header();
        return header == nullptr || header->used_size == 0 ? "" : Units();
    }
    // The characters for writing, after a private copy; null without a block. Follow with
    // vv_Update when a zero was written.
    [[nodiscard]] char* qcz_Get() { return static_cast<char*>(buffer_.qv_Get()); }
    [[nodiscard]] std::uint32_t n_GetLength() const noexcept {
        const std::uint32_t size = buffer_.n_GetUsedSize();
        return size == 0 ? 0 : size - 1;
    }
    [[nodiscard]] char c_GetAt(std::uint32_t index) const noexcept { return qccz_Get()[index]; }
    void v_SetAt(char character, std::uint32_t index) { vv_SetAt(character, index); }
    [[nodiscard]] std::uint32_t n_Find(const char* text, std::uint32_t from = 0) const;
    [[nodiscard]] BOOL b_Match(const char* pattern) const;
    // FALSE for a null text, TRUE for an empty one.
    [[nodiscard]] BOOL b_StartsWith(const char* text) const;
    [[nodiscard]] BOOL b_EndsWith(const char* text) const;

    // A zero character is ignored. A full block grows to twice the new size.
    void v_Append(char character) {
        auto* const header = Header();
        if (header == nullptr || character == 0) return v_AppendSlow(character);
        // Neither size changes while the block is shared, so they may be read before that is asked.
        const std::uint32_t used = header->used_size;
        const std::uint32_t size = used + static_cast<std::uint32_t>(sizeof(char));
        if (size > header->maximum_size || used == 0 ||
            header->use_count.load(std::memory_order_acquire) != 1) {
            return v_AppendSlow(character);
        }
        auto* const end = reinterpret_cast<char*>(reinterpret_cast<std::byte*>(header + 1) + used);
        end[-1] = character;
        end[0] = 0;
        header->used_size = size;
    }
    void v_Append(const char* text, std::uint32_t length = kToEnd);
    void v_Append(const CT_CString* text);
    // UTF-16 text is converted as by vv_Init; where there is any, the page in use becomes the
    // string's.
    void v_Append(const char16_t* text, std::uint32_t length = kToEnd);
    void v_Append(const CT_UString* text);
    // The literals nullptr and 0 add nothing.
    void v_Append(std::nullptr_t, std::uint32_t /*length*/ = kToEnd) noexcept {}
    template <std::same_as<int> Character>
    void v_Append(Character character) {
        v_Append(static_cast<char>(character));
    }
    void v_Insert(std::nullptr_t, std::uint32_t /*length*/, std::uint32_t /*at*/) noexcept {}
    void v_Insert(const char* text, std::uint32_t length, std::uint32_t at);
    void v_Insert(const CT_CString* text, std::uint32_t length, std::uint32_t at);
    // Writes the text at `at` and ends the string right after it.
    void v_Replace(const char* text, std::uint32_t length, std::uint32_t at);
    void v_Replace(const CT_CString* text, std::uint32_t from, std::uint32_t length,
                   std::uint32_t at);
    // As vv_Format.
    void v_Format(const char* format, ...);
    void v_Format(const char* format, va_list arguments);
    // A single zero is a value to be formatted, never a null argument list.
    template <typename T>
    requires(std::integral<T> || std::is_null_pointer_v<T>) void v_Format(const char* format,
                                                                          T value) {
        v_Format(format, value, 0);
    }
    template <typename T>
    requires(std::integral<T> || std::is_null_pointer_v<T>) void vv_Format(const CT_CString* format,
                                                                           T value) {
        vv_Format(format, value, 0);
    }

protected:
    // For prototypes only.
    explicit CT_CString(const CT_Type* type);

    void v_StringInsert(const char* text, std::uint32_t length, std::uint32_t at);
    void v_StringReplace(const char* text, std::uint32_t length, std::uint32_t at);

private:
    [[nodiscard]] CT_Buffer::st_BufferData* Header() const noexcept {
        return zelkor::detail::BufferAccess::Header(buffer_);
    }
    [[nodiscard]] const char* Units() const noexcept {
        return static_cast<const char*>(buffer_.qcv_Get());
    }
    [[nodiscard]] static BOOL b_RMatch(std::string_view text, std::string_view pattern);
    [[nodiscard]] int i_ComparePart(const CT_String* other, std::uint32_t from,
                                    std::uint32_t length, std::uint32_t at) const;
    [[nodiscard]] int i_CompareWide(std::u16string_view text, std::uint32_t length,
                                    std::uint32_t at) const;
    void v_AppendSlow(char character);

    std::uint32_t code_page_ = 0;

    // Only a string without a block can be the prototype; others skip the question.
    void v_LeavePrototype() noexcept;

    static CT_Type sco_Type;
    static CT_CString sco_Object;
};

namespace zelkor::detail {

// The text of a string without its terminator; good until the string changes.
[[nodiscard]] inline std::string_view View(const CT_CString& text) noexcept {
    return {text.qccz_Get(), text.n_GetLength()};
}
// The same, empty for null.
[[nodiscard]] inline std::string_view View(const CT_CString* text) noexcept {
    return text == nullptr ? std::string_view("") : View(*text);
}

}  // namespace zelkor::detail

#endif
