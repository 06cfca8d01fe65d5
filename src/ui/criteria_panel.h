#pragma once

#include <QHash>
#include <QList>
#include <QStringList>
#include <QWidget>

class QComboBox;

namespace molven {

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
};

/// Captioned criteria in rows, in the order in which a user reads them. A refusal that names one puts the focus on it.
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

private:
    QHash<QString, Edit*> edits_;
    QHash<QString, QComboBox*> lists_;
};

} // namespace molven
