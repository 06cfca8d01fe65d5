#!/usr/bin/env bash
# A throw-away database server for the tests: start makes and starts it, stop ends it and removes it.
# usage: server.sh start|stop FOLDER    where FOLDER/address keeps what stands before a database's name
set -euo pipefail
word=$1 folder=$2
bin=$(ls -d /usr/lib/postgresql/*/bin | sort -V | tail -1)
# The server's own programs refuse to run for the administrator of the machine.
as_server=()
if [ "$(id -u)" -eq 0 ]; then as_server=(setpriv --reuid=postgres --regid=postgres --clear-groups); fi

stop() {
    [ -f "$folder/place" ] || return 0
    place=$(cat "$folder/place")
    cd /
    "${as_server[@]}" "$bin/pg_ctl" -D "$place/data" -m immediate stop >/dev/null 2>&1 || true
    rm -rf "$place" "$folder/place"
}

if [ "$word" = start ]; then
    mkdir -p "$folder"
    stop
    place=$(mktemp -d) # where the server's account comes to, by a path that a socket's name has room for
    if [ "$(id -u)" -eq 0 ]; then chown postgres "$place"; fi
    echo "$place" >"$folder/place"
    cd /
    "${as_server[@]}" "$bin/initdb" -D "$place/data" -A trust -U molven --locale=C -E UTF8 --no-sync >/dev/null
    sed -i '1i local all locked scram-sha-256' "$place/data/pg_hba.conf" # the only account that needs a password
    "${as_server[@]}" "$bin/pg_ctl" -D "$place/data" -w -l "$place/log" start >/dev/null -o "-c listen_addresses='' \
        -c unix_socket_directories=$place -c fsync=off -c full_page_writes=off -c synchronous_commit=off"
    echo "postgresql://molven@/%s?host=$place" >"$folder/address"
else
    stop
fi
