# Tests of the sources as a whole, of the scripts, and of the starter set.

function(mertu_script_test name)
  add_test(NAME tools/${name} COMMAND ${ARGN} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
  set_tests_properties(tools/${name} PROPERTIES TIMEOUT 120)
endfunction()

mertu_script_test(includes tools/check-includes)
mertu_script_test(quirks tools/check-quirks)
if(MERTU_GUI)
  mertu_script_test(headers tools/check-headers)
  set_tests_properties(tools/headers PROPERTIES ENVIRONMENT "CXX=${CMAKE_CXX_COMPILER}")
endif()
mertu_script_test(checks_find_faults tests/tools/checks_test.sh)
mertu_script_test(run tests/tools/run_test.sh)
mertu_script_test(packages tests/tools/packages_test.sh)
mertu_script_test(tour tests/tools/tour_test.sh)
mertu_script_test(desktop tests/tools/desktop_test.sh)
if(MERTU_GUI)
  mertu_script_test(install tests/tools/install_test.sh ${PROJECT_BINARY_DIR})
  set_tests_properties(tools/install PROPERTIES RESOURCE_LOCK display)
  mertu_script_test(package tests/tools/package_test.sh ${PROJECT_BINARY_DIR})
endif()

find_program(SHELLCHECK shellcheck)
if(SHELLCHECK)
  file(GLOB scripts CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tools/*
       ${PROJECT_SOURCE_DIR}/tests/tools/*.sh)
  mertu_script_test(shellcheck ${SHELLCHECK} -S warning -x -P SCRIPTDIR run test .ci/run fuzz/run
                    fuzz/keep ${scripts})
endif()

mertu_test(starter util score config db lesson text quiz)
if(MERTU_GUI)
  target_sources(test_starter PRIVATE starter/recordings.cpp)
  target_link_libraries(test_starter PRIVATE PkgConfig::SNDFILE)
endif()
