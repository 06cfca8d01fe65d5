#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>

class QAction;
class QApplication;
class QGridLayout;
class QLabel;
class QLayout;
class QWidget;

/// How the program looks: every colour, font, margin and width is stated here, and nowhere else.
namespace molven::style {

enum class Scheme { Light, Dark };

/// What a colour says, apart from the toolkit's own roles.
enum class Tone {
    Quiet,   ///< beside the matter: words behind a code, entries that cannot act
    Good,    ///< at hand
    Away,    ///< somewhere else, as it should be
    Done,    ///< over
    Warning, ///< soon wrong
    Alarm    ///< wrong
};

/// Gives the whole program its look, in the colour scheme of the system, now and whenever the system changes it.
void apply(QApplication& application);
/// The same in a given scheme, whatever the system's is.
void apply(Scheme scheme);

Scheme scheme();
QPalette palette(Scheme scheme);
QColor colour(Tone tone, Scheme scheme);
/// In the scheme in use.
QColor colour(Tone tone);
/// A small disc before a word in a grid.
QIcon dot(Tone tone);

// Room, in pixels at 96 dots an inch

constexpr int Gap = 6;        ///< between neighbours
constexpr int WideGap = 16;   ///< between groups
constexpr int RowHeight = 24; ///< of a grid
/// Width of an entry box for that many characters.
int boxWidth(int characters);
/// Of a box of words that takes the room left beside it.
constexpr int WidestBox = 600;
/// How far a line of prose runs before the eye loses the next one.
int readableWidth();
/// A layout inside another one: its margins are those of the outer one.
void nest(QLayout& layout);
/// Captions and boxes in a grid.
void spaceAsBoxes(QGridLayout& layout);
/// A layout of a window with a few boxes only.
void letBreathe(QLayout& layout);
/// A layout whose few rows stay together at its beginning, however large the window is.
void keepTogether(QGridLayout& layout);

/// Keeps the foot of a window free for one line of words.
void keepFoot(QWidget& window, QLabel& line);

// Type

/// What the lines or boxes below are about.
void makeHeading(QLabel& label);
/// The figure among several that matters.
void emphasise(QWidget& value);
/// Words that say why something was refused.
void makeRefusal(QLabel& label);
/// Words that only explain.
void makeQuiet(QLabel& label);

// State of a control

/// Marks a box as refused and says so in its tip, until it is mended.
void markRefused(QWidget& box, const QString& text);
void markMended(QWidget& box);
bool isRefused(const QWidget& box);
/// Marks a box that must not stay empty.
void markRequired(QWidget& box, bool required);
bool isRequired(const QWidget& box);

/// Marks a group of boxes that change a record where they usually make a new one.
void markChanging(QWidget& group, bool changing);
bool isChanging(const QWidget& group);

/// Marks a menu entry that can be chosen but will do nothing, and why; an entry that acts has no reason.
void markIdle(QAction& entry, const QString& why);
bool isIdle(const QAction& entry);

} // namespace molven::style
