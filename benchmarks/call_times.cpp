// Preloaded into a program whose code was compiled with -finstrument-functions: measures how long each call from outside into that
// code keeps the main thread. Calls from one instrumented function to another count for the outermost. When the process ends,
// VELL_CALL_TIMES/PID gets a line for each function: module, offset in it, calls, and the longest in ms by the clock and by the
// processor. See scripts/call-times.

#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <unordered_map>

#define VELL_NOT_MEASURED __attribute__((no_instrument_function, visibility("default")))

namespace {

struct Times
{
    long long calls = 0;
    double longestMs = 0;
    double longestCpuMs = 0;
};

// Never deleted: objects of the program end later.
auto &times()
{
    static auto *const all = new std::unordered_map<void *, Times>;
    return *all;
}

double milliseconds(clockid_t clock)
{
    timespec now = {};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

thread_local int depth = 0;
thread_local double startedMs = 0;
thread_local double startedCpuMs = 0;

bool isMainThread()
{
    thread_local const bool isMain = syscall(SYS_gettid) == getpid();
    return isMain;
}

[[gnu::destructor]] void write()
{
    const char *const folder = std::getenv("VELL_CALL_TIMES");
    if (!folder || times().empty())
        return;
    std::FILE *const file =
        std::fopen((std::string(folder) + '/' + std::to_string(getpid())).c_str(), "w");
    if (!file)
        return;
    for (const auto &[function, time] : times()) {
        Dl_info module = {};
        dladdr(function, &module);
        std::fprintf(
            file, "%s\t%#lx\t%lld\t%.3f\t%.3f\n", module.dli_fname,
            static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(function)
                                       - reinterpret_cast<std::uintptr_t>(module.dli_fbase)),
            time.calls, time.longestMs, time.longestCpuMs);
    }
    std::fclose(file);
}

} // namespace

extern "C" {

VELL_NOT_MEASURED void __cyg_profile_func_enter(void *, void *)
{
    if (!isMainThread() || depth++ > 0)
        return;
    startedMs = milliseconds(CLOCK_MONOTONIC);
    startedCpuMs = milliseconds(CLOCK_THREAD_CPUTIME_ID);
}

VELL_NOT_MEASURED void __cyg_profile_func_exit(void *function, void *)
{
    if (!isMainThread() || --depth > 0)
        return;
    Times &time = times()[function];
    ++time.calls;
    time.longestMs = std::max(time.longestMs, milliseconds(CLOCK_MONOTONIC) - startedMs);
    time.longestCpuMs =
        std::max(time.longestCpuMs, milliseconds(CLOCK_THREAD_CPUTIME_ID) - startedCpuMs);
}

} // extern "C"
