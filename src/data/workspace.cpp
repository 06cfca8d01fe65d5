#include "data/workspace.h"

#include "data/database.h"
#include "data/layout.h"

#include <algorithm>

namespace molven {

Workspace::~Workspace() = default;

Database Workspace::open(const QString& path) {
    Engine::require(path);
    const QString key = Engine::canonical(path);
    if (!files_.contains(key)) files_.insert(key, openOurs(key));
    const Opened opened = files_.value(key);
    return Database(*this, *opened.engine, opened.schema, path);
}

bool Workspace::has(const QString& path) {
    if (files_.contains(Engine::canonical(path))) return true;
    if (Engine::server(path).isEmpty()) return Engine::exists(path);
    Engine& server = engineFor(path, Engine::Opening::Existing);
    return server.version(server.attach(path)).has_value();
}

Workspace::Opened Workspace::openOurs(const QString& path) {
    Opened opened{&engineFor(path, Engine::Opening::Existing), {}};
    try {
        opened.schema = opened.engine->attach(path);
        requireOurs(opened, path);
    } catch (const DataError&) {
        close(opened);
        throw;
    }
    return opened;
}

void Workspace::close(const Opened& opened) {
    const auto serves = [&](const Opened& other) { return other.engine == opened.engine; };
    if (std::none_of(files_.begin(), files_.end(), serves))
        (opened.engine == server_.get() ? server_ : local_).reset();
    else if (!opened.schema.isEmpty())
        opened.engine->detach(opened.schema);
}

QList<Engine*> Workspace::engines() const {
    QList<Engine*> found;
    for (Engine* engine : {server_.get(), local_.get()})
        if (engine) found.append(engine);
    return found;
}

Engine& Workspace::engineFor(const QString& path, Engine::Opening opening) {
    const QString address = Engine::server(path);
    std::unique_ptr<Engine>& engine = address.isEmpty() ? local_ : server_;
    if (!engine) {
        engine = Engine::at(path, opening);
        for (int i = 0; i < readings_; ++i) engine->beginReading();
        if (!address.isEmpty()) address_ = address;
    } else if (!address.isEmpty() && address != address_) {
        throw DataError(
            DataError::CannotOpen,
            QStringLiteral("Toutes les bases d'un dossier doivent être sur le même serveur : %1 n'est pas %2.")
                .arg(address, address_));
    }
    return *engine;
}

Database Workspace::openAsIs(const QString& path, Engine::Opening opening) {
    Engine& engine = engineFor(path, opening);
    return Database(*this, engine, engine.attach(path), path);
}

void Workspace::requireOurs(const Opened& opened, const QString& path) {
    const std::optional<qint64> version = opened.engine->version(opened.schema);
    if (!version) {
        if (!Engine::server(path).isEmpty())
            throw DataError(DataError::CannotOpen,
                            QStringLiteral("Impossible de trouver la base '%1' sur le serveur.").arg(path));
        throw DataError(DataError::NotADatabase,
                        QStringLiteral("Le fichier '%1' n'est pas une base de données MOLVEN.").arg(path));
    }
    if (*version > Layout::Version)
        throw DataError(DataError::NotADatabase,
                        QStringLiteral("Le fichier '%1' vient d'une version plus récente du programme.").arg(path));
    if (*version < Layout::Version) Layout::upgrade(path);
}

Watch::Watch(Workspace& workspace, std::function<bool()> goesOn) : workspace_(workspace) {
    for (Engine* engine : workspace_.engines()) engine->watch(goesOn);
}

Watch::~Watch() {
    for (Engine* engine : workspace_.engines()) engine->watch(nullptr);
}

Reading::Reading(Workspace& workspace) : workspace_(workspace) {
    ++workspace_.readings_;
    for (Engine* engine : workspace_.engines()) engine->beginReading();
}

Reading::~Reading() {
    --workspace_.readings_;
    for (Engine* engine : workspace_.engines()) engine->endReading();
}

Transaction::Transaction(Workspace& workspace, const QString& deed, const Locks& locks)
    : Transaction(workspace, deed, Engine::Scope::Rule, locks) {}

Transaction::Transaction(Workspace& workspace, Engine::Scope scope) : Transaction(workspace, {}, scope, Locks::all()) {}

Transaction::Transaction(Workspace& workspace, const QString& deed, Engine::Scope scope, const Locks& locks)
    : workspace_(workspace), scope_(scope), depth_(workspace.depth_), outerDeed_(workspace.deed_) {
    for (Engine* engine : workspace_.engines()) begin(*engine, locks);
    ++workspace_.depth_;
    if (outerDeed_.isEmpty()) workspace_.deed_ = deed;
}

void Transaction::begin(Engine& engine, const Locks& locks) {
    if (depth_ > 0) {
        if (scope_ == Engine::Scope::Rule) engine.lockBesides(locks);
        engine.savepoint(savepoint(), scope_);
        return;
    }
    try {
        engine.begin(locks);
    } catch (const DataError&) {
        for (Engine* begun : workspace_.engines()) {
            if (begun == &engine) break;
            begun->rollback();
        }
        throw;
    }
}

Transaction::~Transaction() {
    if (!open_) return;
    close();
    for (Engine* engine : workspace_.engines()) giveUp(*engine);
}

void Transaction::giveUp(Engine& engine) {
    try {
        depth_ == 0 ? engine.rollback() : engine.rollbackTo(savepoint(), scope_);
    } catch (const DataError&) {
        // The engine has already rolled back by itself, as it does on a full disk.
    }
}

void Transaction::commit() {
    for (Engine* engine : workspace_.engines()) {
        if (depth_ == 0)
            engine->commit();
        else
            engine->release(savepoint(), scope_);
    }
    open_ = false;
    close();
}

void Transaction::close() {
    workspace_.depth_ = depth_;
    workspace_.deed_ = outerDeed_;
    if (depth_ > 0) return;
    workspace_.moment_.clear();
    workspace_.journals_.clear();
}

} // namespace molven
