# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Project-wide compile settings, applied per target through ledgewise_target().
add_library(ledgewise_options INTERFACE)
target_compile_options(ledgewise_options INTERFACE -Wall -Wextra)
if(LEDGEWISE_WERROR)
  target_compile_options(ledgewise_options INTERFACE -Werror)
endif()
if(LEDGEWISE_SANITIZE)
  # float-cast-overflow is not part of GCC's "undefined": a double out of an int's range
  # (a stored size of -1e300) must be caught too.
  target_compile_options(ledgewise_options INTERFACE -fsanitize=address,undefined,float-cast-overflow -fno-omit-frame-pointer
    -fno-sanitize-recover=undefined,float-cast-overflow)
  target_link_options(ledgewise_options INTERFACE -fsanitize=address,undefined,float-cast-overflow)
endif()
target_include_directories(ledgewise_options INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_definitions(ledgewise_options INTERFACE
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  LEDGEWISE_VERSION="${PROJECT_VERSION}")

# ledgewise_library(NAME SOURCES ... LIBS ...): a static library of the project.
function(ledgewise_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC ledgewise_options ${ARG_LIBS})
endfunction()
if(LEDGEWISE_FUZZ)
  # Instrument the project's code for coverage-guided fuzzing; the fuzz targets link
  # the libFuzzer driver themselves. Undefined behaviour stops the run like a crash.
  target_compile_options(ledgewise_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer
    -fno-sanitize-recover=undefined)
  target_link_options(ledgewise_options INTERFACE -fsanitize=address,undefined)
endif()
