#!/usr/bin/env bash
# Plays one scenario on a copy of a dossier on the server; what it leaves must equal what it left in a folder.
# usage: play.sh SERVER TEMPLATE HOME COPY SCENARIO PLAYER COMPARE FOLDER_COPY
set -euo pipefail
. "$(dirname "$0")/database.sh"
server=$1 template=$2 home=$3 copy=$4 scenario=$5 player=$6 compare=$7 folder_copy=$8
name=$(basename "$copy")
rm -rf "$copy"
mkdir -p "$copy"
cp -r "$home" "$copy/home"
mkdir -p "$copy/home/data" # for what lies beside the data
make_database "$server" "$name" "$template"
address "$server" "$name" >"$copy/home/CHEMIN.HC"
if [ -f "$copy/home/CHEMIN_GV.HC" ]; then echo "$(address "$server" "$name")#gv/" >"$copy/home/CHEMIN_GV.HC"; fi
"$player" --home "$copy/home" --out "$copy" "$scenario"
if [ -d "$folder_copy/home" ]; then "$compare" "$folder_copy/home" "$copy/home"; fi
psql -qX "$(address "$server" postgres)" -c "drop database \"$name\""
