# Sourced by the scripts: runs named stages and prints how many minutes each took.

stage_total=0

# stage NAME COMMAND [ARGUMENT...]
stage() {
    local name=$1 started ended
    shift
    printf '\n== %s\n' "$name"
    started=$(date +%s)
    "$@"
    ended=$(date +%s)
    stage_total=$((stage_total + ended - started))
    printf '== %s: %s minutes\n' "$name" "$(minutes $((ended - started)))"
}

# minutes SECONDS: one decimal
minutes() {
    printf '%d.%d' $(($1 / 60)) $(($1 % 60 / 6))
}

# The number of compilers that run at once.
jobs_here() {
    nproc
}
