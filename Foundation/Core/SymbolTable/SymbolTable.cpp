#include "Foundation/Core/SymbolTable/SymbolTable.h"

#include <algorithm>
#include <cstring>

#include "Foundation/Core/Base/SmartHeap.h"
#include "Foundation/Core/Container/HashFunction.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/String/Compare.h"

using zelkor::detail::Failed;

namespace {

constinit _SHI_Pool pool(sizeof(CT_SymbolTable), 16);

constexpr std::uint32_t kSlots = 13;

// The tables' key type; they never write through it.
char16_t* Key(const char16_t* name) noexcept {
    return const_cast<char16_t*>(name == nullptr ? u"" : name);
}

char16_t* Key(const CT_UString* name) noexcept {
    return Key(name == nullptr ? nullptr : name->qcuz_Get());
}

char16_t* Key(const CT_Symbol* symbol) {
    return Key(symbol->pcco_GetName());
}

}  // namespace

// Removing through it clears the identifier index of its table too.
class CT_SymbolTable::NameIterator : public Iterator {
public:
    explicit NameIterator(CT_SymbolTable* table) noexcept
        : Iterator(&table->names_), table_(table) {}

    [[nodiscard]] NameIterator* pco_Clone() const override { return new NameIterator(*this); }
    using Iterator::v_Set;
    void v_Set(const CT_Iterator<CT_Symbol*>* other) override {
        const auto* const same = dynamic_cast<const NameIterator*>(other);
        if (same != nullptr) *this = *same;
    }
    CT_Symbol* o_Remove() override {
        CT_Symbol* const symbol = Iterator::o_Remove();
        if (symbol != nullptr) table_->Forget(symbol);
        return symbol;
    }

private:
    CT_SymbolTable* table_;
};

CT_AbstractSymbolTable::~CT_AbstractSymbolTable() = default;

_SHI_Pool* CT_SymbolTable::spso_GetMemPool() noexcept {
    return &pool;
}

CT_SymbolTable::CT_SymbolTable(BOOL case_sensitive)
    : names_(case_sensitive != FALSE ? &CT_HashFunction::sn_HashCasePQUZ
                                     : &CT_HashFunction::sn_HashNoCasePQUZ,
             case_sensitive != FALSE ? &CT_Compare::si_CompareCasePQUZ
                                     : &CT_Compare::si_CompareNoCasePQUZ,
             kSlots),
      ids_(&CT_HashFunction::sn_HashPN4, &CT_Compare::si_ComparePN4, kSlots) {}

CT_SymbolTable::~CT_SymbolTable() {
    DeleteSymbols();
}

void CT_SymbolTable::v_Set() {
    DeleteSymbols();
    names_.v_Set(kSlots);
    ids_.v_Set(kSlots);
}

void CT_SymbolTable::DeleteSymbols() noexcept {
    CT_VoidHashIterator ids(ids_.pcco_GetTable());
    for (ids.b_Next(); ids.b_AtEnd() == FALSE;) {
        CT_Symbol* symbol = nullptr;
        ids.v_Remove(&symbol);
        if (!FoundByName(symbol)) delete symbol;
    }
    CT_VoidHashIterator names(names_.pcco_GetTable());
    for (names.b_Next(); names.b_AtEnd() == FALSE;) {
        CT_Symbol* symbol = nullptr;
        names.v_Remove(&symbol);
        delete symbol;
    }
}

std::uint32_t CT_SymbolTable::n4_GetNextId() noexcept {
    if (++last_id_ >= CT_Symbol::kNoId) last_id_ = 1;
    return last_id_;
}

BOOL CT_SymbolTable::b_Take(CT_Symbol* symbol) {
    if (symbol == nullptr) return FALSE;
    const std::uint32_t last_id = last_id_;
    const bool numbered = symbol->n4_GetId() != CT_Symbol::kNoId;
    if (numbered) {
        last_id_ = std::max(last_id_, symbol->n4_GetId());
    } else {
        while (ids_.b_Get(n4_GetNextId(), nullptr) != FALSE) {
        }
        symbol->v_Set(symbol->pcco_GetName(), last_id_);
    }
    CT_Symbol* namesake = nullptr;
    CT_Symbol* numbersake = nullptr;
    names_.b_Get(Key(symbol), &namesake);
    ids_.b_Get(symbol->n4_GetId(), &numbersake);
    const bool error = zelkor::detail::ErrorIsSet();
    try {
        names_.b_Insert(Key(symbol), symbol);
        if (!error) ids_.b_Insert(symbol->n4_GetId(), symbol);
    } catch (...) {
        if (namesake != nullptr) {
            names_.b_Insert(Key(symbol), namesake);
        } else {
            names_.b_Remove(Key(symbol), nullptr);
        }
        last_id_ = last_id;
        if (!numbered) symbol->v_Set(symbol->pcco_GetName(), CT_Symbol::kNoId);
        throw;
    }
    if (namesake != nullptr) RenewKey(symbol);
    DeleteUnreachable(namesake);
    if (!error && numbersake != namesake) DeleteUnreachable(numbersake);
    Failed();
    return namesake != nullptr ? TRUE : FALSE;
}

// The stored key is still the text of the symbol that had the name before.
void CT_SymbolTable::RenewKey(CT_Symbol* symbol) {
    const CT_VoidHashTable* const table = names_.pcco_GetTable();
    char16_t* const key = Key(symbol);
    const auto* item = table->pso_GetAt(table->pf_GetHash()(&key, table->n_GetTableSize()));
    for (; item != nullptr; item = item->pcso_GetFollowing()) {
        CT_Symbol* found = nullptr;
        std::memcpy(&found, item->pcv_GetData(), sizeof found);
        if (found == symbol) std::memcpy(const_cast<void*>(item->pcv_GetKey()), &key, sizeof key);
    }
}

bool CT_SymbolTable::FoundByName(const CT_Symbol* symbol) const {
    return pco_Get(symbol->pcco_GetName()) == symbol;
}

bool CT_SymbolTable::FoundById(const CT_Symbol* symbol) const {
    return pco_Get(symbol->n4_GetId()) == symbol;
}

void CT_SymbolTable::DeleteUnreachable(CT_Symbol* symbol) {
    if (symbol != nullptr && !FoundByName(symbol) && !FoundById(symbol)) delete symbol;
}

void CT_SymbolTable::Forget(const CT_Symbol* symbol) {
    if (FoundByName(symbol)) names_.b_Remove(Key(symbol), nullptr);
    if (FoundById(symbol)) ids_.b_Remove(symbol->n4_GetId(), nullptr);
}

CT_Symbol* CT_SymbolTable::pco_Get(const char16_t* name) const {
    CT_Symbol* symbol = nullptr;
    names_.b_Get(Key(name), &symbol);
    return symbol;
}

CT_Symbol* CT_SymbolTable::pco_Get(const CT_UString* name) const {
    return pco_Get(Key(name));
}

CT_Symbol* CT_SymbolTable::pco_Get(std::uint32_t id) const {
    CT_Symbol* symbol = nullptr;
    ids_.b_Get(id, &symbol);
    return symbol;
}

CT_Symbol* CT_SymbolTable::pco_Give(const char16_t* name) {
    CT_Symbol* const symbol = pco_Get(name);
    if (symbol != nullptr) Forget(symbol);
    return symbol;
}

CT_Symbol* CT_SymbolTable::pco_Give(const CT_UString* name) {
    return pco_Give(Key(name));
}

CT_Symbol* CT_SymbolTable::pco_Give(std::uint32_t id) {
    CT_Symbol* const symbol = pco_Get(id);
    if (symbol != nullptr) Forget(symbol);
    return symbol;
}

CT_SymbolTable::Iterator* CT_SymbolTable::pco_GiveIterator() {
    try {
        return new NameIterator(this);
    } catch (const CT_SmartHeapException&) {
        return nullptr;
    }
}
