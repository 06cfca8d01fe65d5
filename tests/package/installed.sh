#!/usr/bin/env bash
# Makes the Debian package of a build, installs it, starts its programs, removes it, and sees that nothing is left.
# usage: installed.sh BUILD CPACK; ends with 77 where packages cannot be installed.
set -euo pipefail
build=$1 cpack=$2
if [ "$(id -u)" -ne 0 ] || [ -e /usr/bin/molvenctl ]; then exit 77; fi
scratch=$(mktemp -d)
trap 'dpkg --purge molven >/dev/null 2>&1 || true; rm -rf "$scratch"' EXIT
"$cpack" --config "$build/CPackConfig.cmake" -B "$scratch" >"$scratch/cpack.log" 2>&1 || { cat "$scratch/cpack.log"; exit 1; }
package=$(echo "$scratch"/molven_*.deb)
for needed in libqt6widgets6 libqt6svg6 libsqlite3-0 libqpdf29 fonts-liberation; do
    dpkg-deb -f "$package" Depends | grep -q "$needed" || { echo "no dependency on $needed"; exit 1; }
done
dpkg -i "$package" >/dev/null
files=$(dpkg -L molven | while read -r file; do if [ -f "$file" ]; then echo "$file"; fi; done)
for wanted in man1/molven.1.gz man1/molvenctl.1.gz completions/molvenctl applications/molven.desktop \
    apps/molven.svg guide/index.html guide/guide.pdf doc/molven/copyright; do
    grep -q "$wanted" <<<"$files" || { echo "not installed: $wanted"; exit 1; }
done
bash -n /usr/share/bash-completion/completions/molvenctl
molvenctl --version
molvenctl create "$scratch/home" --code CE --nom "SOCIÉTÉ D'ESSAI"
QT_QPA_PLATFORM=offscreen molven --version
# It stays at its first window until it is ended.
code=0
QT_QPA_PLATFORM=offscreen HOME="$scratch" timeout 5 molven --home "$scratch/home" || code=$?
[ "$code" -eq 124 ] || { echo "molven ended with $code"; exit 1; }
dpkg --purge molven >/dev/null
for file in $files; do
    if [ -e "$file" ]; then echo "left behind: $file"; exit 1; fi
done
