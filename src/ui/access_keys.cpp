#include "ui/access_keys.h"

#include <QAbstractButton>
#include <QKeySequence>
#include <QLabel>

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

QSet<QChar> accessKeysOf(const QWidget& window) {
    QSet<QChar> keys;
    for (const auto* button : window.findChildren<QAbstractButton*>()) keys.insert(keyOf(button->text()));
    for (const auto* label : window.findChildren<QLabel*>())
        if (label->buddy()) keys.insert(keyOf(label->text()));
    keys.remove(QChar());
    return keys;
}

QList<QWidget*> tabStopsOf(const QLayout& layout) {
    QList<QWidget*> stops;
    for (int i = 0; i < layout.count(); ++i) {
        const QLayoutItem* item = layout.itemAt(i);
        QWidget* part = const_cast<QLayoutItem*>(item)->widget();
        const QLayout* inner = part ? part->layout() : const_cast<QLayoutItem*>(item)->layout();
        if (part && part->focusPolicy() & Qt::TabFocus)
            stops.append(part);
        else if (inner)
            stops += tabStopsOf(*inner);
    }
    return stops;
}

void tabThrough(const QList<QWidget*>& stops) {
    for (qsizetype i = 1; i < stops.size(); ++i) QWidget::setTabOrder(stops[i - 1], stops[i]);
}

void giveAccessKeys(QWidget& window) {
    QSet<QChar> taken = accessKeysOf(window);
    for (auto* label : window.findChildren<QLabel*>()) {
        QString caption = label->text();
        if (!label->buddy() || !keyOf(caption).isNull()) continue;
        const qsizetype place = placeOfFree(caption, taken);
        if (place < 0) continue;
        taken.insert(caption[place].toUpper());
        label->setText(caption.insert(place, u'&'));
    }
}

} // namespace molven
