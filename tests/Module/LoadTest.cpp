// Loading and unloading the library at run time. This program is not linked with it: it gets the
// library's file as its argument, and a word that says what to try.
#include <dlfcn.h>
#include <malloc.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

int Fail(const char* what) {
    std::fprintf(stderr, "FAILED: %s\n", what);
    return 1;
}

template <typename Function>
Function* Find(void* library, const char* name) {
    return reinterpret_cast<Function*>(dlsym(library, name));
}

// Every load starts afresh and every unload gives everything back.
int Repeat(const char* library) {
    std::size_t before = 0;
    for (int round = 0; round < 200; ++round) {
        void* const handle = dlopen(library, RTLD_LAZY | RTLD_LOCAL);
        if (handle == nullptr) return Fail(dlerror());
        auto* const version = Find<unsigned int()>(handle, "_ZN15CT_BasisDLLMain13sn_GetVersionEv");
        if (version == nullptr || version() != 7) return Fail("the library was not attached");
        auto* const leave =
            Find<bool(const char16_t*)>(handle, "_ZN6zelkor8platform12SetErrorInfoEPKDs");
        if (leave == nullptr || !leave(u"left in the thread")) return Fail("no error object");
        auto* const exceptions = Find<void*()>(handle, "_ZN19CT_ExceptionManager8spco_GetEv");
        auto* const add = Find<void(void*, const char16_t*, unsigned, unsigned, const char16_t*)>(
            handle, "_ZN19CT_ExceptionManager13v_AddLocationEPKDsjjS1_");
        if (exceptions == nullptr || add == nullptr) return Fail("no exception manager");
        add(exceptions(), u"never cleared", 1, 2, std::u16string(300, u'x').c_str());
        if (dlclose(handle) != 0) return Fail("dlclose");
        if (dlopen(library, RTLD_NOW | RTLD_NOLOAD) != nullptr) return Fail("still loaded");
        const std::size_t used = mallinfo2().uordblks;
        if (round == 20) before = used;
        if (round > 20 && used > before + 4096) return Fail("memory is lost with each unload");
    }
    return 0;
}

// The environment counts as it is at the load, whenever the question comes.
int Environment(const char* library) {
    setenv("LC_ALL", "", 1);
    setenv("LC_TIME", "pl_PL.UTF-8", 1);
    setenv("LC_CTYPE", "ja_JP", 1);
    void* const handle = dlopen(library, RTLD_LAZY | RTLD_LOCAL);
    if (handle == nullptr) return Fail(dlerror());
    setenv("LC_ALL", "de_DE", 1);
    auto* const user = Find<std::uint32_t()>(handle, "_ZN6zelkor8platform18GetUserDefaultLCIDEv");
    auto* const page = Find<std::uint32_t()>(handle, "_ZN6zelkor8platform12AnsiCodePageEv");
    if (user == nullptr || user() != 0x0415) return Fail("the user's locale is not the load's");
    if (page == nullptr || page() != 932) return Fail("the ANSI page is not the load's");
    return dlclose(handle);
}

// With every thread slot of the process taken, the load ends the process and says why.
int WithoutSlots(const char* library) {
    int out[2];
    if (pipe(out) != 0) return Fail("pipe");
    const pid_t child = fork();
    if (child == 0) {
        dup2(out[1], 2);
        pthread_key_t key;
        while (pthread_key_create(&key, nullptr) == 0) {
        }
        dlopen(library, RTLD_LAZY);
        _exit(0);
    }
    close(out[1]);
    std::string said;
    char bytes[256];
    for (ssize_t n; (n = read(out[0], bytes, sizeof bytes)) > 0;) {
        said.append(bytes, static_cast<std::size_t>(n));
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFSIGNALED(status) || WTERMSIG(status) != SIGABRT) return Fail("the load went on");
    if (said.find("no thread slot for CT_Thread") == said.npos) return Fail(said.c_str());
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string_view wanted = count == 3 ? arguments[2] : "";
    if (wanted == "repeat") return Repeat(arguments[1]);
    if (wanted == "slots") return WithoutSlots(arguments[1]);
    if (wanted == "environment") return Environment(arguments[1]);
    return Fail("usage: LoadTest LIBRARY repeat|slots|environment");
}
