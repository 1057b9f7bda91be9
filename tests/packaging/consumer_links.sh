#!/usr/bin/env bash
# A host in the oldest C++ that the header allows, in two translation units, as a newcomer without a build system would
# make it.
# Usage: consumer_links.sh COMPILER INCLUDE_FOLDER LIBRARY_FOLDER CONSUMER_SOURCE
set -euo pipefail
compiler=$1 include=$2 libraries=$3 source=$4

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
printf '#include <captionfx/caption_fx.h>\nint32_t Second() { return kTitleOk; }\n' > "$scratch/second.cpp"
"$compiler" -std=c++17 -I"$include" "$source" "$scratch/second.cpp" -L"$libraries" -lcaptionfx -o "$scratch/consumer"
LD_LIBRARY_PATH=$libraries "$scratch/consumer"
