# shellcheck shell=sh
# Needs steps.sh.

# require_packages PACKAGE...: installs the Debian packages that are missing, without asking. If it
# cannot install, it lists them and succeeds: other systems have the same tools under other package
# names. require_tools finds out.
require_packages() {
    packages_missing=
    for package in "$@"; do
        dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
            packages_missing="$packages_missing $package"
    done
    [ -n "$packages_missing" ] || return 0
    if ! command -v apt-get >/dev/null; then
        echo "There is no apt-get here. These Debian packages, or what replaces them, are needed: $*"
    elif [ "$(id -u)" -eq 0 ]; then
        install_packages env
    elif command -v sudo >/dev/null; then
        install_packages sudo env
    else
        echo "Installing needs root or sudo. Missing Debian packages:$packages_missing"
    fi
}

# require_tools TOOL...: fails and lists the commands that are missing.
require_tools() {
    tools_missing=
    for tool in "$@"; do
        command -v "$tool" >/dev/null || tools_missing="$tools_missing $tool"
    done
    if [ -n "$tools_missing" ]; then
        echo "Install these commands, then try again:$tools_missing" >&2
        return 1
    fi
}

# require_for_tests PACKAGE...: installs these packages and all that the suite needs.
require_for_tests() {
    require_packages cmake ninja-build libgtest-dev python3 \
        bash zsh fish busybox jq less man-db mandoc mount sqlite3 util-linux \
        chromium chromium-driver nodejs python3-selenium tidy "$@"
    require_tools cmake ctest ninja python3 bash zsh fish busybox jq less man mandoc mount sqlite3 unshare
}

# install_packages PREFIX...: installs $packages_missing by the command PREFIX... apt-get.
install_packages() {
    echo "Installing with apt-get:$packages_missing"
    # A machine that has just started may still be updating itself: wait for the lock.
    set -- "$@" DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300
    quietly "$@" update || return
    # shellcheck disable=SC2086 # a list of names
    quietly "$@" install --yes --no-install-recommends $packages_missing
}
