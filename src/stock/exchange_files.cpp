#include "stock/exchange_files.h"

#include "data/csv.h"
#include "data/dates.h"
#include "data/format.h"
#include "data/require.h"
#include "data/safe_file.h"
#include "shell/folder_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace molven::exchange_files {

namespace {

constexpr int DayDigits = 8;

/// A column of the comma-separated file: its title, and the field it holds; none for the kind of document.
struct Column {
    const char* title;
    const Field* field;
};

const QList<Column>& columns() {
    const ProductUnits& u = tripro;
    static const QList<Column> all{{"immat-molven", &u.imm_art}, {"immat_frs", &u.fou_imm}, {"reference", &u.ref_art},
                                   {"lot", &u.lot_art},          {"LPP", &u.pro_lpp},       {"nho", &u.pro_nho},
                                   {"peremption", &u.dat_per},   {"num-ste", &u.num_ste},   {"type-doc", nullptr},
                                   {"no-doc", &u.num_vte},       {"date-doc", &u.dat_vte},  {"no-client", &u.clt_dep},
                                   {"nom-client", &u.nom_dep},   {"P-Vente", &u.pro_vte},   {"tarif", &u.pro_tar}};
    return all;
}

QString spoken(const QString& path) { return QDir::toNativeSeparators(path); }

QList<Record> readDatabase(const QString& path) {
    QList<Record> units;
    Workspace workspace;
    Database file = workspace.open(path);
    require(file.hasTable(tripro), QStringLiteral("Le fichier %1 ne contient pas de produits").arg(spoken(path)),
            QString());
    for (const Record& unit : file.select(tripro, {}, {tripro.num_vte, tripro.ref_art, tripro.imm_art}))
        units.append(unit);
    return units;
}

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), QStringLiteral("Impossible de lire le fichier %1").arg(spoken(path)),
            QString());
    return file.readAll();
}

QList<Record> readExtraction(const QString& path) {
    const QList<csv::Row> rows = csv::read(bytesOf(path));
    QHash<int, const Field*> fields; ///< by place in a row
    for (int i = 0; !rows.isEmpty() && i < rows.first().cells.size(); ++i)
        for (const Column& column : columns())
            if (column.field &&
                rows.first().cells[i].trimmed().compare(QLatin1String(column.title), Qt::CaseInsensitive) == 0)
                fields.insert(i, column.field);
    const QList<const Field*> found = fields.values();
    require(found.contains(&tripro.ref_art) && (found.contains(&tripro.imm_art) || found.contains(&tripro.fou_imm)),
            QStringLiteral("Le fichier %1 n'est pas une extraction de bons de livraison").arg(spoken(path)), QString());
    QList<Record> units;
    for (const csv::Row& row : rows.mid(1)) {
        require(row.fault.isEmpty(), QStringLiteral("Ligne %1 : %2").arg(row.line).arg(row.fault), QString());
        Record unit(tripro);
        for (auto field = fields.begin(); field != fields.end(); ++field) try {
                unit.set(**field, row.cells.value(field.key()).trimmed());
            } catch (const DataError& error) {
                throw Refusal(QStringLiteral("Ligne %1 : %2").arg(row.line).arg(error.description));
            }
        units.append(unit);
    }
    return units;
}

} // namespace

QString folder(const Session& session) {
    const QString place = folderFrom(session.dossier_app, QStringLiteral("CHEMIN.DK")).value_or(session.chemin_tri);
    require(QDir().mkpath(place), QStringLiteral("Le dossier d'échange %1 n'existe pas").arg(spoken(place)), QString());
    return place;
}

QString diskette(const Session& session) {
    if (QDir::separator() == u'\\') return QStringLiteral("a:/");
    const auto place = folderFrom(session.dossier_app, QStringLiteral("DISQUETTE.DK"));
    require(place && QDir(*place).exists(),
            QStringLiteral("Aucun lecteur de disquette : le fichier DISQUETTE.DK du dossier du programme indique le "
                           "dossier qui en tient lieu"),
            QString());
    return *place;
}

QString unitFileName(const QString& note) { return QStringLiteral("EXBL%1.mdb").arg(note); }

QString extractionName(const QDate& day) { return QStringLiteral("Mvtbl%1.csv").arg(sortKey(day)); }

QString pathOf(const Session& session, const QString& typed) {
    const QString number = padded(typed, 6);
    const QString name = number.size() == DayDigits ? QStringLiteral("Mvtbl%1.csv").arg(number) : unitFileName(number);
    const QString path = folder(session) + name;
    require(QFile::exists(path), QStringLiteral("Le fichier %1 n'existe pas").arg(spoken(path)),
            QStringLiteral("txtno"));
    return path;
}

void write(const QString& path, const QList<Record>& units, const Progress& progress) {
    const QString unfinished = path + QStringLiteral("-copie");
    QFile::remove(unfinished);
    try {
        Database::create(unfinished, {&tripro});
        {
            Workspace workspace;
            Database file = workspace.open(unfinished);
            Transaction transaction(workspace);
            for (qsizetype i = 0; i < units.size(); ++i) {
                tell(progress, i, units.size());
                file.insert(units[i]);
            }
            transaction.commit();
        }
        flushToDisk(unfinished);
        takePlace(unfinished, path);
    } catch (...) {
        QFile::remove(unfinished);
        throw;
    }
}

QString writeExtraction(const QString& path, const QList<Record>& units) {
    QStringList titles;
    for (const Column& column : columns()) titles.append(QLatin1String(column.title));
    QString text = csv::line(titles, u',');
    for (const Record& unit : units) {
        QStringList cells;
        for (const Column& column : columns())
            cells.append(column.field ? unit.value(*column.field).trimmed() : QStringLiteral("BL"));
        text += csv::line(cells, u',');
    }
    const QString free = freeName(path);
    writeWhole(free, text.toUtf8(), Existing::Refuse);
    return free;
}

QList<Record> read(const QString& path) {
    require(QFile::exists(path), QStringLiteral("Le fichier %1 n'existe pas").arg(spoken(path)),
            QStringLiteral("txtno"));
    const bool isText = QFileInfo(path).suffix().compare(u"csv", Qt::CaseInsensitive) == 0;
    const QList<Record> units = isText ? readExtraction(path) : readDatabase(path);
    require(!units.isEmpty(), QStringLiteral("Aucun produit sur ce fichier"), QStringLiteral("txtno"));
    return units;
}

} // namespace molven::exchange_files
