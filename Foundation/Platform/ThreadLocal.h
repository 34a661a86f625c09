// ZELKOR_THREAD_LOCAL declares a thread-local variable that is reached without a function call,
// also from a shared library: `ZELKOR_THREAD_LOCAL int depth = 0;`
//
// Such variables live in the block that the loader reserves for libraries opened at run time, which
// is a few hundred bytes for everybody: only flags, counters and pointers. The initial value is a
// constant; `extern` declarations carry the same macro.
#ifndef FOUNDATION_PLATFORM_THREADLOCAL_H
#define FOUNDATION_PLATFORM_THREADLOCAL_H

#if defined(_WIN32)
#define ZELKOR_THREAD_LOCAL constinit thread_local
#else
#define ZELKOR_THREAD_LOCAL __attribute__((tls_model("initial-exec"))) constinit thread_local
#endif

#endif
