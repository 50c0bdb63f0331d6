/* Preloaded into the program under test: moves its CLOCK_REALTIME and CLOCK_BOOTTIME as if the clock had been
 * set or the machine had slept. Orders come as struct order through the named pipe $WAKELOFT_CLOCK_SHIFT;
 * timers that are armed already follow, and a timer that waits for the clock to be set goes off on such an
 * order. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stdint.h>
#include <stdlib.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

struct order {
    int64_t realtime_ns, boottime_ns; /* the whole shift from now on */
    int64_t is_clock_set;
};

enum { most_timers = 256 };
struct timer {
    int clock, flags;
    struct itimerspec when;
};

static _Atomic int64_t realtime_shift, boottime_shift;
static struct timer timers[most_timers]; /* by descriptor, under mutex */
static pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
static int (*real_gettime)(clockid_t, struct timespec*);
static int (*real_create)(int, int);
static int (*real_settime)(int, int, const struct itimerspec*, struct itimerspec*);
static pthread_once_t once = PTHREAD_ONCE_INIT;

static void find(void) {
    *(void**)&real_gettime = dlsym(RTLD_NEXT, "clock_gettime");
    *(void**)&real_create = dlsym(RTLD_NEXT, "timerfd_create");
    *(void**)&real_settime = dlsym(RTLD_NEXT, "timerfd_settime");
}

static struct timespec moved(struct timespec time, int64_t by_ns) {
    int64_t ns = (int64_t)time.tv_sec * 1000000000 + time.tv_nsec + by_ns;
    if (ns < 1) /* zero would disarm a timer */
        ns = 1;
    return (struct timespec){ns / 1000000000, ns % 1000000000};
}

int clock_gettime(clockid_t clock, struct timespec* time) {
    pthread_once(&once, find);
    const int result = real_gettime(clock, time);
    if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE))
        *time = moved(*time, realtime_shift);
    if (result == 0 && (clock == CLOCK_BOOTTIME || clock == CLOCK_BOOTTIME_ALARM))
        *time = moved(*time, boottime_shift);
    return result;
}

static int arm(int descriptor) {
    const struct timer* timer = &timers[descriptor];
    struct itimerspec when = timer->when;
    const int is_armed = when.it_value.tv_sec != 0 || when.it_value.tv_nsec != 0;
    if (is_armed && (timer->flags & TFD_TIMER_ABSTIME) && timer->clock == CLOCK_BOOTTIME)
        when.it_value = moved(when.it_value, -boottime_shift);
    return real_settime(descriptor, timer->flags, &when, NULL);
}

int timerfd_create(int clock, int flags) {
    pthread_once(&once, find);
    const int descriptor = real_create(clock, flags);
    if (descriptor >= 0 && descriptor < most_timers) {
        pthread_mutex_lock(&mutex);
        timers[descriptor] = (struct timer){.clock = clock};
        pthread_mutex_unlock(&mutex);
    }
    return descriptor;
}

int timerfd_settime(int descriptor, int flags, const struct itimerspec* when, struct itimerspec* old) {
    pthread_once(&once, find);
    if (descriptor < 0 || descriptor >= most_timers)
        return real_settime(descriptor, flags, when, old);
    pthread_mutex_lock(&mutex);
    timers[descriptor].flags = flags;
    timers[descriptor].when = *when;
    const int result = arm(descriptor);
    pthread_mutex_unlock(&mutex);
    return result;
}

static void obey(const struct order* order) {
    realtime_shift = order->realtime_ns;
    boottime_shift = order->boottime_ns;
    pthread_mutex_lock(&mutex);
    for (int descriptor = 0; descriptor < most_timers; ++descriptor) {
        const struct timer* timer = &timers[descriptor];
        if (timer->clock == CLOCK_BOOTTIME && timer->when.it_value.tv_sec != 0)
            arm(descriptor);
        if (order->is_clock_set && (timer->flags & TFD_TIMER_CANCEL_ON_SET)) {
            const struct itimerspec at_once = {.it_value = {0, 1}};
            real_settime(descriptor, 0, &at_once, NULL);
        }
    }
    pthread_mutex_unlock(&mutex);
}

static void* listen_for_orders(void* pipe) {
    /* For writing as well, so that it never reads an end of file. */
    const int descriptor = open(pipe, O_RDWR | O_CLOEXEC);
    struct order order;
    while (descriptor >= 0 && read(descriptor, &order, sizeof order) == sizeof order)
        obey(&order);
    return NULL;
}

__attribute__((constructor)) static void start(void) {
    pthread_once(&once, find);
    char* pipe = getenv("WAKELOFT_CLOCK_SHIFT");
    pthread_t thread;
    if (pipe != NULL && pthread_create(&thread, NULL, listen_for_orders, pipe) == 0)
        pthread_detach(thread);
}
