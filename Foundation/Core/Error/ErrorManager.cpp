#include "Foundation/Core/Error/ErrorManager.h"

#include <new>
#include <utility>

#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Threads.h"

namespace platform = zelkor::platform;

using zelkor::detail::thread_errors;

namespace zelkor::detail {

ZELKOR_THREAD_LOCAL ThreadErrors thread_errors;

// Records are used from the front; those given back go to the free list.
struct ErrorRecordBlock {
    static constexpr unsigned int kRecords = 20;
    CT_ErrorManager::st_error records[kRecords];
    unsigned int used;
    ErrorRecordBlock* next;
};

struct ErrorMapping {
    CT_ErrorManager::st_mapItem item;
    ErrorMapping* next;
};

}  // namespace zelkor::detail

namespace {

using zelkor::detail::ErrorMapping;
using zelkor::detail::ErrorRecordBlock;

constexpr unsigned int kLocations = 100;

// Part of the library's zeroed memory and untouched until used: start-up costs nothing, and
// reporting needs no memory.
constinit ErrorRecordBlock first_block{};
constinit CT_ErrorManager::st_location locations[kLocations]{};

constinit CT_ErrorManager* manager = nullptr;

// Makes a record the thread's active one, or none.
void SetActive(CT_ErrorManager::st_error* error) {
    thread_errors.active = error;
    platform::ErrorFlag() = error != nullptr && !error->ignore;
}

}  // namespace

constinit CT_ErrorManager CT_ErrorManager::sco_Manager;

// ---- Life -----------------------------------------------------------------------------------

void CT_ErrorManager::sv_Init() {
    sco_Manager.blocks_ = &first_block;
    manager = &sco_Manager;
}

void CT_ErrorManager::sv_Exit() {
    manager = nullptr;
    SetActive(nullptr);
    thread_errors = {};
    CT_ErrorManager& self = sco_Manager;
    self.v_EnterCS();
    for (ErrorMapping* mapping = self.mappings_.exchange(nullptr); mapping != nullptr;) {
        platform::Free(std::exchange(mapping, mapping->next));
    }
    for (ErrorRecordBlock* block = self.blocks_; block != &first_block;) {
        platform::Free(std::exchange(block, block->next));
    }
    self.blocks_ = &first_block;
    self.free_errors_ = self.active_errors_ = self.held_errors_ = nullptr;
    self.v_LeaveCS();
}

CT_ErrorManager* CT_ErrorManager::spco_Get() {
    return manager;
}

unsigned int CT_ErrorManager::n_GetThread() {
    return platform::CurrentThreadId();
}

// ---- Records ----------------------------------------------------------------------------------

// A record that no list holds; null when there is no memory for more. Needs the lock.
CT_ErrorManager::st_error* CT_ErrorManager::pso_TakeRecord() {
    if (st_error* const error = free_errors_) {
        free_errors_ = error->next;
        return error;
    }
    if (blocks_->used == ErrorRecordBlock::kRecords) {
        void* const place = platform::TryAllocate(sizeof(ErrorRecordBlock));
        if (place == nullptr) return nullptr;
        auto* const block = ::new (place) ErrorRecordBlock;
        block->used = 0;
        block->next = blocks_;
        blocks_ = block;
    }
    return &blocks_->records[blocks_->used++];
}

CT_ErrorManager::st_error* CT_ErrorManager::pso_CreateNewError(unsigned int code, HINSTANCE module,
                                                               unsigned int formatID) {
    if (thread_errors.active != nullptr) return nullptr;
    if (thread_errors.held != nullptr) v_DestroyError(thread_errors.held);
    v_EnterCS();
    st_error* const error = pso_TakeRecord();
    if (error != nullptr) {
        error->next = active_errors_;
        active_errors_ = error;
    }
    v_LeaveCS();
    if (error == nullptr) return nullptr;
    error->module = module != nullptr ? module : default_module_.load(std::memory_order_relaxed);
    error->thread = n_GetThread();
    error->code = code;
    error->formatID = formatID;
    error->message[0] = 0;
    error->locationCount = 0;
    error->firstLocation = error->lastLocation = nullptr;
    error->ignore = FALSE;
    SetActive(error);
    return error;
}

// Takes a record out of the list that holds it. Needs the lock.
void CT_ErrorManager::sv_Unlink(st_error** list, const st_error* error) {
    while (*list != error) list = &(*list)->next;
    *list = error->next;
}

void CT_ErrorManager::v_DestroyError(st_error* error) {
    const bool active = error == thread_errors.active;
    if (active) {
        SetActive(nullptr);
    } else {
        thread_errors.held = nullptr;
    }
    v_EnterCS();
    sv_Unlink(active ? &active_errors_ : &held_errors_, error);
    if (error->lastLocation != nullptr) {
        error->lastLocation->next = free_locations_;
        free_locations_ = error->firstLocation;
    }
    error->next = free_errors_;
    free_errors_ = error;
    v_LeaveCS();
}

CT_ErrorManager::st_error* CT_ErrorManager::pso_GetError() {
    return thread_errors.active != nullptr ? thread_errors.active : thread_errors.held;
}

// ---- Locations --------------------------------------------------------------------------------

void CT_ErrorManager::v_AddLocation(const char* file, unsigned int line) {
    if (thread_errors.active != nullptr) v_AddLocation(thread_errors.active, file, line);
}

void CT_ErrorManager::v_AddLocation(st_error* error, const char* file, unsigned int line) {
    v_EnterCS();
    st_location* location = free_locations_;
    if (location != nullptr) {
        free_locations_ = location->next;
    } else if (location_count_ < kLocations) {
        location = &locations[location_count_++];
    }
    v_LeaveCS();
    if (location == nullptr) return;
    *location = st_location{file, line, nullptr};
    (error->lastLocation != nullptr ? error->lastLocation->next : error->firstLocation) = location;
    error->lastLocation = location;
    ++error->locationCount;
}

const CT_ErrorManager::st_location* CT_ErrorManager::pso_GetLocationAt(unsigned int position) {
    const st_error* const error = pso_GetError();
    if (error == nullptr || position == 0 || position > error->locationCount) return nullptr;
    const st_location* location = error->firstLocation;
    while (--position != 0) location = location->next;
    return location;
}

// ---- Reading ------------------------------------------------------------------------------------

BOOL CT_ErrorManager::b_IsHoldError() const {
    return thread_errors.held != nullptr;
}

unsigned int CT_ErrorManager::n_GetErrorCode() const {
    const st_error* const error = pso_GetError();
    return error != nullptr ? error->code : 0;
}

unsigned int CT_ErrorManager::n_GetFormatID() const {
    const st_error* const error = pso_GetError();
    return error != nullptr ? error->formatID : 0;
}

const char16_t* CT_ErrorManager::qcuz_GetErrorMessage() const {
    const st_error* const error = pso_GetError();
    return error != nullptr ? error->message : u"";
}

unsigned int CT_ErrorManager::n_GetLocationCount() const {
    const st_error* const error = pso_GetError();
    return error != nullptr ? error->locationCount : 0;
}

const char* CT_ErrorManager::qccz_GetLocationFileAt(unsigned int position) const {
    const st_location* const location = pso_GetLocationAt(position);
    return location != nullptr ? location->file : nullptr;
}

unsigned int CT_ErrorManager::n_GetLocationLineAt(unsigned int position) const {
    const st_location* const location = pso_GetLocationAt(position);
    return location != nullptr ? location->line : 0;
}

// ---- Clearing and parking ---------------------------------------------------------------------

void CT_ErrorManager::v_ClearError() {
    if (st_error* const error = pso_GetError()) v_DestroyError(error);
}

void CT_ErrorManager::v_HoldError() {
    st_error* const error = thread_errors.active;
    if (error == nullptr) return;
    SetActive(nullptr);
    v_EnterCS();
    sv_Unlink(&active_errors_, error);
    error->next = held_errors_;
    held_errors_ = error;
    v_LeaveCS();
    thread_errors.held = error;
}

void CT_ErrorManager::v_UnHoldError() {
    st_error* const error = std::exchange(thread_errors.held, nullptr);
    if (error == nullptr) return;
    v_EnterCS();
    sv_Unlink(&held_errors_, error);
    error->next = active_errors_;
    active_errors_ = error;
    v_LeaveCS();
    SetActive(error);
}

void CT_ErrorManager::v_SetIgnoreError(BOOL ignore) {
    if (thread_errors.active == nullptr) return;
    thread_errors.active->ignore = ignore;
    SetActive(thread_errors.active);
}

// ---- Message functions --------------------------------------------------------------------------

void CT_ErrorManager::v_SetMapFunction(t_MapFunction function, unsigned int key) {
    void* const place = platform::Allocate(sizeof(ErrorMapping));
    if (place == nullptr) return;
    auto* const mapping = ::new (place) ErrorMapping{{key, function}, nullptr};
    v_EnterCS();
    mapping->next = mappings_.load(std::memory_order_relaxed);
    mappings_.store(mapping, std::memory_order_relaxed);
    v_LeaveCS();
}

void CT_ErrorManager::v_RemoveMapFunction(unsigned int key) {
    v_EnterCS();
    ErrorMapping* before = nullptr;
    ErrorMapping* mapping = mappings_.load(std::memory_order_relaxed);
    while (mapping != nullptr && mapping->item.key != key) {
        before = std::exchange(mapping, mapping->next);
    }
    if (mapping != nullptr && before != nullptr) {
        before->next = mapping->next;
    } else if (mapping != nullptr) {
        mappings_.store(mapping->next, std::memory_order_relaxed);
    }
    v_LeaveCS();
    platform::Free(mapping);
}

CT_ErrorManager::t_MapFunction CT_ErrorManager::pso_GetMapping(unsigned int key) {
    if (mappings_.load(std::memory_order_relaxed) == nullptr) return nullptr;
    v_EnterCS();
    const ErrorMapping* mapping = mappings_.load(std::memory_order_relaxed);
    while (mapping != nullptr && mapping->item.key != key) mapping = mapping->next;
    const t_MapFunction function = mapping != nullptr ? mapping->item.function : nullptr;
    v_LeaveCS();
    return function;
}

// ---- Flags --------------------------------------------------------------------------------------

void CT_ErrorManager::sv_SetInstance(HINSTANCE instance) {
    sco_Manager.default_module_.store(instance, std::memory_order_relaxed);
}

void CT_ErrorManager::v_SetInterruptOnError(BOOL interrupt) {
    interrupt_on_error_.store(interrupt, std::memory_order_relaxed);
}

BOOL CT_ErrorManager::b_GetInterruptOnError() const {
    return interrupt_on_error_.load(std::memory_order_relaxed);
}

void CT_ErrorManager::v_SetDebugMessageOnError(BOOL message) {
    debug_message_on_error_.store(message, std::memory_order_relaxed);
}

BOOL CT_ErrorManager::b_GetDebugMessageOnError() const {
    return debug_message_on_error_.load(std::memory_order_relaxed);
}

void CT_ErrorManager::sv_OutputDebugMessage(const char16_t* /*text*/) {}
