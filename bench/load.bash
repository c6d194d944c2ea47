# shellcheck shell=bash
# What the scripts that measure have in common. A script sources this file and then calls, in this order:
#   open_load [FOLDER]    build TARGET...    serve COUNT    measure or instructions    figure

# The folder of the build, and how often a program is run whose time is measured.
build_folder=build/release
runs=${BENCH_RUNS:-9}
load_port=5988

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# open_load [FOLDER]: the volumes are those of bench/write-load, unless a folder, or BENCH_LOAD, has another load of
# volumes: a program `volumes.py DIRECTORY COUNT` that writes the answers of a server with so many instances. Their class
# is `volume_class` then. Goes to the root of the checkout.
open_load() {
    local checkout
    checkout=$(realpath "$(dirname "${BASH_SOURCE[0]}")/..")
    load=${1-${BENCH_LOAD-}}
    if [ -n "$load" ]; then
        load=$(realpath -m "$load")
        [ -f "$load/volumes.py" ] || fail "there is no volumes.py in $load"
    fi
    cd "$checkout" || exit
    servers=()
    scratch=$(mktemp -d)
    trap close_load EXIT
}

close_load() {
    local server
    for server in "${servers[@]}"; do
        kill "$server" 2>/dev/null || true
        wait "$server" 2>/dev/null || true
    done
    rm -rf "$scratch"
}

# build TARGET...: in the release preset.
build() {
    { cmake --preset release && cmake --build --preset release --target "$@"; } >"$scratch/build-log" 2>&1 || {
        cat "$scratch/build-log" >&2
        fail "the build failed"
    }
}

# serve COUNT: starts a server with so many volumes, at `address`.
serve() {
    local answers
    if [ -n "$load" ]; then
        python3 "$load/volumes.py" "$scratch/$1" "$1"
    else
        bench/write-load volumes "$scratch/$1" "$1"
    fi
    answers=$(echo "$scratch/$1"/EnumerateInstances.*.xml)
    volume_class=${answers#*EnumerateInstances.}
    volume_class=${volume_class%.xml}
    serve_folder "$scratch/$1"
}

# serve_folder FOLDER: starts a server that gives the answers in a folder, at `address`.
serve_folder() {
    address=127.$((78 + ${#servers[@]})).$((1 + $$ / 254 % 254)).$((1 + $$ % 254))
    bench/replay "$1" "$address" "$load_port" 2>"$scratch/server-log" &
    servers+=($!)
    for _ in $(seq 100); do
        (exec 3<>"/dev/tcp/$address/$load_port") 2>/dev/null && return
        kill -0 $! 2>/dev/null || break
        sleep 0.1
    done
    cat "$scratch/server-log" >&2
    fail "the replaying server did not start on port $load_port of $address"
}

# measure PROGRAM ARGUMENT...: runs a program of bench/ several times and keeps the figures that it prints.
measure() {
    local program=$1
    shift
    for _ in $(seq "$runs"); do
        "$build_folder/bench/$program" "$@" || fail "$program failed"
    done >"$scratch/figures"
}

# median NAME: of the figures kept.
median() { awk -v name="$1" '$1 == name { print $2 }' "$scratch/figures" | sort -n | sed -n "$(((runs + 1) / 2))p"; }

# can_count: whether valgrind is there to count instructions; says so if not.
can_count() {
    command -v valgrind >/dev/null && return
    echo "${0##*/}: valgrind is not installed, so instructions are not counted" >&2
    return 1
}

# instructions PROGRAM ARGUMENT...: how many a program of bench/ executes, from its start to its end.
instructions() {
    local program=$1
    shift
    valgrind --tool=callgrind --callgrind-out-file="$scratch/callgrind" "$build_folder/bench/$program" "$@" \
        >"$scratch/callgrind-log" 2>&1 || {
        cat "$scratch/callgrind-log" >&2
        fail "$program failed under callgrind"
    }
    awk '$1 == "totals:" { print $2 }' "$scratch/callgrind"
}

# figure TEXT NUMBER [DECIMALS]: prints one line of the result.
figure() { printf "  %-44s %15.*f\n" "$1" "${3-0}" "$2"; }
