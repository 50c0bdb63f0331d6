#pragma once
#include <SurfaceBase.h>
#define CTL_KERN 1
#define KERN_PROCARGS2 49
SURFACE_EXTERN int sysctl(int* _Nonnull name, unsigned int count, void* _Nullable old, size_t* _Nullable oldSize,
    void* _Nullable latest, size_t latestSize);
