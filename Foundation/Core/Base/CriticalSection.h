// CT_CriticalSection: a lock between the threads of the process; CT_CriticalSectionMarker holds it
// for the length of a block.
//
// The thread that holds it may enter again; it is free after as many leaves. Errors: records none.
// A static one is made without start-up work (`constinit`).
#ifndef FOUNDATION_CORE_BASE_CRITICALSECTION_H
#define FOUNDATION_CORE_BASE_CRITICALSECTION_H

#include "Foundation/Platform/Sync.h"

class CT_CriticalSection {
public:
    constexpr CT_CriticalSection() noexcept = default;
    CT_CriticalSection(const CT_CriticalSection&) = delete;
    CT_CriticalSection& operator=(const CT_CriticalSection&) = delete;

    void v_Enter() { section_.Enter(); }
    void v_Leave() { section_.Leave(); }

private:
    zelkor::platform::RecursiveLock section_;
};

class CT_CriticalSectionMarker {
public:
    explicit CT_CriticalSectionMarker(CT_CriticalSection& section) : section_(section) {
        section_.v_Enter();
    }
    ~CT_CriticalSectionMarker() { section_.v_Leave(); }
    CT_CriticalSectionMarker(const CT_CriticalSectionMarker&) = delete;
    CT_CriticalSectionMarker& operator=(const CT_CriticalSectionMarker&) = delete;

private:
    CT_CriticalSection& section_;
};

#endif
