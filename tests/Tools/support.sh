# shellcheck shell=bash
# What the tests of the command line share: a folder of their own, runs of the tool and what they
# must come to. Sourced with the tool as the script's argument.
set -u
zelkor=$1
[ -x "$zelkor" ] || { echo "no program $zelkor"; exit 1; }
export LC_ALL=C.UTF-8
work=$(mktemp -d)
trap 'chmod -R u+w "$work"; rm -rf "$work"; exit $failed' EXIT
cd "$work" || exit 1
failed=0

fail() {
    printf 'FAILED: %s\n' "$1"
    failed=1
}

# expect STATUS OUTPUT-PATTERN ARGUMENT...: runs the tool; the pattern (a bash glob) must match the
# standard output and the standard error together.
expect() {
    local status=$1 pattern=$2 output actual
    shift 2
    output=$("$zelkor" "$@" 2>&1 | tr -d '\0'; exit "${PIPESTATUS[0]}")
    actual=$?
    # shellcheck disable=SC2053
    if [ "$actual" != "$status" ] || [[ "$output" != $pattern ]]; then
        fail "zelkor $*
  status $actual, expected $status
  output: ${output:0:2000}
  expected: $pattern"
    fi
}

# same FILE FILE: both hold the same bytes.
same() {
    cmp -s "$1" "$2" || fail "${BASH_LINENO[0]}: $1 and $2 differ"
}

# holds FILE TEXT: the file is exactly that (printf escapes).
holds() {
    # shellcheck disable=SC2059
    cmp -s "$1" <(printf "$2") || fail "${BASH_LINENO[0]}: $1 is $(od -An -c "$1" | head -3)"
}

repeat() { # COUNT TEXT
    yes "$2" | head -n "$1" | tr -d '\n'
}

# refuse FILE STATUS OUTPUT-PATTERN ARGUMENT...: as expect, and the file is what it was.
refuse() {
    local file=$1
    shift
    cp "$file" before.copy
    expect "$@"
    same before.copy "$file"
}

# put FILE OFFSET BYTES: overwrites bytes, given as for printf.
put() {
    # shellcheck disable=SC2059
    printf "$3" | dd of="$1" bs=1 seek="$2" conv=notrunc status=none
}
