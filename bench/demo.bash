# shellcheck shell=bash
# A demo server for scripts that measure or show the command-line program. A script sources this file and then calls
#   start_demo [OPTION...]
#   start_link MILLISECONDS [LOST]       if it needs a server that is far away
# or start_numbered COUNT, for very many instances.
# It stops all, and removes the folder `scratch`, at the end of the script.

demo_links=()

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

end_demo() {
    local process
    for process in "${demo_links[@]}" ${demo_server-}; do
        kill "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    rm -rf "${scratch-}"
}

# build_demo TARGET...: the programs, in the release preset, found in $bin.
build_demo() {
    cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit
    bin=$PWD/build/release/bin
    scratch=$(mktemp -d)
    trap end_demo EXIT
    { cmake --preset release && cmake --build --preset release --target cimhttp demo-server "$@"; } \
        >"$scratch/build-log" 2>&1 || {
        tail -n 30 "$scratch/build-log" >&2
        fail "the build failed"
    }
}

# start_demo OPTION...: starts the server, at `address`, and waits until both ports answer. Nobody's named connections
# are in the way.
start_demo() {
    address=127.76.$((1 + $$ / 254 % 254)).$((1 + $$ % 254))
    "$bin/demo-server" --address "$address" "$@" >"$scratch/server-log" 2>&1 &
    demo_server=$!
    export XDG_CONFIG_HOME=$scratch/config
    for _ in $(seq 100); do
        [ "$(grep -c ready "$scratch/server-log")" -eq 2 ] && return
        kill -0 "$demo_server" 2>/dev/null || break
        sleep 0.1
    done
    cat "$scratch/server-log" >&2
    fail "the demo server did not start on $address"
}

# start_numbered COUNT: a server with so many instances of a class BENCH_Item, at `address`. Needs bench_numbered_server.
start_numbered() {
    address=127.78.$((1 + $$ / 254 % 254)).$((1 + $$ % 254))
    export XDG_CONFIG_HOME=$scratch/config
    end_numbered
    rm -f "$scratch/server-input"
    mkfifo "$scratch/server-input" # the server ends when nobody can write to it any more
    build/release/bench/numbered-server "$address" "$1" <"$scratch/server-input" >"$scratch/server-log" 2>&1 &
    demo_server=$!
    exec 3>"$scratch/server-input"
    for _ in $(seq 100); do
        grep -q ready "$scratch/server-log" && return
        sleep 0.1
    done
    fail "the server did not start on $address"
}

end_numbered() {
    [ -n "${demo_server-}" ] || return 0
    exec 3>&-
    wait "$demo_server" || true
    demo_server=
}

# start_link MILLISECONDS [LOST]: the same server at `far_address`, over a link that takes so long one way and loses so
# many of a hundred segments. Needs bench_delay.
start_link() {
    far_address=127.$((77 + ${#demo_links[@]})).${address#127.76.}
    build/release/bench/delay "$far_address" "$address" 5988 "$@" >"$scratch/link-log" 2>&1 &
    demo_links+=($!)
    for _ in $(seq 100); do
        grep -q ready "$scratch/link-log" && return
        kill -0 $! 2>/dev/null || break
        sleep 0.1
    done
    cat "$scratch/link-log" >&2
    fail "the link did not start on $far_address"
}
