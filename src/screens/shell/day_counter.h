#pragma once

#include "dossier/day_work.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <thread>

namespace molven {

/// Counts the day's work of a dossier beside the windows, and again whenever a connection wrote to it, or another
/// day begins. It never says
/// what went wrong: whoever opens the screen is told.
class DayCounter : public QObject {
public:
    explicit DayCounter(QObject* parent);

    void start(const Session& session);
    /// Lets go of the dossier's files; returns once nothing reads them any more.
    void stop();
    bool isStarted() const { return session_.has_value(); }
    bool isCounting() const { return isCounting_; }
    void countAgain();
    /// Counts again if the dossier was written to.
    void look();

    std::function<void()> began;
    /// Runs in the thread of the windows; nothing when the files could not be read.
    std::function<void(const std::optional<day_work::Figures>&)> counted;

private:
    void begin();

    std::optional<Session> session_;
    std::shared_ptr<day_work::Changes> changes_; ///< made by the first count, asked between counts only
    QDate day_;                                  ///< that was counted for
    QTimer watch_;
    bool isCounting_ = false, isWanted_ = false;
    int run_ = 0;         ///< an answer of an earlier one is nobody's
    std::jthread thread_; ///< the last member: it ends before what it tells goes
};

} // namespace molven
