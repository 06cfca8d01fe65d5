#include "bare_server.h"

#include <libpq-fe.h>

#include <stdexcept>

namespace molven::bench {

BareServer::BareServer(const QString& address) : connection_(PQconnectdb(address.toUtf8().constData())) {
    if (PQstatus(connection_) != CONNECTION_OK) throw std::runtime_error(PQerrorMessage(connection_));
    PQenterPipelineMode(connection_);
}

BareServer::~BareServer() { PQfinish(connection_); }

void BareServer::send(const QByteArray& sql, const std::vector<QByteArray>& values) {
    QByteArray& name = names_[sql];
    if (name.isEmpty()) {
        name = "b" + QByteArray::number(names_.size());
        PQsendPrepare(connection_, name.constData(), sql.constData(), 0, nullptr);
    }
    std::vector<const char*> given;
    for (const QByteArray& value : values) given.push_back(value.constData());
    PQsendQueryPrepared(connection_, name.constData(), static_cast<int>(given.size()), given.data(), nullptr, nullptr,
                        0);
}

int BareServer::wait() {
    PQpipelineSync(connection_);
    int rows = 0;
    for (bool isOver = false; !isOver;) {
        PGresult* result = PQgetResult(connection_);
        if (!result) continue;
        const ExecStatusType status = PQresultStatus(result);
        isOver = status == PGRES_PIPELINE_SYNC;
        rows += PQntuples(result);
        PQclear(result);
        if (status == PGRES_FATAL_ERROR) throw std::runtime_error(PQerrorMessage(connection_));
    }
    return rows;
}

} // namespace molven::bench
