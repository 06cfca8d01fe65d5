#include "data/sqlite/connection.h"

#include "data/collation.h"
#include "data/format.h"
#include "data/sqlite/disk.h"
#include "data/sqlite/exact_functions.h"

#include <QFileInfo>

#include <sqlite3.h>

namespace molven::sqlite {

namespace {

int compareFrench(void*, int lengthA, const void* a, int lengthB, const void* b) {
    return collation::french(QStringView(static_cast<const char16_t*>(a), lengthA / 2),
                             QStringView(static_cast<const char16_t*>(b), lengthB / 2));
}

QString textOf(sqlite3_value* value) {
    const auto* text = static_cast<const char16_t*>(sqlite3_value_text16(value));
    return QString(reinterpret_cast<const QChar*>(text), sqlite3_value_bytes16(value) / 2);
}

void foldText(sqlite3_context* context, int, sqlite3_value** arguments) {
    const QString plain = folded(textOf(arguments[0]));
    sqlite3_result_text16(context, plain.utf16(), static_cast<int>(plain.size() * 2), SQLITE_TRANSIENT);
}

QString described(int code) {
    switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return QStringLiteral("La base de données est occupée par un autre poste, veuillez recommencer.");
    case SQLITE_FULL:
        return QStringLiteral("Le disque est plein, rien n'a été enregistré.");
    case SQLITE_CORRUPT:
        return QStringLiteral("Le fichier de données est endommagé.");
    case SQLITE_NOTADB:
        return QStringLiteral("Le fichier n'est pas une base de données MOLVEN.");
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return QStringLiteral("Le fichier de données est protégé en écriture.");
    case SQLITE_CANTOPEN:
        return QStringLiteral("Impossible d'ouvrir le fichier de données.");
    case SQLITE_IOERR:
        return QStringLiteral("Erreur de lecture ou d'écriture sur le disque.");
    case SQLITE_CONSTRAINT:
        return QStringLiteral("Cet enregistrement existe déjà.");
    default:
        return QStringLiteral("Erreur du moteur de données.");
    }
}

} // namespace

sqlite3* connect(const QString& path, Opening opening) {
    sqlite3* connection = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (opening == Opening::New ? SQLITE_OPEN_CREATE : 0);
    if (sqlite3_open_v2(path.toUtf8().constData(), &connection, flags, disk()) != SQLITE_OK) {
        const DataError error = fault(connection);
        sqlite3_close(connection);
        throw error;
    }
    sqlite3_busy_timeout(connection, BusyTimeoutMs);
    sqlite3_create_collation(connection, "french", SQLITE_UTF16_ALIGNED, nullptr, compareFrench);
    sqlite3_create_function(connection, "folded", 1, SQLITE_UTF16 | SQLITE_DETERMINISTIC, nullptr, foldText, nullptr,
                            nullptr);
    addExactFunctions(connection);
    return connection;
}

DataError fault(sqlite3* connection) {
    const int number = sqlite3_errcode(connection);
    const QString objection = takeObjection();
    return DataError(number, objection.isEmpty() ? described(number) : objection,
                     {{number, QString::fromUtf8(sqlite3_errmsg(connection))}});
}

void requireFile(const QString& path) {
    const QFileInfo file(path);
    if (!file.isFile()) {
        throw DataError(DataError::CannotOpen, QStringLiteral("Impossible de trouver le fichier '%1'.").arg(path));
    }
}

} // namespace molven::sqlite
