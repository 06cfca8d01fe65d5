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
create or replace function molven_version(text) returns bigint language plpgsql stable as
$$ declare result bigint;
begin
    if to_regclass($1) is not null then execute 'select version from ' || to_regclass($1)::text into result; end if;
    return result;
end $$;
create sequence if not exists molven_changed;
select nextval('molven_changed');
)sql";

enum class Order { None, Same, Another };

/// Of the labels, as against the version of the server's library when their indexes were made.
Order orderOf(Connection& connection) {
    const Result found = connection.run(QStringLiteral(
        "select collversion is not distinct from pg_collation_actual_version(oid) from pg_collation where "
        "collname='french'"));
    if (PQntuples(found.get()) == 0) return Order::None;
    return QByteArrayView(PQgetvalue(found.get(), 0, 0)) == QByteArrayView("t") ? Order::Same : Order::Another;
}

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
    if (orderOf(connection) == Order::Another) {
        const Result indexes = connection.run(
            QStringLiteral("select indexrelid::regclass::text from pg_index where (select oid from pg_collation where "
                           "collname='french') = any(indcollation::oid[])"));
        for (int row = 0; row < PQntuples(indexes.get()); ++row)
            connection.run(QStringLiteral("reindex index ") + QString::fromUtf8(PQgetvalue(indexes.get(), row, 0)));
        connection.run(QStringLiteral("alter collation french refresh version"));
    }
    connection.run(QStringLiteral("commit"));
}

bool isPrepared(Connection& connection) {
    if (connection.hasSite) return true;
    const Order order = orderOf(connection);
    if (order == Order::Another)
        throw DataError(DataError::CannotOpen,
                        QStringLiteral("Le serveur ne trie plus les libellés comme lors de la création des index (sa "
                                       "bibliothèque de tri a changé de version) : l'administrateur doit lancer « "
                                       "molvenctl serveur ADRESSE --preparer »."));
    return connection.hasSite = order == Order::Same;
}

} // namespace molven::postgres
