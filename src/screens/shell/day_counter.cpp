#include "screens/shell/day_counter.h"

#include "data/clock.h"
#include "data/errors.h"

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
    thread_ = {}; // asks it to stop, and waits
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
    try { // what is written from here on is noticed
        changes_ = changes_ ? std::move(changes_) : std::make_unique<day_work::Changes>(*session_);
        changes_->happened();
    } catch (const DataError&) {
        changes_.reset();
    }
    thread_ = std::jthread([this, run = run_, session = *session_, today = Clock::today()](std::stop_token stop) {
        const auto figures = count(session, today, stop);
        const auto tell = [this, run, figures] {
            if (run != run_) return;
            isCounting_ = false;
            if (counted) counted(figures);
            if (isWanted_) begin();
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    });
}

void DayCounter::look() {
    if (!session_ || isCounting_) return;
    try {
        if (!changes_ || changes_->happened()) countAgain();
    } catch (const DataError&) { // the files are being replaced: next time
        changes_.reset();
    }
}

} // namespace molven
