# Provides ZLIB::ZLIB. If there is none for the board, the part that unpacks is built from the sources
# that scripts/build-jsoncpp fetches. So is one of other sources: give ZLIB_SOURCE_DIR.
find_package(ZLIB QUIET)
if(ZLIB_FOUND)
  return()
endif()

set(ZLIB_SOURCE_DIR ${PROJECT_SOURCE_DIR}/build/deps/zlib CACHE PATH "zlib's sources")
if(NOT CMAKE_CROSSCOMPILING OR NOT EXISTS ${ZLIB_SOURCE_DIR}/inflate.c)
  message(FATAL_ERROR "events-query needs zlib, but none was found: install it (on Debian the package "
                      "zlib1g-dev), set ZLIB_SOURCE_DIR when building for another machine, or leave "
                      "events-query out (EVENTS_QUERY=OFF).")
endif()
enable_language(C)
set(CMAKE_C_FLAGS "${CMAKE_CXX_FLAGS}")
set(zlib_sources adler32.c crc32.c inffast.c inflate.c inftrees.c zutil.c)
list(TRANSFORM zlib_sources PREPEND ${ZLIB_SOURCE_DIR}/)
add_library(zlib STATIC ${zlib_sources})
target_compile_definitions(zlib PRIVATE Z_TESTW=0) # a checksum without 10 kB of tables
target_include_directories(zlib SYSTEM PUBLIC ${ZLIB_SOURCE_DIR})
add_library(ZLIB::ZLIB ALIAS zlib)
