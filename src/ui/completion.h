#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class QListWidget;

namespace molven {

class Edit;

/// What may be meant by what is being typed into a box, listed below it. It only offers: until an arrow key or the
/// mouse has chosen a line, every key does what it does without the list, and what was typed is what is left.
class Completion : public QObject {
public:
    struct Line {
        QString code, words;
    };
    /// Answers the lines for a text; called when the keyboard rests.
    using Search = std::function<QList<Line>(const QString& typed)>;

    /// A chosen code is put into the box, which is left then as if it had been typed.
    Completion(Edit* box, const Search& search);

    static constexpr int MostLines = 8;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void offer();
    void place();
    bool takesKey(int key);
    void choose();
    void close();

    Edit* box_;
    Search search_;
    QTimer typed_;
    QPointer<QListWidget> list_; ///< made when it first has something to offer
};

} // namespace molven
