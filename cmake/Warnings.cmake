# One set of warnings, hardening and sanitizer flags for every target of ours.
add_library(wakeloft-options INTERFACE)
target_compile_options(wakeloft-options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 finds overlapping copies in `"text" + std::string` where there are none (its bug 105651).
  target_compile_options(wakeloft-options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()
if(APPLE)
  target_compile_options(wakeloft-options INTERFACE
    -Wunguarded-availability -Wnullable-to-nonnull-conversion
    $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc -Wundeclared-selector -Wstrict-selector-match -Wmethod-signatures
      -Wobjc-interface-ivars -Wimplicit-retain-self -Warc-repeated-use-of-weak -Wno-gnu>)
  target_link_options(wakeloft-options INTERFACE -Wl,-dead_strip)
else()
  target_link_options(wakeloft-options INTERFACE -Wl,--as-needed -Wl,-z,relro -Wl,-z,now
                                                 $<$<CONFIG:Release>:-Wl,--gc-sections>)
endif()
# Nothing here computes for long, but all of it stays in memory for days.
target_compile_options(wakeloft-options INTERFACE $<$<CONFIG:Release>:-Os> $<$<CONFIG:Release>:-ffunction-sections>
                                                  $<$<CONFIG:Release>:-fdata-sections>)
if(WAKELOFT_SANITIZE)
  target_compile_options(wakeloft-options INTERFACE -fsanitize=${WAKELOFT_SANITIZE} -fno-sanitize-recover=all
                                                    -fno-omit-frame-pointer)
  target_link_options(wakeloft-options INTERFACE -fsanitize=${WAKELOFT_SANITIZE})
endif()
