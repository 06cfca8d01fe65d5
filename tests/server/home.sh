#!/usr/bin/env bash
# Makes a program folder anew whose dossier lies in a database of its own, by a command of molvenctl.
# usage: home.sh SERVER NAME HOME molvenctl WORD OPTION...
set -euo pipefail
. "$(dirname "$0")/database.sh"
server=$1 name=$2 home=$3 program=$4 word=$5
shift 5
rm -rf "$home"
make_database "$server" "$name"
"$program" "$word" "$home" "$@" --serveur "$(address "$server" "$name")"
