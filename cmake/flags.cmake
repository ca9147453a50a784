# Compiler flags shared by every library, as interface targets.

# Scores are single-precision by contract: no fused multiply-add may change a rounding.
add_library(mertu_flags INTERFACE)
target_include_directories(mertu_flags INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(mertu_flags INTERFACE -Wall -Wextra -Wshadow -Wformat=2 -ffp-contract=off)
target_link_libraries(mertu_flags INTERFACE PkgConfig::GLIB)

if(MERTU_CHECKED)
  target_compile_options(mertu_flags INTERFACE -Werror -O1 -g1 -fno-omit-frame-pointer
                         -fsanitize=address,undefined -fno-sanitize=vptr
                         -fno-sanitize-recover=undefined)
  target_link_options(mertu_flags INTERFACE -fsanitize=address,undefined)
endif()

# The program's own code throws nothing and asks no type at run time. Under the fuzzer the end of
# the program is thrown, so that what it held is released and the fuzzer goes on.
add_library(mertu_plain INTERFACE)
if(MERTU_FUZZ)
  target_compile_options(mertu_flags INTERFACE -O1 -g1 -fno-omit-frame-pointer
                         -fsanitize=address,undefined,fuzzer-no-link -fno-sanitize=vptr
                         -fno-sanitize-recover=undefined)
  target_link_options(mertu_flags INTERFACE -fsanitize=address,undefined)
  target_compile_options(mertu_plain INTERFACE
                         "SHELL:-include ${PROJECT_SOURCE_DIR}/fuzz/program_end.h")
else()
  target_compile_options(mertu_plain INTERFACE -fno-exceptions -fno-rtti)
endif()

option(MERTU_COVERAGE "Count which lines of the program run" OFF)
if(MERTU_COVERAGE)
  target_compile_options(mertu_plain INTERFACE -O0 --coverage)
  target_link_options(mertu_flags INTERFACE --coverage)
endif()

if(MERTU_GUI)
  add_library(mertu_ui_flags INTERFACE)
  target_compile_definitions(mertu_ui_flags INTERFACE GLIB_DISABLE_DEPRECATION_WARNINGS)
  target_link_libraries(mertu_ui_flags INTERFACE PkgConfig::GTK PkgConfig::ALSA PkgConfig::SNDFILE)
endif()
