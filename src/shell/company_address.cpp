#include "shell/company_address.h"

#include "data/errors.h"
#include "shell/tables.h"

namespace molven::company_address {

namespace {

const QList<const Label*>& fields() {
    static const QList<const Label*> all{&strspecif.spe_l1, &strspecif.spe_l2, &strspecif.spe_l3, &strspecif.spe_l4};
    return all;
}

} // namespace

QStringList lines(Database molven) {
    QStringList found;
    const auto company = molven.find(strspecif, {});
    for (const Label* field : fields())
        if (const QString line = company ? company->value(*field).trimmed() : QString(); !line.isEmpty())
            found.append(line);
    return found;
}

void set(Database molven, const QStringList& lines) {
    if (lines.size() > fields().size())
        throw Refusal(QStringLiteral("L'adresse a %1 lignes au plus").arg(fields().size()));
    QList<Assignment> assignments;
    for (qsizetype i = 0; i < fields().size(); ++i) {
        const QString line = lines.value(i).trimmed();
        if (line.size() > fields()[i]->size)
            throw Refusal(QStringLiteral("Ligne d'adresse trop longue (%1 caractères au plus) : %2")
                              .arg(fields()[i]->size)
                              .arg(line));
        assignments.append({*fields()[i], line});
    }
    Transaction transaction(molven.workspace());
    molven.update(strspecif, assignments, {});
    transaction.commit();
}

} // namespace molven::company_address
