# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
# ledgewise_test(NAME SOURCES ... LIBS ... [DISPLAY] [LABELS ...])
#
# Every test runs through tests/support/isolated.sh, which gives it its own HOME,
# XDG folders and session D-Bus, so no test sees the user's (or another test's)
# settings and files. DISPLAY tests also get their own Xvfb server.
# Tests without DISPLAY are labelled "unit" and also run in the sanitizer build.
function(ledgewise_test name)
  cmake_parse_arguments(ARG "DISPLAY" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ledgewise_options Qt6::Test ${ARG_LIBS})
  set(mode --no-display)
  set(labels ${ARG_LABELS})
  if(ARG_DISPLAY)
    set(mode --display)
    list(APPEND labels display)
  else()
    list(APPEND labels unit)
  endif()
  add_test(NAME ${name}
           COMMAND ${LEDGEWISE_ROOT}/tests/support/isolated.sh ${mode} $<TARGET_FILE:${name}>)
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set_tests_properties(${name} PROPERTIES LABELS "${labels}" TIMEOUT ${ARG_TIMEOUT}
                       ENVIRONMENT "LEDGEWISE_SOURCE_DIR=${LEDGEWISE_ROOT}")
endfunction()
