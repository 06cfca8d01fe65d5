#include "data/sqlite/dialect.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace molven::sqlite {

namespace {

using Kind = Field::Kind;

class SqliteDialect : public Dialect {
public:
    QString comparable(const QString& text, Kind kind) const override { return text + collation(kind); }

    QString sorted(const QString& expression, Kind, bool descends) const override {
        return descends ? expression + QStringLiteral(" desc") : expression;
    }

    QString byKey(bool) const override { return {}; }

    QString isOneOf(const QString& expression, Kind, const QStringList& list, Sql& sql) const override {
        const QByteArray json = QJsonDocument(QJsonArray::fromStringList(list)).toJson(QJsonDocument::Compact);
        return QStringLiteral("%1 in (select value from json_each(%2))")
            .arg(expression, sql.bind(QString::fromUtf8(json)));
    }

    QString hasKey(const QStringList& keys, Sql& sql) const override {
        return QStringLiteral("rowid in (select value from json_each(%1))")
            .arg(sql.bind(u'[' + keys.join(u',') + u']'));
    }

    QString matches(const QString& text, const QString& form) const override {
        return QStringLiteral("%1 glob '%2'").arg(text, QString(form).replace(u'\'', QStringLiteral("''")));
    }

    QString numberIn(const QString& text) const override {
        return QStringLiteral("cast(replace(%1,',','.') as real)").arg(text);
    }

    QString lowered(const QString& text) const override { return QStringLiteral("lower(%1)").arg(text); }

    QString asText(const QString& expression, Kind kind) const override {
        return kind == Kind::Number ? QStringLiteral("cast(%1 as text)").arg(expression) : expression;
    }

    QString json(const QString& text) const override { return QStringLiteral("json_quote(%1)").arg(text); }

    /// A whole one is written as one, in its field and in the journal.
    QString raised(const Number& field, const Decimal& amount, Sql& sql) const override {
        const auto sum = [&] {
            return QStringLiteral("round(coalesce(%1,0)+cast(%2 as numeric),%3)")
                .arg(field.name, sql.bind(amount.toString()), QString::number(field.scale));
        };
        const QString first = sum(), second = sum(), third = sum();
        return QStringLiteral("case when %1=cast(%2 as integer) then cast(%3 as integer) else %4 end")
            .arg(first, second, third, sum());
    }

    /// Whole numbers add up exactly, binary fractions do not.
    QString wholeSum(const Number& field) const override {
        return QStringLiteral("sum(cast(round(%1*1e%2) as integer))").arg(field.name).arg(field.scale);
    }

    /// A cross join keeps the order in which the tables are stated: whoever joins knows which one is small.
    QString join() const override { return QStringLiteral(" cross join "); }

    /// A number is compared twice, since a text of 15 digits cannot stand for every number of the engine.
    QString same(const Field& field, const QString& value, Sql& sql) const override {
        const QString mark = sql.bindOrNull(value);
        if (field.kind != Kind::Number) return QStringLiteral("%1 is %2 collate binary").arg(field.name, mark);
        return QStringLiteral("(%1 is %2 or cast(%1 as text) is %3)").arg(field.name, mark, sql.bindOrNull(value));
    }

    /// A number is made of its text once, not for every record.
    QString differs(const QString& expression, Kind kind, const QString& other) const override {
        return kind == Kind::Number ? QStringLiteral("%1 is not cast(%2 as numeric)").arg(expression, other)
                                    : QStringLiteral("%1 is not %2").arg(expression, exactly(other, kind));
    }

    QString exactly(const QString& expression, Kind kind) const override {
        return kind == Kind::Number ? expression : expression + QStringLiteral(" collate binary");
    }

    QString lines(const QString& text) const override {
        return QStringLiteral("group_concat(%1,char(10))||char(10)").arg(text);
    }

    QString definition(const Field& field) const override {
        return field.kind == Kind::Number
                   ? field.name + QStringLiteral(" numeric")
                   : field.name + QStringLiteral(" text not null default ''") + collation(field.kind);
    }

    QStringList ownColumns() const override { return {}; }
    QString keyOfInserted() const override { return {}; }

private:
    static QString collation(Kind kind) {
        return kind == Kind::Label  ? QStringLiteral(" collate french")
               : kind == Kind::Code ? QStringLiteral(" collate nocase")
                                    : QString();
    }
};

} // namespace

const Dialect& dialect() {
    static const SqliteDialect made;
    return made;
}

} // namespace molven::sqlite
