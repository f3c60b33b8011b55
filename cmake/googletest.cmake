# Provides GTest::gtest_main. There is no such package for the board: its GoogleTest is built from
# the sources that Debian's package ships. So is one that needs other flags: give GTEST_SOURCE_DIR.
if(NOT CMAKE_CROSSCOMPILING AND NOT DEFINED CACHE{GTEST_SOURCE_DIR})
  find_package(GTest CONFIG REQUIRED)
  return()
endif()

set(GTEST_SOURCE_DIR /usr/src/googletest CACHE PATH "GoogleTest's sources")
if(NOT EXISTS ${GTEST_SOURCE_DIR}/CMakeLists.txt)
  message(FATAL_ERROR "No GoogleTest sources in ${GTEST_SOURCE_DIR}: install the package "
                      "googletest, set GTEST_SOURCE_DIR, or leave the tests out "
                      "(BUILD_TESTING=OFF).")
endif()
set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
add_subdirectory(${GTEST_SOURCE_DIR} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
