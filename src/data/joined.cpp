#include "data/joined.h"

#include "data/database.h"

namespace molven {

namespace {

using Kind = Field::Kind;

QString joinedTerms(std::initializer_list<Expression> expressions) {
    QStringList terms;
    for (const Expression& expression : expressions) terms.append(expression.sql);
    return terms.join(u',');
}

} // namespace

Joined::Joined(const Database& file, const Table& table, const QString& name)
    : sql_(file.qualified(table) + QStringLiteral(" as ") + name) {}

Joined& Joined::with(const Database& file, const Table& table, const QString& name, const Criterion& agreement) {
    return add(" cross join ", file, table, name, agreement);
}

Joined& Joined::withAny(const Database& file, const Table& table, const QString& name, const Criterion& agreement) {
    return add(" left join ", file, table, name, agreement);
}

/// A cross join keeps the order in which the tables are stated: whoever joins knows which one is small.
Joined& Joined::add(const char* how, const Database& file, const Table& table, const QString& name,
                    const Criterion& agreement) {
    sql_ += QLatin1String(how) + file.qualified(table) + QStringLiteral(" as ") + name + QStringLiteral(" on ") +
            agreement.sql;
    values_ += agreement.values;
    return *this;
}

Expression of(const QString& name, const Field& field) { return {name + u'.' + field.name, field.kind}; }

Expression constant(const QString& text) {
    return {u'\'' + QString(text).replace(u'\'', QStringLiteral("''")) + u'\'', Kind::Code};
}
Expression constant(const Decimal& number) { return {number.toString(), Kind::Number}; }

Expression orZero(const Expression& number) { return {QStringLiteral("coalesce(%1,0)").arg(number.sql), Kind::Number}; }

Expression orEmpty(const Expression& text) { return {QStringLiteral("coalesce(%1,'')").arg(text.sql), text.kind}; }

Expression numberIn(const Expression& text) {
    return {QStringLiteral("cast(replace(%1,',','.') as real)").arg(text.sql), Kind::Number};
}

Expression plus(const Expression& a, const Expression& b) {
    return {QStringLiteral("(%1+%2)").arg(a.sql, b.sql), Kind::Number};
}

Expression minus(const Expression& a, const Expression& b) {
    return {QStringLiteral("(%1-%2)").arg(a.sql, b.sql), Kind::Number};
}

Expression product(int places, std::initializer_list<Expression> factors) {
    return {QStringLiteral("product(%1,%2)").arg(places).arg(joinedTerms(factors)), Kind::Number};
}

Expression quotient(int places, const Expression& dividend, const Expression& divisor) {
    return {QStringLiteral("quotient(%1,%2,%3)").arg(places).arg(dividend.sql, divisor.sql), Kind::Number};
}

Expression runningSum(const Expression& value, std::initializer_list<Expression> group, const Expression& order) {
    return {QStringLiteral("sum(%1) over (partition by %2 order by %3)").arg(value.sql, joinedTerms(group), order.sql),
            Kind::Number};
}

Expression choice(const Criterion& condition, const Expression& then, const Expression& otherwise) {
    return {QStringLiteral("case when %1 then %2 else %3 end").arg(condition.sql, then.sql, otherwise.sql), then.kind};
}

Expression tail(const Expression& text, int character) {
    return {QStringLiteral("substr(%1,%2)").arg(text.sql).arg(character), text.kind};
}

Expression start(const Expression& text, int characters) {
    return {QStringLiteral("substr(%1,1,%2)").arg(text.sql).arg(characters), text.kind};
}

Expression dayKey(const Field& field) {
    return {QStringLiteral("(substr(%1,7,4)||substr(%1,4,2)||substr(%1,1,2))").arg(field.name), Kind::Code};
}

Expression firstWord(const Expression& text) {
    return {QStringLiteral("substr(trim(%1),1,instr(trim(%1)||' ',' ')-1)").arg(text.sql), text.kind};
}

Expression otherWords(const Expression& text) {
    return {QStringLiteral("trim(substr(trim(%1),instr(trim(%1)||' ',' ')))").arg(text.sql), text.kind};
}

Criterion same(const Expression& a, const Expression& b) { return {QStringLiteral("%1=%2").arg(a.sql, b.sql), {}}; }

Criterion matches(const Expression& text, const QString& form) {
    return {text.sql + QStringLiteral(" glob ") + constant(form).sql, {}};
}

} // namespace molven
