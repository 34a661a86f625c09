#include "Foundation/Core/Exception/ExceptionManager.h"

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include "Foundation/Core/Exception/Internal/ExceptionDetail.h"
#include "Foundation/Core/String/Internal/PlatformName.h"
#include "Foundation/Core/TestOut/TestOut.h"
#include "Foundation/Platform/Dialogs.h"
#include "Foundation/Platform/ThreadLocal.h"
#include "Foundation/Platform/Threads.h"

namespace platform = zelkor::platform;

namespace {

using st_ExceptionInfo = CT_ExceptionManager::st_ExceptionInfo;
using st_Location = CT_ExceptionManager::st_Location;

// Objects in zeroed memory that are made, one after the other, when they are first needed: start-up
// costs nothing.
template <typename T, unsigned int kCount>
struct Pool {
    static constexpr unsigned int kSize = kCount;

    // A new object; null when all are made.
    T* Make(unsigned int& made) noexcept {
        return made == kCount ? nullptr : ::new (bytes + sizeof(T) * made++) T{};
    }
    void Destroy(unsigned int& made) noexcept {
        while (made != 0) std::destroy_at(std::launder(reinterpret_cast<T*>(bytes) + --made));
    }

    alignas(T) std::byte bytes[sizeof(T) * kCount];
};
constinit Pool<st_ExceptionInfo, 10> infos{};
constinit Pool<st_Location, 100> locations{};

constinit CT_ExceptionManager* manager = nullptr;
ZELKOR_THREAD_LOCAL st_ExceptionInfo* thread_info = nullptr;

// What `make` answers, or the empty text when there is no memory for it: an exception is in flight
// and must not be replaced by another.
template <typename Make>
CT_UString TextOr(const Make& make) noexcept {
    try {
        return make();
    } catch (...) {
        return {};
    }
}

CT_UString Copy(const char16_t* text) noexcept {
    return TextOr([text] { return CT_UString(text); });
}
CT_UString Copy(const char* text) noexcept {
    return TextOr([text] { return zelkor::detail::WidenQuietly(text); });
}

}  // namespace

constinit CT_ExceptionManager CT_ExceptionManager::sco_Manager;

// ---- Life -----------------------------------------------------------------------------------

void CT_ExceptionManager::sv_Init() {
    manager = &sco_Manager;
}

void CT_ExceptionManager::sv_Exit() {
    manager = nullptr;
    thread_info = nullptr;
    CT_ExceptionManager& self = sco_Manager;
    const CT_CriticalSectionMarker lock(self.section_);
    self.active_ = self.free_infos_ = nullptr;
    self.free_locations_ = nullptr;
    infos.Destroy(self.info_count_);
    locations.Destroy(self.location_count_);
}

CT_ExceptionManager* CT_ExceptionManager::spco_Get() noexcept {
    return manager;
}

// ---- Recording --------------------------------------------------------------------------------

void CT_ExceptionManager::v_AddThrow(CT_UString&& file, unsigned int line, unsigned int code,
                                     CT_UString&& text) noexcept {
    const CT_CriticalSectionMarker lock(section_);
    if (thread_info == nullptr) {
        thread_info = pso_AllocExceptionInfo();
        if (thread_info == nullptr) return;
    }
    thread_info->code = code;
    thread_info->text = std::move(text);
    v_PushLocation(thread_info, std::move(file), line);
}

void CT_ExceptionManager::v_AddLocation(const char16_t* file, unsigned int line, unsigned int code,
                                        const char16_t* text) noexcept {
    v_AddThrow(Copy(file), line, code, Copy(text));
}

void CT_ExceptionManager::v_AddLocation(const char* file, unsigned int line, unsigned int code,
                                        const char16_t* text) noexcept {
    v_AddThrow(Copy(file), line, code, Copy(text));
}

void CT_ExceptionManager::v_AddPassage(CT_UString&& file, unsigned int line) noexcept {
    const CT_CriticalSectionMarker lock(section_);
    v_PushLocation(thread_info, std::move(file), line);
}

void CT_ExceptionManager::v_AddLocation(const char16_t* file, unsigned int line) noexcept {
    if (thread_info != nullptr) v_AddPassage(Copy(file), line);
}

void CT_ExceptionManager::v_AddLocation(const char* file, unsigned int line) noexcept {
    if (thread_info != nullptr) v_AddPassage(Copy(file), line);
}

void CT_ExceptionManager::v_Clear() noexcept {
    st_ExceptionInfo* const info = std::exchange(thread_info, nullptr);
    if (info == nullptr) return;
    const CT_CriticalSectionMarker lock(section_);
    v_DechainExceptionInfo(info);
    v_FreeExceptionInfo(info);
}

// ---- Records and locations --------------------------------------------------------------------

// A record of the calling thread at the head of the active list.
st_ExceptionInfo* CT_ExceptionManager::pso_AllocExceptionInfo() noexcept {
    st_ExceptionInfo* const info = free_infos_ != nullptr
                                       ? std::exchange(free_infos_, free_infos_->next)
                                       : infos.Make(info_count_);
    if (info == nullptr) return nullptr;
    info->thread = platform::CurrentThreadId();
    info->next = std::exchange(active_, info);
    return info;
}

void CT_ExceptionManager::v_DechainExceptionInfo(const st_ExceptionInfo* info) noexcept {
    st_ExceptionInfo** link = &active_;
    while (*link != info) link = &(*link)->next;
    *link = info->next;
}

void CT_ExceptionManager::v_FreeExceptionInfo(st_ExceptionInfo* info) noexcept {
    v_FreeLocationList(std::exchange(info->locations, nullptr));
    info->text = CT_UString();
    info->next = std::exchange(free_infos_, info);
}

st_Location* CT_ExceptionManager::pso_AllocLocation() noexcept {
    if (free_locations_ == nullptr) return locations.Make(location_count_);
    return std::exchange(free_locations_, free_locations_->next);
}

void CT_ExceptionManager::v_FreeLocationList(st_Location* newest) noexcept {
    while (newest != nullptr) {
        st_Location* const older = newest->next;
        newest->file = newest->text = CT_UString();
        newest->next = std::exchange(free_locations_, newest);
        newest = older;
    }
}

void CT_ExceptionManager::v_PushLocation(st_ExceptionInfo* info, CT_UString&& file,
                                         unsigned int line) noexcept {
    st_Location* const location = pso_AllocLocation();
    if (location == nullptr) return;
    location->file = std::move(file);
    location->line = line;
    location->code = info->code;
    location->text = info->text;
    location->next = std::exchange(info->locations, location);
}

const st_ExceptionInfo* CT_ExceptionManager::pso_GetException(unsigned int thread) const noexcept {
    if (thread == kCallingThread || thread == platform::CurrentThreadId()) return thread_info;
    const st_ExceptionInfo* info = active_;
    while (info != nullptr && info->thread != thread) info = info->next;
    return info;
}

// ---- Reading ----------------------------------------------------------------------------------
// Only its own thread changes a record, so that reading one's own needs no lock.

BOOL CT_ExceptionManager::b_InException() const noexcept {
    return thread_info != nullptr ? TRUE : FALSE;
}

unsigned int CT_ExceptionManager::n_GetCurrentCode() const noexcept {
    return thread_info != nullptr ? thread_info->code : kNoException;
}

const char16_t* CT_ExceptionManager::qcuz_GetCurrentText() const noexcept {
    return thread_info != nullptr ? thread_info->text.qcuz_Get() : nullptr;
}

void CT_ExceptionManager::v_Dump(CT_TestOut* out, unsigned int thread) const {
    if (out == nullptr) return;
    // Copied first: writing takes time, and may come back here through the debugger's sink.
    std::array<st_Location, locations.kSize> places;
    std::size_t count = 0;
    bool found = false;
    unsigned int code = 0;
    {
        const CT_CriticalSectionMarker lock(section_);
        if (const st_ExceptionInfo* const info = pso_GetException(thread)) {
            found = true;
            code = info->code;
            for (const st_Location* at = info->locations; at != nullptr; at = at->next) {
                places[count++] = *at;
            }
        }
    }
    if (thread == kCallingThread) thread = platform::CurrentThreadId();
    if (!found) {
        out->v_Out(u"No exception for thread %u.\n", thread);
        return;
    }
    out->v_Out(u"Active exception for thread %u has code %u.\n", thread, code);
    for (std::size_t i = 0; i < count; ++i) {
        const st_Location& place = places[i];
        out->v_Out(u"\t(%s, %u): code %u\n", place.file.qcuz_Get(), place.line, place.code);
    }
}

int CT_ExceptionManager::i_ExceptionLocationWindow(const char16_t* title,
                                                   unsigned int flags) const {
    const st_ExceptionInfo* const info = thread_info;
    if (info == nullptr) return 0;
    CT_UString caption(title);
    CT_UString text;
    CT_UString line;
    text.v_Format(u"Active exception %d", info->code);
    if (info->text.n_GetLength() != 0) {
        text.v_Append(u": ");
        text.v_Append(&info->text);
    }
    for (const st_Location* at = info->locations; at != nullptr; at = at->next) {
        line.v_Format(u"\n\t(%s, %u): code %u", at->file.qcuz_Get(), at->line, at->code);
        text.v_Append(&line);
    }
    zelkor::detail::PassPlatform(&caption);
    zelkor::detail::PassPlatform(&text);
    const int answer = platform::ShowMessageBox(text.qcuz_Get(), caption.qcuz_Get(),
                                                flags | platform::kBoxSetForeground);
    if (answer == platform::kAnswerAbort) platform::EndProcess("Aborted from an exception box.");
    return answer;
}
