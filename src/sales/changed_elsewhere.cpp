#include "sales/changed_elsewhere.h"

#include "data/format.h"

#include <QStringList>

namespace molven {

namespace {

QString words(const Record& stored, const Field& field) {
    const QString value = stored.value(field);
    if (value.isEmpty()) return QStringLiteral("(vide)");
    return field.kind == Field::Kind::Number ? shown(Decimal::fromText(value)) : value;
}

} // namespace

void requireUnchanged(const Record& stored, const Record& asRead, const QList<WatchedField>& fields) {
    QStringList changes;
    QString first;
    for (const WatchedField& watched : fields) {
        if (stored.value(*watched.field) == asRead.value(*watched.field)) continue;
        if (first.isEmpty()) first = watched.field->name;
        changes.append(QString::fromUtf8(watched.changed) + QStringLiteral(" par un autre poste : ") +
                       words(stored, *watched.field));
    }
    if (!changes.isEmpty()) throw ChangedElsewhere(changes.join(u'\n'), first);
}

} // namespace molven
