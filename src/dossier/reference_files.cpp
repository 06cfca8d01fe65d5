#include "dossier/reference_files.h"

#include "data/csv.h"
#include "data/database.h"
#include "data/errors.h"
#include "data/format.h"
#include "dossier/references.h"
#include "reference/articles.h"
#include "reference/code_tables.h"
#include "reference/parties.h"
#include "reference/tariff_tables.h"
#include "stock/depot_tables.h"
#include "stock/endowments.h"

#include <algorithm>
#include <functional>

namespace molven::reference_files {

namespace {

/// The files that the rules of reference data write.
struct Files {
    explicit Files(const Session& session)
        : rules(session.rules()),
          molven(workspace.open(session.molven())),
          compta(workspace.open(session.path(DataFile::Compta))),
          gencode(workspace.open(session.path(DataFile::Gencode))),
          units(openUnitFiles(workspace, session)),
          stocks(workspace.open(session.path(DataFile::Stocks))) {}

    const CompanyRules rules;
    Workspace workspace;
    Database molven, compta, gencode;
    UnitFiles units;
    Database stocks;
};

using Before = std::optional<Record>;

struct Kind {
    QString word;
    const Table& table;
    QList<const Text*> key;
    QList<const Field*> computed; ///< written by receipts and documents, never by a file
    Record (*blank)(Files&);
    Before (*find)(Files&, const Record&);
    void (*write)(Files&, const Record&, const Before&);
};

template <const CodeTable& (*table)()>
Record blankOf(Files&) {
    return Record(table().table);
}

template <const CodeTable& (*table)()>
Before findIn(Files& files, const Record& record) {
    return files.molven.find(table().table, table().sameKey(record));
}

template <const CodeTable& (*table)()>
void writeIn(Files& files, const Record& record, const Before& before) {
    if (before)
        code_tables::change(files.molven, table(), record, *before);
    else
        code_tables::add(files.molven, table(), record);
}

const QList<Kind>& all() {
    static const QList<Kind> kinds{
        {QStringLiteral("articles"),
         strarticle,
         {&strarticle.art_ref},
         {&strarticle.art_stk, &strarticle.art_pam, &strarticle.art_dpa, &strarticle.art_cdec, &strarticle.art_cdef,
          &strarticle.stk1_art, &strarticle.stk2_art, &strarticle.stk3_art},
         [](Files&) { return articles::blank(); },
         [](Files& files, const Record& record) { return articles::find(files.molven, record[strarticle.art_ref]); },
         [](Files& files, const Record& record, const Before& before) {
             articles::save(files.molven, files.compta, files.gencode, files.rules, articles::entryOf(record), before);
             references::requireFollowUpKept(files.units, files.stocks, record[strarticle.art_ref].trimmed(), before);
         }},
        {QStringLiteral("clients"),
         strclient,
         {&strclient.clt_cod},
         {},
         [](Files& files) { return parties::blankClient(files.molven); },
         [](Files& files, const Record& record) {
             return parties::findClient(files.molven, record[strclient.clt_cod]);
         },
         [](Files& files, const Record& record, const Before& before) {
             parties::saveClient(files.molven, record, before);
         }},
        {QStringLiteral("fournisseurs"),
         strfournis,
         {&strfournis.fou_cod},
         {},
         [](Files& files) { return parties::blankSupplier(files.molven); },
         [](Files& files, const Record& record) {
             return parties::findSupplier(files.molven, record[strfournis.fou_cod]);
         },
         [](Files& files, const Record& record, const Before& before) {
             parties::saveSupplier(files.molven, record, before);
         }},
        {QStringLiteral("lpp"),
         strlpp,
         code_tables::lppCodes().key,
         {},
         blankOf<code_tables::lppCodes>,
         findIn<code_tables::lppCodes>,
         writeIn<code_tables::lppCodes>},
        {QStringLiteral("dotations"),
         strdotation,
         endowments::table().key,
         {&strdotation.dot_lib},
         blankOf<endowments::table>,
         findIn<endowments::table>,
         writeIn<endowments::table>},
        {QStringLiteral("tarifs"),
         strtarifclt,
         code_tables::clientTariffs().key,
         {},
         blankOf<code_tables::clientTariffs>,
         findIn<code_tables::clientTariffs>,
         writeIn<code_tables::clientTariffs>}};
    return kinds;
}

const Kind& kindOf(const QString& word) {
    for (const Kind& kind : all())
        if (kind.word == word) return kind;
    throw Refusal(QStringLiteral("Fichier inconnu : %1 (connus : %2)").arg(word, kinds().join(QStringLiteral(", "))));
}

/// The fields named by the header, in its order; null where the name is unknown, which is a fault.
QList<const Field*> fieldsOf(const Kind& kind, const csv::Row& header, QList<Fault>& faults) {
    QList<const Field*> fields;
    if (!header.fault.isEmpty()) faults.append({header.line, header.fault});
    for (const QString& name : header.cells) {
        const Field* field = kind.table.field(name);
        if (!field) faults.append({header.line, QStringLiteral("champ inconnu : ") + name});
        if (field && fields.contains(field)) faults.append({header.line, QStringLiteral("champ en double : ") + name});
        fields.append(field);
    }
    for (const Text* key : kind.key)
        if (!fields.contains(key)) faults.append({header.line, QStringLiteral("champ absent : ") + key->name});
    return fields;
}

/// What a stored number holds exactly; a price needs no more.
constexpr int MostDigits = 15;

void put(Record& record, const Field& field, const QString& cell) {
    if (field.kind != Field::Kind::Number || cell.isEmpty()) return record.set(field, cell);
    const auto number = Decimal::parse(cell);
    if (!number) throw Refusal(QStringLiteral("Valeur numérique incorrecte : ") + cell.left(40), field.name);
    if (std::count_if(cell.begin(), cell.end(), [](QChar c) { return c.isDigit(); }) > MostDigits)
        throw Refusal(QStringLiteral("Nombre de plus de %1 chiffres : %2...").arg(MostDigits).arg(cell.left(20)),
                      field.name);
    record.set(field, number->toString());
}

void writeRow(Files& files, const Kind& kind, const QList<const Field*>& fields, const csv::Row& row) {
    if (!row.fault.isEmpty()) throw Refusal(row.fault);
    if (row.cells.size() != fields.size())
        throw Refusal(QStringLiteral("%1 colonnes au lieu de %2").arg(row.cells.size()).arg(fields.size()));
    Record keyed(kind.table);
    for (qsizetype i = 0; i < fields.size(); ++i)
        if (kind.key.contains(static_cast<const Text*>(fields[i]))) put(keyed, *fields[i], row.cells[i]);
    const Before before = kind.find(files, keyed);
    Record record = before ? *before : kind.blank(files);
    for (qsizetype i = 0; i < fields.size(); ++i)
        if (!kind.computed.contains(fields[i])) put(record, *fields[i], row.cells[i]);
    kind.write(files, record, before);
}

QString keyOf(const Kind& kind, const QList<const Field*>& fields, const csv::Row& row) {
    QString key;
    for (const Text* field : kind.key) key += padded(row.cells.value(fields.indexOf(field)), 6).toUpper() + u'\n';
    return key;
}

} // namespace

QStringList kinds() {
    QStringList words;
    for (const Kind& kind : all()) words.append(kind.word);
    return words;
}

Outcome bringIn(const Session& session, const QString& word, const QByteArray& file) {
    const Kind& kind = kindOf(word);
    const QList<csv::Row> rows = csv::read(file);
    Outcome outcome;
    if (rows.isEmpty()) throw Refusal(QStringLiteral("Le fichier est vide"));
    const QList<const Field*> fields = fieldsOf(kind, rows.first(), outcome.faults);
    if (!outcome.faults.isEmpty()) return outcome;
    for (const Field* field : fields)
        if (kind.computed.contains(field)) outcome.ignored.append(field->name);
    Files files(session);
    Transaction transaction(files.workspace, QStringLiteral("Importation"));
    QHash<QString, int> seen;
    for (const csv::Row& row : rows.mid(1)) {
        try {
            const QString key = keyOf(kind, fields, row);
            if (seen.contains(key)) throw Refusal(QStringLiteral("déjà en ligne %1").arg(seen.value(key)));
            seen.insert(key, row.line);
            Transaction alone(files.workspace); // the rows behind a faulty one are looked at as well
            writeRow(files, kind, fields, row);
            alone.commit();
            ++outcome.written;
        } catch (const Refusal& refusal) {
            outcome.faults.append({row.line, refusal.text.trimmed()});
        } catch (const DataError& error) {
            outcome.faults.append({row.line, error.description});
        }
    }
    if (outcome.faults.isEmpty())
        transaction.commit();
    else
        outcome.written = 0;
    return outcome;
}

QByteArray takeOut(const Session& session, const QString& word) {
    const Kind& kind = kindOf(word);
    Workspace workspace;
    QString lines = csv::line(kind.table.columns().split(u','));
    for (const Record& record : workspace.open(session.molven()).select(kind.table, {}, *kind.key.first())) {
        QStringList cells;
        for (const Field* field : kind.table.fields()) {
            const QString value = record.value(*field);
            cells.append(field->kind == Field::Kind::Number && !value.isEmpty() ? shown(Decimal::fromText(value))
                                                                                : value);
        }
        lines += csv::line(cells);
    }
    return csv::file(lines);
}

} // namespace molven::reference_files
