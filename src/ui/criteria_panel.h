#pragma once

#include <QHash>
#include <QList>
#include <QStringList>
#include <QVariant>
#include <QWidget>

class QComboBox;
class QGridLayout;
class QLabel;
class QMenu;
class QPushButton;

namespace molven {

struct CodeKind;
class Edit;
class Form;

/// One criterion of a selection: an entry box, or a list when it has options.
struct CriterionBox {
    enum class Kind { Text, Day, Month };

    QString name; ///< object name
    QString caption;
    int characters = 13;
    Kind kind = Kind::Text;
    QStringList options = {};
    bool isUsual = true;            ///< always in sight; the others unfold
    const CodeKind* code = nullptr; ///< of a code
    bool isBound = false;           ///< one end of a range: what is typed stands as it is
    int digits = 0;                 ///< of a number padded with zeros
};

/// Captioned criteria in rows, in the order in which a user reads them. A refusal that names one puts the focus on it.
/// Where some are not usual, they stay folded away until they are asked for: by "Plus de critères", by a cursor put
/// into one, by a value that stands in one. What is asked often is kept under a name, among the user's habits.
class CriteriaPanel : public QWidget {
public:
    /// `columns` criteria a row.
    CriteriaPanel(Form& form, const QList<CriterionBox>& boxes, int columns);

    Edit* edit(const QString& name) const { return edits_.value(name); }
    /// What is typed, trimmed; empty for an empty date.
    QString value(const QString& name) const;
    /// Number of the chosen option.
    int choice(const QString& name) const;
    /// All of them, by name.
    QHash<QString, QString> values() const;

    /// Asks for these, by name, and for nothing else; of a list, the option's caption.
    void put(const QHash<QString, QString>& values);

    bool isFolded() const { return folded_; }
    void fold(bool folded);
    /// Whether a criterion is in sight.
    bool isInSight(const QString& name) const;

    QStringList keptNames() const;
    void keepAs(const QString& name);
    /// Puts what was kept under a name in the place of what stands there.
    void takeKept(const QString& name);
    void forget(const QString& name);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Criterion {
        CriterionBox box;
        QLabel* caption;
        QWidget* control;
        Qt::FocusPolicy focus;
    };
    Criterion makeCriterion(Form& form, const CriterionBox& box);
    QWidget* buttonRow();
    bool isFilled(const Criterion& criterion) const;
    void arrange();
    void fillKeptMenu();
    void askName();
    QVariantMap kept() const;
    void setKept(const QVariantMap& sets);

    Form& form_;
    const int columns_;
    QList<Criterion> criteria_;
    QHash<QString, Edit*> edits_;
    QHash<QString, QComboBox*> lists_;
    QWidget* window_; ///< shows the rows in sight ...
    QWidget* rows_;   ///< ... of all of them
    QGridLayout* layout_;
    QPushButton* more_ = nullptr;
    QMenu* keptMenu_ = nullptr;
    bool folded_ = false;
};

} // namespace molven
