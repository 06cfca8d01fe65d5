#pragma once

#include <QList>
#include <QSet>

class QLayout;
class QWidget;

namespace molven {

/// Gives each captioned box of a window that has no access key one of the letters of its caption that no button and no
/// other caption of the window has: the first of a word where it is free. Boxes whose letters are all taken are reached
/// by Tab.
void giveAccessKeys(QWidget& window);

/// The letters that the buttons and captioned boxes of a window answer to.
QSet<QChar> accessKeysOf(const QWidget& window);

/// What Tab can reach in a layout, as one reads it.
QList<QWidget*> tabStopsOf(const QLayout& layout);
/// Makes Tab go through these in turn.
void tabThrough(const QList<QWidget*>& stops);

} // namespace molven
