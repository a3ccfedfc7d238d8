#!/bin/sh
# Builds the example consumer with the flags tolven-xml.pc gives, then runs it on a document.
#   build_with_pkg_config.sh PREFIX CXX SOURCE OUTPUT DOCUMENT
set -eu
prefix=$1 cxx=$2 source=$3 output=$4 document=$5
pc=$(find "$prefix" -name tolven-xml.pc | head -n 1)
[ -n "$pc" ] || { echo "no tolven-xml.pc under $prefix" >&2; exit 1; }
PKG_CONFIG_PATH=$(dirname "$pc")
export PKG_CONFIG_PATH
# shellcheck disable=SC2046
"$cxx" -std=c++20 -o "$output" "$source" $(pkg-config --cflags --libs tolven-xml)
"$output" "$document"
