cmake_policy(VERSION 3.25)
# Fails when a portable source includes anything but the standard library and other portable files.
# Run as: cmake -DROOTS=<dir>[,<dir>...] -DSTAMP=<file> -P CheckCoreIncludes.cmake
# A quoted include must exist below one of ROOTS; an angled one must be a C++23 standard header.
set(standard
  algorithm any array atomic barrier bit bitset charconv chrono cmath compare complex concepts condition_variable
  coroutine cstddef cstdint cstdio cstdlib cstring ctime cassert cctype cerrno cfenv cfloat cinttypes climits
  clocale csetjmp csignal cstdarg cuchar cwchar cwctype deque exception execution expected filesystem format
  forward_list fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits
  list locale map memory memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex
  scoped_allocator semaphore set shared_mutex source_location span spanstream sstream stack stacktrace stdexcept
  stop_token streambuf string string_view strstream syncstream system_error thread tuple type_traits typeindex
  typeinfo unordered_map unordered_set utility valarray variant vector version)
string(REPLACE "," ";" ROOTS "${ROOTS}")
list(GET ROOTS 0 checked)
file(GLOB_RECURSE sources "${checked}/*.h" "${checked}/*.cpp")
if(EXCLUDE)
  list(FILTER sources EXCLUDE REGEX "${EXCLUDE}")
endif()
set(faults "")
foreach(source IN LISTS sources)
  file(STRINGS "${source}" lines REGEX "^[ \t]*#[ \t]*include")
  foreach(line IN LISTS lines)
    if(line MATCHES "include[ \t]*<([^>]+)>")
      if(NOT CMAKE_MATCH_1 IN_LIST standard)
        list(APPEND faults "${source}: <${CMAKE_MATCH_1}> is not a standard library header")
      endif()
    elseif(line MATCHES "include[ \t]*\"([^\"]+)\"")
      set(name "${CMAKE_MATCH_1}")
      set(found FALSE)
      foreach(root IN LISTS ROOTS)
        if(EXISTS "${root}/${name}" AND NOT name MATCHES "\\.\\." AND NOT name MATCHES "^linux/|^macos/")
          set(found TRUE)
        endif()
      endforeach()
      if(NOT found)
        list(APPEND faults "${source}: \"${name}\" is not a portable file of ours")
      endif()
    else()
      list(APPEND faults "${source}: cannot read: ${line}")
    endif()
  endforeach()
endforeach()
if(faults)
  list(JOIN faults "\n  " text)
  message(FATAL_ERROR "Portable code must stay portable:\n  ${text}")
endif()
if(STAMP)
  file(TOUCH "${STAMP}")
endif()
