#include "dossier/conversion.h"

#include "data/database.h"
#include "data/jet_file.h"
#include "data/layout.h"
#include "data/require.h"
#include "dossier/creation.h"
#include "dossier/staging.h"
#include "dossier/table_conversion.h"
#include "shell/tables.h"

#include <QDir>
#include <QFileInfo>

namespace molven::conversion {

namespace {

/// The source files of a folder that the catalogue knows, by name.
QMap<QString, DataFile> known(const QDir& folder, QStringList& notices, const QString& prefix = {}) {
    QMap<QString, DataFile> files;
    for (const QString& name : folder.entryList({QStringLiteral("*.mdb")}, QDir::Files, QDir::Name)) {
        const auto file = dataFileAt(name);
        const bool isDossiers = file && catalogueEntry(*file).folder != Folder::Work && *file != DataFile::Societe;
        if (isDossiers)
            files.insert(folder.filePath(name), *file);
        else
            notices.append(prefix + name + QStringLiteral(" : fichier de travail ou inconnu, non repris"));
    }
    return files;
}

Company readCompany(const QString& molven) {
    const JetFile file(molven);
    Company company;
    const QList<JetFile::Column> columns = file.columns(strspecif.name);
    file.read(strspecif.name, [&](const QStringList& values) {
        for (qsizetype i = 0; i < columns.size(); ++i) {
            if (columns[i].name.compare(strspecif.spe_cod.name, Qt::CaseInsensitive) == 0) company.code = values[i];
            if (columns[i].name.compare(strspecif.spe_nom.name, Qt::CaseInsensitive) == 0) company.name = values[i];
        }
    });
    return company;
}

/// What is asked stands for what the source does not tell.
Company companyOf(const QString& molven, const Company& asked) {
    Company company;
    try {
        company = readCompany(molven);
    } catch (const DataError& error) {
        if (error.number != DataError::NotADatabase) throw;
    }
    if (!asked.code.isEmpty()) company.code = asked.code;
    if (!asked.name.isEmpty()) company.name = asked.name;
    if (company.code.trimmed().isEmpty() || company.name.trimmed().isEmpty())
        throw Refusal(QStringLiteral("La société n'est pas lisible dans '%1' : indiquez-la par --code et --nom")
                          .arg(QDir::toNativeSeparators(molven)));
    return company;
}

class Conversion {
public:
    Conversion(Outcome& outcome, const Progress& progress) : outcome_(outcome), progress_(progress) {}

    void add(const QString& source, DataFile file, const QString& target) { parts_.append({source, target, file}); }

    void run() {
        for (qsizetype i = 0; i < parts_.size(); ++i) {
            tell(progress_, i, parts_.size());
            convertFile(parts_[i]);
        }
    }

private:
    struct Part {
        QString source, target;
        DataFile file;
    };

    void convertFile(const Part& part) {
        const QString name = QFileInfo(part.source).fileName();
        if (!QFileInfo::exists(part.target)) Database::create(part.target, tablesOf(part.file));
        try {
            const JetFile jet(part.source);
            // Indexes come at the end: one that the records contradict becomes a plain one.
            Layout::dropIndexes(part.target, tablesOf(part.file));
            Workspace workspace;
            Database target = workspace.open(part.target);
            Transaction transaction(workspace, QStringLiteral("Conversion"));
            for (const QString& table : jet.tables()) convertTable(jet, name, table, part.file, target);
            transaction.commit();
        } catch (const DataError& error) {
            if (error.number != DataError::NotADatabase) throw;
            outcome_.notices.append(QStringLiteral("%1 : %2").arg(name, error.description));
        }
        Layout::repairIndexes(part.target, tablesOf(part.file));
    }

    void convertTable(const JetFile& jet, const QString& file, const QString& name, DataFile kind, Database target) {
        const QList<const Table*>& tables = tablesOf(kind);
        const auto table = std::find_if(tables.begin(), tables.end(), [&name](const Table* one) {
            return one->name.compare(name, Qt::CaseInsensitive) == 0;
        });
        try {
            if (table == tables.end()) {
                outcome_.notices.append(QStringLiteral("%1 : table inconnue %2, %3 enregistrements non repris")
                                            .arg(file, name)
                                            .arg(jet.announced(name)));
                return;
            }
            TableConversion conversion(jet, name, target, **table);
            Converted converted = conversion.run(progress_);
            converted.file = file;
            outcome_.tables.append(converted);
            for (const QString& notice : conversion.notices())
                outcome_.notices.append(QStringLiteral("%1 %2 : %3").arg(file, name, notice));
        } catch (const DataError& error) {
            if (error.number != DataError::NotADatabase) throw;
            outcome_.notices.append(QStringLiteral("%1 %2 : %3").arg(file, name, error.description));
        }
    }

    Outcome& outcome_;
    const Progress& progress_;
    QList<Part> parts_;
};

/// The files of a folder and of its users' folders, into the dossier of the session.
void convertInto(const Session& session, const QDir& source, Outcome& outcome, const Progress& progress) {
    Conversion conversion(outcome, progress);
    const auto files = known(source, outcome.notices);
    for (auto file = files.begin(); file != files.end(); ++file)
        conversion.add(file.key(), file.value(), session.chemin_base + catalogueEntry(file.value()).name);
    for (const QString& user : source.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const auto own = known(QDir(source.filePath(user)), outcome.notices, user + u'/');
        if (!own.isEmpty()) QDir().mkpath(session.chemin_base + user);
        for (auto file = own.begin(); file != own.end(); ++file)
            conversion.add(file.key(), file.value(),
                           session.chemin_base + user + u'/' + catalogueEntry(file.value()).name);
    }
    conversion.run();
}

QString molvenIn(const QString& source) {
    for (const QString& name : QDir(source).entryList({QStringLiteral("*.mdb")}, QDir::Files))
        if (dataFileAt(name) == DataFile::Molven) return QDir(source).filePath(name);
    throw Refusal(QStringLiteral("Le dossier %1 ne contient pas de fichier molven.mdb").arg(source));
}

} // namespace

QStringList Converted::words() const {
    QStringList lines{QStringLiteral("%1 %2 : %3 annoncés, %4 lus, %5 repris%6")
                          .arg(file, table)
                          .arg(announced)
                          .arg(read)
                          .arg(stored)
                          .arg(differing.isEmpty() ? QStringLiteral(", sommes égales") : QString())};
    for (const QString& sum : differing) lines.append(QStringLiteral("  somme différente, ") + sum);
    return lines;
}

QStringList Outcome::differences() const {
    QStringList lines;
    for (const Converted& table : tables)
        if (!table.isWhole()) lines += table.words();
    return lines + notices;
}

Outcome convert(const QString& source, const QString& target, bool addToSocieties, const Progress& progress,
                const Company& asked) {
    require(!source.isEmpty(), QStringLiteral("Indiquez le dossier des bases à convertir"), QString());
    const Company company = companyOf(molvenIn(source), asked);
    Outcome outcome;
    if (addToSocieties) {
        outcome.session = creation::create({target, company.code, company.name, true}, [&](const Session& made) {
            convertInto(made, QDir(source), outcome, progress);
        });
        return outcome;
    }
    require(!QDir(target).exists() || QDir(target).isEmpty(),
            QStringLiteral("Le dossier %1 existe déjà et n'est pas vide").arg(target), QString());
    const QFileInfo place(QDir(target).absolutePath());
    require(QDir().mkpath(place.path()), QStringLiteral("Impossible d'écrire dans %1").arg(place.path()), QString());
    Staging made(place.path(), QStringLiteral(".conversion"));
    convertInto(creation::create({made.path(), company.code, company.name, false}), QDir(source), outcome, progress);
    made.moveTo(place.filePath());
    outcome.session = creation::open(place.filePath());
    return outcome;
}

} // namespace molven::conversion
