# Builds for macOS 14 on Apple silicon without a Mac: clang with the true triple, the declarations of include/ in place
# of the SDK's headers, and linker stubs made of the same declarations. What comes out is checked, never run.
# What it stands on: packaging/linux/packages/macos.txt.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_OSX_SYSROOT "")

set(surface ${CMAKE_CURRENT_LIST_DIR})
set(llvm /usr/lib/llvm-19)
set(cross /usr/aarch64-linux-gnu)
set(WAKELOFT_STUBS ${CMAKE_BINARY_DIR}/stubs)
set(WAKELOFT_SPARKLE_FRAMEWORK ${WAKELOFT_STUBS}/Sparkle.framework CACHE PATH "A stub, as all of them")

foreach(language C CXX OBJC OBJCXX)
  set(CMAKE_${language}_COMPILER_TARGET arm64-apple-macos14.0)
endforeach()
set(CMAKE_C_COMPILER ${llvm}/bin/clang)
set(CMAKE_CXX_COMPILER ${llvm}/bin/clang++)
set(CMAKE_OBJCXX_COMPILER ${llvm}/bin/clang++)
set(CMAKE_AR ${llvm}/bin/llvm-ar)
set(CMAKE_RANLIB ${llvm}/bin/llvm-ranlib)
set(CMAKE_NM ${llvm}/bin/llvm-nm)
set(CMAKE_INSTALL_NAME_TOOL ${llvm}/bin/llvm-install-name-tool)

# glibc's headers stand in for the C library's; libc/ mends what differs and matters.
string(CONCAT surface_flags
  "-nostdlibinc -nostdinc++ -D_GNU_SOURCE -U__nonnull -isystem ${surface}/include -isystem ${surface}/libcxx"
  " -isystem ${llvm}/include/c++/v1 -isystem ${surface}/libc -isystem ${cross}/include")
foreach(language C CXX OBJCXX)
  set(CMAKE_${language}_FLAGS_INIT "${surface_flags}")
endforeach()

set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_EXE_LINKER_FLAGS_INIT
  "-fuse-ld=lld -Wl,-fatal_warnings -L${WAKELOFT_STUBS}/usr/lib -F${WAKELOFT_STUBS}/System/Library/Frameworks")
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE NEVER)
