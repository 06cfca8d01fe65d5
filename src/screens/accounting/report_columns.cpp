#include "screens/accounting/report_columns.h"

#include "accounting/entry_files.h"
#include "data/format.h"
#include "data/safe_file.h"
#include "reference/code_kinds.h"
#include "screens/accounting/figures.h"

namespace molven::report_columns {

using statistics::Figures;
using statistics::SalesReport;
using statistics::Sorting;

namespace {

const QString Quantity = QStringLiteral("# ##0.00"), Percent = QStringLiteral("##0.00");

/// What stands beside every group.
QList<GridColumn> figureColumns(const SalesReport& report) {
    const auto& s = strstat;
    const QList<GridColumn> compared{{&s.sta_net2, QStringLiteral("C.A. comparé"), 95, Amount},
                                     {&s.sta_evol, QStringLiteral("Évolution %"), 80, Percent}};
    QList<GridColumn> columns{{&s.sta_qte, QStringLiteral("Quantité"), 75, Quantity},
                              {&s.sta_net, QStringLiteral("C.A. net"), 95, Amount}};
    if (report.query().compared) columns += compared;
    columns += QList<GridColumn>{{&s.sta_part, QStringLiteral("Part %"), 60, Percent},
                                 {&s.sta_marge, QStringLiteral("Marge"), 95, Amount},
                                 {&s.sta_pourc, QStringLiteral("Marge %"), 65, Percent},
                                 {&s.sta_achat, QStringLiteral("Achat"), 95, Amount},
                                 {&s.sta_brut, QStringLiteral("C.A. brut"), 95, Amount}};
    return columns;
}

const Field& keyField(const SalesReport& report, qsizetype level) {
    const auto& s = strstat;
    return report.kind().isByAccount() && level == 0 ? s.sta_imp : s.*report.kind().keys[level].code;
}

/// A client's name and an article's designation stand where the invoice lines have them.
const Field& nameField(const SalesReport& report, qsizetype level) {
    const CodeKind* kind = report.kind().keys[level].names;
    if (kind == &codes::Client) return strstat.sta_nom;
    if (kind == &codes::Article) return strstat.sta_li1;
    return strstat.sta_lib;
}

} // namespace

QList<GridColumn> groups(const SalesReport& report, qsizetype level) {
    QList<GridColumn> columns{{&keyField(report, level), report.kind().keys[level].caption, 95},
                              {&nameField(report, level), QStringLiteral("Libellé"), 240}};
    return columns + figureColumns(report);
}

QList<GridColumn> all(const SalesReport& report) {
    const qsizetype last = report.kind().keys.size() - 1;
    QList<GridColumn> columns;
    for (qsizetype level = 0; level < last; ++level)
        columns.append({&keyField(report, level), report.kind().keys[level].caption});
    return columns + groups(report, last);
}

const QList<GridColumn>& lines() {
    static const auto& s = statd;
    static const QList<GridColumn> columns{{&s.sta_no, QStringLiteral("N° facture"), 75},
                                           {&s.sta_lg, QStringLiteral("Ligne"), 45},
                                           {&s.sta_datf, QStringLiteral("Date"), 85, DayPattern},
                                           {&s.sta_clt, QStringLiteral("Client"), 65},
                                           {&s.sta_nom, QStringLiteral("Nom"), 160},
                                           {&s.sta_ref, QStringLiteral("Article"), 95},
                                           {&s.sta_li1, QStringLiteral("Désignation"), 200},
                                           {&s.sta_imm, QStringLiteral("Immat."), 75},
                                           {&s.sta_qte, QStringLiteral("Quantité"), 65, Quantity},
                                           {&s.sta_net, QStringLiteral("C.A. net"), 90, Amount},
                                           {&s.sta_marge, QStringLiteral("Marge"), 90, Amount},
                                           {&s.sta_pourc, QStringLiteral("Marge %"), 65, Percent}};
    return columns;
}

namespace {

QString cell(const Record& row, const GridColumn& column) {
    if (column.field->kind != Field::Kind::Number) return row.value(*column.field);
    const auto& number = static_cast<const Number&>(*column.field);
    return row.isNull(number) ? QString() : format(row[number], column.pattern);
}

Figures figuresOf(const Record& row) {
    const auto& s = strstat;
    return {row[s.sta_qte], row[s.sta_brut], row[s.sta_net], row[s.sta_achat], row[s.sta_net2]};
}

QString totalWords(const QString& what, const SalesReport& report, const Figures& figures) {
    QString words = QStringLiteral("%1 : quantité %2   C.A. net %3   achat %4   marge %5 (%6 %)")
                        .arg(what, format(figures.quantity, Quantity), format(figures.net, Amount),
                             format(figures.purchase, Amount), format(figures.margin(), Amount),
                             format(figures.marginPercent(), Percent));
    if (report.query().compared) words += QStringLiteral("   C.A. comparé %1").arg(format(figures.comparedNet, Amount));
    return words;
}

/// The name of a row's group at a level, which only the groups of that level know.
QHash<QStringList, QString> namesOf(const SalesReport& report) {
    QHash<QStringList, QString> names;
    const qsizetype depth = report.kind().keys.size();
    QList<QStringList> paths{{}};
    for (qsizetype level = 0; level + 1 < depth; ++level) {
        QList<QStringList> below;
        for (const QStringList& path : paths)
            for (const Record& row : report.level(path, Sorting::ByKey)) {
                below.append(path + QStringList(row.value(keyField(report, level))));
                names.insert(below.last(), row[strstat.sta_lib]);
            }
        paths = below;
    }
    return names;
}

} // namespace

Report paper(const SalesReport& report, Sorting sorting) {
    const qsizetype last = report.kind().keys.size() - 1;
    const QList<GridColumn> columns = groups(report, last);
    QList<PaperColumn> titles;
    for (const GridColumn& column : columns) titles.append({column.title, column.field->kind == Field::Kind::Number});
    Report paper(report.kind().title, titles);
    paper.say(report.query().words());
    const auto names = namesOf(report);
    QStringList above;
    QList<Figures> sums(last);
    const auto close = [&](qsizetype from) {
        for (qsizetype level = last; level-- > from;) {
            if (above.isEmpty()) continue;
            paper.total(
                totalWords(QStringLiteral("Total %1 %2").arg(report.kind().keys[level].caption.toLower(), above[level]),
                           report, sums[level]));
            sums[level] = {};
        }
    };
    report.visit(sorting, [&](const Record& row) {
        QStringList keys;
        for (qsizetype level = 0; level < last; ++level) keys.append(row.value(keyField(report, level)));
        qsizetype same = 0;
        while (same < last && same < above.size() && above[same] == keys[same]) ++same;
        if (same < last) {
            close(same);
            for (qsizetype level = same; level < last; ++level)
                paper.group(QStringLiteral("%1 %2").arg(report.kind().keys[level].caption, keys[level]),
                            names.value(keys.first(level + 1)));
            above = keys;
        }
        for (Figures& sum : sums) sum += figuresOf(row);
        QStringList cells;
        for (const GridColumn& column : columns) cells.append(cell(row, column));
        paper.row(cells);
    });
    close(0);
    paper.total(totalWords(QStringLiteral("TOTAL"), report, report.total()));
    paper.count();
    return paper;
}

void writeFiles(const SalesReport& report, Sorting sorting, const QString& folder) {
    const QList<GridColumn> columns = all(report);
    QStringList fields, titles;
    for (const GridColumn& column : columns) {
        fields.append(column.field->name);
        titles.append(column.title);
    }
    const auto line = [](QStringList cells) {
        for (QString& one : cells) one.replace(u'\t', u' ');
        return cells.join(u'\t') + QStringLiteral("\r\n");
    };
    QString data = line(fields), readable = line(titles);
    report.visit(sorting, [&](const Record& row) {
        QStringList stored, shown;
        for (const GridColumn& column : columns) {
            stored.append(row.value(*column.field));
            shown.append(cell(row, column).remove(column.field->kind == Field::Kind::Number ? u' ' : u'\t'));
        }
        data += line(stored);
        readable += line(shown);
    });
    writeWhole(folder + DataName, entry_files::windows1252(data));
    writeWhole(folder + ReadableName, entry_files::windows1252(readable));
}

} // namespace molven::report_columns
