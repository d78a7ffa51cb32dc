# Sourced by scripts/test: a PostgreSQL server of its own on a private socket
# folder, for the duration of one test run. initdb refuses to run as root,
# so as root the server runs as the postgres user.
pg_bin=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
pg_port=55432
pg_dir=""

pg_as_owner() {
    if [ "$(id -u)" -eq 0 ]; then
        su postgres -s /bin/sh -c "$*"
    else
        sh -c "$*"
    fi
}

pg_start() {
    pg_dir=$(mktemp -d /tmp/tandrill-pg.XXXXXX)
    chmod 755 "$pg_dir"
    [ "$(id -u)" -eq 0 ] && chown postgres "$pg_dir"
    pg_as_owner "'$pg_bin/initdb' -D '$pg_dir/data' -A trust -U tandrill" >"$pg_dir/initdb.log" 2>&1 ||
        { cat "$pg_dir/initdb.log"; return 1; }
    pg_as_owner "'$pg_bin/pg_ctl' -D '$pg_dir/data' -o \"-p $pg_port -k $pg_dir -c listen_addresses= -c fsync=off\" -l '$pg_dir/log' -w start" >/dev/null ||
        { cat "$pg_dir/log"; return 1; }
    export TANDRILL_TEST_PG="host=$pg_dir port=$pg_port user=tandrill dbname=postgres"
}

pg_stop() {
    [ -n "$pg_dir" ] || return 0
    pg_as_owner "'$pg_bin/pg_ctl' -D '$pg_dir/data' -m fast stop" >/dev/null 2>&1 || true
    rm -rf "$pg_dir"
    pg_dir=""
}
