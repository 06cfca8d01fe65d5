#include "data/server_setup.h"

#include "data/postgres/connection.h"
#include "data/postgres/site.h"

#include <libpq-fe.h>

namespace molven::server_setup {

namespace {

using postgres::Connection;

/// A name within a statement.
QString quoted(QString name) { return u'"' + name.replace(u'"', QStringLiteral("\"\"")) + u'"'; }

QString literal(QString text) { return u'\'' + text.replace(u'\'', QStringLiteral("''")) + u'\''; }

QString databaseOf(const QString& address) {
    const QString name = Connection::option(address, "dbname");
    if (name.isEmpty()) throw Refusal(QStringLiteral("L'adresse ne nomme pas de base : %1").arg(address));
    return name;
}

bool answers(Connection& connection, const QString& sql) {
    const postgres::Result found = connection.run(sql);
    return PQntuples(found.get()) > 0;
}

QString usersOf(const QString& database) { return database + QStringLiteral("_utilisateurs"); }

bool hasRole(Connection& server, const QString& role) {
    return answers(server, QStringLiteral("select 1 from pg_roles where rolname=") + literal(role));
}

/// Whoever makes tables in the database gives the users what they need of them, and no more.
void openToUsers(Connection& database, const QString& users) {
    const QString role = quoted(users);
    for (const QString& sql :
         {QStringLiteral("revoke create on schema public from public"),
          QStringLiteral("grant usage on schema public to %1"),
          QStringLiteral("grant usage, select on sequence molven_changed to %1"),
          QStringLiteral("alter default privileges grant usage on schemas to %1"),
          QStringLiteral("alter default privileges grant select, insert, update, delete on tables to %1"),
          QStringLiteral("alter default privileges grant usage, select on sequences to %1")})
        database.run(sql.contains(u'%') ? sql.arg(role) : sql);
}

} // namespace

QStringList prepare(const QString& address) {
    const QString name = databaseOf(address), owner = name + QStringLiteral("_proprietaire"), users = usersOf(name);
    QStringList done;
    Connection server(address, QStringLiteral("postgres"));
    for (const QString& role : {owner, users})
        if (!hasRole(server, role)) {
            server.run(QStringLiteral("create role %1 nologin").arg(quoted(role)));
            done.append(QStringLiteral("rôle créé : ") + role);
        }
    if (!answers(server, QStringLiteral("select 1 from pg_database where datname=") + literal(name))) {
        server.run(QStringLiteral("grant %1 to current_user").arg(quoted(owner)));
        server.run(QStringLiteral("create database %1 owner %2 template template0 encoding 'UTF8' lc_collate 'C' "
                                  "lc_ctype 'C'")
                       .arg(quoted(name), quoted(owner)));
        done.append(QStringLiteral("base créée : ") + name);
    }
    Connection database(address);
    postgres::prepareSite(database);
    openToUsers(database, users);
    done.append(QStringLiteral("base prête : les comptes du rôle %1 y travaillent").arg(users));
    return done;
}

QStringList faults(const QString& address) {
    Connection database(address);
    const QString users = usersOf(databaseOf(address));
    if (!hasRole(database, users)) return {QStringLiteral("le rôle %1 manque").arg(users)};
    const postgres::Result open = database.run(
        QStringLiteral("select n.nspname||'.'||c.relname from pg_class c join pg_namespace n on n.oid=c.relnamespace "
                       "where c.relkind='r' and n.nspname not like 'pg\\_%' and n.nspname<>'information_schema' and "
                       "c.relname not like 'molven\\_%' and not has_table_privilege(%1, c.oid, "
                       "'select') order by 1")
            .arg(literal(users)));
    QStringList found;
    for (int row = 0; row < PQntuples(open.get()); ++row)
        found.append(QStringLiteral("le rôle %1 ne peut pas lire %2")
                         .arg(users, QString::fromUtf8(PQgetvalue(open.get(), row, 0))));
    return found;
}

} // namespace molven::server_setup
