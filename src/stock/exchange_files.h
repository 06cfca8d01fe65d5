#pragma once

#include "data/database.h"
#include "data/progress.h"
#include "shell/session.h"
#include "stock/unit_tables.h"

#include <QDate>

/// The files in which delivered units travel from one installation to another, with their traceability.
namespace molven::exchange_files {

/// The exchange folder, of "CHEMIN.DK" in the program folder; the work folder where there is no such file. It is made
/// when it is missing. Throws Refusal.
QString folder(const Session& session);
/// The folder that stands for the diskette: the drive "a:", elsewhere the folder that "DISQUETTE.DK" names. Throws
/// Refusal where there is none.
QString diskette(const Session& session);

/// "EXBL000012.mdb"
QString unitFileName(const QString& note);
/// "Mvtbl20300305.csv"
QString extractionName(const QDate& day);
/// The file that a typed number names in the exchange folder: that of a note, or with eight digits that of a day's
/// extraction.
QString pathOf(const Session& session, const QString& typed);

/// Writes units as an exchange database, whole or not at all. Throws DataError and Refusal.
void write(const QString& path, const QList<Record>& units, const Progress& progress);
/// Writes units as a comma-separated file for partners without the program; the same. A file of that name stays: the
/// path written is answered.
QString writeExtraction(const QString& path, const QList<Record>& units);
/// The units of an exchange database, or of a comma-separated file. Throws DataError, and Refusal "Aucun produit sur ce
/// fichier", or for what is no such file.
QList<Record> read(const QString& path);

} // namespace molven::exchange_files
