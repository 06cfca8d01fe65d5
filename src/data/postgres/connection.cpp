#include "data/postgres/connection.h"

#include "data/server_login.h"

#include <libpq-fe.h>
#include <poll.h>

#include <atomic>

namespace molven::postgres {

namespace {

constexpr int AskEveryMs = 50;
/// What every connection works by; a server's own settings must not change what records are found.
const char* const Settings = "set client_encoding='UTF8'; set standard_conforming_strings=on; set lock_timeout='10s';"
                             "set search_path=public; set default_transaction_isolation='read committed';"
                             "set client_min_messages=error";

struct Known {
    const char* state;
    int number;
    const char* description;
};

/// States of the server with a number and words of the program.
constexpr Known States[] = {
    {"23505", DataError::Double, "Cet enregistrement existe déjà."},
    {"55P03", DataError::Busy, "La base de données est occupée par un autre poste, veuillez recommencer."},
    {"40001", DataError::Disturbed, "La base de données est occupée par un autre poste, veuillez recommencer."},
    {"40P01", DataError::Disturbed, "La base de données est occupée par un autre poste, veuillez recommencer."},
    {"53100", DataError::Full, "Le disque du serveur est plein, rien n'a été enregistré."},
    {"53300", DataError::Busy, "Le serveur n'accepte plus de connexions, veuillez recommencer."},
    {"42501", 8, "Votre compte n'a pas le droit d'écrire sur le serveur."},
    {"25006", 8, "La base de données du serveur est protégée en écriture."},
};

const Known* known(const char* state) {
    for (const Known& one : States)
        if (qstrcmp(one.state, state) == 0) return &one;
    return nullptr;
}

std::atomic<qint64> trips = 0;

/// "la base molven sur srv1, compte durand".
QString placeOf(pg_conn* connection) {
    return QStringLiteral("la base %1 sur %2, compte %3")
        .arg(QString::fromUtf8(PQdb(connection)), QString::fromUtf8(PQhost(connection)),
             QString::fromUtf8(PQuser(connection)));
}

QString wordsOf(pg_conn* connection) { return QString::fromUtf8(PQerrorMessage(connection)).trimmed(); }

} // namespace

void ClearResult::operator()(pg_result* result) const { PQclear(result); }

/// An address may hold further options; what comes later in the list wins.
Connection::Connection(const QString& address, const QString& database) : address_(address) {
    if (!option(address, "password").isEmpty())
        throw Refusal(QStringLiteral("Une adresse ne porte pas de mot de passe : il se met dans le fichier .pgpass du "
                                     "compte, ou dans son fichier de services"));
    connect(database);
    bool wasWrong = false;
    while (isLost() && (PQconnectionNeedsPassword(connection_) || PQconnectionUsedPassword(connection_))) {
        if (!server_login::ask(address, placeOf(connection_), wasWrong)) break;
        PQfinish(connection_);
        connect(database);
        wasWrong = true;
    }
    if (!isLost()) {
        PQsetNoticeProcessor(
            connection_, [](void*, const char*) {}, nullptr);
        run(QString::fromLatin1(Settings));
        return;
    }
    server_login::forget(address);
    const QString words = wordsOf(connection_);
    PQfinish(connection_);
    throw DataError(DataError::CannotOpen,
                    QStringLiteral("Le serveur de la base de données ne répond pas ou refuse la connexion."),
                    {{DataError::CannotOpen, words}});
}

void Connection::connect(const QString& database) {
    const QByteArray place = address_.toUtf8(), other = database.toUtf8(),
                     password = server_login::known(address_).toUtf8();
    const char* const names[] = {
        "connect_timeout", "application_name", "dbname", "password", database.isEmpty() ? nullptr : "dbname", nullptr};
    const char* const values[] = {
        "10",   "molven", place.constData(), password.isEmpty() ? nullptr : password.constData(), other.constData(),
        nullptr};
    connection_ = PQconnectdbParams(names, values, 1);
}

QString Connection::option(const QString& address, const char* name) {
    char* words = nullptr;
    const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> options(
        PQconninfoParse(address.toUtf8().constData(), &words), PQconninfoFree);
    if (!options) {
        PQfreemem(words);
        throw Refusal(QStringLiteral("Adresse de serveur incorrecte : %1").arg(address));
    }
    for (const PQconninfoOption* one = options.get(); one->keyword; ++one)
        if (qstrcmp(one->keyword, name) == 0) return QString::fromUtf8(one->val);
    return {};
}

Connection::~Connection() { PQfinish(connection_); }

bool Connection::isLost() const { return PQstatus(connection_) != CONNECTION_OK; }

bool Connection::isBroken() const { return PQtransactionStatus(connection_) == PQTRANS_INERROR; }

bool Connection::isAlive() {
    pollfd socket{PQsocket(connection_), POLLIN, 0};
    // Behind a last word of the server stands the end of the connection.
    while (!isLost() && poll(&socket, 1, 0) > 0) PQconsumeInput(connection_);
    return !isLost();
}

bool Connection::isInTransaction() const { return PQtransactionStatus(connection_) != PQTRANS_IDLE; }

Result Connection::run(const QString& sql) {
    ++trips;
    return checked(PQexec(connection_, sql.toUtf8().constData()));
}

bool Connection::send(const Command& command) {
    std::vector<QByteArray> texts;
    std::vector<const char*> given;
    texts.reserve(static_cast<std::size_t>(command.values.size()));
    for (const QString& value : command.values) {
        texts.push_back(value.toUtf8());
        given.push_back(value.isNull() ? nullptr : texts.back().constData());
    }
    const int count = static_cast<int>(given.size());
    const QByteArray text = command.sql.toUtf8();
    if (!command.isOften)
        return PQsendQueryParams(connection_, text.constData(), count, nullptr, given.data(), nullptr, nullptr, 0);
    QByteArray& name = prepared_[command.sql];
    if (name.isEmpty()) {
        name = "s" + QByteArray::number(++names_);
        if (!PQsendPrepare(connection_, name.constData(), text.constData(), 0, nullptr)) return false;
    }
    return PQsendQueryPrepared(connection_, name.constData(), count, given.data(), nullptr, nullptr, 0);
}

std::vector<Result> Connection::run(const std::vector<Command>& commands) {
    PQenterPipelineMode(connection_);
    bool isSent = true;
    std::vector<bool> isPreparation;
    QStringList made;
    for (const Command& command : commands) {
        const int names = names_;
        isSent = isSent && send(command);
        if (names_ != names) {
            isPreparation.push_back(true);
            made.append(command.sql);
        }
        isPreparation.push_back(false);
    }
    try {
        if (!isSent || !PQpipelineSync(connection_)) fail(nullptr);
        std::vector<Result> all = received(), answers;
        PQexitPipelineMode(connection_);
        for (std::size_t i = 0; i < all.size(); ++i)
            if (!isPreparation[i]) answers.push_back(std::move(all[i]));
        return answers;
    } catch (...) {
        PQexitPipelineMode(connection_);
        for (const QString& sql : made) prepared_.remove(sql); // what was sent behind a fault was not prepared
        throw;
    }
}

void Connection::copyIn(const QString& sql, const QByteArray& lines) {
    const Result begun(PQexec(connection_, sql.toUtf8().constData()));
    if (PQresultStatus(begun.get()) != PGRES_COPY_IN) fail(begun.get());
    if (PQputCopyData(connection_, lines.constData(), static_cast<int>(lines.size())) != 1 ||
        PQputCopyEnd(connection_, nullptr) != 1)
        fail(nullptr);
    ++trips;
    pg_result* end = nullptr;
    while (pg_result* next = PQgetResult(connection_)) {
        PQclear(end);
        end = next;
    }
    checked(end);
}

void Connection::await() {
    while (goesOn_ && !isStopped_ && PQisBusy(connection_)) {
        pollfd socket{PQsocket(connection_), POLLIN, 0};
        poll(&socket, 1, AskEveryMs);
        if (!PQconsumeInput(connection_)) break;
        if (goesOn_()) continue;
        isStopped_ = true;
        char reason[256];
        PGcancel* cancel = PQgetCancel(connection_);
        PQcancel(cancel, reason, sizeof reason);
        PQfreeCancel(cancel);
    }
}

std::vector<Result> Connection::received() {
    ++trips;
    isStopped_ = false;
    std::vector<Result> answers;
    Result faulty;
    for (bool isOver = false; !isOver && !isLost();) {
        await();
        Result result(PQgetResult(connection_));
        if (!result) continue; // the answers to one statement are over
        switch (PQresultStatus(result.get())) {
        case PGRES_PIPELINE_SYNC:
            isOver = true;
            break;
        case PGRES_COMMAND_OK:
        case PGRES_TUPLES_OK:
            answers.push_back(std::move(result));
            break;
        default:
            if (!faulty) faulty = std::move(result);
        }
    }
    if (faulty || isLost()) fail(faulty.get());
    return answers;
}

qint64 Connection::roundTrips() { return trips; }

Result Connection::checked(pg_result* raw) {
    Result result(raw);
    const ExecStatusType status = PQresultStatus(raw);
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) fail(raw);
    return result;
}

void Connection::fail(const pg_result* result) {
    const char* found = result ? PQresultErrorField(result, PG_DIAG_SQLSTATE) : nullptr;
    const char* told = result ? PQresultErrorMessage(result) : nullptr;
    const QString words = told && *told ? QString::fromUtf8(told).trimmed() : wordsOf(connection_);
    if (isLost())
        throw DataError(DataError::CannotOpen,
                        QStringLiteral("La connexion au serveur de la base de données est perdue : ce qui n'était pas "
                                       "validé n'est pas enregistré, veuillez recommencer."),
                        {{DataError::CannotOpen, words}});
    if (found && qstrcmp(found, "57014") == 0) throw Refusal(QStringLiteral("Opération abandonnée"));
    const Known* one = found ? known(found) : nullptr;
    const int number = one ? one->number : 1;
    throw DataError(number, one ? QString::fromUtf8(one->description) : QStringLiteral("Erreur du moteur de données."),
                    {{number, words}});
}

} // namespace molven::postgres
