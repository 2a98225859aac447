#!/usr/bin/env bash
# exports_test.sh LIBRARY MAJOR NM READELF: the shared library offers exactly the ten functions and has its soname.
set -euo pipefail
export LC_ALL=C
library=$1 major=$2 nm=$3 readelf=$4

expected=$(printf '%s\n' TAMU_AddObject TAMU_Close TAMU_CodeToString TAMU_FindObject TAMU_GetObjectById \
  TAMU_GetObjectName TAMU_ModifyObject TAMU_Open TAMU_ReadObjects TAMU_WriteObject)
exported=$("$nm" -D --defined-only --format=posix "$library" | awk '{print $1}' | sort)
if ! diff <(echo "$expected") <(echo "$exported"); then
  echo "$library exports other names than the ten functions (< expected, > exported)" >&2
  exit 1
fi

# All of them are code, none is weak or data.
kinds=$("$nm" -D --defined-only --format=posix "$library" | awk '{print $2}' | sort -u)
if [[ $kinds != T ]]; then
  echo "$library exports symbols of the kinds ${kinds//$'\n'/ }, not T alone" >&2
  exit 1
fi

soname=$("$readelf" -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]$/\1/p')
if [[ $soname != "libtamu.so.$major" ]]; then
  echo "$library has the soname '$soname', not libtamu.so.$major" >&2
  exit 1
fi
