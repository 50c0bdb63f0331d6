// What libc++ calls on a Mac with a locale, as far as its headers do.
#pragma once
#include <ctype.h>
#include <locale.h>
#include <stddef.h>
#undef isdigit_l
#undef isxdigit_l
extern "C" int snprintf_l(char*, size_t, locale_t, const char*, ...);
extern "C" int asprintf_l(char**, locale_t, const char*, ...);
extern "C" int sscanf_l(const char*, locale_t, const char*, ...);
