#!/usr/bin/env bash
# A PostgreSQL for the tests, as an ordinary user, on a socket in FOLDER alone.
#   postgres.sh start|stop FOLDER
set -euo pipefail
found=(/usr/lib/postgresql/*/bin)
programs=${found[-1]}
folder=$2
as_user=()
[ "$(id -u)" -ne 0 ] || as_user=(setpriv --reuid=nobody --regid=nogroup --clear-groups env HOME="$folder")

control() { "${as_user[@]}" "$programs/pg_ctl" -D "$folder/data" "$@"; }

case $1 in
    start)
        [ ! -e "$folder/data" ] || control stop -m immediate -s || true
        rm -rf "$folder"
        mkdir -m 755 "$folder"
        [ ${#as_user[@]} -eq 0 ] || chown nobody:nogroup "$folder"
        "${as_user[@]}" "$programs/initdb" -D "$folder/data" -U vell -A trust -E UTF8 --locale=C.UTF-8 --no-sync >/dev/null
        # What is tested is the service: the database need not survive a loss of power.
        control start -s -w -l "$folder/log" -o "-c listen_addresses='' -k $folder -c fsync=off -c full_page_writes=off \
            -c max_connections=300 -c lock_timeout=0"
        ;;
    stop) control stop -m immediate -s ;;
esac
