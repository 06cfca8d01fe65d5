#include "shell/startup.h"

#include "data/catalogue.h"
#include "data/compaction.h"
#include "data/database.h"
#include "data/errors.h"
#include "data/journal.h"
#include "data/presence.h"
#include "data/server_address.h"
#include "shell/folder_files.h"
#include "shell/tables.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace molven::startup {

namespace {

Refusal missing(const Session& session, const QString& name) {
    return Refusal(QStringLiteral(" Le fichier > ") + QDir::toNativeSeparators(session.programFile(name)) +
                   QStringLiteral(" n'existe pas "));
}

QString requiredFolder(const Session& session, const QString& name) {
    const auto folder = folderFrom(session.dossier_app, name);
    if (!folder) throw missing(session, name);
    return *folder;
}

void readSecondSite(Session& session) {
    if (session.rules().readsSecondSiteFolder())
        session.chemin_gv = requiredFolder(session, QStringLiteral("CHEMIN_GV.HC"));
}

/// One commit covers the files of both sites.
void requireOneServer(const Session& session) {
    const QString second = session.chemin_gv, base = session.chemin_base;
    if (!server_address::isOne(second) || server_address::connection(second) == server_address::connection(base))
        return;
    throw Refusal(QStringLiteral("Le second site doit être sur le serveur du dossier : %1 (CHEMIN_GV.HC) n'est pas %2.")
                      .arg(server_address::connection(second), server_address::connection(base)));
}

/// A dossier whose files are half of one backup and half of another day must not be worked in.
void requireWhole(const Session& session) {
    if (QFile::exists(session.chemin_base + RestorationMark))
        throw Refusal(QStringLiteral("La reprise d'une sauvegarde n'est pas terminée dans %1 : recommencez « molvenctl "
                                     "restaurer ».")
                          .arg(QDir::toNativeSeparators(session.chemin_base)));
}

/// What a compaction left of a folder: nothing while others work there with all their files.
QString finishIn(const QString& folder, const QStringList& names) {
    Presence({folder}, Presence::Kind::Working); // says so when another workstation is at it
    try {
        const Presence alone({folder}, Presence::Kind::Alone);
        return compaction::isUnfinished(folder) ? compaction::finish(folder, names) : QString();
    } catch (const std::exception&) {
        if (!compaction::missing(folder, names).isEmpty()) throw;
        return {};
    }
}

Record companyRecord(const Session& session) {
    requireWhole(session);
    Workspace workspace;
    const auto record = workspace.open(session.molven()).find(strspecif, {});
    if (!record) throw DataError(DataError::NoCurrentRecord, QStringLiteral("La table strspecif est vide."));
    return *record;
}

} // namespace

QStringList finishCompactions(const Session& session) {
    const QString base = session.chemin_base.isEmpty()
                             ? folderFrom(session.dossier_app, QStringLiteral("CHEMIN.HC")).value_or(QString())
                             : session.chemin_base;
    static const QStringList compacted{catalogueEntry(DataFile::Molven).name, catalogueEntry(DataFile::Historic).name,
                                       catalogueEntry(DataFile::Vente).name, catalogueEntry(DataFile::Tri).name};
    QStringList finished;
    for (const QString& folder : {base, session.chemin_util, session.chemin_gv, session.chemin_tri}) {
        if (folder.isEmpty() || !compaction::isUnfinished(folder)) continue;
        const QString name = finishIn(folder, compacted);
        if (!name.isEmpty()) finished.append(name);
    }
    return finished;
}

void readCompany(Session& session) {
    session.chemin_base = requiredFolder(session, QStringLiteral("CHEMIN.HC"));
    session.code_soc = companyRecord(session)[strspecif.spe_cod];
}

bool readFolders(Session& session) {
    session.chemin_tri = requiredFolder(session, QStringLiteral("TRI.HC"));
    readSecondSite(session);
    if (!QFile::exists(session.path(DataFile::Societe))) {
        session.chemin_base = requiredFolder(session, QStringLiteral("CHEMIN.HC"));
        return true;
    }
    session.chemin_base = session.dossier_app + u'/';
    return false;
}

QList<Record> dossiers(const Session& session) {
    Workspace workspace;
    Database societe = workspace.open(session.path(DataFile::Societe));
    if (!societe.columns(strsociete).contains(strsociete.soc_utilisateur.name, Qt::CaseInsensitive))
        societe.addColumn(strsociete, strsociete.soc_utilisateur, QStringLiteral("**"));
    QList<Record> rows;
    for (const Record& row : societe.select(strsociete)) rows.append(row);
    return rows;
}

QString folderName(const Record& dossier) {
    return QDir(dossier[strsociete.soc_chemin].trimmed().replace(u'\\', u'/')).dirName();
}

Record dossierNamed(const QList<Record>& dossiers, const QString& text) {
    const QString wanted = text.trimmed();
    if (dossiers.size() == 1 && wanted.isEmpty()) return dossiers.first();
    QStringList names;
    for (const Record& dossier : dossiers) {
        for (const QString& name :
             {dossier[strsociete.soc_mot].trimmed(), dossier[strsociete.soc_nom].trimmed(), folderName(dossier)})
            if (!wanted.isEmpty() && name.compare(wanted, Qt::CaseInsensitive) == 0) return dossier;
        names.append(dossier[strsociete.soc_nom].trimmed());
    }
    throw Refusal(QStringLiteral("Indiquez le dossier par --dossier : ") + names.join(QStringLiteral(", ")));
}

QStringList otherFolders(const Session& session) {
    QStringList folders{session.chemin_base, session.chemin_gv}, seen{Database::canonical(session.vente())}, others;
    if (QFileInfo::exists(session.path(DataFile::Societe)))
        for (const Record& dossier : dossiers(session))
            folders.append(session.chemin_base + dossier[strsociete.soc_utilisateur].trimmed() + u'/');
    folders.removeAll(QString());
    for (const QString& folder : folders) {
        const QString file = folder + catalogueEntry(DataFile::Vente).name;
        if (seen.contains(Database::canonical(file)) || !Database::exists(file)) continue;
        seen.append(Database::canonical(file));
        others.append(folder);
    }
    return others;
}

void chooseDossier(Session& session, const Record& dossier, const QString& typedWord) {
    const QString word = dossier[strsociete.soc_mot].trimmed();
    if (word != typedWord.trimmed().toUpper())
        throw Refusal(QStringLiteral(" Mot de Passe Incorrect"), QStringLiteral("txtmot"));
    session.mot_dossier = word;
    session.chemin_base = usableFolder(session.dossier_app, dossier[strsociete.soc_chemin]);
    session.util_dossier.clear();
    session.chemin_util.clear();
    author::setOperatorCode({});
    if (!session.rules().hasUserFolders()) return;
    session.util_dossier = dossier[strsociete.soc_utilisateur].trimmed();
    if (session.util_dossier == u"**") session.util_dossier.clear();
    author::setOperatorCode(session.util_dossier);
    session.chemin_util = session.util_dossier.isEmpty()
                              ? session.chemin_base
                              : usableFolder(session.dossier_app, session.chemin_base + session.util_dossier);
}

void openDossier(Session& session) {
    const Record company = companyRecord(session);
    session.spe_cod = company[strspecif.spe_cod];
    session.spe_nom = company[strspecif.spe_nom];
    session.spe_pied = company[strspecif.spe_pied];
    session.spe_mon = company[strspecif.spe_mon];
    session.spe_btl = company[strspecif.spe_btl];
    session.spe_cdc = company[strspecif.spe_cdc];
    session.spe_csg = company[strspecif.spe_csg];
    session.spe_cns = company[strspecif.spe_cns];
    session.spe_cpt = company[strspecif.spe_cpt];
    session.code_soc = session.spe_cod;
    if (session.rules().worksAsAd()) {
        session.code_soc = QStringLiteral("AD");
        session.mot_dossier = QStringLiteral("EO");
    }
    readSecondSite(session);
    requireOneServer(session);
}

QString mainTitle(const Session& session) {
    const QString title = QStringLiteral("MOLVEN - LOGICIEL DE TRACABILITE : ") + session.spe_nom;
    if (!session.util_dossier.isEmpty() && session.util_dossier != u"**")
        return title + QStringLiteral(" - Dossier : ") + session.util_dossier;
    return session.rules().showsSiteInTitle() ? title + session.mot_dossier : title;
}

QString logoFile(const Session& session, const QString& company) {
    return session.programFile(QStringLiteral("logo_") + company + CompanyRules(company, {}).logoExtension());
}

} // namespace molven::startup
