# Provides JsonCpp::JsonCpp, and its release (such as 1.9.5) as JSONCPP_RELEASE.
find_package(jsoncpp CONFIG QUIET)
if(jsoncpp_FOUND)
  set(JSONCPP_RELEASE ${jsoncpp_VERSION})
  set(jsoncpp_place ${jsoncpp_DIR})
else()
  if(CMAKE_CROSSCOMPILING AND NOT DEFINED ENV{PKG_CONFIG_LIBDIR} AND NOT DEFINED ENV{PKG_CONFIG_PATH}
     AND NOT DEFINED ENV{PKG_CONFIG_SYSROOT_DIR})
    # No SDK has told pkg-config where to look: it would find the library of this machine.
    set(jsoncpp_folders)
    foreach(root IN LISTS CMAKE_SYSROOT CMAKE_FIND_ROOT_PATH)
      list(APPEND jsoncpp_folders ${root}/lib/pkgconfig ${root}/usr/lib/pkgconfig)
    endforeach()
    list(JOIN jsoncpp_folders ":" jsoncpp_folders)
    set(ENV{PKG_CONFIG_LIBDIR} "${jsoncpp_folders}")
  endif()
  find_package(PkgConfig QUIET)
  if(PKG_CONFIG_FOUND)
    pkg_check_modules(jsoncpp_pc QUIET jsoncpp)
  endif()
  # A sysroot's jsoncpp.pc names places on the board: they are looked for in the sysroot.
  find_path(JSONCPP_INCLUDE_FOLDER json/version.h HINTS ${jsoncpp_pc_INCLUDE_DIRS})
  find_library(JSONCPP_LIBRARY jsoncpp HINTS ${jsoncpp_pc_LIBRARY_DIRS})
  if(NOT jsoncpp_pc_FOUND OR NOT JSONCPP_INCLUDE_FOLDER OR NOT JSONCPP_LIBRARY)
    message(FATAL_ERROR
      "JsonCpp 1.9 is needed, but none was found: neither its CMake package nor, through pkg-config, "
      "its headers and library. If it is in a folder of its own, set CMAKE_PREFIX_PATH to that folder "
      "(CMAKE_FIND_ROOT_PATH when building for another machine).")
  endif()
  # The jsoncpp.pc of 1.9.4 lacks the release.
  file(STRINGS ${JSONCPP_INCLUDE_FOLDER}/json/version.h JSONCPP_RELEASE
    REGEX "define JSONCPP_VERSION_STRING")
  string(REGEX REPLACE ".*\"(.*)\".*" "\\1" JSONCPP_RELEASE "${JSONCPP_RELEASE}")
  set(jsoncpp_place ${JSONCPP_LIBRARY})
endif()

if(NOT JSONCPP_RELEASE MATCHES "^1\\.9\\.[0-9]+$")
  message(FATAL_ERROR
    "JsonCpp 1.9 is needed, but ${jsoncpp_place} is JsonCpp ${JSONCPP_RELEASE}.")
endif()
message(STATUS "JsonCpp ${JSONCPP_RELEASE}: ${jsoncpp_place}")

# From 1.9.5 on the package has a target of this name, which prefers the static library as well.
if(NOT TARGET JsonCpp::JsonCpp)
  add_library(JsonCpp::JsonCpp INTERFACE IMPORTED)
  if(TARGET jsoncpp_static)
    target_link_libraries(JsonCpp::JsonCpp INTERFACE jsoncpp_static)
  elseif(TARGET jsoncpp_lib)
    target_link_libraries(JsonCpp::JsonCpp INTERFACE jsoncpp_lib)
  else()
    target_include_directories(JsonCpp::JsonCpp INTERFACE ${JSONCPP_INCLUDE_FOLDER})
    target_link_libraries(JsonCpp::JsonCpp INTERFACE ${JSONCPP_LIBRARY})
  endif()
endif()
