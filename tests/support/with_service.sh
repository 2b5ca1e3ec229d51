# Shared by the test scripts; sourced, not run. Makes the folder $work, which goes away at the end, and knows how
# to start a service.

work=$(mktemp -d)
service_pid=
cleanup() {
    [ -z "$service_pid" ] || kill "$service_pid" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

fail() {
    echo "FAIL!  : $*"
    exit 1
}

# start_service PROGRAM [OPTIONS]: $address is then where it listens.
start_service() {
    mkdir "$work/data"
    : >"$work/service.log" # so that it is there before the service is
    "$@" --data "$work/data" >"$work/service.log" 2>&1 &
    service_pid=$!
    for _ in $(seq 100); do
        address=$(sed -n 's/^vell-service listens on //p' "$work/service.log")
        [ -z "$address" ] || return 0
        kill -0 "$service_pid" 2>/dev/null || fail "the service ended: $(cat "$work/service.log")"
        sleep 0.1
    done
    fail "the service did not start"
}
