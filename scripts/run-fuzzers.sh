#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in a build directory of their own and runs each for a
# bounded time. The checked-in seeds (hex text under tests/fuzz/corpus) are turned into bytes in
# the build directory, where the corpus then grows; the source tree is never written.
#
#   scripts/run-fuzzers.sh [seconds per target, default 60] [build directory]
set -euo pipefail

seconds=${1:-60}
root=$(cd "$(dirname "$0")/.." && pwd)
build=${2:-$root/build/fuzz}

if ! [[ "$seconds" =~ ^[0-9]+$ ]] || ((seconds < 1)); then
  echo "The time per target must be a whole number of seconds, not \"$seconds\"." >&2
  exit 2
fi
for tool in clang clang++ xxd; do
  command -v "$tool" >/dev/null || { echo "$tool is needed to run the fuzzers but is not installed." >&2; exit 1; }
done

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DOSTREL_LOGIC_ONLY=ON -DOSTREL_FUZZ=ON \
  -DOSTREL_BUILD_BENCHMARKS=OFF -DOSTREL_WERROR=ON \
  "-DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer" \
  -DCMAKE_EXE_LINKER_FLAGS=-fsanitize=address,undefined >/dev/null

# Each target with its seed folder under tests/fuzz/corpus.
targets=(qlab_decode_fuzzer:qlab correction_file_fuzzer:correction g4_text_fuzzer:g4
  ewdx_json_fuzzer:ewdx-json ewdx_event_fuzzer:ewdx-events crew_frame_fuzzer:crew)

cmake --build "$build" --target "${targets[@]%%:*}"

status=0
for entry in "${targets[@]}"; do
  target=${entry%%:*}
  seeds=$root/tests/fuzz/corpus/${entry#*:}
  corpus=$build/corpus/$target
  artifacts=$build/artifacts/$target/
  mkdir -p "$corpus" "$artifacts"
  for seed in "$seeds"/*.hex; do
    [[ -e "$seed" ]] || continue
    xxd -r -p "$seed" >"$corpus/seed-$(basename "$seed" .hex)"
  done
  echo "Fuzzing $target for $seconds s; corpus $corpus, findings in $artifacts"
  if ! UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    "$build/tests/fuzz/$target" -max_total_time="$seconds" -max_len=8192 -timeout=10 \
      -artifact_prefix="$artifacts" -print_final_stats=1 "$corpus"; then
    echo "$target found a problem; the input that shows it is in $artifacts" >&2
    status=1
  fi
done
exit $status
