#include "data/presence.h"

#include "data/errors.h"
#include "data/sqlite/connection.h"

#include <QDir>
#include <QFile>
#include <QSet>

namespace molven {

namespace {

/// Lies in each data folder; its lock is what tells, it holds nothing.
const QString Mark = QStringLiteral("POSTES.HC");
constexpr int PatienceMs = 3000; // another program may just be starting or ending

void makeMark(const QString& path) {
    if (QFile::exists(path)) return;
    QFile file(path);
    if (file.open(QIODevice::Append))
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::WriteGroup);
}

Refusal refusal(Presence::Kind kind, const QString& folder) {
    const QString place = QDir::toNativeSeparators(folder);
    if (kind == Presence::Kind::Alone)
        return Refusal(
            QStringLiteral("D'autres postes travaillent dans %1 : fermez-y le programme, puis recommencez").arg(place));
    return Refusal(
        QStringLiteral("Un recompactage est en cours sur un autre poste dans %1 : patientez, puis recommencez")
            .arg(place));
}

} // namespace

Presence::Presence(const QStringList& folders, Kind kind) {
    QSet<QString> seen;
    for (const QString& folder : folders) {
        const QString place = QDir(folder).canonicalPath();
        if (folder.isEmpty() || place.isEmpty() || seen.contains(place)) continue;
        seen.insert(place);
        const QString mark = QDir(place).filePath(Mark);
        makeMark(mark);
        try {
            marks_.push_back(std::make_unique<HeldFile>(
                mark, kind == Kind::Alone ? HeldFile::Hold::Alone : HeldFile::Hold::Shared, PatienceMs));
        } catch (const DataError& error) {
            if ((error.number & 0xFF) == DataError::Busy) throw refusal(kind, folder);
            if (kind == Kind::Alone) throw;
        }
    }
}

} // namespace molven
