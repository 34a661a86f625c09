// CT_Type: the library's own run-time type registry. A registered class has a static CT_Type
// `sco_Type` and a static prototype `sco_Object`; its type knows every class that the prototype is
// an instance of and where that class's part lies in it.
//
// Registration: construct the CT_Type, then the prototype through its (const CT_Type*) constructor.
// Each constructor of the chain asks sb_InConstruct(this) and, when true, calls sv_Enter(this, its
// own type); the constructor whose own prototype it is then calls v_Enter on its type.
// Errors: records none; registration may throw CT_SmartHeapException.
// Threads: written during static construction and destruction only, read from any thread between.
#ifndef FOUNDATION_CORE_STRING_TYPE_H
#define FOUNDATION_CORE_STRING_TYPE_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_Type {
public:
    // Links the type at the head of the process-wide list and opens the registration of the
    // prototype at [object, object + size). The name is borrowed.
    CT_Type(const char* name, const void* object, std::uint32_t size) noexcept;
    ~CT_Type();
    CT_Type(const CT_Type&) = delete;
    CT_Type& operator=(const CT_Type&) = delete;

    [[nodiscard]] const char* qccz_GetName() const noexcept { return name_; }
    [[nodiscard]] const void* pcv_GetObject() const noexcept { return object_; }
    // Number of classes that the prototype is an instance of.
    [[nodiscard]] std::uint32_t n_GetTypes() const noexcept { return count_; }

    // The part of class `type` in `object`, which is of this class; null when it has none, or more
    // than one. The result is as writable as the object is.
    [[nodiscard]] void* pv_CastTo(const void* object, const CT_Type* type) const noexcept;

    // Notes a part of the prototype under construction; only while sb_InConstruct(object).
    static void sv_Enter(const void* object, const CT_Type* type);
    // Takes over the parts noted since this type was constructed and closes the registration.
    void v_Enter();
    // TRUE when the address lies in the prototype of the type under construction.
    [[nodiscard]] static BOOL sb_InConstruct(const void* address) noexcept;

    // Marks a type whose prototype is being destroyed; each level of destructors then asks
    // sb_InDestruct(this) once, and the mark goes with the last level.
    static void sv_ToDestruct(CT_Type* type) noexcept;
    static BOOL sb_InDestruct(const void* address) noexcept;

private:
    struct st_Entry {
        const CT_Type* type;
        std::ptrdiff_t offset;
    };

    [[nodiscard]] bool Covers(const void* address) const noexcept;

    static CT_Type* spco_First;
    static CT_Type* spco_InConstruct;
    static CT_Type* spco_InDestruct;
    static st_Entry* spso_Staged;  // parts of the prototype under construction
    static std::uint32_t sn_Staged;

    const char* name_;
    const void* object_;
    std::uint32_t size_;
    st_Entry* table_ = nullptr;
    std::uint32_t count_ = 0;
    CT_Type* next_;
};

#endif
