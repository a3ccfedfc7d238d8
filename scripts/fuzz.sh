#!/usr/bin/env bash
# Builds the fuzz targets with clang (libFuzzer, AddressSanitizer, UndefinedBehaviorSanitizer) and
# runs each for a bounded time on a copy of the committed corpus. Skips cleanly without clang or
# its fuzzer runtime. A crash or a disagreement between the read paths fails the run and leaves
# the input in build/fuzz/artifacts/ (copy it to fuzz/regressions/<target>/ once understood).
#
# usage: scripts/fuzz.sh [SECONDS_PER_TARGET] [extra libFuzzer flags...]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-30}"
shift || true
build="${FUZZ_DIR:-build/fuzz}"

# The probe: can clang link a libFuzzer program here?
probe="$(mktemp -d)"
trap 'rm -rf "$probe"' EXIT
echo 'extern "C" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }' > "$probe/p.cpp"
if ! command -v clang++ >/dev/null 2>&1 || ! clang++ -fsanitize=fuzzer "$probe/p.cpp" -o "$probe/p" 2>/dev/null; then
  echo "fuzz: clang++ with its libFuzzer runtime is not installed; skipped"
  exit 0
fi

cmake -S . -B "$build" -G Ninja -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_BUILD_TYPE=Fuzz -DCMAKE_CXX_FLAGS_FUZZ="-O1 -gline-tables-only" -DTOLVEN_FUZZ=ON -DTOLVEN_BUILD_TESTS=OFF -DTOLVEN_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" -j "${JOBS:-$(nproc)}" --target read_fuzzer hints_fuzzer

mkdir -p "$build/artifacts"
for target in read hints; do
  work="$build/corpus/$target"
  mkdir -p "$work"
  echo "fuzz: $target for ${seconds}s"
  log="$build/$target.log"
  # New inputs go to the first folder (a work copy); the committed corpus is only read.
  folders=("$work" "fuzz/corpus/$target")
  [ -d "fuzz/regressions/$target" ] && folders+=("fuzz/regressions/$target")
  status=0
  "$build/fuzz/${target}_fuzzer" -max_total_time="$seconds" -timeout=60 -rss_limit_mb=4096 -max_len=8192 \
    -dict=fuzz/xml.dict -artifact_prefix="$build/artifacts/$target-" -print_final_stats=1 "$@" \
    "${folders[@]}" >"$log" 2>&1 || status=$?
  grep -E "DONE|stat::number_of_executed_units|stat::peak_rss_mb" "$log" || true
  if [ "$status" -ne 0 ]; then
    tail -n 40 "$log" >&2
    echo "fuzz: $target failed (exit $status); the input is in $build/artifacts/, the log in $log" >&2
    exit 1
  fi
done
echo "fuzz: done"
