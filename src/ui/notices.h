#pragma once

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QStringList>

#include <functional>

namespace molven {

/// A piece of news that asks nothing of the user.
struct Notice {
    QDateTime at;
    QString window; ///< title of the window it was told in
    QString text;
};

/// The latest news of a session, oldest first. What is told during one deed is shown together once the deed is over and
/// no message box stands in front, so that a window that closes at its end takes no news with it.
class Notices : public QObject {
public:
    void add(const QString& window, const QString& text);
    const QList<Notice>& all() const { return all_; }

    /// Shows texts, oldest first, in the window the user is in; false when there is none yet.
    std::function<bool(const QStringList& texts)> show;
    /// Shows what still waits, for a window that has just become the user's.
    void flush();

private:
    QList<Notice> all_;
    QStringList waiting_;
};

} // namespace molven
