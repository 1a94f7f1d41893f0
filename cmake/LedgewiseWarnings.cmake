# Project-wide compile settings, applied per target through ledgewise_target().
add_library(ledgewise_options INTERFACE)
target_compile_options(ledgewise_options INTERFACE -Wall -Wextra)
if(LEDGEWISE_WERROR)
  target_compile_options(ledgewise_options INTERFACE -Werror)
endif()
if(LEDGEWISE_SANITIZE)
  target_compile_options(ledgewise_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  target_link_options(ledgewise_options INTERFACE -fsanitize=address,undefined)
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
  # the libFuzzer driver themselves.
  target_compile_options(ledgewise_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer)
  target_link_options(ledgewise_options INTERFACE -fsanitize=address,undefined)
endif()
