#pragma once

#include <QHash>
#include <QMenuBar>
#include <QSet>

namespace molven {

/// A menu bar some of whose captions share an access key: there the key walks through them in the order of the bar and
/// Return opens; it opens nothing by itself. A key of one caption alone opens it, as everywhere.
class MenuBar : public QMenuBar {
public:
    using QMenuBar::QMenuBar;

    /// Leaves these access keys to what else the window shows: captions that have one of them do without, until told
    /// otherwise. Alt alone enters the bar, and there every caption has its key.
    void leaveKeys(const QSet<QChar>& keys);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override;

private:
    /// True when several captions have that key, and the next of them is highlighted now.
    bool walk(const QString& key);

    void showCaptions(const QSet<QChar>& without);

    QSet<QChar> left_;
    QHash<const QAction*, QString> captions_; ///< with their keys
};

} // namespace molven
