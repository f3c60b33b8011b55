# The board: Linux on a 32-bit big-endian PowerPC. With another prefix (an SDK's sysroot, say) give
# BOARD_SYSROOT; the compilers are those on PATH unless CMAKE_CXX_COMPILER says otherwise.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ppc)

set(BOARD_SYSROOT /usr/powerpc-linux-gnu CACHE PATH "Where the board's C and C++ libraries lie")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES BOARD_SYSROOT)

set(CMAKE_C_COMPILER powerpc-linux-gnu-gcc CACHE STRING "C compiler for the board")
set(CMAKE_CXX_COMPILER powerpc-linux-gnu-g++ CACHE STRING "C++ compiler for the board")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-ppc -L ${BOARD_SYSROOT})

list(APPEND CMAKE_FIND_ROOT_PATH ${BOARD_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
