#pragma once

#include "data/archive.h"
#include "ui/form.h"
#include "ui/grid.h"

class QAbstractButton;
class QHBoxLayout;
class QLabel;

namespace molven {

/// Moves closed documents or sold units between the working files and the history file: a range is chosen, counted and
/// moved. One class for all of them, told apart by name and mode word.
class ArchiveForm : public Form {
public:
    ArchiveForm(Desk& desk, const QString& name);

private:
    /// What one of the screens says and moves.
    struct Task;
    static Task taskOf(const QString& name, const QString& mode);

    Edit* box(QHBoxLayout& row, const QString& name, const QString& caption, int characters);
    void bound(QHBoxLayout& row, Edit*& edit, const QString& caption, const QString& list);
    QHBoxLayout* criteriaRow();
    QHBoxLayout* deedRow();
    void take(const Record& chosen);
    Criterion range() const;
    qint64 count();
    void tellCount();
    void run();
    void tellDoubles(const QStringList& doubles);

    std::shared_ptr<const Task> task_;
    Workspace workspace_;
    Database working_, history_;
    Edit* year_ = nullptr; ///< of documents
    Edit* first_ = nullptr;
    Edit* last_ = nullptr;
    Edit* asked_ = nullptr; ///< which bound the list is chosen for
    Grid* list_;
    QLabel* result_;
};

class DocumentArchiveForm : public ArchiveForm {
public:
    explicit DocumentArchiveForm(Desk& desk) : ArchiveForm(desk, QStringLiteral("T_arcdoc")) {}
};
class TransferArchiveForm : public ArchiveForm {
public:
    explicit TransferArchiveForm(Desk& desk) : ArchiveForm(desk, QStringLiteral("T_arcbtr")) {}
};
class UnitArchiveForm : public ArchiveForm {
public:
    explicit UnitArchiveForm(Desk& desk) : ArchiveForm(desk, QStringLiteral("T_arcpro")) {}
};
class DocumentReturnForm : public ArchiveForm {
public:
    explicit DocumentReturnForm(Desk& desk) : ArchiveForm(desk, QStringLiteral("T_reafac")) {}
};
class TransferReturnForm : public ArchiveForm {
public:
    explicit TransferReturnForm(Desk& desk) : ArchiveForm(desk, QStringLiteral("T_reabtr")) {}
};
class UnitReturnForm : public ArchiveForm {
public:
    explicit UnitReturnForm(Desk& desk) : ArchiveForm(desk, QStringLiteral("T_reapro")) {}
};

} // namespace molven
