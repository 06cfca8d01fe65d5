#pragma once

#include <QIcon>

/// The program's own drawings, as lines in the colour of the words beside them, sharp at every zoom and right in either
/// scheme. They stand where a sign is found faster than a word; a deed that has none keeps its word alone.
namespace molven::icons {

QIcon list();
QIcon print();
QIcon history();
QIcon scan();
/// Of the program's windows, in its own colours.
QIcon program();

/// What a button of that name does, drawn; a null icon for one that words tell better.
QIcon ofButton(const QString& name);

} // namespace molven::icons
