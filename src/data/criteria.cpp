#include "data/criteria.h"

#include "data/format.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace molven {

namespace {

const QString CollateFrench = QStringLiteral(" collate french");
const QString CollateCode = QStringLiteral(" collate nocase");

const QString& collationOf(Field::Kind kind) {
    static const QString none;
    return kind == Field::Kind::Label ? CollateFrench : kind == Field::Kind::Code ? CollateCode : none;
}

/// A null text would be bound as the engine's null, which equals nothing.
QString notNull(const QString& value) { return value.isNull() ? QStringLiteral("") : value; }

Criterion compared(const Expression& expression, const char* comparison, const QString& value) {
    return {expression.sql + QLatin1String(comparison) + u'?', {notNull(value)}};
}

} // namespace

Expression::Expression(const Field& field) : sql(field.name), kind(field.kind) {}

Expression left(const Field& field, int count) {
    return {QStringLiteral("substr(%1,1,%2)").arg(field.name).arg(count) + collationOf(field.kind), field.kind};
}

Expression monthKey(const Field& field) {
    return {QStringLiteral("(substr(%1,4,4)||substr(%1,1,2))").arg(field.name) + CollateCode, Field::Kind::Code};
}

Expression trimmed(const Field& field) {
    return {QStringLiteral("trim(%1)").arg(field.name) + collationOf(field.kind), field.kind};
}

Expression operator+(const Expression& a, const Expression& b) {
    return {QStringLiteral("(%1||%2)").arg(a.sql, b.sql) + collationOf(a.kind), a.kind};
}

Criterion operator==(const Expression& expression, const QString& value) { return compared(expression, " = ", value); }
Criterion operator!=(const Expression& expression, const QString& value) { return compared(expression, " <> ", value); }
Criterion operator<(const Expression& expression, const QString& value) { return compared(expression, " < ", value); }
Criterion operator<=(const Expression& expression, const QString& value) { return compared(expression, " <= ", value); }
Criterion operator>(const Expression& expression, const QString& value) { return compared(expression, " > ", value); }
Criterion operator>=(const Expression& expression, const QString& value) { return compared(expression, " >= ", value); }

Criterion operator==(const Number& field, const Decimal& value) { return compared(field, " = ", value.toString()); }
Criterion operator!=(const Number& field, const Decimal& value) { return compared(field, " <> ", value.toString()); }

Criterion startsWith(const Field& field, const QString& text) {
    if (text.isEmpty()) return {};
    // The range lets an index serve; U+FFFF sorts behind every character in both collations.
    const QString end = text + QChar(0xFFFF);
    return field >= text && field < end && left(field, static_cast<int>(text.size())) == text;
}

Criterion beginsLike(const Label& name, const QString& text) {
    if (text.isEmpty()) return {};
    const QString plain = folded(text); // accents sort behind the same letters without
    return name >= plain && name < plain + QChar(0xFFFF) && contains(name, text);
}

Criterion contains(const Expression& expression, const QString& text) {
    if (text.isEmpty()) return {};
    return {QStringLiteral("instr(folded(%1),?) > 0").arg(expression.sql), {folded(text)}};
}

Criterion isOneOf(const Expression& expression, const QStringList& values) {
    constexpr qsizetype MostBound = 1000; // the engine binds some ten thousands at most
    if (values.size() > MostBound) {
        const QByteArray list = QJsonDocument(QJsonArray::fromStringList(values)).toJson(QJsonDocument::Compact);
        return {QStringLiteral("%1 in (select value from json_each(?))").arg(expression.sql),
                {QString::fromUtf8(list)}};
    }
    QStringList marks(values.size(), QStringLiteral("?"));
    QStringList bound;
    for (const QString& value : values) bound.append(notNull(value));
    return {QStringLiteral("%1 in (%2)").arg(expression.sql, marks.join(u',')), bound};
}

Criterion operator&&(const Criterion& a, const Criterion& b) {
    if (a.always()) return b;
    if (b.always()) return a;
    return {QStringLiteral("(%1 and %2)").arg(a.sql, b.sql), a.values + b.values};
}

Criterion operator||(const Criterion& a, const Criterion& b) {
    if (a.always() || b.always()) return {};
    return {QStringLiteral("(%1 or %2)").arg(a.sql, b.sql), a.values + b.values};
}

Criterion operator!(const Criterion& a) { return {QStringLiteral("not (%1)").arg(a.sql), a.values}; }

Order::Order(std::initializer_list<std::reference_wrapper<const Field>> fields) {
    for (const Field& field : fields) terms.append(field.name);
}

Order& Order::then(const Expression& expression) {
    terms.append(expression.sql);
    return *this;
}

Order Order::descending(const Field& field) {
    Order order;
    order.terms.append(field.name + QStringLiteral(" desc"));
    return order;
}

} // namespace molven
