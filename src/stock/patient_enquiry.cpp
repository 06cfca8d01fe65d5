#include "stock/patient_enquiry.h"

#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "stock/immatriculation.h"

namespace molven {

namespace patient_enquiry {

namespace {

QString keyOf(const QString& date, const char* message, const char* field) {
    if (isEmptyDate(date)) return {};
    if (!dateFromText(date).isValid()) throw Refusal(QString::fromUtf8(message), QString::fromLatin1(field));
    return sortKey(date);
}

Criterion criterion(const PatientEnquiry& enquiry) {
    const QString start = keyOf(enquiry.firstDate, "date début non valide", "Mskdeb");
    const QString end = keyOf(enquiry.lastDate, "date fin non valide", "Mskfin");
    if (!start.isEmpty() && !end.isEmpty() && end < start)
        throw Refusal(QStringLiteral("date fin < date début"), QStringLiteral("Mskfin"));
    const QString first = padded(enquiry.firstUnit, 8), last = padded(enquiry.lastUnit, 8);
    Criterion all = strproduit.reg_pat != QString();
    if (!first.isEmpty()) all = all && strproduit.imm_art >= first;
    if (!last.isEmpty()) all = all && strproduit.imm_art <= last;
    if (!enquiry.reference.isEmpty()) all = all && strproduit.ref_art == enquiry.reference;
    if (!enquiry.firstReference.isEmpty()) all = all && strproduit.ref_art >= enquiry.firstReference;
    if (!enquiry.lastReference.isEmpty()) all = all && strproduit.ref_art <= enquiry.lastReference;
    if (!enquiry.client.isEmpty()) all = all && strproduit.clt_vte == padded(enquiry.client, 6);
    if (!enquiry.patient.isEmpty()) all = all && startsWith(strproduit.reg_pat, enquiry.patient);
    if (!start.isEmpty()) all = all && strproduit.tri_vte >= start;
    if (!end.isEmpty()) all = all && strproduit.tri_vte <= end;
    return all;
}

Order order(PatientEnquiry::Sort sort) {
    switch (sort) {
    case PatientEnquiry::Sort::Immatriculation:
        return {strproduit.pro_ann, strproduit.imm_art};
    case PatientEnquiry::Sort::Patient:
        return {strproduit.reg_pat, strproduit.ref_art, strproduit.pro_ann, strproduit.imm_art};
    case PatientEnquiry::Sort::Reference:
        break;
    }
    return {strproduit.ref_art, strproduit.pro_ann, strproduit.imm_art};
}

} // namespace

Files open(Workspace& workspace, const Session& session) {
    const UnitFiles all = openUnitFiles(workspace, session);
    Files files{all.molven, {all.archives.first()}};
    for (Database archive : all.archives.mid(1))
        if (!archive.first(1, strproduit, {}, {}).isEmpty()) files.archives.append(workspace.open(archive.path()));
    return files;
}

Recordset rows(const Files& files, const PatientEnquiry& enquiry, const Criterion& filter, const Order& asked) {
    Database units = files.units;
    const Criterion which = criterion(enquiry) && filter;
    const Order sorted = asked.orElse(order(enquiry.sort));
    return units.selectWith(files.archives, strproduit, which, sorted);
}

Recordset select(const Files& files, const PatientEnquiry& enquiry) {
    Recordset found = rows(files, enquiry, {}, {});
    if (found.isEmpty()) throw Refusal(QStringLiteral("Aucun produit correspondant à ce critère"));
    return found;
}

QString words(const PatientEnquiry& enquiry) {
    QStringList parts;
    const auto quoted = [&parts](const char* caption, const QString& value) {
        if (!value.isEmpty()) parts.append(QString::fromUtf8(caption) + value + u'\'');
    };
    if (!isEmptyDate(enquiry.firstDate) || !isEmptyDate(enquiry.lastDate))
        parts.append(QStringLiteral("Sélection du : ") + enquiry.firstDate + QStringLiteral(" au ") + enquiry.lastDate);
    quoted("immat >= '", padded(enquiry.firstUnit, 8));
    quoted("immat <= '", padded(enquiry.lastUnit, 8));
    quoted("référence = '", enquiry.reference);
    quoted("référence >= '", enquiry.firstReference);
    quoted("référence <= '", enquiry.lastReference);
    quoted("client : '", padded(enquiry.client, 6));
    quoted("patient : '", enquiry.patient);
    return parts.join(QStringLiteral(" et "));
}

} // namespace patient_enquiry

namespace working_copy {

qint64 keep(Database tri, const Recordset& units) {
    Transaction transaction(tri.workspace(), {}, Locks::none());
    tri.remove(tripro);
    Record copy(tripro);
    for (const Record& unit : units) {
        copy.copyFrom(unit);
        tri.insert(copy);
    }
    transaction.commit();
    return units.count();
}

} // namespace working_copy
} // namespace molven
