# The one place for compiler flags: every target of ours links tallowin_flags.

add_library(tallowin_flags INTERFACE)
target_compile_features(tallowin_flags INTERFACE cxx_std_20)
target_compile_options(tallowin_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Wold-style-cast -Woverloaded-virtual -Wnull-dereference -Werror
  -fstack-protector-strong -fstack-clash-protection)
target_compile_definitions(tallowin_flags INTERFACE _GLIBCXX_ASSERTIONS)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 sees null pointers in inlined library code that are none.
  target_compile_options(tallowin_flags INTERFACE -Wno-null-dereference)
endif()
if(CMAKE_BUILD_TYPE MATCHES "Release|RelWithDebInfo")
  target_compile_options(tallowin_flags INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()
if(TALLOWIN_SANITIZE)
  # To look at the type of an object for the first time costs a descriptor: where a test leaves none,
  # that check calls each object a foreign one.
  set(sanitizers -fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=undefined
                 -fno-omit-frame-pointer)
  target_compile_options(tallowin_flags INTERFACE ${sanitizers})
  target_link_options(tallowin_flags INTERFACE ${sanitizers})
elseif(TALLOWIN_FUZZ)
  # All of the suite, so that a fuzzer sees which way its bytes take.
  set(fuzzing -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize=vptr
              -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_compile_options(tallowin_flags INTERFACE ${fuzzing} -O1 -g1)
  target_link_options(tallowin_flags INTERFACE -fsanitize=address,undefined)
else()
  target_link_options(tallowin_flags INTERFACE -Wl,-z,relro,-z,now)
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported()
