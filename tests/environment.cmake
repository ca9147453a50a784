# What every test runs with; read by ctest once it knows the tests.
#
# Leaks count but those of the toolkit's own libraries, undefined behaviour tells where, and a
# complaint of the toolkit is a failure.
set(environment
  "LSAN_OPTIONS=suppressions='${CMAKE_CURRENT_LIST_DIR}/support/lsan.supp':print_suppressions=0"
  "ASAN_OPTIONS=detect_leaks=1"
  "UBSAN_OPTIONS=print_stacktrace=1"
  "G_DEBUG=fatal-criticals"
  "G_SLICE=always-malloc")
foreach(program util score sound config db lesson text quiz command app gui starter)
  if(test_${program}_TESTS)
    set_tests_properties(${test_${program}_TESTS} PROPERTIES ENVIRONMENT "${environment}")
  endif()
endforeach()
