#!/bin/sh
# The installed vrnmodel starts from any prefix, with no library path set:
# it finds the installed library beside it.
# usage: installed_vrnmodel.sh BUILD_DIR SCRATCH_DIR
set -eu
build=$1
prefix=$2/prefix
rm -rf "$prefix"
cmake --install "$build" --prefix "$prefix" > /dev/null
moved=$2/moved-elsewhere
rm -rf "$moved"
mv "$prefix" "$moved"
env -u LD_LIBRARY_PATH "$moved/bin/vrnmodel" --help | grep -q "vrnmodel import"
rm -rf "$moved"
echo "installed vrnmodel runs from its prefix"
