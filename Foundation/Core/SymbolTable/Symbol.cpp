#include "Foundation/Core/SymbolTable/Symbol.h"

#include "Foundation/Core/Container/Internal/ContainerDetail.h"
#include "Foundation/Core/Error/Internal/Failure.h"

using namespace zelkor::detail;

namespace {

constinit _SHI_Pool pool(sizeof(CT_Symbol), 128);

}  // namespace

CT_AbstractSymbol::~CT_AbstractSymbol() = default;

CT_Symbol::CT_Symbol(const CT_UString* name, std::uint32_t id) {
    v_Set(name, id);
}

CT_Symbol::CT_Symbol(const char16_t* name, std::uint32_t id) {
    v_Set(name, id);
}

CT_Symbol::CT_Symbol(const CT_Symbol* other) {
    v_Set(other);
}

void* CT_Symbol::operator new(std::size_t size) {
    return NewObject(pool, size);
}

void CT_Symbol::operator delete(void* block, std::size_t size) noexcept {
    DeleteObject(pool, block, size);
}

_SHI_Pool* CT_Symbol::spso_GetMemPool() noexcept {
    return &pool;
}

void CT_Symbol::v_Set() noexcept {
    name_ = CT_UString();
    id_ = kNoId;
}

void CT_Symbol::v_Set(const CT_UString* name, std::uint32_t id) {
    if (name == nullptr) {
        name_ = CT_UString();
    } else {
        name_ = *name;
    }
    id_ = id;
    Failed();
}

void CT_Symbol::v_Set(const char16_t* name, std::uint32_t id) {
    name_ = name == nullptr ? CT_UString() : CT_UString(name);
    id_ = id;
    Failed();
}

void CT_Symbol::v_Set(const CT_Symbol* other) {
    if (other == nullptr) return v_Set();
    name_ = *other->pcco_GetName();
    id_ = other->n4_GetId();
    Failed();
}

const CT_UString* CT_Symbol::vpcco_GetName() const {
    return &name_;
}

std::uint32_t CT_Symbol::vn4_GetId() const {
    return id_;
}
