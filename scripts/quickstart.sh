#!/usr/bin/env bash
# Sets up a Debian 12 machine for BoreAnalyst, builds it, then runs the demo or the tests.
#
#   scripts/quickstart.sh demo               install what is missing, build, run scripts/demo.sh
#   scripts/quickstart.sh test               install what is missing, build, run every test
#   scripts/quickstart.sh deps [PACKAGE...]  only install what is missing of the build
#                                            packages and of any PACKAGE named
#
# Run from anywhere; paths are taken from the repository root. Packages come from apt
# and are installed only when dpkg does not already list them (apt-get update runs only
# then). The build goes to build/ under the repository (RelWithDebInfo, Ninja, two jobs);
# BA_BUILD_DIR names another directory.
set -euo pipefail

readonly BUILD_PACKAGES=(cmake ninja-build g++ libgtest-dev nlohmann-json3-dev libcli11-dev libfast-float-dev libsqlite3-dev sqlite3
                        qt6-base-dev qt6-base-dev-tools libqt6opengl6-dev libgl-dev fonts-dejavu-core)

repo_root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$repo_root"
build_dir="${BA_BUILD_DIR:-build}"

die() {
    echo "quickstart: $*" >&2
    exit 1
}

usage() {
    echo "usage: scripts/quickstart.sh demo | test | deps [PACKAGE...]" >&2
    exit 2
}

is_installed() {
    [[ "$(dpkg-query -W -f='${Status}' "$1" 2>/dev/null)" == "install ok installed" ]]
}

install_missing() {
    command -v dpkg-query >/dev/null || die "dpkg-query not found: this script sets up Debian 12 machines only"
    local missing=() package
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    if ((${#missing[@]} == 0)); then
        echo "quickstart: needed packages already installed: $*"
        return
    fi
    local as_root=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null || die "installing ${missing[*]} needs root (run as root or install sudo)"
        as_root=(sudo)
    fi
    echo "quickstart: installing ${missing[*]}"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
}

configure_and_build() {
    local generator=()
    # An existing build directory keeps the generator it was made with.
    [[ -f "$build_dir/CMakeCache.txt" ]] || generator=(-G Ninja)
    cmake -S . -B "$build_dir" "${generator[@]}" -DCMAKE_BUILD_TYPE=RelWithDebInfo
    cmake --build "$build_dir" --parallel 2
}

(($# >= 1)) || usage
command="$1"
shift
case "$command" in
demo)
    (($# == 0)) || usage
    install_missing "${BUILD_PACKAGES[@]}"
    [[ -f scripts/demo.sh ]] || die "scripts/demo.sh is missing, so there is no demo to run yet"
    configure_and_build
    bash scripts/demo.sh "$build_dir"
    ;;
test)
    (($# == 0)) || usage
    install_missing "${BUILD_PACKAGES[@]}"
    configure_and_build
    ctest --test-dir "$build_dir" --output-on-failure -j2
    ;;
deps)
    install_missing "${BUILD_PACKAGES[@]}" "$@"
    ;;
*)
    usage
    ;;
esac
