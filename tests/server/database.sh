# What the scripts of this folder share.

# The address of a database of the server in that folder.
address() { printf "$(cat "$1/address")" "$2"; }

# Makes a database anew: an empty one, or a copy of a template.
make_database() { # FOLDER NAME [TEMPLATE]
    psql -qX "$(address "$1" postgres)" -c "drop database if exists \"$2\"" \
        -c "create database \"$2\" template \"${3:-template0}\"" 2>/dev/null
}
