#!/usr/bin/env bash
# Installs what building, testing and running Korvane on Debian 12 needs.
# Does nothing, and needs no rights, when everything is there already.
# usage: setup.sh [SCRIPT ARGUMENT...]   with a script, becomes that script afterwards, with
# KORVANE_SET_UP set. A shell knows only the locales that were there when it began, so what uses the
# one made here must be another shell than the one that waited for it.
set -euo pipefail

packages=(
    g++ cmake ninja-build g++-mingw-w64-i686-posix          # the compilers and the build
    googletest                                              # test framework (as sources)
    nlohmann-json3-dev libcli11-dev                         # header-only: JSON, command lines
    clang libclang-rt-14-dev llvm clang-format              # sanitizers, fuzzers, formatter
    xvfb xauth fonts-wqy-microhei                           # a display, and a font with Chinese
    wine wine32:i386 fonts-wine                             # where the product runs
    locales                                                 # the Chinese locale, made below
    git python3
)

installed() { dpkg-query -W -f '${db:Status-Abbrev}' "$1" 2>/dev/null | grep -q '^ii'; }

# Wine takes its code page, and the coding of file names, from the locale.
has_locale() { locale -a 2>/dev/null | grep -qix 'zh_CN\.utf-\?8'; }

missing=()
for package in "${packages[@]}"; do
    installed "$package" || missing+=("$package")
done

as_root=()
find_rights() {
    [ "$(id -u)" -ne 0 ] || return 0
    command -v sudo >/dev/null ||
        { echo "setup: root or sudo is needed to install: ${missing[*]:-the zh_CN.UTF-8 locale}" >&2; exit 1; }
    as_root=(sudo)
}

install_packages() {
    echo "setup: installing ${missing[*]}"
    dpkg --print-foreign-architectures | grep -qx i386 || "${as_root[@]}" dpkg --add-architecture i386
    # A mirror that cannot be refreshed is no reason to stop: the index at hand may do.
    "${as_root[@]}" apt-get update -qq || echo "setup: the package index could not be refreshed; going on with the old one" >&2

    # 32-bit Wine needs each library in one version for both architectures; updates can reach
    # the two at different times, the release itself never differs.
    . /etc/os-release
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends -t "$VERSION_CODENAME" "${missing[@]}" >/dev/null
}

[ ${#missing[@]} -eq 0 ] && has_locale || find_rights
[ ${#missing[@]} -eq 0 ] || install_packages
has_locale || "${as_root[@]}" localedef -i zh_CN -f UTF-8 zh_CN.UTF-8
[ $# -eq 0 ] || KORVANE_SET_UP=1 exec bash "$@"
