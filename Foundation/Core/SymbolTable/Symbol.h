// CT_AbstractSymbol: something with a name and a number, and CT_Symbol, which keeps both.
//
// Errors: records none; what sets a symbol adds its location to an error that is already there.
// Running out of memory throws CT_SmartHeapException and leaves the symbol as it was.
// Threads: one object, one thread.
#ifndef FOUNDATION_CORE_SYMBOLTABLE_SYMBOL_H
#define FOUNDATION_CORE_SYMBOLTABLE_SYMBOL_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Export.h"

struct _SHI_Pool;

class ZELKOR_API CT_AbstractSymbol {
public:
    [[nodiscard]] virtual const CT_UString* vpcco_GetName() const = 0;
    [[nodiscard]] virtual std::uint32_t vn4_GetId() const = 0;
    virtual ~CT_AbstractSymbol();

    [[nodiscard]] const CT_UString* pcco_GetName() const { return vpcco_GetName(); }
    [[nodiscard]] std::uint32_t n4_GetId() const { return vn4_GetId(); }

protected:
    CT_AbstractSymbol() noexcept = default;
    CT_AbstractSymbol(const CT_AbstractSymbol&) noexcept = default;
    CT_AbstractSymbol& operator=(const CT_AbstractSymbol&) noexcept = default;
};

class ZELKOR_API CT_Symbol : public CT_AbstractSymbol {
public:
    static constexpr std::uint32_t kNoId = 0xFFFFFFFF;  // none yet

    // An empty name and no identifier.
    CT_Symbol() noexcept = default;
    // Names are copied, null is an empty one; a null symbol is one without name and identifier.
    CT_Symbol(const CT_UString* name, std::uint32_t id);
    CT_Symbol(const char16_t* name, std::uint32_t id);
    explicit CT_Symbol(const CT_Symbol* other);

    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept;
    static void operator delete(void*, void*) noexcept {}
    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    // As the constructors. A symbol must not be set while a table holds it.
    void v_Set() noexcept;
    void v_Set(const CT_UString* name, std::uint32_t id);
    void v_Set(const char16_t* name, std::uint32_t id);
    void v_Set(const CT_Symbol* other);

    [[nodiscard]] const CT_UString* vpcco_GetName() const override;
    [[nodiscard]] std::uint32_t vn4_GetId() const override;

private:
    CT_UString name_;
    std::uint32_t id_ = kNoId;
};

#endif
