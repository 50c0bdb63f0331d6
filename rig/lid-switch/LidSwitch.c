/* Preloaded into the real login manager, which private-system gives one input device: answers for it as the
 * kernel does for a lid switch. Its node is a named pipe, through which rig/lid sends the events; the lid is
 * shut while the file beside it is there. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <linux/input.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <unistd.h>

enum { nothing = -1 };
static int lid_switch = -1; /* its descriptor */

static const char* in_rig(const char* name, char* path, size_t size) {
    const char* folder = getenv("WAKELOFT_RIG_DIR");
    snprintf(path, size, "%s/lid/%s", folder == NULL ? "" : folder, name);
    return path;
}

int open64(const char* path, int flags, ...) {
    static int (*real)(const char*, int, ...);
    if (real == NULL)
        *(void**)&real = dlsym(RTLD_NEXT, "open64");
    if (strcmp(path, "/dev/input/event0") == 0) {
        char pipe[4096];
        lid_switch = real(in_rig("switch", pipe, sizeof pipe), flags);
        return lid_switch;
    }
    va_list more;
    va_start(more, flags);
    const int mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, int) : 0;
    va_end(more);
    return real(path, flags, mode);
}

/* Gives the set of what the switch has, which is `bit` or nothing. */
static int answer(void* set, size_t size, int bit) {
    memset(set, 0, size);
    if (bit != nothing)
        ((unsigned char*)set)[bit / 8] |= (unsigned char)(1u << (bit % 8));
    return (int)size;
}

static int is_closed(void) {
    char path[4096];
    return access(in_rig("is-closed", path, sizeof path), F_OK) == 0;
}

static int ask_lid_switch(unsigned long request, void* argument) {
    const size_t size = _IOC_SIZE(request);
    switch (_IOC_NR(request)) {
    case _IOC_NR(EVIOCGBIT(0, 0)):
        return answer(argument, size, EV_SW);
    case _IOC_NR(EVIOCGBIT(EV_SW, 0)):
        return answer(argument, size, SW_LID);
    case _IOC_NR(EVIOCGSW(0)):
        return answer(argument, size, is_closed() ? SW_LID : nothing);
    case _IOC_NR(EVIOCGKEY(0)):
        return answer(argument, size, nothing);
    case _IOC_NR(EVIOCGNAME(0)):
        return snprintf(argument, size, "Lid Switch of the rig") + 1;
    case _IOC_NR(EVIOCSMASK):
        return 0;
    default:
        errno = EINVAL;
        return -1;
    }
}

int ioctl(int descriptor, unsigned long request, ...) {
    static int (*real)(int, unsigned long, ...);
    if (real == NULL)
        *(void**)&real = dlsym(RTLD_NEXT, "ioctl");
    va_list more;
    va_start(more, request);
    void* argument = va_arg(more, void*);
    va_end(more);
    if (descriptor >= 0 && descriptor == lid_switch && _IOC_TYPE(request) == 'E')
        return ask_lid_switch(request, argument);
    return real(descriptor, request, argument);
}
