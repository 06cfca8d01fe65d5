#pragma once

#include <QObject>

namespace molven {

class Desk;

/// Ctrl+K asks for the search for everything from wherever the cursor is in a screen. It is looked for before the
/// widgets get it: on some desktops an entry box deletes what stands behind the cursor by it.
class SearchKey : public QObject {
public:
    explicit SearchKey(Desk& desk);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Desk& desk_;
};

} // namespace molven
