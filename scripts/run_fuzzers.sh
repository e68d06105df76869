#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for a short time
# (default 30 seconds; pass another number of seconds as the first argument).
# Fails when a target finds a crash, a leak or a hang.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-30}
build=build/fuzz
cmake -S . -B "$build" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DORVANE_BUILD_FUZZERS=ON -DORVANE_BUILD_TESTS=OFF -DORVANE_BUILD_BENCHMARKS=OFF -DORVANE_BUILD_HOST=OFF >/dev/null
cmake --build "$build" --target fuzz_settings_file fuzz_persistent_stream fuzz_theme_file -j 2
for target in fuzz_settings_file fuzz_persistent_stream fuzz_theme_file; do
  corpus="$build/corpus/$target"
  mkdir -p "$corpus"
  seeds="fuzz/seeds/$target"
  echo "fuzz: $target for ${seconds}s"
  (cd "$build" && "./fuzz/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
     -artifact_prefix="$PWD/$target-" "$PWD/corpus/$target" $( [ -d "../../$seeds" ] && echo "../../$seeds" ) 2>&1 | tail -n 3)
done
