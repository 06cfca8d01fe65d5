#include "data/postgres/dialect.h"

namespace molven::postgres {

namespace {

using Kind = Field::Kind;

/// A list as the server writes its arrays.
QString arrayOf(const QStringList& values) {
    QStringList quoted;
    for (QString value : values) {
        value.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
        quoted.append(u'"' + value + u'"');
    }
    return u'{' + quoted.join(u',') + u'}';
}

/// Codes are of a type that compares without regard to the case of ASCII letters, in a database that sorts by bytes;
/// labels are texts under a collation of the program's own; see site.cpp.
class PostgresDialect : public Dialect {
public:
    QString comparable(const QString& text, Kind kind) const override {
        return kind == Kind::Code    ? QStringLiteral("(%1)::citext").arg(text)
               : kind == Kind::Label ? QStringLiteral("(%1) collate french").arg(text)
                                     : text;
    }

    QString sorted(const QString& expression, Kind kind, bool descends) const override {
        if (kind != Kind::Number) return descends ? expression + QStringLiteral(" desc") : expression;
        return expression + (descends ? QStringLiteral(" desc nulls last") : QStringLiteral(" nulls first"));
    }

    /// The sum keeps the server from walking through all keys to the first that fits.
    QString byKey(bool alone) const override { return alone ? QStringLiteral("rowid+0") : QStringLiteral("rowid"); }

    QString isOneOf(const QString& expression, Kind kind, const QStringList& list, Sql& sql) const override {
        return QStringLiteral("%1 = any(%2::%3[])").arg(expression, sql.bind(arrayOf(list)), type(kind));
    }

    QString hasKey(const QStringList& keys, Sql& sql) const override {
        return QStringLiteral("rowid = any(%1::bigint[])").arg(sql.bind(u'{' + keys.join(u',') + u'}'));
    }

    QString matches(const QString& text, const QString& form) const override {
        QString pattern;
        for (const QChar c : form)
            pattern += c == u'*'                             ? QStringLiteral(".*")
                       : c == u'?'                           ? QStringLiteral(".")
                       : QStringLiteral("[]-").contains(c)   ? QString(c)
                       : c.isLetterOrNumber() || c.isSpace() ? QString(c)
                                                             : u'\\' + QString(c);
        pattern.replace(u'\'', QStringLiteral("''"));
        return QStringLiteral("(%1)::text collate \"C\" ~ '^%2$'").arg(text, pattern);
    }

    QString lowered(const QString& text) const override {
        return QStringLiteral("lower((%1)::text collate \"C\")").arg(text);
    }

    QString numberIn(const QString& text) const override { return QStringLiteral("number_in((%1)::text)").arg(text); }

    QString asText(const QString& expression, Kind kind) const override {
        return kind == Kind::Number ? QStringLiteral("trim_scale((%1)::numeric)::text").arg(expression)
                                    : QStringLiteral("(%1)::text").arg(expression);
    }

    /// Written out: the server does not inline a function of ours around one that it does not count as immutable, and
    /// entering one costs more than what it does.
    QString json(const QString& text) const override {
        return QStringLiteral("coalesce(to_json((%1) collate \"C\")::text,'null')").arg(text);
    }

    QString wholeSum(const Number& field) const override {
        return QStringLiteral("sum(round(%1*1e%2))").arg(field.name).arg(field.scale);
    }

    QString raised(const Number& field, const Decimal& amount, Sql& sql) const override {
        return QStringLiteral("round(coalesce(%1,0)+(%2)::numeric,%3)")
            .arg(field.name, sql.bind(amount.toString()), QString::number(field.scale));
    }

    QString join() const override { return QStringLiteral(" join "); }

    QString same(const Field& field, const QString& value, Sql& sql) const override {
        const QString mark = sql.bindOrNull(value);
        return field.kind == Kind::Number ? QStringLiteral("%1 is not distinct from %2").arg(field.name, mark)
                                          : QStringLiteral("%1::text collate \"C\" = %2::text").arg(field.name, mark);
    }

    QString differs(const QString& expression, Kind kind, const QString& other) const override {
        return kind == Kind::Number
                   ? QStringLiteral("%1 is distinct from %2").arg(expression, other)
                   : QStringLiteral("%1::text collate \"C\" is distinct from (%2)::text").arg(expression, other);
    }

    QString exactly(const QString& expression, Kind kind) const override {
        return kind == Kind::Number ? expression : QStringLiteral("(%1)::text collate \"C\"").arg(expression);
    }

    QString lines(const QString& text) const override {
        return QStringLiteral("string_agg(%1,chr(10) order by rowid)||chr(10)").arg(text);
    }

    QString definition(const Field& field) const override {
        switch (field.kind) {
        case Kind::Number:
            return field.name + QStringLiteral(" numeric");
        case Kind::Label:
            return field.name + QStringLiteral(" text collate french not null default ''");
        case Kind::Code:
            break;
        }
        return field.name + QStringLiteral(" citext not null default ''");
    }

    QStringList ownColumns() const override {
        return {QStringLiteral("rowid bigint generated by default as identity primary key")};
    }

    QString keyOfInserted() const override { return QStringLiteral(" returning rowid"); }

private:
    static QString type(Kind kind) {
        return kind == Kind::Number ? QStringLiteral("numeric")
               : kind == Kind::Code ? QStringLiteral("citext")
                                    : QStringLiteral("text");
    }
};

} // namespace

const Dialect& dialect() {
    static const PostgresDialect made;
    return made;
}

} // namespace molven::postgres
