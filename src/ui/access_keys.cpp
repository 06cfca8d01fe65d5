#include "ui/access_keys.h"

#include <QAbstractButton>
#include <QKeySequence>
#include <QLabel>
#include <QSet>

namespace molven {

namespace {

QChar keyOf(const QString& caption) {
    const QString key = QKeySequence::mnemonic(caption).toString(); // "Alt+C"
    return key.isEmpty() ? QChar() : key.back();
}

/// Where in the caption a free letter stands, a word's first one before all; -1 when none is.
qsizetype placeOfFree(const QString& caption, const QSet<QChar>& taken) {
    qsizetype found = -1;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        const QChar letter = caption[i].toUpper();
        if (letter < u'A' || letter > u'Z' || taken.contains(letter)) continue;
        if (i == 0 || !caption[i - 1].isLetter()) return i;
        if (found < 0) found = i;
    }
    return found;
}

} // namespace

void giveAccessKeys(QWidget& window) {
    QSet<QChar> taken;
    for (const auto* button : window.findChildren<QAbstractButton*>()) taken.insert(keyOf(button->text()));
    QList<QLabel*> without;
    for (auto* label : window.findChildren<QLabel*>()) {
        if (!label->buddy()) continue;
        const QChar key = keyOf(label->text());
        key.isNull() ? without.append(label) : void(taken.insert(key));
    }
    for (QLabel* label : without) {
        QString caption = label->text();
        const qsizetype place = placeOfFree(caption, taken);
        if (place < 0) continue;
        taken.insert(caption[place].toUpper());
        label->setText(caption.insert(place, u'&'));
    }
}

} // namespace molven
