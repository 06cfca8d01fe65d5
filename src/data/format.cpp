#include "data/format.h"

#include <algorithm>
#include <array>

namespace molven {

QString format(const Decimal& value, const QString& pattern) {
    const QString wholePattern = pattern.section(u'.', 0, 0);
    const int places = pattern.contains(u'.') ? static_cast<int>(pattern.section(u'.', 1).size()) : 0;
    QString digits = value.toFixed(places);
    const bool negative = digits.startsWith(u'-');
    if (negative) digits.remove(0, 1);
    QString whole = digits.section(u'.', 0, 0);
    const auto zeros = wholePattern.count(u'0');
    whole = whole == u"0" && zeros == 0 ? QString() : whole.rightJustified(zeros, u'0');

    QString written;
    for (auto at = wholePattern.size() - 1; at >= 0; --at) {
        if (whole.isEmpty()) break;
        if (wholePattern[at] == u' ') {
            written.prepend(u' ');
            continue;
        }
        written.prepend(whole.back());
        whole.chop(1);
    }
    written.prepend(whole);
    if (places > 0) written += u',' + digits.section(u'.', 1);
    return negative && !Decimal::fromText(digits).isZero() ? u'-' + written : written;
}

QString padded(const QString& code, int width) {
    const QString text = code.trimmed();
    const bool numeric =
        !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    return numeric ? text.rightJustified(width, u'0') : text;
}

namespace {

QString foldedByRules(const QString& text) {
    QString plain = text.normalized(QString::NormalizationForm_D).toLower();
    plain.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
    return plain;
}

constexpr std::size_t Western = 0x100; ///< characters of Latin-1, each of which folds to one

const std::array<QChar, Western>& foldedWestern() {
    static const auto table = [] {
        std::array<QChar, Western> made;
        for (std::size_t i = 0; i < Western; ++i) made[i] = foldedByRules(QChar(static_cast<char16_t>(i))).front();
        return made;
    }();
    return table;
}

} // namespace

QString folded(const QString& text) {
    const auto isWestern = [](QChar c) { return c.unicode() < Western; };
    if (!std::all_of(text.begin(), text.end(), isWestern)) return foldedByRules(text);
    const auto& table = foldedWestern();
    QString plain = text;
    for (QChar& c : plain) c = table[c.unicode()];
    return plain;
}

QString shown(const Decimal& value) { return value.toString().replace(u'.', u','); }

QString amountText(const Decimal& value) {
    return value == value.rounded(2) ? value.toFixed(2).replace(u'.', u',') : shown(value);
}

QString counted(qint64 count, const QString& noun) {
    return QString::number(count) + u' ' + noun + (count > 1 ? QStringLiteral("s") : QString());
}

} // namespace molven
