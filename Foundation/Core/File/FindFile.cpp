#include "Foundation/Core/File/FindFile.h"

#include <new>

#include "Foundation/Core/File/FileSystem.h"
#include "Foundation/Core/String/Internal/PlatformName.h"
#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/Memory.h"

namespace platform = zelkor::platform;

CT_FindFile::CT_FindFile(const CT_UString* pattern, unsigned int required, unsigned int excluded,
                         BOOL full_names) {
    v_Set(pattern, required, excluded, full_names);
}

CT_FindFile::~CT_FindFile() {
    EndSearch();
}

void* CT_FindFile::operator new(std::size_t size) {
    void* const block = platform::Allocate(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void CT_FindFile::operator delete(void* block) {
    platform::Free(block);
}

void CT_FindFile::v_Set(const CT_UString* pattern, unsigned int required, unsigned int excluded,
                        BOOL full_names) {
    EndSearch();
    found_ = {};
    pattern_.v_Set(pattern);
    required_ = required;
    excluded_ = excluded;
    full_names_ = full_names;
    prefix_.vv_Init();
    if (full_names) {
        CT_UString directory;
        CT_FileSystem::sv_SplitPath(&pattern_, &prefix_, &directory, nullptr, nullptr);
        prefix_.v_Append(&directory);
    }
}

BOOL CT_FindFile::b_FindFirst(CT_UString* name, unsigned int* attributes) {
    EndSearch();
    search_ = platform::FindFirst(zelkor::detail::PlatformName(&pattern_).Get(), &found_);
    if (search_ == INVALID_HANDLE_VALUE) return FALSE;
    if (!b_TestAttribut()) return b_FindNext(name, attributes);
    Deliver(name, attributes);
    return TRUE;
}

BOOL CT_FindFile::b_FindNext(CT_UString* name, unsigned int* attributes) {
    if (search_ == INVALID_HANDLE_VALUE) return FALSE;
    do {
        if (!platform::FindNext(search_, &found_)) return FALSE;
    } while (!b_TestAttribut());
    Deliver(name, attributes);
    return TRUE;
}

unsigned int CT_FindFile::Attributes() const {
    return found_.attributes & ~static_cast<unsigned int>(platform::kFileNormal);
}

BOOL CT_FindFile::b_TestAttribut() const {
    const unsigned int attributes = Attributes();
    const bool passes = (required_ == 0 || (required_ & attributes) != 0) &&
                        (excluded_ == 0 || (excluded_ & attributes) == 0);
    return passes ? TRUE : FALSE;
}

void CT_FindFile::v_MakeName(CT_UString* name) const {
    CT_UString found(found_.name);
    zelkor::detail::PassPlatform(&found);
    name->v_Set(&prefix_);
    name->v_Append(&found);
}

void CT_FindFile::Deliver(CT_UString* name, unsigned int* attributes) const {
    if (attributes != nullptr) *attributes = Attributes();
    if (name != nullptr) v_MakeName(name);
}

void CT_FindFile::EndSearch() {
    if (search_ != INVALID_HANDLE_VALUE) platform::FindClose(search_);
    search_ = INVALID_HANDLE_VALUE;
}
