# shellcheck shell=sh
# Builds for the board, and runs what was built in an emulator. Needs steps.sh and packages.sh.

# board_run PROGRAM [ARGUMENT...]: runs a program for the board in the emulator.
board_run() {
    qemu-ppc -L /usr/powerpc-linux-gnu "$@"
}

# board_require PACKAGE...: installs these packages and all that a build for the board needs.
board_require() {
    step 'Checking for a cross compiler, CMake, Ninja and an emulator'
    require_packages cmake ninja-build g++-powerpc-linux-gnu qemu-user "$@"
    require_tools cmake ninja powerpc-linux-gnu-g++ qemu-ppc
}

# board_build PRESET [CMAKE-SETTING...]: builds JsonCpp and then our own code.
board_build() {
    board_preset=$1
    shift
    step "Building JsonCpp for the board into build/deps/$board_preset"
    scripts/build-jsoncpp "$board_preset"
    step "Building for the board into build/$board_preset"
    quietly cmake --preset "$board_preset" -DBUILD_BENCHMARKS=OFF "$@"
    quietly cmake --build --preset "$board_preset"
}

# Runs every test that the board can run.
board_test() {
    board_require googletest python3
    require_tools ctest python3
    board_build powerpc-ubsan -DBUILD_TESTING=ON
    step 'Testing for the board, with traps for undefined behaviour'
    quietly ctest --preset powerpc-ubsan
    board_build powerpc -DBUILD_TESTING=ON
    step 'Testing for the board'
    ctest --preset powerpc
}
