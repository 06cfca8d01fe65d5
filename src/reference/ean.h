#pragma once

#include "data/database.h"
#include "data/progress.h"

namespace molven::ean {

/// EAN-13 check digit of 12 digits: weights 1 and 3 in turn from the left, complement to the next ten (GS1).
QChar checkDigit(const QString& twelveDigits);
/// True for 13 digits whose last one is right.
bool isValid(const QString& code);

/// Throws Refusal for a code that is none, or that another article has or took from the pool; an empty one passes.
void requireFree(Database molven, Database gencode, const QString& code, const QString& reference);

/// Adds codes to the pool, one transaction: `first` is 13 digits, or 12 to which the check digit is computed; the
/// following ones count up from its 12 digits. Throws Refusal for a faulty code, or one that the pool holds.
/// Answers how many.
int add(Database gencode, const QString& first, const QString& quantity, const Progress& progress = {});
/// Throws Refusal unless the pool holds that code and no article has it.
void requireUnused(Database gencode, const QString& code);
/// Takes a free code out of the pool. Throws Refusal when an article has it.
void remove(Database gencode, const QString& code);

/// The code for an article that must bear one: the one it already has in the pool, else the first free one; nothing
/// when the pool is empty.
std::optional<QString> codeFor(Database gencode, const QString& article);
/// The article bears this code from now on, none when it is empty: what it had before is free again. A code that
/// does not come from the pool is no business of the pool's. Throws Refusal when another article has it.
void assign(Database gencode, const QString& article, const QString& code);

} // namespace molven::ean
