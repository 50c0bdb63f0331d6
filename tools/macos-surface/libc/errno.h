#include_next <errno.h>
#ifdef errno
extern "C" int* __error(void);
#undef errno
#define errno (*__error())
#endif
