#pragma once

#include "sales/find_anything.h"

#include <QLineEdit>
#include <QPointer>

class QListWidget;

namespace molven {

/// The box of the search for everything: what is being typed is answered below it, by kind. The arrow keys choose
/// another answer than the first, Return opens it, Escape gives up.
class SearchBox : public QLineEdit {
public:
    explicit SearchBox(QWidget* parent);

    std::function<QList<Finding>(const QString&)> search;
    std::function<void(const Finding&)> chosen;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void answer();
    void fill();
    void place();
    void move(int step);
    void choose();
    void close();

    QList<Finding> findings_;
    QPointer<QListWidget> list_; ///< made when it first has something to show
};

} // namespace molven
