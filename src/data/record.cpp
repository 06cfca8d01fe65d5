#include "data/record.h"

#include "data/errors.h"

namespace molven {

Record::Record(const Table& table) : table_(&table), values_(table.fields().size(), QString()) {}

Decimal Record::operator[](const Number& field) const { return Decimal::fromText(values_[field.position]); }

void Record::requireRoom(const Field& field, const QString& value) {
    if (field.size == 0 || value.size() <= field.size) return;
    throw DataError(DataError::FieldTooSmall,
                    QStringLiteral("Le champ %1 est trop petit pour accepter la valeur saisie (%2 caractères au plus).")
                        .arg(field.name)
                        .arg(field.size));
}

void Record::set(const Field& field, const QString& value) {
    requireRoom(field, value);
    values_[field.position] = value;
}

void Record::set(const Number& field, const Decimal& value) { values_[field.position] = value.toString(); }

void Record::copyFrom(const Record& other) {
    for (const Field* field : table_->fields())
        if (const Field* source = other.table().field(field->name)) values_[field->position] = other.value(*source);
}

} // namespace molven
