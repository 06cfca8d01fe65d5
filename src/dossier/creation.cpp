#include "dossier/creation.h"

#include "data/database.h"
#include "data/errors.h"
#include "data/file_rights.h"
#include "data/server_address.h"
#include "dossier/made_files.h"
#include "dossier/passing_folder.h"
#include "dossier/staging.h"
#include "reference/parameters.h"
#include "shell/folder_files.h"
#include "shell/startup.h"
#include "shell/tables.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace molven::creation {

namespace {

const QString Aside = QStringLiteral(".creation");

template <class T>
void insertRows(Database file, const T& table, const QList<QStringList>& rows) {
    for (const QStringList& row : rows) {
        Record record(table);
        for (int i = 0; i < row.size(); ++i) record.set(*table.fields()[i], row[i]);
        file.insert(record);
    }
}

void fillMolven(Database molven, const Options& options) {
    insertRows(molven, strspecif, {{options.code, options.name, {}, QStringLiteral("EUR"), QStringLiteral("N")}});
    insertRows(molven, strparam,
               {{list::Depot, MainDepot, QStringLiteral("DEPOT PRINCIPAL")},
                {list::Depot, SetDepot, QStringLiteral("ANCILLAIRES AU DEPOT PRINCIPAL")},
                {list::ClientFamily, QStringLiteral("000"), QStringLiteral("DIVERS")},
                {list::ArticleFamily, QStringLiteral("000"), QStringLiteral("DIVERS")},
                {list::SupplierFamily, QStringLiteral("000"), QStringLiteral("DIVERS")}});
    insertRows(
        molven, strparfac,
        {{QStringLiteral("1"), QStringLiteral("TVA 5,5 %"), QStringLiteral("5.5"), QStringLiteral("445710000")},
         {QStringLiteral("2"), QStringLiteral("TVA 20 %"), QStringLiteral("20"), QStringLiteral("445711000")},
         {QStringLiteral("3"), QStringLiteral("TVA 10 %"), QStringLiteral("10"), QStringLiteral("445712000")},
         {QStringLiteral("4"), QStringLiteral("TVA 2,1 %"), QStringLiteral("2.1"), QStringLiteral("445713000")}});
    insertRows(molven, strmonnaie, {{QStringLiteral("EUR"), QStringLiteral("EURO"), QStringLiteral("1")}});
    insertRows(molven, strparrgt,
               {{QStringLiteral("01"), QStringLiteral("VIREMENT 30 JOURS"), QStringLiteral("30"), QStringLiteral("N"),
                 QStringLiteral("0")},
                {QStringLiteral("02"), QStringLiteral("VIREMENT 30 JOURS FIN DE MOIS"), QStringLiteral("30"),
                 QStringLiteral("O"), QStringLiteral("0")},
                {QStringLiteral("03"), QStringLiteral("CHEQUE A RECEPTION"), QStringLiteral("0"), QStringLiteral("N"),
                 QStringLiteral("0")},
                {QStringLiteral("04"), QStringLiteral("MANDAT ADMINISTRATIF 50 JOURS"), QStringLiteral("50"),
                 QStringLiteral("N"), QStringLiteral("0")},
                {QStringLiteral("05"), QStringLiteral("TRAITE 60 JOURS LE 10"), QStringLiteral("60"),
                 QStringLiteral("N"), QStringLiteral("10")}});
}

void fillCompta(Database compta) {
    insertRows(compta, strplan,
               {{QStringLiteral("300000000"), QStringLiteral("STOCKS")},
                {QStringLiteral("370000000"), QStringLiteral("STOCKS DE MARCHANDISES")},
                {QStringLiteral("401000000"), QStringLiteral("FOURNISSEURS")},
                {QStringLiteral("411000000"), QStringLiteral("CLIENTS")},
                {QStringLiteral("445660000"), QStringLiteral("TVA DEDUCTIBLE")},
                {QStringLiteral("445710000"), QStringLiteral("TVA COLLECTEE 5,5 %")},
                {QStringLiteral("445711000"), QStringLiteral("TVA COLLECTEE 20 %")},
                {QStringLiteral("445712000"), QStringLiteral("TVA COLLECTEE 10 %")},
                {QStringLiteral("445713000"), QStringLiteral("TVA COLLECTEE 2,1 %")},
                {QStringLiteral("600000000"), QStringLiteral("ACHATS")},
                {QStringLiteral("607000000"), QStringLiteral("ACHATS DE MARCHANDISES")},
                {QStringLiteral("700000000"), QStringLiteral("VENTES")},
                {QStringLiteral("700100000"), QStringLiteral("VENTES EXPORT")},
                {QStringLiteral("707000000"), QStringLiteral("VENTES DE MARCHANDISES")},
                {QStringLiteral("708500000"), QStringLiteral("PORTS FACTURES")}});
}

/// Every file that lies in these folders, with the entries a dossier cannot do without.
void createFiles(const Session& session, const QList<Folder>& folders, const Options& options, MadeFiles& made) {
    for (const CatalogueEntry& entry : catalogue())
        if (folders.contains(entry.folder)) made.create(session.path(entry.file), entry.file);
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Database compta = workspace.open(session.path(DataFile::Compta));
    Transaction transaction(workspace, QStringLiteral("Création du dossier"));
    fillMolven(molven, options);
    fillCompta(compta);
    transaction.commit();
}

bool holdsInstallation(const QString& folder) {
    for (const char* mark : {"CHEMIN.HC", "TRI.HC", "societe.mdb", "data/molven.mdb"})
        if (QFile::exists(folder + u'/' + QString::fromLatin1(mark))) return true;
    return false;
}

void makeFolder(const QString& folder) {
    if (QDir(folder).exists()) return;
    if (!QDir().mkpath(folder)) throw Refusal(QStringLiteral("Impossible de créer le dossier %1").arg(folder));
    keepFromOthers(folder);
}

/// Fills the folder of a new installation.
void build(const QString& folder, const Options& options, MadeFiles& made) {
    const bool isOnServer = !options.server.isEmpty();
    const QString base = isOnServer ? server_address::folder(options.server) : QStringLiteral("data/");
    const QString second = isOnServer ? base + QStringLiteral("gv/") : QStringLiteral("gv/");
    Session session;
    session.dossier_app = folder;
    session.chemin_base = usableFolder(folder, base);
    session.chemin_tri = usableFolder(folder, QStringLiteral("tri/"));
    session.chemin_gv = usableFolder(folder, second);
    if (!isOnServer) makeFolder(session.chemin_base);
    makeFolder(session.chemin_tri);
    createFiles(session, {Folder::Base, Folder::User, Folder::Sales, Folder::Work}, options, made);
    const auto write = [&](const char* name, QString place) {
        if (!isOnServer) place.replace(u'/', u'\\');
        writeLine(session.programFile(QString::fromLatin1(name)), place);
    };
    write("CHEMIN.HC", isOnServer ? options.server : base);
    writeLine(session.programFile(QStringLiteral("TRI.HC")), QStringLiteral("tri\\"));
    if (!CompanyRules(options.code, {}).readsSecondSiteFolder()) return;
    if (!isOnServer) makeFolder(session.chemin_gv);
    for (const DataFile file : {DataFile::Vente, DataFile::Historic})
        made.create(session.chemin_gv + catalogueEntry(file).name, file);
    write("CHEMIN_GV.HC", second);
}

/// Builds aside and takes its place at the end, so that a fault leaves nothing behind: a new folder at once, into one
/// that is there the parts go one by one.
template <class Build>
void buildWhole(const QString& folder, const Build& builder) {
    if (const QFileInfo place(QDir(folder).absolutePath()); !place.exists()) {
        makeFolder(place.path());
        Staging built(place.path(), Aside);
        builder(built.path());
        return built.moveTo(place.filePath());
    }
    Staging built(folder, Aside);
    builder(built.path());
    built.pourOut();
}

/// A dossier of an installation: the name of its company, the folder of its data, its word.
QStringList listed(const QString& name, const QString& dataFolder, const QString& code) {
    return {name, dataFolder, code.toUpper(), QStringLiteral("**")};
}

void list(const QString& societe, const QList<QStringList>& dossiers) {
    if (!QFile::exists(societe)) Database::create(societe, tablesOf(DataFile::Societe));
    Workspace workspace;
    insertRows(workspace.open(societe), strsociete, dossiers);
}

/// A name for the data folder of one more dossier that none has; one which is not listed, as a program that was killed
/// leaves it, stands in nobody's way. Throws Refusal for a dossier that is listed.
QString freeFolder(const Session& session, const QString& installation, const QString& name) {
    const bool isListed = QFile::exists(session.path(DataFile::Societe));
    const QList<Record> dossiers = isListed ? startup::dossiers(session) : QList<Record>();
    QString free = name;
    for (int i = 2; QDir(installation + u'/' + free).exists(); ++i) {
        for (const Record& dossier : dossiers)
            if (startup::folderName(dossier) == free)
                throw Refusal(
                    QStringLiteral("Le dossier %1 contient déjà une installation").arg(installation + u'/' + free));
        free = QStringLiteral("%1-%2").arg(name).arg(i);
    }
    return free;
}

/// One more dossier: its own data folder, listed with the others.
Session addDossier(const Options& options, const std::function<void(const Session&)>& fill) {
    Session first = open(options.folder);
    const bool isOnServer = !options.server.isEmpty();
    const QString name = QStringLiteral("data_") + options.code.toLower();
    const QString folder = isOnServer ? options.server : freeFolder(first, options.folder, name) + u'\\';
    const QStringList added = listed(options.name, folder, options.code);
    const bool isFirstList = !QFile::exists(first.path(DataFile::Societe));
    MadeFiles made;
    buildWhole(options.folder, [&](const QString& aside) {
        Session session = first;
        session.chemin_util.clear();
        session.chemin_base = isOnServer ? server_address::folder(options.server) : usableFolder(aside, folder);
        if (!isOnServer) makeFolder(session.chemin_base);
        createFiles(session, {Folder::Base, Folder::User, Folder::Sales}, options, made);
        if (fill) fill(session);
        if (!isFirstList) return;
        const QString own = firstLine(first.programFile(QStringLiteral("CHEMIN.HC"))).value_or(QString());
        list(aside + u'/' + catalogueEntry(DataFile::Societe).name, {listed(first.spe_nom, own, first.spe_cod), added});
    });
    if (!isFirstList) list(first.path(DataFile::Societe), {added});
    made.keep();
    first.chemin_base = usableFolder(options.folder, folder);
    first.mot_dossier = options.code.toUpper();
    startup::openDossier(first);
    return first;
}

/// A dossier without a program folder: workstations come to it by its address.
Session createOnServer(const Options& options, const std::function<void(const Session&)>& fill) {
    if (options.addToSocieties)
        throw Refusal(QStringLiteral("--societe demande un dossier d'installation, non une adresse"));
    QTemporaryDir built;
    Options there = options;
    there.folder = built.filePath(QStringLiteral("poste"));
    there.server = options.folder;
    create(there, fill);
    return open(options.folder);
}

} // namespace

QString placeOf(const QString& typed) { return server_address::isOne(typed) ? typed : QDir(typed).absolutePath(); }

Session create(const Options& options, const std::function<void(const Session&)>& fill) {
    static const QRegularExpression twoLetters(QStringLiteral("^[A-Za-z]{2}$"));
    if (!twoLetters.match(options.code).hasMatch())
        throw Refusal(QStringLiteral("Le code société comporte deux lettres : %1").arg(options.code));
    if (options.name.trimmed().isEmpty()) throw Refusal(QStringLiteral("Le nom de la société est obligatoire"));
    if (server_address::isOne(options.folder)) return createOnServer(options, fill);
    finish(options.folder);
    if (holdsInstallation(options.folder)) {
        if (options.addToSocieties) return addDossier(options, fill);
        throw Refusal(QStringLiteral("Le dossier %1 contient déjà une installation").arg(options.folder));
    }
    MadeFiles made;
    buildWhole(options.folder, [&](const QString& folder) {
        build(folder, options, made);
        if (fill) fill(open(folder));
        if (options.addToSocieties)
            list(folder + u'/' + catalogueEntry(DataFile::Societe).name,
                 {listed(options.name, options.server.isEmpty() ? QStringLiteral("data\\") : options.server,
                         options.code)});
    });
    made.keep();
    return open(options.folder);
}

void finish(const QString& folder) { Staging::settle(folder, Aside); }

Session open(const QString& folder, const QString& name) {
    Session session;
    session.dossier_app = server_address::isOne(folder) ? passing_folder::at(folder) : QDir(folder).absolutePath();
    finish(session.dossier_app);
    startup::finishCompactions(session);
    startup::readCompany(session);
    startup::readFolders(session);
    const QList<Record> dossiers =
        QFile::exists(session.path(DataFile::Societe)) ? startup::dossiers(session) : QList<Record>();
    if (!dossiers.isEmpty()) {
        const Record chosen = name.isEmpty() ? dossiers.first() : startup::dossierNamed(dossiers, name);
        startup::chooseDossier(session, chosen, chosen[strsociete.soc_mot]);
    }
    startup::finishCompactions(session);
    startup::openDossier(session);
    return session;
}

} // namespace molven::creation
