#include "dossier/check/checks.h"

#include "data/dates.h"
#include "sales/record_trail.h"
#include "stock/immatriculation.h"
#include "stock/stock_tables.h"

#include <QRegularExpression>

namespace molven::check {

namespace {

/// A date and the key that sorts by it; null when the table keeps none.
struct DateField {
    const Text& date;
    const Text* key;
};

QString titleOf(const Record& record, const Field& field) {
    return record_trail::fieldTitle(record.table().name, field.name);
}

QString faultOf(const DateField& field, const Record& record) {
    const QString date = record[field.date];
    if (!isEmptyDate(date) && !dateFromText(date).isValid())
        return QStringLiteral("%1 : date impossible « %2 »").arg(titleOf(record, field.date), date);
    if (field.key && record[*field.key].trimmed() != sortKey(date))
        return QStringLiteral("%1 : clé de tri autre que %2").arg(titleOf(record, field.date), date);
    return {};
}

void checkDates(const QString& file, const Record& record, const QString& subject, const QList<DateField>& dates,
                Faults& faults) {
    for (const DateField& field : dates)
        if (const QString text = faultOf(field, record); !text.isEmpty())
            faults.append({file, subject, text, &kind::Values});
}

} // namespace

void checkUnitValues(const QString& fileName, const Record& unit, Faults& faults) {
    const auto& u = strproduit;
    static const QList<DateField> dates{{u.dat_cde, &u.tri_cde},
                                        {u.dat_liv, &u.tri_liv},
                                        {u.dat_dlv, &u.tri_dlv},
                                        {u.dat_vte, &u.tri_vte},
                                        {u.reg_dat, nullptr}};
    static const QRegularExpression digit(QStringLiteral("\\d"));
    const QString number = unit[u.imm_art];
    const Immatriculation key = Immatriculation::fromText(number);
    const int received = number.mid(2, 2).toInt();
    if (!key.isValid() || key.number() != number || received < 1 || received > 12 || unit[u.pro_ann].size() != 2)
        faults.append({fileName, number, QStringLiteral("immatriculation malformée"), &kind::Values});
    checkDates(fileName, unit, number, dates, faults);
    for (const Text* month : {&u.dat_ste, &u.dat_per})
        if (const QString text = unit[*month]; text.contains(digit) && !isMonthYear(text))
            faults.append({fileName, number,
                           QStringLiteral("%1 : mois impossible « %2 »").arg(titleOf(unit, *month), text),
                           &kind::Values});
}

void checkValues(references::Files& files, Faults& faults) {
    for (const DataFile file : {DataFile::Molven, DataFile::Stocks})
        for (const Record& movement : files[file].select(strmvtstk))
            checkDates(catalogueEntry(file).name, movement, movement[strmvtstk.ref_stk],
                       {{strmvtstk.dat_stk, &strmvtstk.tri_stk}}, faults);
    for (references::Files::Searched searched : files.searched()) {
        if (searched.file != DataFile::Vente && searched.file != DataFile::Historic) continue;
        for (const Family& family : families()) {
            const DocumentHeaders& table = family.headers;
            for (const Record& header : searched.database.select(table))
                checkDates(catalogueEntry(searched.file).name, header, family.name + u' ' + header[table.fac_no],
                           {{table.fac_datf, nullptr}, {table.fac_datc, nullptr}, {table.fac_ech, nullptr}}, faults);
        }
    }
}

} // namespace molven::check
