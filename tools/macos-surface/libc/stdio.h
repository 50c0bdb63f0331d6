#include_next <stdio.h>
#ifdef stderr
extern "C" FILE* __stderrp;
#undef stderr
#define stderr __stderrp
#endif
