# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034 # its lists are used elsewhere
# The packages that ./dev needs, and how it gets them; read by ../dev.

# Debian's package, then what other systems call the thing.
build_packages="
g++               a C++20 compiler (GCC 12 or Clang 14, or newer)
cmake             CMake 3.25 or newer
ninja-build       Ninja
pkg-config        pkg-config
qt6-base-dev      Qt 6.4 or newer: Core, DBus, Gui, Test (development files)
qt6-connectivity-dev  Qt Bluetooth (development files)
libqt6sql6-sqlite Qt's SQLite driver, for the logbook
libcli11-dev      CLI11 2 (header-only argument parser)
dbus              dbus-daemon
python3           Python 3
python3-jsonschema  the Python module jsonschema
mypy              mypy (optional, for a test of the Python client)
libxml2-utils     xmllint
fonts-dejavu-core the font DejaVu Sans
zsh               zsh (optional, for a test of the completion)
fish              fish (optional, for a test of the completion)
groff             groff (optional, for a test of the manual pages)
man-db            man (optional, for the same)
mandoc            mandoc (optional, for the same)
tshark            tshark (optional, for a test of traces in Wireshark)
ccache            ccache (optional, makes the second build fast)
"
# From Debian 13 on, the plugin for SVG is in a package of its own.
svg_plugin=qt6-svg-plugins
# shellcheck disable=SC1091 # the system's
case $(. /etc/os-release 2>/dev/null && echo "$ID$VERSION_ID") in
    debian12 | ubuntu24.04)
        svg_plugin=libqt6svg6
        # For the walk through the app from outside, which is made with Qt 6.4 only.
        walk_packages="
xvfb                       Xvfb (optional, for a test of the app)
at-spi2-core               AT-SPI (optional, for the same)
gir1.2-atspi-2.0           its bindings (optional, for the same)
python3-gi                 PyGObject (optional, for the same)"
        ;;
esac
# For the QML module and the app, in the builds of everything and of what gets installed.
qml_packages="
qt6-declarative-dev        Qt Quick (development files)
qt6-declarative-dev-tools  qmllint
qml6-module-qtqml-workerscript  the QML module QtQml.WorkerScript
qml6-module-qtquick        the QML module QtQuick
qml6-module-qtquick-window  the QML module QtQuick.Window
qml6-module-qttest         the QML module QtTest
qml6-module-qtquick-controls  the QML module QtQuick.Controls
qml6-module-qtquick-dialogs  the QML module QtQuick.Dialogs
qml6-module-qt-labs-folderlistmodel  the QML module Qt.labs.folderlistmodel, for file dialogs
qml6-module-qtquick-layouts  the QML module QtQuick.Layouts
qml6-module-qtquick-templates  the QML module QtQuick.Templates
$svg_plugin                Qt's plugin for SVG images
qt6-tools-dev              Qt's CMake files for translations
qt6-l10n-tools             lupdate and lrelease
desktop-file-utils         desktop-file-validate
appstream                  appstreamcli
${walk_packages:-}
"
# For a build with the benchmarks
benchmark_packages="
libbenchmark-dev  Google Benchmark (optional)
"
# What they are measured with and beside
bench_packages="
valgrind          Valgrind
libboost-dev      Boost (optional)
"
# One version on every machine: another formats otherwise and warns otherwise.
lint_packages="
clang-format-19   clang-format 19
clang-tidy-19     clang-tidy 19
shellcheck        ShellCheck
"
coverage_packages="
gcovr             gcovr
"
vm_packages="
qemu-system-x86   QEMU for x86
e2fsprogs         mke2fs
"
fuzz_packages="
clang-19          clang 19
libclang-rt-19-dev  libFuzzer and the sanitizers of clang 19
llvm-19           llvm-symbolizer 19
"
root_packages="
debootstrap       debootstrap
debian-archive-keyring  the keys of Debian's archive
util-linux        unshare and flock (util-linux)
"

as_root() {
    if [ "$(id -u)" = 0 ]; then "$@"; else sudo -n "$@"; fi
}
can_be_root() { [ "$(id -u)" = 0 ] || sudo -n true 2>/dev/null; }

# need LIST: installs what is missing of a list above, or says what is.
need() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        need_elsewhere "$1"
        return
    fi
    local package state missing=()
    while read -r package _; do
        [ -n "$package" ] || continue
        # shellcheck disable=SC2016 # dpkg-query expands it
        state=$(dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null || true)
        grep -qx installed <<<"$state" || missing+=("$package")
    done <<<"$1"
    # It comes along with others, and nothing waits for it.
    [ ${#missing[@]} -gt 0 ] && [ "${missing[*]}" != ccache ] || return 0
    can_be_root || fail "these packages are missing, and you may not install them:
    sudo apt-get install ${missing[*]}"
    say "installing ${missing[*]}"
    apt_get update
    apt_get install -y --no-install-recommends "${missing[@]}"
}

apt_get() {
    quietly as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300 "$@"
}

# On a system whose packages this script does not know it looks for the commands.
need_elsewhere() {
    local package what absent=''
    while read -r package what; do
        case $package in
            '' | ccache | zsh | fish | groff | man-db | mandoc | tshark | xvfb | at-spi2-core | gir1.2-atspi-2.0 | python3-gi | mypy) continue ;;
            libbenchmark-dev | libboost-dev) continue ;;
            g++) found c++ || found g++ || found clang++ ;;
            ninja-build) found ninja ;;
            qt6-base-dev) qt_has Core && qt_has Gui ;;
            qt6-connectivity-dev) qt_has Bluetooth ;;
            libxml2-utils) found xmllint ;;
            libqt6sql6-sqlite) qt_has Sql ;;
            qt6-declarative-dev | qml6-module-*) qt_has Quick && qt_has QuickTest ;;
            qt6-declarative-dev-tools) [ -x "$(qt_tools)/qmllint" ] ;;
            qt6-tools-dev | qt6-l10n-tools) [ -x "$(qt_tools)/lrelease" ] ;;
            desktop-file-utils) found desktop-file-validate ;;
            appstream) found appstreamcli ;;
            "$svg_plugin") qt_has Svg ;;
            fonts-dejavu-core) fc-list 2>/dev/null | grep -q 'DejaVu Sans' ;;
            libcli11-dev) pkg-config --exists CLI11 2>/dev/null ;;
            dbus) found dbus-daemon ;;
            python3-jsonschema) python3 -c 'import jsonschema' 2>/dev/null ;;
            util-linux) found unshare && found flock ;;
            libclang-rt-19-dev) found clang-19 ;;
            llvm-19) found llvm-symbolizer-19 ;;
            *) found "$package" ;;
        esac || absent+="    $what"$'\n'
    done <<<"$1"
    [ -z "$absent" ] || fail "please install:
$absent(on Debian:$(awk 'NF { printf " %s", $1 }' <<<"$1"))"
}
found() { command -v "$1" >/dev/null; }
qt_tools() { pkg-config --variable=bindir Qt6Core 2>/dev/null || true; }
qt_has() { pkg-config --exists "Qt6$1 >= 6.4" >/dev/null 2>&1; }
