# shellcheck shell=sh
# Builds for the board, and runs what was built in an emulator. Needs steps.sh and packages.sh.

board_sysroot=/usr/powerpc-linux-gnu

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
    quietly cmake --preset "$board_preset" "$@"
    quietly cmake --build --preset "$board_preset"
}

# board_run ARGUMENT...: runs the board's program.
board_run() {
    qemu-ppc -L "$board_sysroot" build/powerpc/events-viewer "$@"
}

# Runs the board's program on the sample log.
board_demo() {
    board_require
    board_build powerpc -DBUILD_TESTING=OFF
    step 'The last ten events of the sample log, printed by the program for the board'
    board_run --show --input_file examples/events_report
    step 'The program for the board'
    echo build/powerpc/events-viewer
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
    step 'Measuring what the program takes on the board'
    scripts/measure-board --check
}
