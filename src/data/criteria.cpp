#include "data/criteria.h"

#include "data/dialect.h"
#include "data/format.h"

namespace molven {

namespace {

using Kind = Field::Kind;

Criterion never() {
    return Criterion([](Sql&) { return QStringLiteral("1=0"); });
}

Criterion isKnown(const Expression& expression) {
    return Criterion([expression](Sql& sql) { return expression.in(sql) + QStringLiteral(" is not null"); });
}

/// A text that is no number stands behind all numbers.
Criterion comparedWithNoNumber(const Expression& number, QLatin1String comparison) {
    return comparison == QLatin1String("=") || comparison.startsWith(u'>') ? never() : isKnown(number);
}

Criterion compared(const Expression& expression, const char* comparison, const QString& value) {
    const QLatin1String sign(comparison);
    if (expression.kind() == Kind::Number && !Decimal::read(value)) return comparedWithNoNumber(expression, sign);
    return Criterion([expression, sign, value](Sql& sql) {
        const QString left = expression.in(sql);
        return left + u' ' + sign + u' ' + sql.bind(value);
    });
}

Criterion joined(const Criterion& a, const char* word, const Criterion& b) {
    return Criterion([a, word = QLatin1String(word), b](Sql& sql) {
        const QString left = a.in(sql), right = b.in(sql);
        return QStringLiteral("(%1 %2 %3)").arg(left, word, right);
    });
}

} // namespace

Expression::Expression(const Field& field) : Expression([name = field.name](Sql&) { return name; }, field.kind) {}

Expression left(const Field& field, int count) {
    return {[name = field.name, kind = field.kind, count](Sql& sql) {
                const QString start =
                    QStringLiteral("substr(%1,1,%2)").arg(sql.dialect.asText(name, kind), QString::number(count));
                return sql.dialect.comparable(start, kind);
            },
            field.kind};
}

Expression monthKey(const Field& field) {
    return {[name = field.name](Sql& sql) {
                return sql.dialect.comparable(QStringLiteral("(substr(%1,4,4)||substr(%1,1,2))").arg(name), Kind::Code);
            },
            Kind::Code};
}

Expression trimmed(const Field& field) {
    return {[name = field.name, kind = field.kind](Sql& sql) {
                return sql.dialect.comparable(QStringLiteral("trim(%1)").arg(sql.dialect.asText(name, kind)), kind);
            },
            field.kind};
}

Expression operator+(const Expression& a, const Expression& b) {
    return {[a, b](Sql& sql) {
                const QString left = a.in(sql), right = b.in(sql);
                return sql.dialect.comparable(QStringLiteral("(%1||%2)").arg(left, right), a.kind());
            },
            a.kind()};
}

Criterion operator==(const Expression& expression, const QString& value) { return compared(expression, "=", value); }
Criterion operator!=(const Expression& expression, const QString& value) { return compared(expression, "<>", value); }
Criterion operator<(const Expression& expression, const QString& value) { return compared(expression, "<", value); }
Criterion operator<=(const Expression& expression, const QString& value) { return compared(expression, "<=", value); }
Criterion operator>(const Expression& expression, const QString& value) { return compared(expression, ">", value); }
Criterion operator>=(const Expression& expression, const QString& value) { return compared(expression, ">=", value); }

Criterion operator==(const Number& field, const Decimal& value) { return compared(field, "=", value.toString()); }
Criterion operator!=(const Number& field, const Decimal& value) { return compared(field, "<>", value.toString()); }

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
    return Criterion([expression, plain = folded(text)](Sql& sql) {
        const QString searched = sql.dialect.asText(expression.in(sql), expression.kind());
        return QStringLiteral("instr(folded(%1),%2) > 0").arg(searched, sql.bind(plain));
    });
}

Criterion containsCode(const Expression& expression, const QString& text) {
    return Criterion([expression, text](Sql& sql) {
        const QString searched = sql.dialect.lowered(expression.in(sql));
        return QStringLiteral("instr(%1,%2) > 0").arg(searched, sql.dialect.lowered(sql.bind(text)));
    });
}

Criterion anyContains(const QList<const Field*>& fields, const QString& text) {
    if (text.isEmpty()) return {};
    return Criterion([fields, plain = folded(text)](Sql& sql) {
        QStringList texts;
        for (const Field* field : fields)
            texts.append(QStringLiteral("coalesce(%1,'')").arg(sql.dialect.asText(field->name, field->kind)));
        // A character that nobody types keeps what is sought from running over two of them.
        return QStringLiteral("instr(folded(%1),%2) > 0")
            .arg(texts.join(QStringLiteral("||'\x1f'||")), sql.bind(plain));
    });
}

Criterion isOneOf(const Expression& expression, const QStringList& values) {
    constexpr qsizetype MostBound = 1000; // the engines bind some ten thousands at most
    QStringList meant = values;
    if (expression.kind() == Kind::Number) meant.removeIf([](const QString& v) { return !Decimal::read(v); });
    if (meant.isEmpty()) return never();
    return Criterion([expression, meant](Sql& sql) {
        const QString left = expression.in(sql);
        if (meant.size() > MostBound) return sql.dialect.isOneOf(left, expression.kind(), meant, sql);
        QStringList marks;
        for (const QString& value : meant) marks.append(sql.bind(value));
        return QStringLiteral("%1 in (%2)").arg(left, marks.join(u','));
    });
}

Criterion operator&&(const Criterion& a, const Criterion& b) {
    if (a.always()) return b;
    if (b.always()) return a;
    return joined(a, "and", b);
}

Criterion operator||(const Criterion& a, const Criterion& b) {
    if (a.always() || b.always()) return {};
    return joined(a, "or", b);
}

Criterion operator!(const Criterion& a) {
    return Criterion(
        [a](Sql& sql) { return a.always() ? QStringLiteral("1=0") : QStringLiteral("not (%1)").arg(a.in(sql)); });
}

Order::Order(std::initializer_list<std::reference_wrapper<const Field>> fields) {
    for (const Field& field : fields) then(field);
}

Order& Order::then(const Expression& expression) {
    terms_.append({expression, false});
    return *this;
}

Order Order::descending(const Field& field) {
    Order order;
    order.terms_.append({field, true});
    return order;
}

QString Order::in(Sql& sql, const QString& last, bool turned) const {
    QStringList terms;
    for (const auto& [value, descends] : terms_)
        terms.append(sql.dialect.sorted(value.in(sql), value.kind(), descends != turned));
    if (!last.isEmpty()) terms.append(turned ? last + QStringLiteral(" desc") : last);
    return terms.isEmpty() ? QString() : QStringLiteral(" order by ") + terms.join(u',');
}

} // namespace molven
