#include "screens/shell/day_counter.h"

#include "data/clock.h"
#include "data/errors.h"

#include <QCoreApplication>
#include <QEvent>

namespace molven {

namespace {

constexpr int LookEveryMs = 3000;

std::optional<day_work::Figures> count(const Session& session, const QDate& today, const std::stop_token& stop) {
    try {
        return day_work::count(session, today, [&stop] { return !stop.stop_requested(); });
    } catch (const Refusal&) {
    } catch (const DataError&) {
    }
    return std::nullopt;
}

/// What is written from here on is noticed; null where the files cannot be read.
std::shared_ptr<day_work::Changes> watched(const Session& session) {
    try {
        return std::make_shared<day_work::Changes>(session);
    } catch (const DataError&) {
        return nullptr;
    }
}

} // namespace

DayCounter::DayCounter(QObject* parent) : QObject(parent) {
    connect(&watch_, &QTimer::timeout, this, [this] { look(); });
}

void DayCounter::start(const Session& session) {
    stop();
    session_ = session;
    countAgain();
    watch_.start(LookEveryMs);
}

void DayCounter::stop() {
    watch_.stop();
    ++run_;
    thread_ = {};                                                 // asks it to stop, and waits
    QCoreApplication::removePostedEvents(this, QEvent::MetaCall); // what it told holds files
    isCounting_ = isWanted_ = false;
    changes_.reset();
    session_.reset();
}

void DayCounter::countAgain() {
    if (!session_) return;
    isWanted_ = true;
    if (!isCounting_) begin();
}

void DayCounter::begin() {
    isWanted_ = false;
    isCounting_ = true;
    if (began) began();
    day_ = Clock::today();
    thread_ = std::jthread([this, run = run_, session = *session_, day = day_, known = changes_](std::stop_token stop) {
        // Opened here: a file of an earlier version may have to be brought up to date first.
        const std::shared_ptr<day_work::Changes> changes = known ? known : watched(session);
        const auto figures = count(session, day, stop);
        const auto tell = [this, run, figures, changes] {
            if (run != run_) return;
            isCounting_ = false;
            changes_ = changes;
            if (counted) counted(figures);
            if (isWanted_) begin();
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    });
}

void DayCounter::look() {
    if (!session_ || isCounting_) return;
    try {
        if (!changes_ || changes_->happened() || day_ != Clock::today()) countAgain();
    } catch (const DataError&) { // the files are being replaced: next time
        changes_.reset();
    }
}

} // namespace molven
