#pragma once

#include "dossier/day_work.h"
#include "screens/shell/opening.h"
#include "ui/style.h"

namespace molven {

/// A figure of the day's work in words, and the screen where it is dealt with.
struct DayLine {
    QString name; ///< of its control
    style::Tone tone;
    QString words, details;
    Opening opening;
};

/// What there is to do, the most pressing kinds of work first; what has nothing waiting has no line.
QList<DayLine> linesToDo(const day_work::Figures& figures, const Session& session, const QDate& today);
/// What came in and was written in the last days.
QList<DayLine> linesOfRecentDays(const day_work::Figures& figures, const QDate& today);

} // namespace molven
