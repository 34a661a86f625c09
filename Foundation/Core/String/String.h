// CT_String: the common base of the two string classes, zero-terminated text in a CT_Buffer, for
// code that handles either kind through one interface.
//
// Units: lengths, counts and positions are characters from 0 (bytes for CT_CString, UTF-16 units
// for CT_UString). As a length or count 0xFFFFFFFF means up to the terminating zero, as a found
// position none. Any other length of a text bounds the reading of it: the text needs no zero then,
// and nothing behind the length is read. Positions must lie within the length; they are not
// checked. Texts are borrowed, may be null (empty) and may lie in the string itself. Errors:
// code-page conversions record a system error and leave the string empty. Running out of memory
// throws CT_SmartHeapException and leaves the string as it was. Threads: strings that share storage
// may live in different threads; one object, one thread.
#ifndef FOUNDATION_CORE_STRING_STRING_H
#define FOUNDATION_CORE_STRING_STRING_H

#include <concepts>
#include <cstddef>
#include <cstdint>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/String/Type.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

// The base's own operations do nothing and return 0.
class ZELKOR_API CT_String {
public:
    static constexpr std::uint32_t kToEnd = 0xFFFFFFFF;        // as a length or count
    static constexpr std::uint32_t kNotFound = 0xFFFFFFFF;     // as a found position
    static constexpr std::uint32_t kOwnCodePage = 0xFFFFFFFE;  // as the code page of v_Set

    [[nodiscard]] static const CT_Type* spcco_GetType() noexcept;

    [[nodiscard]] virtual const CT_Type* vpcco_GetType() const;
    // This object when `type` is exactly its class, else null.
    [[nodiscard]] virtual void* vpv_IsA(const CT_Type* type) const;
    // This object's part of class `type` when that is one of its classes, else null.
    [[nodiscard]] virtual void* vpv_IsKindOf(const CT_Type* type) const;
    virtual ~CT_String() {
        if (buffer_.qcv_Get() == nullptr) v_LeavePrototype();
    }

    // Capacity for `length` characters by the buffer's growth policy, also a smaller one. With
    // `keep` the text stays, cut to `length`; else it becomes empty. Length 0 releases the block.
    virtual void vv_SetSize(std::uint32_t length, BOOL keep);
    // The same, but only when the maximum length is below `length`.
    virtual void vv_SetMinSize(std::uint32_t length, BOOL keep);
    // Case mapping in place by the C runtime's current locale.
    virtual void vv_ToLower();
    virtual void vv_ToUpper();
    // Removes characters; count 0xFFFFFFFF cuts at `at`, 0 does nothing.
    virtual void vv_Remove(std::uint32_t count, std::uint32_t at);
    // Ends the string at its first zero character; for use after writing into the characters.
    virtual void vv_Update();
    // Removes the characters of `set` at both ends; null: white space by the C runtime.
    virtual void vv_Strip(const CT_String* set);
    virtual void vv_StripRight();
    virtual void vv_StripLeft();
    // Compares this text from `at` with the other (from `from`) by character code, over at most
    // `length` characters, and never beyond a zero character: negative, 0 or positive. A null other
    // compares as empty. Text of the other kind is converted to this string's kind first, as far as
    // the length asks for; of texts no character behind the last one compared is read.
    [[nodiscard]] virtual int vi_Compare(const CT_String* other, std::uint32_t from,
                                         std::uint32_t length, std::uint32_t at) const;
    [[nodiscard]] virtual int vi_Compare(const char16_t* text, std::uint32_t length,
                                         std::uint32_t at) const;
    [[nodiscard]] virtual int vi_Compare(const char* text, std::uint32_t length,
                                         std::uint32_t at) const;
    // Each character with its first occurrence at position i of `from` becomes the one at position
    // i of `to`, or is deleted when `to` is too short (null: empty).
    virtual void vv_Translate(const CT_String* from, const CT_String* to);
    // Sets the length, growing with the text kept, and writes the terminator there. Characters
    // beyond the old length are as they were in the block. Length 0 takes a fresh small block.
    virtual void vv_SetLength(std::uint32_t length);
    [[nodiscard]] virtual std::uint32_t vn_GetLength() const;
    [[nodiscard]] virtual std::uint32_t vn_GetMaximumLength() const;
    // Growth step in characters.
    virtual void vv_SetGrowth(std::uint32_t growth);
    [[nodiscard]] virtual std::uint32_t vn_GetGrowth() const;
    // Shares a buffer, which must hold characters and a terminating zero, or nothing; null empties.
    virtual void vv_Init(const CT_Buffer* buffer);
    // Assigns a copy of the text; the block is brought to the size of the growth policy.
    virtual void vv_Init(const char16_t* text, std::uint32_t length);
    virtual void vv_Init(const char* text, std::uint32_t length, std::uint32_t code_page);
    // Shares the other's text, or converts it when it is of the other kind.
    virtual void vv_Init(const CT_String* other);
    // Empties the string and makes room for that many characters.
    virtual void vv_Init(std::uint32_t capacity);
    // Empties the string and releases its block.
    virtual void vv_Init();

    // The literals nullptr and 0: a null text, and as a lone number room for so many characters.
    [[nodiscard]] int vi_Compare(std::nullptr_t, std::uint32_t length = kToEnd,
                                 std::uint32_t at = 0) const {
        return vi_Compare(static_cast<const char*>(nullptr), length, at);
    }
    void vv_Init(std::nullptr_t) { vv_Init(); }
    template <std::same_as<int> Capacity>
    void vv_Init(Capacity capacity) {
        vv_Init(static_cast<std::uint32_t>(capacity));
    }
    void v_Set(std::nullptr_t, std::uint32_t length = kToEnd,
               std::uint32_t code_page = kOwnCodePage) {
        v_Set(static_cast<const char*>(nullptr), length, code_page);
    }
    template <std::same_as<int> Capacity>
    void v_Set(Capacity capacity) {
        vv_Init(static_cast<std::uint32_t>(capacity));
    }

    void v_Set(const CT_String* other) { vv_Init(other); }
    void v_Set(const char16_t* text, std::uint32_t length = kToEnd) { vv_Init(text, length); }
    void v_Set(const CT_Buffer* buffer) { vv_Init(buffer); }
    // kOwnCodePage: the code page of this string if it is a CT_CString, else 0.
    void v_Set(const char* text, std::uint32_t length = kToEnd,
               std::uint32_t code_page = kOwnCodePage);
    // Empties the string and makes room; with `keep` a block that is large enough is kept.
    void v_Set(std::uint32_t length, BOOL keep);

    [[nodiscard]] const CT_Buffer* pcco_GetBuffer() const noexcept { return &buffer_; }
    // Takes a private copy of a shared block.
    void v_CopyWeWrite() { buffer_.v_CopyWeWrite(); }

    CT_String& operator=(const CT_String& other) {
        v_Set(&other);
        return *this;
    }

protected:
    CT_String() noexcept = default;
    CT_String(const CT_String& other) noexcept = default;
    CT_String(CT_String&& other) noexcept = default;
    explicit CT_String(const CT_Buffer* buffer) noexcept : buffer_(buffer) {}
    // For prototypes only.
    explicit CT_String(const CT_Type* type);

    CT_Buffer buffer_;

private:
    // Only a string without a block can be the prototype; others skip the question.
    void v_LeavePrototype() noexcept;

    static CT_Type sco_Type;
    static CT_String sco_Object;
};

#endif
