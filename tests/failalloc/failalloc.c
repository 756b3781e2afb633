/* A test allocator, preloaded (LD_PRELOAD) into a program to make one allocation fail.
 *
 *   FAILALLOC_N=N      the N-th allocation counted from the start of main() (from 1) returns
 *                      null with errno ENOMEM; every other one succeeds. Unset or 0: none
 *                      fails.
 *   FAILALLOC_REPORT=FILE  at exit, the number of allocations counted is written to FILE, so
 *                      that a sweep knows how far to go.
 *   FAILALLOC_TRACE=1  the failing allocation writes the call stack that made it on stderr,
 *                      so that a sweep can tell where a run that crashed failed.
 *
 * The count runs from the call of main() to its return (the allocator wraps __libc_start_main
 * to see both): what the dynamic loader and the constructors of the shared libraries allocate
 * before, and the destructors of static objects after, is not counted. A failure there cannot be
 * handled by any code of the program, and some of it cannot be survived at all (GLib, which Qt
 * loads, reports a failed allocation in its library constructor with g_error(), which never
 * returns). QCoreApplication's constructor runs in main() and is counted. malloc, calloc, realloc,
 * posix_memalign, aligned_alloc, memalign and valloc are counted (operator new goes through malloc
 * in libstdc++); free is not. The real allocator is glibc's, reached by its __libc_ names, so that
 * nothing here allocates.
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <execinfo.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

extern void* __libc_malloc(size_t);
extern void* __libc_calloc(size_t, size_t);
extern void* __libc_realloc(void*, size_t);
extern void* __libc_memalign(size_t, size_t);

static unsigned long failAt; /* read when main() starts */
static unsigned long count;
static int armed;
static int trace;

static unsigned long parse(const char* text)
{
    unsigned long n = 0;
    if (!text)
        return 0;
    for (; *text >= '0' && *text <= '9'; ++text)
        n = n * 10 + (unsigned long)(*text - '0');
    return n;
}

/* Whether this allocation is the one to fail. */
static int shouldFail(void)
{
    if (!__atomic_load_n(&armed, __ATOMIC_ACQUIRE))
        return 0;
    const unsigned long n = __atomic_add_fetch(&count, 1, __ATOMIC_RELAXED);
    if (failAt != 0 && n == failAt) {
        if (trace) {
            void* frames[64];
            backtrace_symbols_fd(frames, backtrace(frames, 64), 2);
        }
        errno = ENOMEM;
        return 1;
    }
    return 0;
}

void* malloc(size_t size)
{
    return shouldFail() ? NULL : __libc_malloc(size);
}

void* calloc(size_t n, size_t size)
{
    return shouldFail() ? NULL : __libc_calloc(n, size);
}

void* realloc(void* p, size_t size)
{
    return shouldFail() ? NULL : __libc_realloc(p, size);
}

void* memalign(size_t alignment, size_t size)
{
    return shouldFail() ? NULL : __libc_memalign(alignment, size);
}

void* aligned_alloc(size_t alignment, size_t size)
{
    return memalign(alignment, size);
}

void* valloc(size_t size)
{
    return memalign((size_t)sysconf(_SC_PAGESIZE), size);
}

int posix_memalign(void** result, size_t alignment, size_t size)
{
    void* p = memalign(alignment, size);
    if (!p)
        return ENOMEM;
    *result = p;
    return 0;
}

typedef int (*MainFunction)(int, char**, char**);
typedef int (*StartMain)(MainFunction, int, char**, void (*)(void), void (*)(void), void (*)(void),
                         void*);
static MainFunction realMain;

/* The program's main(), with the count armed. */
static int armedMain(int argc, char** argv, char** envp)
{
    failAt = parse(getenv("FAILALLOC_N"));
    trace = getenv("FAILALLOC_TRACE") != NULL;
    if (trace) {
        /* The first backtrace() loads the unwinder, which allocates: done before the count. */
        void* frame;
        backtrace(&frame, 1);
    }
    __atomic_store_n(&armed, 1, __ATOMIC_RELEASE);
    const int status = realMain(argc, argv, envp);
    __atomic_store_n(&armed, 0, __ATOMIC_RELEASE);
    return status;
}

int __libc_start_main(MainFunction main, int argc, char** argv, void (*init)(void),
                      void (*fini)(void), void (*rtldFini)(void), void* stackEnd)
{
    const StartMain start = (StartMain)dlsym(RTLD_NEXT, "__libc_start_main");
    realMain = main;
    return start(armedMain, argc, argv, init, fini, rtldFini, stackEnd);
}

/* Writes the count with write(2) alone: nothing here allocates. */
__attribute__((destructor)) static void report(void)
{
    const char* path = getenv("FAILALLOC_REPORT");
    if (!path)
        return;
    char text[32];
    int i = (int)sizeof text;
    unsigned long n = __atomic_load_n(&count, __ATOMIC_RELAXED);
    text[--i] = '\n';
    do {
        text[--i] = (char)('0' + n % 10);
        n /= 10;
    } while (n);
    const int fd = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd >= 0) {
        ssize_t written = write(fd, text + i, sizeof text - (size_t)i);
        (void)written;
        close(fd);
    }
}
