#!/usr/bin/env bash
# Builds a libFuzzer target with clang and the address and undefined-behaviour sanitizers,
# then runs it for SECONDS on a fresh copy of its seed corpus.
#
#   scripts/fuzz.sh SECONDS [TARGET]     TARGET: fuzz_document_reader (the default), fuzz_las_reader,
#                                        fuzz_clipboard_block, fuzz_raw_data_reader
#
# Exits 0 when the time ran out with nothing found, and non-zero on a finding: a crash, a
# sanitizer report, an exception other than the reader's own, an input that takes more
# than 10 s, or a single allocation above 64 MiB (inputs are at most 8 KiB, so nothing
# can justify that much). The input that caused it is kept in
# fuzz/corpus-run/TARGET/findings/; replay it with build-fuzz/bin/TARGET FILE.
#
# Installs clang and the build packages with apt if they are missing. The build goes to
# build-fuzz/ under the repository; BA_FUZZ_BUILD_DIR names another directory. The run's
# working corpus (fuzz/corpus-run/TARGET/corpus) is rebuilt from the seeds every time.
set -euo pipefail

repo_root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$repo_root"

die() {
    echo "fuzz: $*" >&2
    exit 2
}

(($# >= 1 && $# <= 2)) || die "usage: scripts/fuzz.sh SECONDS [TARGET]"
seconds="$1"
target="${2:-fuzz_document_reader}"
[[ "$seconds" =~ ^[1-9][0-9]*$ ]] || die "SECONDS must be a whole number above 0, not \"$seconds\""
case "$target" in
fuzz_document_reader) seeds=fuzz/corpus/document ;;
fuzz_las_reader) seeds=fuzz/corpus/las ;;
fuzz_clipboard_block) seeds=fuzz/corpus/clipboard ;;
fuzz_raw_data_reader) seeds=fuzz/corpus/raw_data ;;
*) die "unknown target \"$target\" (known: fuzz_document_reader, fuzz_las_reader, fuzz_clipboard_block, fuzz_raw_data_reader)" ;;
esac

build_dir="${BA_FUZZ_BUILD_DIR:-build-fuzz}"
run_dir="fuzz/corpus-run/$target"

bash scripts/quickstart.sh deps clang libclang-rt-14-dev

cmake -S . -B "$build_dir" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DBA_BUILD_FUZZERS=ON -DBA_BUILD_TESTS=OFF -DBA_BUILD_BENCH=OFF
cmake --build "$build_dir" --parallel 2 --target "$target"

rm -rf "$run_dir/corpus"
mkdir -p "$run_dir/corpus" "$run_dir/findings"
cp "$seeds"/* "$run_dir/corpus/"
started="$run_dir/.started"
touch "$started"

options=(
    -max_total_time="$seconds"
    -max_len=8192
    -timeout=10
    -malloc_limit_mb=64
    -rss_limit_mb=2048
    -artifact_prefix="$run_dir/findings/"
    -print_final_stats=1
)
[[ -f "fuzz/$target.dict" ]] && options+=(-dict="fuzz/$target.dict")

export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1}"
status=0
"$build_dir/bin/$target" "${options[@]}" "$run_dir/corpus" || status=$?

if ((status != 0)); then
    echo "fuzz: $target reported a finding (exit status $status)." >&2
    found="$(find "$run_dir/findings" -type f -newer "$started")"
    if [[ -n "$found" ]]; then
        echo "fuzz: reproducer(s), replay with $build_dir/bin/$target FILE:" >&2
        echo "$found" >&2
    fi
    exit 1
fi
echo "fuzz: $target ran for $seconds s with no finding."
