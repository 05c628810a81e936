#!/usr/bin/env bash
# install.sh PREFIX FOLDER puts the doubles of the device tree, built in FOLDER, into a Wine prefix of the tests and
# keeps the prefix's own libraries under other names. It may run again after each build. What runs in the prefix then
# needs the override setupapi,cfgmgr32=n,b.
set -euo pipefail
system=$1/drive_c/windows/syswow64
[ -d "$system" ] || system=$1/drive_c/windows/system32 # a 32-bit prefix

for library in setupapi cfgmgr32; do
    file=$system/$library.dll
    double=$2/$library.dll
    # Wine marks the libraries that it brings; the double bears no such mark.
    if head -c 128 "$file" | grep -qa 'Wine builtin DLL'; then
        cp --remove-destination "$file" "$system/tavix_${library}_real.dll"
    fi
    # Never in place: prefixes that were copied with hard links share their files.
    cmp -s "$double" "$file" || cp --remove-destination "$double" "$file"
done
