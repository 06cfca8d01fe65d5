#include "data/collation.h"

#include "data/decimal.h"

#include <QCollator>

#include <algorithm>

namespace molven::collation {

namespace {

char16_t lowered(QChar c) {
    const char16_t unit = c.unicode();
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

int numbers(const QString& a, const QString& b) {
    if (a.isEmpty() || b.isEmpty()) return static_cast<int>(b.isEmpty()) - static_cast<int>(a.isEmpty());
    const auto order = Decimal::fromText(a) <=> Decimal::fromText(b);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

} // namespace

int french(QStringView a, QStringView b) {
    static const QCollator collator = [] {
        QCollator made{QLocale(QLocale::French, QLocale::France)};
        made.setCaseSensitivity(Qt::CaseInsensitive);
        return made;
    }();
    return a == b ? 0 : collator.compare(a, b);
}

int code(QStringView a, QStringView b) {
    const auto [left, right] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(),
                                             [](QChar x, QChar y) { return lowered(x) == lowered(y); });
    if (left == a.end() || right == b.end())
        return static_cast<int>(left != a.end()) - static_cast<int>(right != b.end());
    return lowered(*left) < lowered(*right) ? -1 : 1;
}

int compare(const Field& field, const QString& a, const QString& b) {
    switch (field.kind) {
    case Field::Kind::Number:
        return numbers(a, b);
    case Field::Kind::Label:
        return french(a, b);
    case Field::Kind::Code:
        break;
    }
    return code(a, b);
}

} // namespace molven::collation
