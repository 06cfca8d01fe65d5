#include "reference/ean.h"

#include "data/errors.h"
#include "reference/article_tables.h"

#include <algorithm>

namespace molven::ean {

namespace {

bool areDigits(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

[[noreturn]] void refuse(const QString& message) { throw Refusal(message, strgencode.ean_code.name); }

QString takenBy(const QString& article) { return QStringLiteral("Ce code est pris par l'article ") + article; }

} // namespace

QChar checkDigit(const QString& twelveDigits) {
    int sum = 0;
    for (int i = 0; i < 12; ++i) sum += twelveDigits[i].digitValue() * (i % 2 == 0 ? 1 : 3);
    return QChar(u'0' + (10 - sum % 10) % 10);
}

bool isValid(const QString& code) {
    return code.size() == 13 && areDigits(code) && checkDigit(code.left(12)) == code[12];
}

void requireFree(Database molven, Database gencode, const QString& typed, const QString& reference) {
    const QString code = typed.trimmed();
    if (code.isEmpty()) return;
    const auto refuseArticleCode = [](const QString& message) { throw Refusal(message, strarticle.art_ean.name); };
    if (!isValid(code)) refuseArticleCode(QStringLiteral("Code EAN incorrect : ") + code);
    const QString taken = QStringLiteral("Ce code est pris par l'article ");
    if (const auto other = molven.find(strarticle, strarticle.art_ean == code && strarticle.art_ref != reference))
        refuseArticleCode(taken + other->value(strarticle.art_ref));
    const Criterion takenInPool =
        strgencode.ean_code == code && trimmed(strgencode.ean_art) != QString() && strgencode.ean_art != reference;
    if (const auto other = gencode.find(strgencode, takenInPool))
        refuseArticleCode(taken + other->value(strgencode.ean_art));
}

int add(Database gencode, const QString& typed, const QString& quantity, const Progress& progress) {
    const QString first = typed.trimmed();
    if (first.isEmpty()) refuse(QStringLiteral(" Code obligatoire"));
    const bool complete = first.size() == 13;
    if (!areDigits(first) || (first.size() != 12 && !complete) || (complete && !isValid(first)))
        refuse(QStringLiteral("Code EAN incorrect : ") + first);
    bool isNumber = false;
    const int count = quantity.trimmed().isEmpty() ? 1 : quantity.trimmed().toInt(&isNumber);
    if (count < 1 || count > 100'000 || (!isNumber && !quantity.trimmed().isEmpty()))
        throw Refusal(QStringLiteral("Quantité incorrecte"), QStringLiteral("txtnb"));
    const qint64 start = first.left(12).toLongLong();
    if (start + count > 1'000'000'000'000LL)
        throw Refusal(QStringLiteral("Quantité incorrecte"), QStringLiteral("txtnb"));

    Transaction transaction(gencode.workspace(), QStringLiteral("Codes EAN"));
    Record code(strgencode);
    for (int i = 0; i < count; ++i) {
        tell(progress, i, count);
        const QString twelve = QString::number(start + i).rightJustified(12, u'0');
        const QString made = twelve + checkDigit(twelve);
        if (gencode.count(strgencode, strgencode.ean_code == made) > 0)
            refuse(QStringLiteral("Ce code existe déjà : ") + made);
        code[strgencode.ean_code] = made;
        gencode.insert(code);
    }
    transaction.commit();
    return count;
}

void requireUnused(Database gencode, const QString& code) {
    if (code.trimmed().isEmpty()) refuse(QStringLiteral(" Code obligatoire"));
    const auto found = gencode.find(strgencode, strgencode.ean_code == code.trimmed());
    if (!found) refuse(QStringLiteral("Ce code n'existe pas"));
    const QString article = (*found)[strgencode.ean_art].trimmed();
    if (!article.isEmpty()) refuse(takenBy(article));
}

void remove(Database gencode, const QString& code) {
    Transaction transaction(gencode.workspace(), QStringLiteral("Codes EAN"));
    requireUnused(gencode, code);
    gencode.remove(strgencode, strgencode.ean_code == code.trimmed());
    transaction.commit();
}

std::optional<QString> codeFor(Database gencode, const QString& article) {
    auto found = gencode.find(strgencode, strgencode.ean_art == article, strgencode.ean_code);
    if (!found) found = gencode.find(strgencode, trimmed(strgencode.ean_art) == QString(), strgencode.ean_code);
    if (!found) return std::nullopt;
    return (*found)[strgencode.ean_code];
}

void assign(Database gencode, const QString& article, const QString& code) {
    const auto pooled = gencode.find(strgencode, strgencode.ean_code == code);
    const QString holder = pooled ? (*pooled)[strgencode.ean_art].trimmed() : QString();
    if (!holder.isEmpty() && holder.compare(article, Qt::CaseInsensitive) != 0)
        throw Refusal(takenBy(holder), strarticle.art_ean.name);
    gencode.update(strgencode, {{strgencode.ean_art, QString()}}, strgencode.ean_art == article);
    gencode.update(strgencode, {{strgencode.ean_art, article}}, strgencode.ean_code == code);
}

} // namespace molven::ean
