// CT_RecordManager: keyed resources.
#include "Foundation/Database/RecordManager/Internal/RecordManagerDetail.h"
#include "Foundation/Platform/LastError.h"

namespace platform = zelkor::platform;

namespace format = zelkor::record_format;
using format::Failed;

// Fills in the offset; the position in the directory, 0 with error 31053 when the key is absent.
unsigned int CT_RecordManager::n_FindResource(st_Resource* resource) {
    const unsigned int position = directory_.n_Find(resource);
    if (position == 0) {
        v_SetError(format::kNoResource);
    } else {
        directory_.v_GetAt(resource, position);
    }
    return position;
}

bool CT_RecordManager::ReadResourceLength(unsigned int offset, unsigned int* length) {
    const bool block = IsBlock(offset, format::kWord);
    if (block) *length = n_Read(offset);
    if (Failed()) return false;
    if (block && *length != format::kLive && InsideData(offset, *length)) return true;
    v_SetError(format::kCorrupt);
    return false;
}

bool CT_RecordManager::PutResource(unsigned int offset, const CT_Buffer& data) {
    WriteCounted(offset, static_cast<const std::byte*>(data.qcv_Get()), data.n_GetUsedSize());
    return !Failed();
}

void CT_RecordManager::v_AddResource(unsigned int key, const CT_Buffer* data) {
    if (!Given(data) || !MayChange()) return;
    if (n_GetResourceCount() >= n_GetResourceMaxCount()) {
        return v_SetError(format::kDirectoryFull);
    }
    st_Resource resource{key, 0};
    if (directory_.n_Find(&resource) != 0) return v_SetError(format::kResourceExists);
    const std::uint64_t length = std::uint64_t{data->n_GetUsedSize()} + format::kWord;
    if (length > format::kLargestFile) return SystemFailure(platform::kErrorFileTooLarge);
    resource.offset = n_GetFreeBlock(static_cast<unsigned int>(length));
    if (Failed()) return;
    HeaderChanged();
    if (!PutResource(resource.offset, *data)) {
        Mend(resource.offset, static_cast<unsigned int>(length));
        Failed();
        return;
    }
    directory_.v_Insert(&resource);
    Add(format::kResourceCountAt, 1);
    Add(format::kResourceCounterAt, 1);
}

void CT_RecordManager::v_GetResource(unsigned int key, CT_Buffer* out) {
    if (!Given(out)) return;
    if (out->n_GetUseCount() != 1) out->v_Set(0, CT_Buffer::kToEnd, FALSE);
    out->v_SetUsedSize(0);
    if (Failed()) return;
    st_Resource resource{key, 0};
    unsigned int length = 0;
    if (n_FindResource(&resource) == 0 || !ReadResourceLength(resource.offset, &length)) {
        Failed();
        return;
    }
    if (length < format::kWord) return v_SetError(format::kCorrupt);
    v_Read(out, resource.offset + format::kBodyDataAt, length - format::kWord);
    Failed();
}

void CT_RecordManager::v_UpdateResource(unsigned int key, const CT_Buffer* data) {
    if (!Given(data) || !MayChange()) return;
    st_Resource resource{key, 0};
    unsigned int old = 0;
    const unsigned int position = n_FindResource(&resource);
    if (position == 0 || !ReadResourceLength(resource.offset, &old)) {
        Failed();
        return;
    }
    const std::uint64_t length = std::uint64_t{data->n_GetUsedSize()} + format::kWord;
    const auto* const bytes = static_cast<const std::byte*>(data->qcv_Get());
    if (Round(old) == Round(length)) {
        if (WriteOver(resource.offset, old, bytes, data->n_GetUsedSize())) HeaderChanged();
        return;
    }
    if (length > format::kLargestFile) return SystemFailure(platform::kErrorFileTooLarge);
    const Giving giving(*this);
    if (!GiveBack(resource.offset, old)) return;
    const unsigned int place = n_GetFreeBlock(static_cast<unsigned int>(length));
    if (Failed()) return;
    HeaderChanged();
    if (place == resource.offset) {
        if (!WriteOver(place, old, bytes, data->n_GetUsedSize())) return;
    } else if (!PutResource(place, *data)) {
        return Mend(place, static_cast<unsigned int>(length));
    }
    Add(format::kResourceCounterAt, 1);
    resource.offset = place;
    directory_.v_SetAt(&resource, position);
    Settle();
}

void CT_RecordManager::v_DeleteResource(unsigned int key) {
    if (!MayChange()) return;
    st_Resource resource{key, 0};
    unsigned int length = 0;
    const unsigned int position = n_FindResource(&resource);
    if (position == 0 || !ReadResourceLength(resource.offset, &length)) {
        Failed();
        return;
    }
    Former former(*this);
    if (!former.Keep(resource.offset, 2 * format::kWord, Piece())) return;
    v_PutFreeBlock(0, resource.offset, length);
    if (Failed()) return former.PutBack();
    directory_.v_RemoveAt(position);
    Add(format::kResourceCountAt, -1);
    HeaderChanged();
    Add(format::kResourceCounterAt, 1);
}

BOOL CT_RecordManager::b_ResourceExists(unsigned int key) const {
    const st_Resource resource{key, 0};
    return static_cast<BOOL>(directory_.n_Find(&resource));
}

unsigned int CT_RecordManager::n_GetResourceKeyAt(unsigned int position) const {
    if (position == 0 || position > directory_.n_GetCount()) return 0xFFFFFFFF;
    st_Resource resource;
    directory_.v_GetAt(&resource, position);
    return resource.key;
}
