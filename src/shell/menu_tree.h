#pragma once

#include "shell/company_rules.h"

#include <QList>
#include <QString>

namespace molven {

/// What a menu entry does.
enum class MenuAction {
    Submenu,
    Screen,        ///< opens a screen under a mode word
    Reprint,       ///< opens the print screen of the company for a document mode
    InvoiceChoice, ///< opens invoice or credit-note entry, after a choice of book at some companies
    Program,       ///< starts a separate program of the program folder
    Renumber,
    DepotFamilies,
    Compaction,
    Backup,
    Quit,
    Separator,
    Nothing
};

/// One entry of the menu. `target` is a screen or a program. `mode` is the word that the screen finds in `mode_ecran`;
/// a reprint has two, separated by a blank: the document's and "RED".
struct MenuEntry {
    int depth; ///< 0 on the bar
    QString name;
    QString caption; ///< "&" marks the access key
    MenuAction action;
    QString target = {};
    QString mode = {};
    bool (CompanyRules::*allowed)() const = nullptr;   ///< entry acts only when this holds
    QString refusal = {};                              ///< said otherwise; empty to say nothing
    bool (CompanyRules::*available)() const = nullptr; ///< entry can be chosen only when this holds
    QString notice = {};                               ///< shown before the screen opens
};

/// The whole menu, in order: an entry's children follow it one level deeper.
const QList<MenuEntry>& menuTree();
const MenuEntry* menuEntry(const QString& name);

/// Print screen of a document mode, alone or with the reprint word.
QString reprintScreen(const CompanyRules& rules, const QString& mode, bool barcodes);

} // namespace molven
