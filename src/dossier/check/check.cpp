#include "dossier/check.h"

#include "data/errors.h"
#include "data/layout.h"
#include "data/server_address.h"
#include "data/snapshot.h"
#include "dossier/check/checks.h"
#include "dossier/migration.h"
#include "reference/seller_tables.h"
#include "shell/startup.h"
#include "shell/tables.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <algorithm>

namespace molven::check {

namespace kind {

const Kind File{QStringLiteral("fichiers"),
                QStringLiteral("restaurer ce fichier d'une sauvegarde (molvenctl restaurer)")};
const Kind Indexes{QStringLiteral("index"),
                   QStringLiteral("molvenctl check --reparer ; un index resté simple cache des doublons"), true};
const Kind Journal{
    QStringLiteral("journal"),
    QStringLiteral("comparer avec une sauvegarde d'avant ce jour et demander qui a accédé aux fichiers")};
const Kind Codes{QStringLiteral("codes"), QStringLiteral("recréer la fiche du code, ou changer de code là où il sert")};
const Kind Papers{
    QStringLiteral("documents"),
    QStringLiteral("ouvrir le document ; ses lignes manquantes se retrouvent par l'historique ou une sauvegarde")};
const Kind Notes{QStringLiteral("bons facturés"),
                 QStringLiteral("supprimer de la facture les lignes de ce bon, puis l'intégrer de nouveau")};
const Kind Totals{QStringLiteral("totaux"),
                  QStringLiteral("molvenctl check --reparer recalcule les totaux d'après les lignes"), true};
const Kind WaitingTotals{
    QStringLiteral("totaux en attente"),
    QStringLiteral("rétablir d'abord ce qui est signalé de ces documents, d'après l'imprimé ou une sauvegarde ; les "
                   "totaux ne sont recalculés qu'ensuite")};
const Kind Amounts{QStringLiteral("montants"), QStringLiteral("ouvrir le document et valider de nouveau la ligne")};
const Kind Units{QStringLiteral("produits"),
                 QStringLiteral("lire l'historique du produit ; supprimer la ligne en trop, ou la saisir de nouveau")};
const Kind Quantities{QStringLiteral("stocks"),
                      QStringLiteral("molvenctl check --reparer recompte le stock d'après les produits"), true};
const Kind WaitingQuantities{
    QStringLiteral("stocks en attente"),
    QStringLiteral("rétablir d'abord les produits signalés ; le stock n'est recompté qu'ensuite")};
const Kind Movements{
    QStringLiteral("mouvements"),
    QStringLiteral("lire l'historique de l'article, corriger ses mouvements, puis recalculer le stock des produits non "
                   "suivis")};
const Kind Patients{QStringLiteral("patients et lots"),
                    QStringLiteral("vérifier sur le document papier, puis corriger le produit ou le document")};
const Kind Sets{QStringLiteral("ancillaires"),
                QStringLiteral("vérifier où est le produit, puis le retirer de l'ancillaire ou l'y remettre")};
const Kind Counts{QStringLiteral("inventaires de dépôt"),
                  QStringLiteral("comparer avec l'état signé, et compter le dépôt de nouveau")};
const Kind Entries{
    QStringLiteral("écritures"),
    QStringLiteral("comparer le journal imprimé du transfert, le document et le programme de comptabilité, "
                   "puis passer la différence en comptabilité")};
const Kind Conformity{QStringLiteral("conformité"),
                      QStringLiteral("vérifier l'historique du produit, puis changer sa conformité de nouveau")};
const Kind Foreign{QStringLiteral("objets étrangers"),
                   QStringLiteral("demander qui les a mis et les retirer avec l'outil qui les a faits ; comparer avec "
                                  "une sauvegarde d'avant")};
const Kind Values{QStringLiteral("valeurs"), QStringLiteral("ressaisir la valeur dans la fiche ou le document")};
const Kind Altered{QStringLiteral("changements sans auteur"),
                   QStringLiteral("lire l'historique de la fiche et y remettre la valeur juste")};
const Kind Added{
    QStringLiteral("ajouts sans auteur"),
    QStringLiteral("demander d'où vient la fiche ; la supprimer dans le programme, et la ressaisir si elle est juste")};
const Kind Removed{QStringLiteral("suppressions sans auteur"),
                   QStringLiteral("ressaisir la fiche d'après son historique et le document imprimé, ou restaurer une "
                                  "sauvegarde (molvenctl restaurer)")};
const Kind AlteredSums{QStringLiteral("totaux et stocks sans auteur"),
                       QStringLiteral("molvenctl check --reparer, quand rien d'autre n'est en doute"), true};

} // namespace kind

namespace {

/// Indexes that lack records or hold others, by what the engine says of a file.
QStringList damagedIndexes(const QStringList& engineFaults) {
    static const QRegularExpression damage(QStringLiteral("(?:missing from|differ from|entries in|entry in|of) index "
                                                          "(\\S+)$"));
    QStringList names;
    for (const QString& fault : engineFaults)
        if (const auto match = damage.match(fault); match.hasMatch()) names.append(match.captured(1));
    names.removeDuplicates();
    return names;
}

/// What the engine finds in a copy, but for its indexes: they are made anew, since what is read by them must not miss
/// a record.
QStringList engineFaults(const DossierFile& copy, Faults& faults) {
    const auto read = [&copy] {
        Workspace workspace;
        return workspace.open(copy.path).integrityFaults();
    };
    const QStringList found = read();
    const QStringList indexes = damagedIndexes(found);
    if (indexes.isEmpty()) return found;
    for (const QString& index : indexes)
        faults.append({copy.entry->name,
                       index.section(u'_', 0, 0),
                       QStringLiteral("index %1 incomplet").arg(index),
                       &kind::Indexes,
                       {copy.path, nullptr, {}}});
    Layout::repairIndexes(copy.path, tablesOf(copy.entry->file));
    return read();
}

} // namespace

void checkFile(const DossierFile& file, Faults& faults) {
    const auto fault = [&](const QString& subject, const QString& text) {
        faults.append({file.entry->name, subject, text, &kind::File});
    };
    try {
        for (const QString& engineFault : engineFaults(file, faults))
            fault(file.entry->name, QStringLiteral("contrôle du moteur : ") + engineFault);
        Workspace workspace;
        Database database = workspace.open(file.path);
        for (const Table* table : tablesOf(file.entry->file)) {
            const QStringList columns = database.columns(*table);
            if (columns.isEmpty()) {
                fault(table->name, QStringLiteral("table absente"));
                continue;
            }
            for (const Field* field : table->fields())
                if (!columns.contains(field->name, Qt::CaseInsensitive))
                    fault(table->name, QStringLiteral("champ %1 absent").arg(field->name));
        }
    } catch (const DataError& error) {
        fault(file.entry->name, error.description);
    }
}

namespace {

/// The folders of a dossier and where each lies in its copy; a folder that serves twice is copied once.
class Copies {
public:
    explicit Copies(const Session& session) : original_(session) {
        place(session.dossier_app, QStringLiteral("programme"));
        place(session.chemin_base, QStringLiteral("donnees"));
        if (QFile::exists(session.path(DataFile::Societe)))
            for (const Record& dossier : startup::dossiers(session))
                if (const QString name = dossier[strsociete.soc_utilisateur].trimmed(); !name.isEmpty())
                    place(session.chemin_base + name, QStringLiteral("donnees/") + name);
        place(session.chemin_util, QStringLiteral("utilisateur"));
        place(session.chemin_gv, QStringLiteral("site"));
        place(session.chemin_tri, QStringLiteral("travail"));
    }

    const QHash<QString, QString>& folders() const { return folders_; }

    /// Where a file's copy lies, below the folder of the copies.
    QString copy(const QString& path) const {
        const QFileInfo file(path);
        return folders_.value(cleaned(file.path())) + u'/' + file.fileName();
    }

    /// The file that a copy was made of.
    QString original(const QString& path, const QString& copy) const {
        const QFileInfo file(QDir(copy).relativeFilePath(path));
        return QDir(folders_.key(file.path())).filePath(file.fileName());
    }

    /// The session of the copied dossier.
    Session session(const QString& copy) const {
        const auto copied = [&](const QString& folder) {
            return folder.isEmpty() ? QString() : copy + u'/' + folders_.value(cleaned(folder)) + u'/';
        };
        Session session = original_;
        session.dossier_app = copied(original_.dossier_app).chopped(1);
        session.chemin_base = copied(original_.chemin_base);
        session.chemin_util = copied(original_.chemin_util);
        session.chemin_gv = copied(original_.chemin_gv);
        session.chemin_tri = copied(original_.chemin_tri);
        return session;
    }

private:
    static QString cleaned(const QString& folder) { return QDir::cleanPath(folder); }
    void place(const QString& folder, const QString& copy) {
        if (!folder.isEmpty() && !folders_.contains(cleaned(folder))) folders_.insert(cleaned(folder), copy);
    }

    const Session& original_;
    QHash<QString, QString> folders_;
};

QStringList fileNames() {
    QStringList names;
    for (const CatalogueEntry& entry : catalogue()) names.append(entry.name);
    return names;
}

/// What else a file tells, once the engine finds it sound.
void checkContents(const DossierFile& file, Faults& faults) {
    const QString name = file.entry->name;
    for (const auto& [table, text] : Layout::indexFaults(file.path, tablesOf(file.entry->file)))
        faults.append({name, table->name, text, &kind::Indexes, {file.path, table, {}}});
    for (const QString& object : Layout::foreignObjects(file.path, tablesOf(file.entry->file)))
        faults.append({name, object, QStringLiteral("ne vient pas du programme"), &kind::Foreign});
    for (const Table* table : tablesOf(file.entry->file))
        for (const auto& [field, count] : Layout::misfits(file.path, *table))
            faults.append(
                {name, table->name,
                 (field->kind == Field::Kind::Number ? QStringLiteral("%1 : du texte à la place d'un nombre, %2 fois")
                                                     : QStringLiteral("%1 : autre chose que du texte, %2 fois"))
                     .arg(field->name, QString::number(count)),
                 &kind::Values});
}

/// The files that a dossier must have, and those of its other folders; without those that could not be copied.
QList<DossierFile> filesOf(const Session& session, const QString& folder, const QSet<QString>& notCopied) {
    QList<DossierFile> files;
    QSet<QString> listed;
    const auto add = [&](const CatalogueEntry& entry, const QString& path) {
        if (listed.contains(path) || notCopied.contains(QDir(folder).relativeFilePath(path))) return;
        listed.insert(path);
        files.append({&entry, path});
    };
    for (const CatalogueEntry& entry : catalogue()) {
        const QString path = QDir::cleanPath(session.path(entry.file));
        if (entry.file != DataFile::Societe || QFile::exists(path)) add(entry, path);
        QDirIterator others(folder, {entry.name}, QDir::Files, QDirIterator::Subdirectories);
        while (others.hasNext()) add(entry, QDir::cleanPath(others.next()));
    }
    return files;
}

} // namespace

namespace {

bool areSound(const Faults& faults) {
    return std::none_of(faults.begin(), faults.end(), [](const Fault& fault) { return fault.kind == &kind::File; });
}

/// What the records say, in files that are sound.
void checkRecords(const Session& copied, Faults& faults) {
    references::Files files(copied);
    if (files[DataFile::Molven].count(strspecif) != 1)
        faults.append({QStringLiteral("molven.mdb"), strspecif.name,
                       QStringLiteral("un enregistrement et un seul est attendu"), &kind::Codes});
    if (files[DataFile::Molven].count(stremetteur) > 1)
        faults.append({QStringLiteral("molven.mdb"), stremetteur.name,
                       QStringLiteral("un enregistrement au plus est attendu"), &kind::Codes});
    const Papers papers(files, faults);
    checkUnits(files, papers, faults);
    checkQuantities(files, faults);
    checkMovements(files, copied, faults);
    checkSets(files, faults);
    checkCounts(files, papers, faults);
    checkEntries(files, copied, faults);
    checkNotes(papers, faults);
    checkProformas(files, papers, faults);
    checkRenewals(papers, faults);
    checkValues(files, faults);
    for (const references::Orphan& orphan : references::orphans(files))
        faults.append({orphan.file, orphan.code, orphan.text, &kind::Codes});
}

} // namespace

namespace {

/// What only a server can break: its schemas, and the indexes that the copy makes anew.
void checkServer(const QList<migration::Move>& files, Faults& faults) {
    for (const migration::Move& file : files) {
        const CatalogueEntry& entry = catalogueEntry(file.file);
        const QList<const Table*>& tables = tablesOf(file.file);
        for (const auto& [table, text] : Layout::indexFaults(file.from, tables))
            faults.append({entry.name, table->name, text, &kind::Indexes, {file.from, table, {}}});
        for (const QString& object : Layout::foreignObjects(file.from, tables))
            faults.append({entry.name, object, QStringLiteral("ne vient pas du programme"), &kind::Foreign});
    }
}

/// A dossier on a server is copied into a folder and read there.
Faults runOnServer(const Session& session) {
    const QTemporaryDir folder;
    if (!folder.isValid()) throw DataError(DataError::CannotOpen, folder.errorString());
    const QString base = folder.filePath(QStringLiteral("donnees/"));
    const QList<migration::Move> files = migration::moves(session, base);
    for (const migration::Move& file : files) QDir().mkpath(QFileInfo(file.to).path());
    migration::copy(files, {});
    Session copied = session;
    copied.chemin_base = base;
    if (!session.chemin_util.isEmpty()) copied.chemin_util = base + session.chemin_util.mid(session.chemin_base.size());
    if (!session.chemin_gv.isEmpty()) copied.chemin_gv = base + QStringLiteral("gv/");
    if (session.chemin_util == session.chemin_gv) copied.chemin_util = copied.chemin_gv; // a user of the second site
    Faults faults = run(copied);
    for (Fault& fault : faults)
        for (const migration::Move& file : files)
            if (fault.place.path == file.to) fault.place.path = file.from;
    checkServer(files, faults);
    return faults;
}

} // namespace

QList<Fault> run(const Session& session) {
    if (server_address::isOne(session.chemin_base)) return runOnServer(session);
    const Copies copies(session);
    const Snapshot snapshot(fileNames(), copies.folders());
    const Session copied = copies.session(snapshot.folder());
    Faults faults;
    QSet<QString> notCopied;
    for (const auto& [path, error] : snapshot.faults()) {
        const QString name = QFileInfo(path).fileName();
        notCopied.insert(copies.copy(path));
        faults.append({name, name, error.description, &kind::File});
    }
    const QList<DossierFile> dossier = filesOf(copied, snapshot.folder(), notCopied);
    for (const DossierFile& file : dossier) checkFile(file, faults);
    if (areSound(faults)) {
        for (const DossierFile& file : dossier) checkContents(file, faults);
        checkJournals(dossier, faults);
        checkRecords(copied, faults);
    }
    holdBack(faults);
    for (Fault& fault : faults) fault.place.path = copies.original(fault.place.path, snapshot.folder());
    return faults;
}

} // namespace molven::check
