#pragma once
#include <SurfaceBase.h>
#include <sys/proc_info.h>
#define PROC_PIDPATHINFO_MAXSIZE (4 * 1024)
SURFACE_EXTERN int proc_pidinfo(int process, int flavour, uint64_t argument, void* _Nullable buffer, int size);
SURFACE_EXTERN int proc_pidpath(int process, void* _Nonnull buffer, uint32_t size);
