#include "dossier/check.h"

#include "data/errors.h"
#include "data/journal.h"
#include "data/journal_tables.h"
#include "data/layout.h"
#include "data/snapshot.h"
#include "dossier/check/checks.h"
#include "shell/startup.h"
#include "shell/tables.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

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
const Kind Amounts{QStringLiteral("montants"), QStringLiteral("ouvrir le document et valider de nouveau la ligne")};
const Kind Units{QStringLiteral("produits"),
                 QStringLiteral("lire l'historique du produit ; supprimer la ligne en trop, ou la saisir de nouveau")};
const Kind Quantities{QStringLiteral("stocks"),
                      QStringLiteral("molvenctl check --reparer recompte le stock d'après les produits"), true};
const Kind Patients{QStringLiteral("patients et lots"),
                    QStringLiteral("vérifier sur le document papier, puis corriger le produit ou le document")};
const Kind Sets{QStringLiteral("ancillaires"),
                QStringLiteral("vérifier où est le produit, puis le retirer de l'ancillaire ou l'y remettre")};
const Kind Values{QStringLiteral("valeurs"), QStringLiteral("ressaisir la valeur dans la fiche ou le document")};
const Kind Altered{QStringLiteral("changements sans auteur"),
                   QStringLiteral("lire l'historique de la fiche et y remettre la valeur juste")};

} // namespace kind

void checkFile(const CatalogueEntry& entry, const QString& path, Faults& faults) {
    const auto fault = [&](const QString& subject, const QString& text, const Kind& kind) {
        faults.append({entry.name, subject, text, &kind});
    };
    try {
        Workspace workspace;
        Database file = workspace.open(path);
        for (const QString& engineFault : file.integrityFaults())
            fault(entry.name, QStringLiteral("contrôle du moteur : ") + engineFault, kind::File);
        for (const Table* table : tablesOf(entry.file)) {
            const QStringList columns = file.columns(*table);
            if (columns.isEmpty()) {
                fault(table->name, QStringLiteral("table absente"), kind::File);
                continue;
            }
            for (const Field* field : table->fields())
                if (!columns.contains(field->name, Qt::CaseInsensitive))
                    fault(table->name, QStringLiteral("champ %1 absent").arg(field->name), kind::File);
        }
    } catch (const DataError& error) {
        fault(entry.name, error.description, kind::File);
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

/// Each file of the copy, but those of which there is none.
void checkFiles(const Session& session, const QSet<QString>& notCopied, Faults& faults) {
    for (const CatalogueEntry& entry : catalogue()) {
        const QString path = session.path(entry.file);
        if (notCopied.contains(entry.name)) continue;
        if (entry.file == DataFile::Societe && !QFile::exists(path)) continue;
        checkFile(entry, path, faults);
    }
}

/// What each file tells by itself, once the engine finds all sound.
void checkContents(const Session& session, Faults& faults) {
    for (const CatalogueEntry& entry : catalogue()) {
        const QString path = session.path(entry.file);
        if (!QFile::exists(path)) continue;
        for (const auto& [table, text] : Layout::indexFaults(path, tablesOf(entry.file)))
            faults.append({entry.name, table->name, text, &kind::Indexes});
        if (!tablesOf(entry.file).contains(&strjournal)) continue;
        Workspace workspace;
        Database file = workspace.open(path);
        for (const QString& broken : Journal::faults(file))
            faults.append({entry.name, strjournal.name, broken, &kind::Journal});
        checkAgainstJournal(entry, file, faults);
    }
}

} // namespace

QList<Fault> run(const Session& session) {
    const Copies copies(session);
    const Snapshot snapshot(fileNames(), copies.folders());
    const Session copied = copies.session(snapshot.folder());
    Faults faults;
    QSet<QString> notCopied;
    for (const auto& [path, error] : snapshot.faults()) {
        const QString name = QFileInfo(path).fileName();
        notCopied.insert(name);
        faults.append({name, name, error.description, &kind::File});
    }
    checkFiles(copied, notCopied, faults);
    if (!faults.isEmpty()) return faults; // the rules below read files that must be sound
    checkContents(copied, faults);
    references::Files files(copied);
    if (files[DataFile::Molven].count(strspecif) != 1)
        faults.append({QStringLiteral("molven.mdb"), strspecif.name,
                       QStringLiteral("un enregistrement et un seul est attendu"), &kind::Codes});
    const Papers papers(files, faults);
    checkUnits(files, papers, faults);
    checkQuantities(files, faults);
    checkSets(files, faults);
    checkNotes(papers, faults);
    checkValues(files, faults);
    for (const references::Orphan& orphan : references::orphans(files))
        faults.append({orphan.file, orphan.code, orphan.text, &kind::Codes});
    return faults;
}

} // namespace molven::check
