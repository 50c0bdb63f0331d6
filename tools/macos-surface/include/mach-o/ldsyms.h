#pragma once
#include <SurfaceBase.h>
struct mach_header_64;
SURFACE_EXTERN const struct mach_header_64 _mh_execute_header;
