// CT_SymbolTable: symbols, found by name or by identifier.
//
// Ownership: the table owns what b_Take was given, until pco_Give or an iterator's o_Remove hands
// it over; both clear it from both indexes, so that the table never reaches it again. A symbol
// whose name a later one took stays reachable by its identifier, one whose identifier was taken
// stays reachable by its name; one that lost both is deleted at once. Everything that is reachable
// is deleted with the table, each symbol once.
// A symbol must not be changed or deleted by others while the table holds it.
// Names are texts up to a zero character. Without regard to case A to Z agree with a to z, and no
// other letters do (CT_Compare::si_CompareNoCasePQUZ).
// Errors: records none. Running out of memory throws CT_SmartHeapException and leaves the table and
// the symbol as they were; the symbol is still the caller's. Threads: one object, one thread.
#ifndef FOUNDATION_CORE_SYMBOLTABLE_SYMBOLTABLE_H
#define FOUNDATION_CORE_SYMBOLTABLE_SYMBOLTABLE_H

#include <cstdint>

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Core/Container/Iterator.h"
#include "Foundation/Core/SymbolTable/Symbol.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_AbstractSymbolTable {
public:
    virtual ~CT_AbstractSymbolTable() = 0;
};

class ZELKOR_API CT_SymbolTable : public CT_AbstractSymbolTable,
                                  public zelkor::detail::PoolObject<CT_SymbolTable> {
public:
    using Iterator = CT_HashIterator<char16_t*, CT_Symbol*>;

    explicit CT_SymbolTable(BOOL case_sensitive = FALSE);
    CT_SymbolTable(const CT_SymbolTable&) = delete;
    CT_SymbolTable& operator=(const CT_SymbolTable&) = delete;
    ~CT_SymbolTable() override;
    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    // Deletes all symbols. The identifiers go on from where they were.
    void v_Set();

    // Takes a symbol, which gets the next identifier that is not in use if it has none. TRUE when
    // one of that name was there; the new one is found by the name from now on. With an error
    // already set the symbol is taken by its name only. FALSE, and nothing is taken, for null.
    BOOL b_Take(CT_Symbol* symbol);

    // The symbol, still the table's; null when there is none. A null name is the empty one.
    [[nodiscard]] CT_Symbol* pco_Get(const char16_t* name) const;
    [[nodiscard]] CT_Symbol* pco_Get(const CT_UString* name) const;
    [[nodiscard]] CT_Symbol* pco_Get(std::uint32_t id) const;
    // The same, and the symbol leaves the table: the caller owns it.
    [[nodiscard]] CT_Symbol* pco_Give(const char16_t* name);
    [[nodiscard]] CT_Symbol* pco_Give(const CT_UString* name);
    [[nodiscard]] CT_Symbol* pco_Give(std::uint32_t id);

    // A new iterator over the symbols that are found by name, in no particular order; the caller
    // owns it, and its o_Remove gives symbols away as pco_Give does. Null when memory runs out.
    [[nodiscard]] Iterator* pco_GiveIterator();

    // Number of names.
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept { return names_.n_GetCount(); }
    // The number behind the largest identifier so far, from 1; 1 comes behind 0xFFFFFFFE.
    std::uint32_t n4_GetNextId() noexcept;

private:
    class NameIterator;

    void DeleteSymbols() noexcept;
    void Forget(const CT_Symbol* symbol);
    [[nodiscard]] bool FoundByName(const CT_Symbol* symbol) const;
    [[nodiscard]] bool FoundById(const CT_Symbol* symbol) const;
    void RenewKey(CT_Symbol* symbol);
    void DeleteUnreachable(CT_Symbol* symbol);

    CT_HashTable<char16_t*, CT_Symbol*> names_;  // keys are the symbols' own names
    CT_HashTable<std::uint32_t, CT_Symbol*> ids_;
    std::uint32_t last_id_ = 0;
};

#endif
