# Shared by the project's commands; read by them, not run by itself.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

packages_build=(g++ cmake ninja-build ccache qtbase5-dev qttools5-dev qttools5-dev-tools libqt5sql5-sqlite
    libqt5svg5-dev qt5-image-formats-plugins libqt5serialport5-dev qttranslations5-l10n libturbojpeg0-dev libaravis-dev libqwt-qt5-dev libopencv-dev libsodium-dev libssl-dev
    libxlsxwriter-dev libzip-dev libmosquitto-dev libprotobuf-dev protobuf-compiler fonts-wqy-microhei)
packages_plant=(mosquitto postgresql postgresql-client libpqxx-dev libcpp-httplib-dev)
packages_test=(poppler-utils openssl chromium "${packages_plant[@]}")
packages_package=(dpkg-dev lintian help2man debootstrap)
packages_bench=(libbenchmark-dev)
packages_lint=(clang-format clang-tidy clazy)
packages_training=(povray python3-opencv python3-numpy python3-torch)
packages_windows=(g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 mingw-w64-tools dpkg-dev make cmake ninja-build perl
    tcl qt5-qmake qtbase5-dev-tools qttools5-dev-tools protobuf-compiler xz-utils autoconf automake
    libtool nsis wine wine64)
packages_fuzz=(clang libclang-rt-14-dev)

# Installs the Debian packages among the arguments that are missing, and says what it does. Without network or rights it
# says in one line what to type.
install_missing() {
    local missing=() package log="$root/build/packages.log" as_root=()
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    echo "Installing ${missing[*]}"
    mkdir -p "$root/build"
    "${as_root[@]}" apt-get update -qq >"$log" 2>&1 || true # what is known from before may do
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" \
        >>"$log" 2>&1 && return 0
    echo "Packages are missing and could not be installed (why: $log); please type:" \
        "sudo apt-get install --no-install-recommends ${missing[*]}" >&2
    return 1
}

# Configures and builds a preset: build_preset NAME [CMAKE-OPTION...] [-- TARGET...]
build_preset() {
    local preset=$1 options=() log="$root/build/$1.log"
    shift
    while [ $# -gt 0 ] && [ "$1" != -- ]; do options+=("$1"); shift; done
    [ $# -gt 0 ] && shift
    mkdir -p "$root/build"
    if ! (cd "$root" && cmake --preset "$preset" "${options[@]}" >"$log" 2>&1 &&
        cmake --build --preset "$preset" ${1:+--target "$@"} >>"$log" 2>&1); then
        grep -E -A5 'error|Error|FAILED' "$log" >&2 || tail -40 "$log" >&2
        echo "The build failed; all of it is in $log" >&2
        return 1
    fi
}
