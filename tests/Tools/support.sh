# What the tests of the command line share. Sourced with the program as the first argument.
set -u
zelkor=$1
[ -x "$zelkor" ] || { echo "no program $zelkor"; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failed=0

complain() {
    printf 'FAILED: %s\n' "$*"
    failed=1
}

# expect STATUS OUTPUT-PATTERN ARGUMENT...: runs the tool; the pattern (a bash glob) must match the
# standard output and the standard error together.
expect() {
    local status=$1 pattern=$2 output actual
    shift 2
    output=$("$zelkor" "$@" 2>&1)
    actual=$?
    # shellcheck disable=SC2053
    if [ "$actual" != "$status" ] || [[ "$output" != $pattern ]]; then
        complain "zelkor $*"
        printf '  status %s, expected %s\n  output: %.600s\n  expected: %s\n' \
            "$actual" "$status" "$output" "$pattern"
    fi
}

# refuse FILE STATUS OUTPUT-PATTERN ARGUMENT...: as expect, and the file is what it was.
refuse() {
    local file=$1
    shift
    cp "$file" before.copy
    expect "$@"
    cmp -s before.copy "$file" || complain "zelkor ${*:3}: $file was changed"
}

same() {
    cmp -s "$1" "$2" || complain "$1 and $2 differ"
}

# put FILE OFFSET BYTES: overwrites bytes, given as for printf.
put() {
    printf "$3" | dd of="$1" bs=1 seek="$2" conv=notrunc status=none
}
