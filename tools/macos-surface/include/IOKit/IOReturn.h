#pragma once
#include <SurfaceBase.h>
typedef int kern_return_t;
typedef kern_return_t IOReturn;
#define kIOReturnSuccess 0
#define kIOReturnError ((int)0xe00002bcu)
