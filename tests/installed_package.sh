#!/bin/sh
# Checks of what `cmake --install` gives a user, on a fresh install:
#   installed_package.sh BUILD_DIR SCRATCH_DIR runs-anywhere
#     the installed vrnmodel starts from its prefix moved elsewhere, with no
#     library path set: it finds the installed library beside it;
#   installed_package.sh BUILD_DIR SCRATCH_DIR headers
#     the installed headers are exactly those that VrnIntf.h and VrnReader.h
#     reach.
set -eu
build=$1
scratch=$2
check=$3
prefix=$scratch/prefix
rm -rf "$scratch"
mkdir -p "$scratch"
cmake --install "$build" --prefix "$prefix" > /dev/null

case $check in
runs-anywhere)
  mv "$prefix" "$scratch/moved-elsewhere"
  env -u LD_LIBRARY_PATH "$scratch/moved-elsewhere/bin/vrnmodel" --help | grep -q "vrnmodel import"
  echo "installed vrnmodel runs from its prefix"
  ;;
headers)
  root=$prefix/include/VrnIntf
  (cd "$root" && find . -name '*.h' | sed 's|^\./||' | sort) > "$scratch/installed"
  printf '#include <VrnIntf.h>\n#include <VrnReader.h>\n' | ${CXX:-c++} -std=c++17 -I"$root" -x c++ -M - |
    tr ' \\' '\n\n' | grep "^$root/" | sed "s|^$root/||" | sort -u > "$scratch/reached"
  if ! diff "$scratch/reached" "$scratch/installed"; then
    echo "installed headers (>) differ from those VrnIntf.h and VrnReader.h reach (<)"
    exit 1
  fi
  echo "$(wc -l < "$scratch/installed") installed headers, each reached from VrnIntf.h or VrnReader.h"
  ;;
*)
  echo "unknown check $check" >&2
  exit 2
  ;;
esac
