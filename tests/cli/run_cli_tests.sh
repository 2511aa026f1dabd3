#!/usr/bin/env bash
# Runs the command-line cases: every folder under cases/ holds
#   cmd              a bash script; it runs in an empty scratch folder and finds the tool
#                    as $CLI, the scratch folder as $WORK and the input files as $DATA
#   stdout.expected  its exact standard output
#   stderr.expected  its exact standard error
#   rc.expected      its exit status
# Before comparing, the scratch and data paths in the output are written back as the
# literal text $WORK and $DATA, and @BA_VERSION@ in the expected files becomes the
# version from the environment variable BA_VERSION.
#
# Usage: run_cli_tests.sh PATH/TO/boreanalyst-cli [CASE...]
set -uo pipefail

if [[ $# -lt 1 ]]; then
    echo "usage: $0 PATH/TO/boreanalyst-cli [CASE...]" >&2
    exit 2
fi
CLI=$(realpath "$1")
shift
HERE=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
DATA="$HERE/data"
export CLI DATA

if [[ ! -x $CLI ]]; then
    echo "error: $CLI is not an executable" >&2
    exit 2
fi

if [[ $# -gt 0 ]]; then
    case_names=("$@")
else
    case_names=()
    for dir in "$HERE"/cases/*/; do case_names+=("$(basename "$dir")"); done
fi

RUN_DIR=$(mktemp -d)
trap 'rm -rf "$RUN_DIR"' EXIT

# Reads a whole file, trailing newlines included.
read_file() { IFS= read -r -d '' "$1" <"$2" || true; }

# Writes $WORK and $DATA in place of the real paths.
normalise_output() {
    local text
    read_file text "$1"
    text=${text//"$WORK"/'$WORK'}
    text=${text//"$DATA"/'$DATA'}
    printf '%s' "$text" >"$2"
}

expand_expected() {
    local text
    read_file text "$1"
    if [[ $text == *@BA_VERSION@* ]]; then
        if [[ -z ${BA_VERSION:-} ]]; then
            echo "    $1 names @BA_VERSION@ but BA_VERSION is not set" >&2
            return 1
        fi
        text=${text//@BA_VERSION@/$BA_VERSION}
    fi
    printf '%s' "$text" >"$2"
}

passed=0
failed=0
for name in "${case_names[@]}"; do
    case_dir="$HERE/cases/$name"
    problems=()
    for file in cmd stdout.expected stderr.expected rc.expected; do
        [[ -f $case_dir/$file ]] || problems+=("missing $file")
    done

    if [[ ${#problems[@]} -eq 0 ]]; then
        out="$RUN_DIR/$name"
        WORK="$out/work"
        export WORK
        mkdir -p "$WORK"
        (cd "$WORK" && timeout 120 bash "$case_dir/cmd") >"$out/stdout.raw" 2>"$out/stderr.raw"
        rc=$?
        for stream in stdout stderr; do
            normalise_output "$out/$stream.raw" "$out/$stream"
            if ! expand_expected "$case_dir/$stream.expected" "$out/$stream.expected"; then
                problems+=("cannot expand $stream.expected")
            elif ! cmp -s "$out/$stream.expected" "$out/$stream"; then
                problems+=("$stream differs:
$(diff -u "$out/$stream.expected" "$out/$stream" | sed 's/^/      /')")
            fi
        done
        expected_rc=$(tr -d '[:space:]' <"$case_dir/rc.expected")
        [[ $rc == "$expected_rc" ]] || problems+=("exit status $rc, expected $expected_rc")
    fi

    if [[ ${#problems[@]} -eq 0 ]]; then
        echo "PASS $name"
        passed=$((passed + 1))
    else
        echo "FAIL $name"
        for problem in "${problems[@]}"; do echo "    $problem"; done
        failed=$((failed + 1))
    fi
done

echo "$passed passed, $failed failed"
[[ $failed -eq 0 && $passed -gt 0 ]]
