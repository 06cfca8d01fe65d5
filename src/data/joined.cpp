#include "data/joined.h"

#include "data/database.h"
#include "data/dialect.h"

namespace molven {

namespace {

using Kind = Field::Kind;

QString tableAs(const QString& table, const QString& name) { return table + QStringLiteral(" as ") + name; }

QString listed(const QList<Expression>& expressions, Sql& sql) {
    QStringList terms;
    for (const Expression& expression : expressions) terms.append(expression.in(sql));
    return terms.join(u',');
}

/// The pattern with one or two expressions in the places of its marks, which stand in this order.
Expression formed(const QString& pattern, const QList<Expression>& parts, Kind kind) {
    return {[pattern, parts](Sql& sql) {
                if (parts.size() == 1) return pattern.arg(parts[0].in(sql));
                const QString first = parts[0].in(sql);
                return pattern.arg(first, parts[1].in(sql));
            },
            kind};
}

} // namespace

Joined::Joined(const Database& file, const Table& table, const QString& name)
    : engine_(&file.engine()), first_(tableAs(file.qualified(table), name)) {}

Joined& Joined::with(const Database& file, const Table& table, const QString& name, const Criterion& agreement) {
    return add(file, table, name, agreement, false);
}

Joined& Joined::withAny(const Database& file, const Table& table, const QString& name, const Criterion& agreement) {
    return add(file, table, name, agreement, true);
}

Joined& Joined::add(const Database& file, const Table& table, const QString& name, const Criterion& agreement,
                    bool isOptional) {
    further_.append({tableAs(file.qualified(table), name), agreement, isOptional});
    return *this;
}

QString Joined::in(Sql& sql) const {
    QString text = first_;
    for (const Further& further : further_)
        text += (further.isOptional ? QStringLiteral(" left join ") : sql.dialect.join()) + further.table +
                QStringLiteral(" on ") + further.agreement.in(sql);
    return text;
}

Expression of(const QString& name, const Field& field) {
    return {[text = name + u'.' + field.name](Sql&) { return text; }, field.kind};
}

Expression constant(const QString& text) {
    const QString quoted = u'\'' + QString(text).replace(u'\'', QStringLiteral("''")) + u'\'';
    return {[quoted](Sql&) { return quoted; }, Kind::Code};
}

Expression constant(const Decimal& number) {
    return {[text = number.toString()](Sql&) { return text; }, Kind::Number};
}

Expression orZero(const Expression& number) { return formed(QStringLiteral("coalesce(%1,0)"), {number}, Kind::Number); }

Expression orEmpty(const Expression& text) { return formed(QStringLiteral("coalesce(%1,'')"), {text}, text.kind()); }

Expression numberIn(const Expression& text) {
    return {[text](Sql& sql) { return sql.dialect.numberIn(text.in(sql)); }, Kind::Number};
}

Expression plus(const Expression& a, const Expression& b) {
    return formed(QStringLiteral("(%1+%2)"), {a, b}, Kind::Number);
}

Expression minus(const Expression& a, const Expression& b) {
    return formed(QStringLiteral("(%1-%2)"), {a, b}, Kind::Number);
}

Expression product(int places, std::initializer_list<Expression> factors) {
    return {[places, all = QList<Expression>(factors)](Sql& sql) {
                return QStringLiteral("product(%1,%2)").arg(QString::number(places), listed(all, sql));
            },
            Kind::Number};
}

Expression quotient(int places, const Expression& dividend, const Expression& divisor) {
    return formed(QStringLiteral("quotient(") + QString::number(places) + QStringLiteral(",%1,%2)"),
                  {dividend, divisor}, Kind::Number);
}

Expression runningSum(const Expression& value, std::initializer_list<Expression> group, const Expression& order) {
    return {[value, order, all = QList<Expression>(group)](Sql& sql) {
                const QString summed = value.in(sql), by = listed(all, sql);
                return QStringLiteral("sum(%1) over (partition by %2 order by %3)").arg(summed, by, order.in(sql));
            },
            Kind::Number};
}

Expression choice(const Criterion& condition, const Expression& then, const Expression& otherwise) {
    return {[condition, then, otherwise](Sql& sql) {
                const QString when = condition.in(sql), yes = then.in(sql);
                return QStringLiteral("case when %1 then %2 else %3 end").arg(when, yes, otherwise.in(sql));
            },
            then.kind()};
}

Expression tail(const Expression& text, int character) {
    return formed(QStringLiteral("substr(%1,") + QString::number(character) + u')', {text}, text.kind());
}

Expression start(const Expression& text, int characters) {
    return formed(QStringLiteral("substr(%1,1,") + QString::number(characters) + u')', {text}, text.kind());
}

Expression dayKey(const Field& field) {
    return {[text = QStringLiteral("(substr(%1,7,4)||substr(%1,4,2)||substr(%1,1,2))").arg(field.name)](Sql&) {
                return text;
            },
            Kind::Code};
}

Expression firstWord(const Expression& text) {
    return formed(QStringLiteral("substr(trim(%1),1,instr(trim(%1)||' ',' ')-1)"), {text}, text.kind());
}

Expression otherWords(const Expression& text) {
    return formed(QStringLiteral("trim(substr(trim(%1),instr(trim(%1)||' ',' ')))"), {text}, text.kind());
}

Criterion same(const Expression& a, const Expression& b) {
    return Criterion([a, b](Sql& sql) {
        const QString left = a.in(sql);
        return left + u'=' + b.in(sql);
    });
}

Criterion matches(const Expression& text, const QString& form) {
    return Criterion([text, form](Sql& sql) { return sql.dialect.matches(text.in(sql), form); });
}

} // namespace molven
