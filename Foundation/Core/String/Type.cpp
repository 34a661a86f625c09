#include "Foundation/Core/String/Type.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "Foundation/Core/Buffer/Internal/Blocks.h"
#include "Foundation/Platform/Memory.h"

namespace platform = zelkor::platform;

constinit CT_Type* CT_Type::spco_First = nullptr;
constinit CT_Type* CT_Type::spco_InConstruct = nullptr;
constinit CT_Type* CT_Type::spco_InDestruct = nullptr;
constinit CT_Type::st_Entry* CT_Type::spso_Staged = nullptr;
constinit std::uint32_t CT_Type::sn_Staged = 0;

CT_Type::CT_Type(const char* name, const void* object, std::uint32_t size) noexcept
    : name_(name), object_(object), size_(size), next_(spco_First) {
    spco_First = this;
    spco_InConstruct = this;
}

CT_Type::~CT_Type() {
    platform::Free(table_);
    CT_Type** link = &spco_First;
    while (*link != nullptr && *link != this) link = &(*link)->next_;
    if (*link == this) *link = next_;
    if (spco_InConstruct == this) spco_InConstruct = nullptr;
    if (spco_InDestruct == this) spco_InDestruct = nullptr;
}

void* CT_Type::pv_CastTo(const void* object, const CT_Type* type) const noexcept {
    const std::span table(table_, count_);
    const auto is_wanted = [type](const st_Entry& entry) { return entry.type == type; };
    const auto hit = std::find_if(table.begin(), table.end(), is_wanted);
    if (object == nullptr || hit == table.end() ||
        std::find_if(hit + 1, table.end(), is_wanted) != table.end()) {
        return nullptr;
    }
    return const_cast<char*>(static_cast<const char*>(object) + hit->offset);
}

void CT_Type::sv_Enter(const void* object, const CT_Type* type) {
    void* const staged = platform::Reallocate(spso_Staged, (sn_Staged + 1) * sizeof(st_Entry));
    if (staged == nullptr) zelkor::detail::ReportExhausted();
    spso_Staged = static_cast<st_Entry*>(staged);
    const char* const prototype = static_cast<const char*>(spco_InConstruct->object_);
    spso_Staged[sn_Staged++] = {type, static_cast<const char*>(object) - prototype};
}

void CT_Type::v_Enter() {
    platform::Free(table_);
    table_ = spso_Staged;
    count_ = sn_Staged;
    spso_Staged = nullptr;
    sn_Staged = 0;
    spco_InConstruct = nullptr;
}

BOOL CT_Type::sb_InConstruct(const void* address) noexcept {
    return spco_InConstruct != nullptr && spco_InConstruct->Covers(address);
}

void CT_Type::sv_ToDestruct(CT_Type* type) noexcept {
    spco_InDestruct = type;
}

BOOL CT_Type::sb_InDestruct(const void* address) noexcept {
    if (spco_InDestruct == nullptr || !spco_InDestruct->Covers(address)) return FALSE;
    if (spco_InDestruct->count_ > 0) --spco_InDestruct->count_;
    if (spco_InDestruct->count_ == 0) spco_InDestruct = nullptr;
    return TRUE;
}

bool CT_Type::Covers(const void* address) const noexcept {
    const auto place = reinterpret_cast<std::uintptr_t>(address);
    const auto first = reinterpret_cast<std::uintptr_t>(object_);
    return place - first < size_;
}
