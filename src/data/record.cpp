#include "data/record.h"

#include "data/errors.h"

#include <optional>

namespace molven {

namespace {

/// Digits of a number written plainly, such as "-12.5"; none when it is written otherwise or has more decimals.
std::optional<int> plainDigits(const QString& text, int scale) {
    int digits = 0;
    int decimals = -1;
    for (qsizetype i = text.startsWith(u'-') ? 1 : 0; i < text.size(); ++i) {
        if (text[i] == u'.' && decimals < 0)
            decimals = 0;
        else if (text[i] < u'0' || text[i] > u'9')
            return std::nullopt;
        else if (++digits && decimals >= 0)
            ++decimals;
    }
    return digits == 0 || decimals > scale ? std::nullopt : std::optional(digits);
}

QString fittedNumber(const Field& field, const QString& value) {
    if (value.trimmed().isEmpty()) return {};
    if (const auto digits = plainDigits(value, field.scale); digits && *digits <= Number::Digits) return value;
    const auto number = Decimal::read(value);
    if (!number)
        throw DataError(DataError::NotANumber, QStringLiteral("Le champ %1 attend un nombre.").arg(field.name));
    QString text = number->rounded(field.scale).toString();
    if (!Record::fits(field, *number))
        throw DataError(DataError::FieldTooSmall,
                        QStringLiteral("Le champ %1 est trop petit pour accepter ce nombre (%2 chiffres au plus).")
                            .arg(field.name)
                            .arg(Number::Digits));
    return text;
}

} // namespace

bool Record::fits(const Field& field, const Decimal& number) {
    return plainDigits(number.rounded(field.scale).toString(), field.scale).value_or(0) <= Number::Digits;
}

Record::Record(const Table& table) : table_(&table), values_(table.fields().size(), QString()) {}

Decimal Record::operator[](const Number& field) const { return Decimal::fromText(values_[field.position]); }

void Record::set(const Field& field, const QString& value) { values_[field.position] = fitted(field, value); }

void Record::set(const Number& field, const Decimal& value) {
    values_[field.position] = fitted(field, value.rounded(field.scale).toString());
}

QString Record::fitted(const Field& field, const QString& value) {
    if (field.kind == Field::Kind::Number) return fittedNumber(field, value);
    if (field.size == 0 || value.size() <= field.size) return value;
    throw DataError(DataError::FieldTooSmall,
                    QStringLiteral("Le champ %1 est trop petit pour accepter la valeur saisie (%2 caractères au plus).")
                        .arg(field.name)
                        .arg(field.size));
}

void Record::copyFrom(const Record& other) {
    for (const Field* field : table_->fields())
        if (const Field* source = other.table().field(field->name)) values_[field->position] = other.value(*source);
}

} // namespace molven
