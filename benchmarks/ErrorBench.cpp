// What failure reporting costs where nothing failed, and where something did; beside it what a
// thrown exception costs. Pool blocks beside the C library's heap.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>
#include <stdexcept>

#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Memory.h"

namespace platform = zelkor::platform;

namespace {

// The test after every call that may fail.
void BM_IsSetError(benchmark::State& state) {
    CT_ErrorManager* const errors = CT_ErrorManager::spco_Get();
    for (auto _ : state) benchmark::DoNotOptimize(errors->b_IsSetError());
}
BENCHMARK(BM_IsSetError);

// One failure with its formatted message, three locations, and the clearing.
void BM_RecordLocateClear(benchmark::State& state) {
    CT_ErrorManager* const errors = CT_ErrorManager::spco_Get();
    for (auto _ : state) {
        errors->v_SetError(31050, u"Invalid file format in %s", u"a.dat");
        for (unsigned int line = 1; line <= 3; ++line) errors->v_AddLocation("a/b.cpp", line);
        errors->v_ClearError();
    }
}
BENCHMARK(BM_RecordLocateClear)->ThreadRange(1, 4);

void BM_SystemError(benchmark::State& state) {
    CT_ErrorManager* const errors = CT_ErrorManager::spco_Get();
    for (auto _ : state) {
        platform::SetLastError(2);
        errors->v_SetSystemError(u"%s", u"C:\\a.txt");
        errors->v_AddLocation("a/b.cpp", 1);
        errors->v_ClearError();
    }
}
BENCHMARK(BM_SystemError);

void BM_PeerThrowCatch(benchmark::State& state) {
    for (auto _ : state) {
        try {
            throw std::runtime_error("Invalid file format in a.dat");
        } catch (const std::runtime_error& error) {
            benchmark::DoNotOptimize(error.what());
        }
    }
}
BENCHMARK(BM_PeerThrowCatch)->ThreadRange(1, 4);

// ---- Blocks -------------------------------------------------------------------------------------

constinit _SHI_Pool pool(24, 1024);
constexpr int kHeld = 64;  // blocks in use at a time

void BM_PoolBlocks(benchmark::State& state) {
    void* blocks[kHeld];
    for (auto _ : state) {
        for (void*& block : blocks)
            benchmark::DoNotOptimize(block = platform::AllocateBlock(&pool));
        for (void* block : blocks) platform::FreeBlock(&pool, block);
    }
    state.SetItemsProcessed(state.iterations() * kHeld);
}
BENCHMARK(BM_PoolBlocks)->ThreadRange(1, 4);

void BM_HeapBlocks(benchmark::State& state) {
    void* blocks[kHeld];
    for (auto _ : state) {
        for (void*& block : blocks) benchmark::DoNotOptimize(block = platform::Allocate(24));
        for (void* block : blocks) platform::Free(block);
    }
    state.SetItemsProcessed(state.iterations() * kHeld);
}
BENCHMARK(BM_HeapBlocks);

void BM_PeerMalloc(benchmark::State& state) {
    void* blocks[kHeld];
    for (auto _ : state) {
        for (void*& block : blocks) benchmark::DoNotOptimize(block = std::malloc(24));
        for (void* block : blocks) std::free(block);
    }
    state.SetItemsProcessed(state.iterations() * kHeld);
}
BENCHMARK(BM_PeerMalloc)->ThreadRange(1, 4);

void BM_PeerNew(benchmark::State& state) {
    void* blocks[kHeld];
    for (auto _ : state) {
        for (void*& block : blocks) benchmark::DoNotOptimize(block = ::operator new(24));
        for (void* block : blocks) ::operator delete(block);
    }
    state.SetItemsProcessed(state.iterations() * kHeld);
}
BENCHMARK(BM_PeerNew);

}  // namespace
