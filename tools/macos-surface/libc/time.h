#pragma once
#include_next <time.h>
#undef CLOCK_MONOTONIC
#define CLOCK_MONOTONIC 6
#define CLOCK_UPTIME_RAW 8
extern "C" unsigned long long clock_gettime_nsec_np(clockid_t clock) __attribute__((availability(macos, introduced = 10.12)));
