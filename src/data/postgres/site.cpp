#include "data/postgres/site.h"

#include "data/postgres/connection.h"

#include <libpq-fe.h>

namespace molven::postgres {

namespace {

/// Accents and case are folded as the program folds what is typed.
const char* const Parts = R"sql(
create extension if not exists citext;
create collation if not exists french (provider = icu, locale = 'fr-FR-u-ks-level2', deterministic = false);
create or replace function folded(text) returns text language sql immutable strict parallel safe as
$$ select regexp_replace(normalize(lower($1 collate "und-x-icu"), NFD) collate "C", '[\u0300-\u036f]', '', 'g') $$;
create or replace function instr(text, text) returns integer language sql immutable strict parallel safe as
$$ select strpos($1 collate "C", $2 collate "C") $$;
create or replace function json_quote(text) returns text language sql immutable parallel safe as
$$ select coalesce(to_json($1 collate "C")::text, 'null') $$;
create or replace function number_in(text) returns numeric language sql immutable strict parallel safe as
$$ select coalesce(substring(replace($1 collate "C", ',', '.') from '^\s*([-+]?(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?)')::numeric, 0) $$;
create or replace function product(integer, variadic numeric[]) returns numeric language plpgsql immutable strict parallel safe as
$$ declare result numeric := 1; factor numeric;
begin
    foreach factor in array $2 loop result := result * factor; end loop;
    return round(result, $1);
end $$;
create or replace function quotient(integer, numeric, numeric) returns numeric language sql immutable strict parallel safe as
$$ select round($2 / nullif($3, 0), $1) $$;
create or replace function joined(text, text) returns text language sql immutable parallel safe as
$$ select case when $1 is null then $2 else $1 || ',' || $2 end $$;
create or replace aggregate group_concat(text) (sfunc = joined, stype = text);
create sequence if not exists molven_changed;
select nextval('molven_changed');
)sql";

} // namespace

void prepareSite(Connection& connection) {
    const Result found = connection.run(QStringLiteral(
        "select pg_encoding_to_char(encoding), datcollate from pg_database where datname=current_database()"));
    const QByteArrayView encoding(PQgetvalue(found.get(), 0, 0)), order(PQgetvalue(found.get(), 0, 1));
    if (encoding != QByteArrayView("UTF8") || (order != QByteArrayView("C") && order != QByteArrayView("POSIX")))
        throw Refusal(QStringLiteral("La base du serveur doit être en UTF8 et de tri C : créez-la par « molvenctl "
                                     "serveur ADRESSE --preparer »."));
    connection.run(QStringLiteral("begin; select pg_advisory_xact_lock(%1)").arg(SiteLock));
    connection.run(QString::fromLatin1(Parts));
    connection.run(QStringLiteral("commit"));
}

} // namespace molven::postgres
