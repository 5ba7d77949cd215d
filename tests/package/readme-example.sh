#!/usr/bin/env bash
# Compares the C++ block of the README with the file that is compiled.
set -euo pipefail
readme=$1 source=$2
diff <(sed -n '/^```cpp$/,/^```$/{/^```/d;p}' "$readme") "$source"
