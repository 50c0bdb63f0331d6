#!/usr/bin/env python3
"""Writes linker stubs (.tbd) below a folder: each framework exports what its declarations in include/ declare.

    stubs.py FOLDER

The C library's part is the list below: names that are macOS's, so that what only another system has does not link.
"""
import os
import re
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
LLVM = '/usr/lib/llvm-19'
VERSION_C = {'AppKit', 'Foundation'}  # the frameworks whose binary lies in Versions/C, by their history
FRAMEWORKS = ['AppKit', 'CoreFoundation', 'CoreGraphics', 'CoreServices', 'Foundation', 'IOKit', 'Security',
              'ServiceManagement']
EMBEDDED = ['Sparkle']  # what the app brings along, so not where the system's are
OBJECTIVE_C = '''__objc_personality_v0 _objc_empty_cache _objc_empty_vtable objc_alloc objc_alloc_init
objc_autorelease objc_autoreleasePoolPop objc_autoreleasePoolPush objc_autoreleaseReturnValue objc_begin_catch
objc_claimAutoreleasedReturnValue objc_copyWeak objc_destroyWeak objc_end_catch objc_enumerationMutation
objc_exception_rethrow objc_exception_throw objc_initWeak objc_loadWeakRetained objc_moveWeak objc_msgSend
objc_msgSendSuper2 objc_opt_class objc_opt_isKindOfClass objc_opt_new objc_opt_respondsToSelector objc_opt_self
objc_release objc_retain objc_retainAutorelease objc_retainAutoreleaseReturnValue objc_retainAutoreleasedReturnValue
objc_retainBlock objc_storeStrong objc_storeWeak objc_terminate objc_unsafeClaimAutoreleasedReturnValue'''
C_LIBRARY = '''abort _Block_object_assign _Block_object_dispose bzero __chkstk_darwin clock_gettime_nsec_np close __cxa_atexit dlsym
dyld_stub_binder __error exit _exit fstat getpid kill nanosleep _NSConcreteGlobalBlock _NSConcreteStackBlock open
posix_spawn posix_spawn_file_actions_addopen posix_spawn_file_actions_destroy posix_spawn_file_actions_init
pthread_self read signal __stack_chk_fail __stack_chk_guard stat __stderrp _Unwind_Resume waitpid
acos asin atan atan2 calloc cbrt ceil copysign cos cosh exp exp2 fabs fclose fflush floor fmax fmin fmod fopen fprintf
fputc fputs fread free frexp fseek ftell fwrite getenv gmtime_r hypot ldexp llround localtime_r log log10 log2 lround
malloc memchr memcmp memcpy memmove memset mktime modf nearbyint pow qsort realloc remainder rint round scalbn sin
sinh snprintf sqrt strcat strchr strcmp strcpy strerror strftime strlen strncmp strncpy strnlen strrchr strstr strtod
strtol strtoll strtoul strtoull tan tanh time trunc vsnprintf wmemchr'''


def declared(framework):
    """What the headers of a framework declare, or those of the system library for None: classes and symbols."""
    classes, symbols = set(), set()
    for folder, _, files in os.walk(f'{HERE}/include'):
        place = os.path.relpath(folder, f'{HERE}/include').split('/')[0]
        if framework != (place if place in FRAMEWORKS + EMBEDDED else None):
            continue
        for file in files:
            with open(f'{folder}/{file}') as header:
                text = re.sub(r'//.*|\\\n|SURFACE_SINCE\([^)]*\)|CF_RETURNS_RETAINED', '', header.read())
            text = re.sub(r'#define .*', '', text)
            classes |= set(re.findall(r'^@interface (\w+)[^\n(]*$', text, re.MULTILINE))
            for declaration in re.findall(r'SURFACE_EXTERN\s([^;]*);', text):
                # A function's name is what its first bracket follows, a variable's is the last word.
                name = re.search(r'(\w+)\s*\(', declaration) or re.search(r'(\w+)\s*$', declaration)
                symbols.add('_' + name.group(1))
    return classes, symbols


def cpp_library():
    """What Debian's copy of the C++ library exports, as a Mac spells it."""
    names = set()
    for library in ('libc++', 'libc++abi'):
        listed = subprocess.check_output(
            [f'{LLVM}/bin/llvm-nm', '-D', '--defined-only', f'{LLVM}/lib/{library}.so.1.0'], text=True)
        names |= {'_' + line.split()[-1].split('@')[0] for line in listed.splitlines()}
    return names


def write(path, install_name, classes, symbols):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    lines = ['--- !tapi-tbd', 'tbd-version: 4', 'targets: [ arm64-macos ]', f"install-name: '{install_name}'",
             'exports:', '  - targets: [ arm64-macos ]']
    for key, names in (('symbols', symbols), ('objc-classes', classes)):
        if names:
            lines.append(f'    {key}: [ ' + ', '.join(f"'{name}'" for name in sorted(names)) + ' ]')
    with open(path, 'w') as stub:
        stub.write('\n'.join([*lines, '...', '']))


def write_embedded(folder, name):
    """A framework as its makers hand it out, of which the app brings a copy along."""
    framework = f'{folder}/{name}.framework'
    write(f'{framework}/Versions/B/{name}.tbd', f'@rpath/{name}.framework/Versions/B/{name}', *declared(name))
    for link, target in (('Versions/Current', 'B'), (f'{name}.tbd', f'Versions/Current/{name}.tbd')):
        if not os.path.lexists(f'{framework}/{link}'):
            os.symlink(target, f'{framework}/{link}')


def main():
    folder = sys.argv[1]
    for name in EMBEDDED:
        write_embedded(folder, name)
    for name in FRAMEWORKS:
        version = 'C' if name in VERSION_C else 'A'
        place = f'/System/Library/Frameworks/{name}.framework'
        classes, symbols = declared(name)
        if name == 'CoreFoundation':
            symbols |= {'___CFConstantStringClassReference', '___NSArray0__', '_OBJC_EHTYPE_$_NSException'}  # in no header
        write(f'{folder}{place}/{name}.tbd', f'{place}/Versions/{version}/{name}', classes, symbols)
    classes, symbols = declared(None)
    symbols -= {'___dso_handle', '__mh_execute_header'}  # which the linker makes
    write(f'{folder}/usr/lib/libobjc.tbd', '/usr/lib/libobjc.A.dylib', classes, {'_' + n for n in OBJECTIVE_C.split()})
    write(f'{folder}/usr/lib/libSystem.tbd', '/usr/lib/libSystem.B.dylib', set(),
          symbols | {'_' + n for n in C_LIBRARY.split()})
    write(f'{folder}/usr/lib/libc++.tbd', '/usr/lib/libc++.1.dylib', set(), cpp_library())


main()
