#include "dossier/table_conversion.h"

#include "data/dates.h"
#include "data/format.h"

namespace molven::conversion {

namespace {

constexpr qint64 ToldEvery = 500;
constexpr int SortKeySize = 8;

/// A column of the source that holds days, in a field that keeps them as a text.
QString dateFor(const Field& field, const QString& date) { return field.size == SortKeySize ? sortKey(date) : date; }

} // namespace

TableConversion::TableConversion(const JetFile& source, const QString& name, Database target, const Table& table)
    : source_(source), name_(name), target_(target), table_(table), columns_(source.columns(name)) {
    for (const JetFile::Column& column : columns_) {
        const auto& known = table.fields();
        const auto field = std::find_if(known.begin(), known.end(), [&column](const Field* one) {
            return one->name.compare(column.name, Qt::CaseInsensitive) == 0;
        });
        fields_.append(field == known.end() ? nullptr : *field);
        if (field == known.end()) unknown_.emplace(column.name, 0);
    }
}

Converted TableConversion::run(const Progress& progress) {
    Converted converted;
    converted.table = name_;
    converted.announced = source_.announced(name_);
    Transaction transaction(target_.workspace());
    target_.remove(table_);
    qint64 taken = 0;
    converted.read = source_.read(name_, [&](const QStringList& values) {
        if (taken++ % ToldEvery == 0) tell(progress, taken, std::max<qint64>(converted.announced, taken));
        take(values);
    });
    transaction.commit();
    converted.stored = target_.count(table_);
    converted.differing = differingSums();
    return converted;
}

void TableConversion::take(const QStringList& values) {
    Record record(table_);
    for (qsizetype i = 0; i < columns_.size(); ++i) {
        if (const Field* field = fields_[i])
            give(record, *field, columns_[i].kind == JetFile::Kind::Date ? dateFor(*field, values[i]) : values[i]);
        else if (!values[i].isEmpty())
            ++unknown_[columns_[i].name];
    }
    target_.insert(record);
}

void TableConversion::give(Record& record, const Field& field, const QString& value) {
    QString taken = value;
    if (field.kind == Field::Kind::Number && !taken.trimmed().isEmpty()) {
        const auto number = Decimal::parse(taken);
        if (!number || !Record::fits(field, *number)) {
            ++changed_[QStringLiteral("%1 : nombre illisible").arg(field.name)];
            return;
        }
        sums_[&field] += number->rounded(field.scale);
        taken = number->toString();
    } else if (field.kind != Field::Kind::Number && field.size > 0 && taken.size() > field.size) {
        ++changed_[QStringLiteral("%1 : texte coupé à %2 caractères").arg(field.name).arg(field.size)];
        taken.truncate(field.size);
    }
    record.set(field, taken);
}

QStringList TableConversion::differingSums() {
    QStringList found;
    for (const Field* field : table_.fields()) {
        if (field->kind != Field::Kind::Number) continue;
        const Decimal before = sums_.value(field),
                      after = target_.sum(table_, static_cast<const Number&>(*field)).rounded(field->scale);
        if (before != after)
            found.append(QStringLiteral("%1 : %2 lu, %3 ici").arg(field->name, shown(before), shown(after)));
    }
    return found;
}

QStringList TableConversion::notices() const {
    QStringList all;
    for (const auto& [column, count] : unknown_)
        all.append(
            QStringLiteral("champ inconnu %1, rempli dans %2 enregistrements, non repris").arg(column).arg(count));
    for (auto changed = changed_.begin(); changed != changed_.end(); ++changed)
        all.append(QStringLiteral("%1, %2 fois").arg(changed.key()).arg(changed.value()));
    return all;
}

} // namespace molven::conversion
