#pragma once

#include "shell/session.h"

#include <QCommandLineOption>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QStringList>

class QCommandLineParser;
class QJsonArray;

namespace molven::check {
struct Fault;
}

namespace molven::ctl {

/// The options of a word, in the order in which its help tells them.
class Options {
public:
    void addOption(const QCommandLineOption& option) { all.append(option); }
    void addOptions(const QList<QCommandLineOption>& more) { all.append(more); }
    QList<QCommandLineOption> all;
};

/// One word of molvenctl: its usage, its help, the manual and the completion of shells are made of this. Exit codes: 0
/// done and sound, 1 refused or faults found, 2 wrong call.
struct Command {
    QString word;
    QString help;      ///< one line, French
    QString arguments; ///< "DIR", shown in the usage
    void (*declare)(Options&);
    int (*run)(const QCommandLineParser&, const QStringList& arguments);
    int argumentCount;
    bool draws = false; ///< pages, for which fonts are needed
};

/// Every word, in the order in which they are told.
const QList<Command>& words();
QList<QCommandLineOption> optionsOf(const Command& command);
/// The usage of all words, a line each.
QStringList usage();
/// What `--help` says of a word.
QString helpOf(const Command& command);
/// The manual of molvenctl, for `man`.
QString manual();
/// The completion of words and options for bash.
QString completion();

Command createCommand();
Command serverCommand();
Command migrateCommand();
Command guideCommand();
Command demoCommand();
Command checkCommand();
Command traceCommand();
Command recallCommand();
Command journalCommand();
Command replenishCommand();
Command invoiceCommand();
Command receivedInvoiceCommand();
Command companyCommand();
Command importCommand();
Command exportCommand();
Command restoreCommand();
Command recountCommand();
Command statisticsCommand();
Command commissionsCommand();
Command transferCommand();
Command backupCommand();
Command convertCommand();
Command verifyCommand();
Command archiveCommand();
Command reactivateCommand();

/// "--dossier NOM", of the words that work on one dossier of an installation.
QCommandLineOption dossierOption();
/// The server that a new dossier is put on.
QCommandLineOption serverOption();
/// The dossier that a call works on: the one named, or the only one. Of several it takes the first, and says so.
Session sessionOf(const QCommandLineParser& parser, const QString& folder);

/// "--json", of the words whose result is data.
QCommandLineOption jsonOption();
bool wantsJson(const QCommandLineParser& parser);
/// An array or an object as JSON on one line of standard output.
void sayData(const QJsonValue& data);
/// What a control found, an object a fault.
QJsonArray faultData(const QList<check::Fault>& faults);
/// "--remplacer", of the words that write a file of the user's.
QCommandLineOption replaceOption();
/// Throws Refusal for a file that exists and may not be replaced; one that the dossier lives by never is.
void requireWritable(const QCommandLineParser& parser, const QString& path);
/// Writes it whole or not at all. Throws what requireWritable() does, and Refusal when it cannot be written.
void writeOut(const QCommandLineParser& parser, const QString& path, const QByteArray& bytes);

/// From now on whoever sits at a terminal is asked for the password that a server wants.
void askServerPasswordOnTerminal();

/// One line on standard output.
void say(const QString& line);
/// One line on standard error.
void complain(const QString& line);

} // namespace molven::ctl
