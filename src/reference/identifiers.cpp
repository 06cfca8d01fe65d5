#include "reference/identifiers.h"

#include <QRegularExpression>

namespace molven::identifiers {

namespace {

bool matches(const QString& text, const char* pattern) {
    return QRegularExpression(QStringLiteral("^(?:%1)$").arg(QString::fromLatin1(pattern))).match(text).hasMatch();
}

bool hasLuhnSum(const QString& digits) {
    int sum = 0;
    for (qsizetype i = 0; i < digits.size(); ++i) {
        const int digit = digits[digits.size() - 1 - i].digitValue();
        const int weighed = i % 2 == 0 ? digit : 2 * digit;
        sum += weighed > 9 ? weighed - 9 : weighed;
    }
    return sum % 10 == 0;
}

/// Remainder by 97 of a number of any length, letters counting 10 to 35.
int remainder97(const QString& text) {
    int remainder = 0;
    for (const QChar sign : text) {
        const int value = sign.isDigit() ? sign.digitValue() : sign.unicode() - u'A' + 10;
        remainder = (value > 9 ? remainder * 100 + value : remainder * 10 + value) % 97;
    }
    return remainder;
}

} // namespace

QString compact(const QString& typed) {
    static const QRegularExpression aside(QStringLiteral("[\\s.\\-]"));
    return QString(typed).remove(aside).toUpper();
}

bool isSiren(const QString& number) { return matches(number, "[0-9]{9}") && hasLuhnSum(number); }

bool isSiret(const QString& number) {
    if (!matches(number, "[0-9]{14}") || !isSiren(number.left(9))) return false;
    if (!number.startsWith(QStringLiteral("356000000"))) return hasLuhnSum(number);
    int sum = 0;
    for (const QChar digit : number) sum += digit.digitValue();
    return sum % 5 == 0 || hasLuhnSum(number);
}

bool isVatNumber(const QString& number) {
    if (!matches(number, "[A-Z]{2}[0-9A-Z+*]{2,13}")) return false;
    if (!number.startsWith(QStringLiteral("FR"))) return true;
    if (!matches(number, "FR[0-9A-Z]{2}[0-9]{9}")) return false;
    if (!matches(number, "FR[0-9]{11}")) return true; // keys with letters have no public rule
    const int siren = number.mid(4).toInt();
    return number.mid(2, 2).toInt() == (12 + 3 * (siren % 97)) % 97;
}

bool isIban(const QString& number) {
    return matches(number, "[A-Z]{2}[0-9]{2}[0-9A-Z]{11,30}") && remainder97(number.mid(4) + number.left(4)) == 1;
}

bool isBic(const QString& code) { return matches(code, "[A-Z]{6}[0-9A-Z]{2}([0-9A-Z]{3})?"); }

QString inFours(const QString& iban) {
    QStringList groups;
    for (qsizetype i = 0; i < iban.size(); i += 4) groups.append(iban.mid(i, 4));
    return groups.join(u' ');
}

} // namespace molven::identifiers
