#pragma once

#include <QByteArray>
#include <QString>

namespace molven {

enum class Existing { Replace, Refuse };

/// Writes a file whole: on the disk and checked before it takes the name, so that a fault, a full disk or a crash
/// leaves what was there. Throws Refusal when it cannot be written, would replace a file with Existing::Refuse, or has
/// the name of what is not a plain file (a folder, a device, a link to nothing).
void writeWhole(const QString& path, const QByteArray& bytes, Existing existing = Existing::Replace);

/// Flushes a file that was written by other means to the disk. Throws Refusal.
void flushToDisk(const QString& path);

/// Gives a file on the disk the name of another in the same folder, which it replaces at once. Throws Refusal.
void takePlace(const QString& file, const QString& path);

/// The path, or the first of "name-2.pdf", "name-3.pdf" ... that is not taken.
QString freeName(const QString& path);

} // namespace molven
