#include "stock/gs1.h"

#include "data/errors.h"

#include <QRegularExpression>

#include <algorithm>

namespace molven::gs1 {

namespace {

const QChar GroupSeparator(0x1D), VisibleSeparator(0x241D);

struct Identifier {
    QString digits;
    int length; ///< of its value; the most when it varies
    bool isFixed;
};

const QList<Identifier>& identifiers() {
    static const QList<Identifier> all{{QStringLiteral("01"), 14, true},  {QStringLiteral("11"), 6, true},
                                       {QStringLiteral("17"), 6, true},   {QStringLiteral("10"), 20, false},
                                       {QStringLiteral("21"), 20, false}, {QStringLiteral("240"), 30, false}};
    return all;
}

bool areDigits(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

/// Weights 3 and 1 in turn from the right, before the check digit.
bool hasRightCheckDigit(const QString& gtin) {
    int sum = 0;
    for (qsizetype i = 0; i < gtin.size(); ++i) sum += gtin[gtin.size() - 1 - i].digitValue() * (i % 2 == 1 ? 3 : 1);
    return sum % 10 == 0;
}

class Parser {
public:
    Parser(const QString& text, const QDate& today, const QString& field) : today_(today), field_(field) {
        static const QRegularExpression symbology(QStringLiteral("^\\][A-Za-z][0-9]"));
        rest_ = QString(text).trimmed().remove(symbology);
        rest_.replace(VisibleSeparator, GroupSeparator).replace(QStringLiteral("<GS>"), QString(GroupSeparator));
    }

    Gs1Code parse() {
        skipSeparators();
        while (!rest_.isEmpty()) {
            take();
            skipSeparators();
        }
        return code_;
    }

private:
    [[noreturn]] void refuse(const QString& why) const {
        throw Refusal(QStringLiteral("Code scanné incorrect : ") + why, field_);
    }

    void skipSeparators() {
        while (rest_.startsWith(GroupSeparator)) rest_.remove(0, 1);
    }

    const Identifier& identifier() {
        const bool inBrackets = rest_.startsWith(u'(');
        if (inBrackets) rest_.remove(0, 1);
        for (const Identifier& known : identifiers()) {
            if (!rest_.startsWith(known.digits)) continue;
            rest_.remove(0, known.digits.size());
            if (inBrackets && rest_.startsWith(u')')) rest_.remove(0, 1);
            return known;
        }
        refuse(QStringLiteral("identifiant inconnu ") + rest_.left(3));
    }

    QString value(const Identifier& identifier) {
        qsizetype end = rest_.indexOf(GroupSeparator);
        if (const qsizetype bracket = rest_.indexOf(u'('); bracket >= 0 && (end < 0 || bracket < end)) end = bracket;
        QString value = end < 0 ? rest_ : rest_.left(end);
        if (identifier.isFixed) value = value.left(identifier.length);
        if (value.isEmpty() || (identifier.isFixed && value.size() < identifier.length))
            refuse(QStringLiteral("valeur trop courte pour l'identifiant ") + identifier.digits);
        if (value.size() > identifier.length)
            refuse(QStringLiteral("valeur trop longue pour l'identifiant ") + identifier.digits);
        rest_.remove(0, value.size());
        return value;
    }

    void take() {
        const Identifier& found = identifier();
        const QString text = value(found);
        if (found.digits == u"01") code_.gtin = gtin(text);
        if (found.digits == u"10") code_.lot = text;
        if (found.digits == u"11") code_.production = date(text);
        if (found.digits == u"17") code_.expiry = date(text);
        if (found.digits == u"21") code_.serial = text;
        if (found.digits == u"240") code_.supplierReference = text;
    }

    QString gtin(const QString& text) const {
        if (!areDigits(text) || !hasRightCheckDigit(text)) refuse(QStringLiteral("clé du GTIN fausse ") + text);
        return text;
    }

    /// YYMMDD; a year more than 50 ahead is of the century before, one more than 49 behind of the next.
    QDate date(const QString& text) const {
        if (!areDigits(text)) refuse(QStringLiteral("date ") + text);
        int year = today_.year() / 100 * 100 + text.left(2).toInt();
        if (year - today_.year() > 50) year -= 100;
        if (year - today_.year() < -49) year += 100;
        const int month = text.mid(2, 2).toInt(), day = text.mid(4, 2).toInt();
        const QDate first(year, month, 1);
        const QDate found =
            day == 0 && first.isValid() ? QDate(year, month, first.daysInMonth()) : QDate(year, month, day);
        if (!found.isValid()) refuse(QStringLiteral("date ") + text);
        return found;
    }

    QDate today_;
    QString field_;
    QString rest_;
    Gs1Code code_;
};

} // namespace

bool isScan(const QString& text) {
    static const QRegularExpression scan(
        QStringLiteral("^(\\][A-Za-z][0-9]|[\\x{1D}\\x{241D}]|<GS>|\\((01|10|11|17|21|240)\\)|01\\d{14})"));
    return scan.match(text.trimmed()).hasMatch();
}

Gs1Code parse(const QString& text, const QDate& today, const QString& field) {
    return Parser(text, today, field).parse();
}

} // namespace molven::gs1
