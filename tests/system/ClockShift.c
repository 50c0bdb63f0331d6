/* Preloaded into the program under test: moves its CLOCK_REALTIME and CLOCK_BOOTTIME as if the clock had been
 * set or the machine had slept. Orders come as struct order through the named pipe $WAKELOFT_CLOCK_SHIFT; a
 * timer that waits for the clock to be set goes off on each. Other timers that are armed already do not
 * follow. */
#define _GNU_SOURCE
#include <fcntl.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stdint.h>
#include <stdlib.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

struct order {
    int64_t realtime_ns, boottime_ns; /* the whole shift from now on */
};

enum { most_timers = 256 };
static _Atomic int64_t realtime_shift, boottime_shift;
static _Atomic int clocks[most_timers]; /* of the timers, by descriptor */
static _Atomic int clock_watch = -1;    /* the timer that waits for the clock to be set */

static struct timespec moved(struct timespec time, int64_t by_ns) {
    int64_t ns = (int64_t)time.tv_sec * 1000000000 + time.tv_nsec + by_ns;
    if (ns < 1) /* zero would disarm a timer */
        ns = 1;
    return (struct timespec){ns / 1000000000, ns % 1000000000};
}

int clock_gettime(clockid_t clock, struct timespec* time) {
    const int result = (int)syscall(SYS_clock_gettime, clock, time);
    if (result == 0 && clock == CLOCK_REALTIME)
        *time = moved(*time, realtime_shift);
    if (result == 0 && clock == CLOCK_BOOTTIME)
        *time = moved(*time, boottime_shift);
    return result;
}

int timerfd_create(int clock, int flags) {
    const int descriptor = (int)syscall(SYS_timerfd_create, clock, flags);
    if (descriptor >= 0 && descriptor < most_timers)
        clocks[descriptor] = clock;
    return descriptor;
}

int timerfd_settime(int descriptor, int flags, const struct itimerspec* when, struct itimerspec* old) {
    struct itimerspec real = *when;
    const int is_armed = real.it_value.tv_sec != 0 || real.it_value.tv_nsec != 0;
    if (flags & TFD_TIMER_CANCEL_ON_SET)
        clock_watch = descriptor;
    if (is_armed && (flags & TFD_TIMER_ABSTIME) && descriptor < most_timers &&
        clocks[descriptor] == CLOCK_BOOTTIME)
        real.it_value = moved(real.it_value, -boottime_shift);
    return (int)syscall(SYS_timerfd_settime, descriptor, flags, &real, old);
}

static void* listen_for_orders(void* pipe) {
    /* For writing as well, so that it never reads an end of file. */
    const int descriptor = open(pipe, O_RDWR | O_CLOEXEC);
    const struct itimerspec at_once = {.it_value = {0, 1}};
    struct order order;
    while (descriptor >= 0 && read(descriptor, &order, sizeof order) == sizeof order) {
        realtime_shift = order.realtime_ns;
        boottime_shift = order.boottime_ns;
        syscall(SYS_timerfd_settime, clock_watch, 0, &at_once, NULL);
    }
    return NULL;
}

__attribute__((constructor)) static void start(void) {
    char* pipe = getenv("WAKELOFT_CLOCK_SHIFT");
    pthread_t thread;
    if (pipe != NULL && pthread_create(&thread, NULL, listen_for_orders, pipe) == 0)
        pthread_detach(thread);
}
