#include "accounting/entry_files.h"

#include "accounting/document_entries.h"
#include "data/errors.h"
#include "data/format.h"
#include "data/safe_file.h"
#include "reference/parameter_tables.h"
#include "reference/party_tables.h"

#include <QRegularExpression>

#include <functional>

namespace molven::entry_files {

namespace {

/// A text as a single field of a line: what would break the line or the field becomes a blank.
QString flat(QString text) {
    for (QChar& c : text)
        if (c.category() == QChar::Other_Control || c == u';') c = u' ';
    return text.trimmed();
}

/// One byte a character; what the code page lacks is written without its accent, else as a question mark.
QByteArray encoded(const QString& text, const QHash<QChar, char>& differing) {
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar c : text) {
        const auto known = differing.constFind(c);
        const bool isLatin = c.unicode() < 0x80 || (c.unicode() >= 0xA0 && c.unicode() <= 0xFF);
        if (known != differing.constEnd())
            bytes += *known;
        else
            bytes += isLatin ? static_cast<char>(c.unicode()) : folded(QString(c)).at(0).toUpper().toLatin1();
    }
    bytes.replace('\0', '?');
    return bytes;
}

QByteArray latin9(const QString& text) {
    static const QHash<QChar, char> differing{{u'€', '\xA4'}, {u'Œ', '\xBC'}, {u'œ', '\xBD'}, {u'Š', '\xA6'},
                                              {u'š', '\xA8'}, {u'Ÿ', '\xBE'}, {u'Ž', '\xB4'}, {u'ž', '\xB8'},
                                              {u'’', '\''},   {u'–', '-'}};
    return encoded(text, differing);
}

QString compactDay(const QString& date) { return QString(date).remove(u'/'); }

/// "1234.56", the point that programs read.
QString plainAmount(const Decimal& amount) { return amount.toFixed(2); }

struct Column {
    const char* title;
    int width; ///< of the fixed layout
    bool isRight;
    QString (*value)(const Record& line);
};

const QList<Column>& columns() {
    static const auto& e = strecrit;
    static const QList<Column> all{
        {"JOURNAL", 3, false, [](const Record& line) { return QString(line[e.ecr_jou]); }},
        {"DATE", 8, false, [](const Record& line) { return compactDay(line[e.ecr_dat]); }},
        {"COMPTE", 9, false, [](const Record& line) { return QString(line[e.ecr_cpt]); }},
        {"PIECE", 10, false, [](const Record& line) { return line[e.ecr_aa] + line[e.ecr_no]; }},
        {"LIBELLE", 40, false, [](const Record& line) { return flat(line[e.ecr_lib]).left(40); }},
        {"SENS", 1, false,
         [](const Record& line) { return line[e.ecr_deb].isZero() ? QStringLiteral("C") : QStringLiteral("D"); }},
        {"MONTANT", 15, true, [](const Record& line) { return plainAmount(line[e.ecr_deb] + line[e.ecr_cre]); }},
        {"ECHEANCE", 8, false, [](const Record& line) { return compactDay(line[e.ecr_ech]); }},
        {"TVA", 1, false, [](const Record& line) { return QString(line[e.ecr_tva]); }},
        {"CLIENT", 6, false, [](const Record& line) { return QString(line[e.ecr_clt]); }},
        {"ECRITURE", 8, false, [](const Record& line) { return QString(line[e.ecr_num]); }}};
    return all;
}

Recordset linesOf(Database compta, const QString& transfer) {
    return compta.select(strecrit, strecrit.ecr_trf == transfer, {strecrit.ecr_num, strecrit.ecr_lg});
}

} // namespace

QByteArray windows1252(const QString& text) {
    static const QHash<QChar, char> differing{{u'€', '\x80'}, {u'Œ', '\x8C'}, {u'œ', '\x9C'}, {u'’', '\x92'},
                                              {u'–', '\x96'}, {u'Š', '\x8A'}, {u'š', '\x9A'}, {u'Ÿ', '\x9F'},
                                              {u'Ž', '\x8E'}, {u'ž', '\x9E'}};
    return encoded(text, differing);
}

QByteArray fixedColumns(Database compta, const QString& transfer) {
    QByteArray file;
    for (const Record& line : linesOf(compta, transfer)) {
        QString text;
        for (const Column& column : columns()) {
            const QString value = column.value(line);
            text += column.isRight ? value.rightJustified(column.width) : value.leftJustified(column.width);
        }
        file += windows1252(text) + "\r\n";
    }
    return file;
}

QByteArray semicolons(Database compta, const QString& transfer) {
    QStringList titles;
    for (const Column& column : columns()) titles.append(QString::fromLatin1(column.title));
    QByteArray file = windows1252(titles.join(u';')) + "\r\n";
    for (const Record& line : linesOf(compta, transfer)) {
        QStringList cells;
        for (const Column& column : columns()) cells.append(column.value(line));
        file += windows1252(cells.join(u';')) + "\r\n";
    }
    return file;
}

void writeTransfer(Database compta, const QString& transfer, const QString& folder) {
    writeWhole(folder + FixedName, fixedColumns(compta, transfer));
    writeWhole(folder + SemicolonName, semicolons(compta, transfer));
}

namespace {

const QStringList LegalTitles{
    QStringLiteral("JournalCode"),  QStringLiteral("JournalLib"),    QStringLiteral("EcritureNum"),
    QStringLiteral("EcritureDate"), QStringLiteral("CompteNum"),     QStringLiteral("CompteLib"),
    QStringLiteral("CompAuxNum"),   QStringLiteral("CompAuxLib"),    QStringLiteral("PieceRef"),
    QStringLiteral("PieceDate"),    QStringLiteral("EcritureLib"),   QStringLiteral("Debit"),
    QStringLiteral("Credit"),       QStringLiteral("EcritureLet"),   QStringLiteral("DateLet"),
    QStringLiteral("ValidDate"),    QStringLiteral("Montantdevise"), QStringLiteral("Idevise")};

/// The amounts of the legal file have a comma.
QString legalAmount(const Decimal& amount) { return amount.toFixed(2).replace(u'.', u','); }

} // namespace

QString legalName(const QString& siren, const Period& year) {
    static const QRegularExpression nineDigits(QStringLiteral("^\\d{9}$"));
    if (!nineDigits.match(siren).hasMatch())
        throw Refusal(QStringLiteral("Le SIREN de la société n'est pas renseigné : voir l'identité de l'émetteur"));
    return siren + QStringLiteral("FEC") + year.to + QStringLiteral(".txt");
}

QByteArray legalFile(Database compta, Database molven, const Period& year) {
    const auto& e = strecrit;
    const auto accounts = compta.valuesBy(strplan, strplan.cpt_aff, strplan.cpt_lib);
    const auto clients = molven.valuesBy(strclient, strclient.clt_cod, strclient.clt_nom);
    QByteArray file = latin9(LegalTitles.join(u'\t')) + "\r\n";
    for (const Record& line : compta.select(e, year.covers(e.tri_dat), {e.ecr_num, e.ecr_lg})) {
        const QString account = line[e.ecr_cpt], client = line[e.ecr_clt];
        const bool isClients = account.startsWith(ClientAccountStart);
        const QString label = accounts.value(account), name = clients.value(client);
        const QStringList cells{line[e.ecr_jou],
                                QStringLiteral("VENTES"),
                                line[e.ecr_num],
                                line[e.tri_dat],
                                account,
                                flat(label.isEmpty() ? account : label),
                                isClients ? client : QString(),
                                isClients ? flat(name.isEmpty() ? client : name) : QString(),
                                line[e.ecr_aa] + line[e.ecr_no],
                                line[e.tri_dat],
                                flat(line[e.ecr_lib]),
                                legalAmount(line[e.ecr_deb]),
                                legalAmount(line[e.ecr_cre]),
                                {},
                                {},
                                line[e.ecr_jtr],
                                {},
                                {}};
        file += latin9(cells.join(u'\t')) + "\r\n";
    }
    return file;
}

} // namespace molven::entry_files
