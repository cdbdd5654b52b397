#!/usr/bin/env bash
# Checks the C++ sources against .clang-format; the one place that lists which files are formatted
# and which clang-format formats them, so that `make format` and the `code_format` test agree.
#
#   scripts/check-format.sh [ROOT]        list the files clang-format would change; fail if any
#   scripts/check-format.sh --fix [ROOT]  format them in place (what `make format` runs)
set -euo pipefail

fix=0
if [[ "${1:-}" == "--fix" ]]; then
  fix=1
  shift
fi
root=$(cd "${1:-$(dirname "$0")/..}" && pwd)
cd "$root"

# Debian's clang-format 14 first: another version may lay out the same code differently.
clang_format=""
for candidate in clang-format-14 clang-format; do
  if command -v "$candidate" >/dev/null; then
    clang_format=$candidate
    break
  fi
done
if [[ -z "$clang_format" ]]; then
  echo "check-format: no clang-format; scripts/install-deps.sh installs it" >&2
  exit 2
fi

folders=()
for folder in src tests tools benchmarks; do
  [[ -d "$folder" ]] && folders+=("$folder")
done
files=()
if ((${#folders[@]} > 0)); then
  mapfile -d '' files < <(find "${folders[@]}" -type f \( -name '*.h' -o -name '*.cpp' \) -print0 \
    | sort -z)
fi
if ((${#files[@]} == 0)); then
  echo "check-format: no sources under $root" >&2
  exit 2
fi

if ((fix)); then
  printf '%s\0' "${files[@]}" | xargs -0 -n 50 "$clang_format" -i
  exit 0
fi

differing=()
for file in "${files[@]}"; do
  if ! output=$("$clang_format" --dry-run --Werror "$file" 2>&1); then
    # Anything but a layout difference (a broken .clang-format, say) must not pass for one.
    if [[ "$output" != *clang-format-violations* ]]; then
      printf '%s\n' "$output" >&2
      exit 2
    fi
    differing+=("$file")
  fi
done
if ((${#differing[@]} > 0)); then
  printf '%s\n' "${differing[@]}"
  echo "check-format: ${#differing[@]} of ${#files[@]} files differ from .clang-format" \
    "($clang_format); scripts/check-format.sh --fix or make format formats them" >&2
  exit 1
fi
echo "check-format: ${#files[@]} files formatted ($clang_format)"
