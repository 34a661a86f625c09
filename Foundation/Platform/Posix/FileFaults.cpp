#include "Foundation/Platform/Posix/Internal/FileFaults.h"

#include <algorithm>
#include <array>

#include "Foundation/Platform/LastError.h"

namespace zelkor::platform {

namespace {

enum class Effect { kNone, kFail, kShorten, kFull };

struct Fault {
    Effect effect = Effect::kNone;
    bool sticky = false;
    std::uint32_t after = 0;
    std::uint32_t value = 0;  // error number, or bytes that pass
    std::uint32_t calls = 0;
};

struct ThreadFaults {
    std::array<Fault, kFileCalls> faults;
    bool set = false;
    ~ThreadFaults() {
        if (set) posix::faulty_threads.fetch_sub(1, std::memory_order_relaxed);
    }
};
thread_local ThreadFaults thread_faults;

Fault& FaultOf(FileCall call) {
    return thread_faults.faults[static_cast<std::size_t>(call)];
}

void Set(FileCall call, const Fault& fault) {
    if (!thread_faults.set) {
        thread_faults.set = true;
        posix::faulty_threads.fetch_add(1, std::memory_order_relaxed);
    }
    FaultOf(call) = fault;
}

// Whether the call at hand, counted already, is struck.
bool Struck(const Fault& fault) {
    return fault.sticky ? fault.calls > fault.after : fault.calls == fault.after + 1;
}

}  // namespace

void FailFileCall(FileCall call, std::uint32_t after, std::uint32_t error, bool sticky) noexcept {
    const Effect effect = error == 0 ? Effect::kNone : Effect::kFail;
    Set(call, {.effect = effect, .sticky = sticky, .after = after, .value = error});
}

void ShortenFileCall(FileCall call, std::uint32_t after, std::uint32_t limit,
                     bool sticky) noexcept {
    Set(call, {.effect = Effect::kShorten, .sticky = sticky, .after = after, .value = limit});
}

void FillDisk(std::uint32_t after, std::uint32_t limit) noexcept {
    Set(FileCall::kWrite,
        {.effect = Effect::kFull, .sticky = true, .after = after, .value = limit});
}

std::uint32_t ClearFileFaults(FileCall counted) noexcept {
    const std::uint32_t calls = FaultOf(counted).calls;
    if (thread_faults.set) posix::faulty_threads.fetch_sub(1, std::memory_order_relaxed);
    thread_faults.set = false;
    thread_faults.faults.fill({});
    return calls;
}

namespace posix {

constinit std::atomic<int> faulty_threads{0};

bool StrikesNow(FileCall call) noexcept {
    if (!thread_faults.set) return false;
    Fault& fault = FaultOf(call);
    ++fault.calls;
    if (fault.effect != Effect::kFail || !Struck(fault)) return false;
    SetLastError(fault.value);
    return true;
}

void LimitNow(FileCall call, std::uint32_t* limit, bool* full) noexcept {
    if (!thread_faults.set) return;
    Fault& fault = FaultOf(call);
    if (fault.effect != Effect::kShorten && fault.effect != Effect::kFull) return;
    if (!Struck(fault)) return;
    *full = fault.effect == Effect::kFull;
    if (*full && fault.calls > fault.after + 1) fault.value = 0;
    *limit = std::min(*limit, fault.value);
}

}  // namespace posix

}  // namespace zelkor::platform
