# The flags that every target of this project is built with, as one interface target.
find_package(Threads REQUIRED)

add_library(tamu_options INTERFACE)
target_compile_options(tamu_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-align -Wformat=2
  -fvisibility=hidden
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -fvisibility-inlines-hidden>
  $<$<BOOL:${TAMU_WARNINGS_AS_ERRORS}>:-Werror>)
# g++ 12 sees overlapping copies in std::string's own assignment where there are none.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(tamu_options INTERFACE -Wno-restrict)
endif()

if(TAMU_32BIT)
  # Without SSE, sums of dates come out in 80 bits and compare unequal.
  target_compile_options(tamu_options INTERFACE -m32 -msse2 -mfpmath=sse)
  target_compile_definitions(tamu_options INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
  target_link_options(tamu_options INTERFACE -m32)
endif()

# No vptr check: it wants type information across boundaries that only share a layout.
set(tamu_sanitizers address,undefined)
if(TAMU_LIBFUZZER)
  target_compile_options(tamu_options INTERFACE
    -fsanitize=fuzzer-no-link,${tamu_sanitizers} -fno-sanitize=vptr -fno-sanitize-recover=all
    -fno-omit-frame-pointer -g)
  target_link_options(tamu_options INTERFACE -fsanitize=${tamu_sanitizers})
elseif(TAMU_SANITIZE)
  target_compile_options(tamu_options INTERFACE
    -fsanitize=${tamu_sanitizers} -fno-sanitize=vptr -fno-sanitize-recover=all
    -fno-omit-frame-pointer -g1)
  target_link_options(tamu_options INTERFACE -fsanitize=${tamu_sanitizers})
endif()

# The hot paths cross files (allocation, lines, lists), so optimised builds are optimised as a whole.
if(NOT TAMU_SANITIZE AND NOT TAMU_LIBFUZZER)
  include(CheckIPOSupported)
  check_ipo_supported(RESULT tamu_ipo_supported OUTPUT tamu_ipo_reason LANGUAGES CXX)
  if(tamu_ipo_supported)
    set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
    set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELWITHDEBINFO ON)
  endif()
endif()
