#pragma once

#include "data/database.h"

#include <QFrame>

#include <functional>

namespace molven {

class Form;
class Grid;

/// The documents attached to a client or a supplier: the files of its folder. A double click opens one, a file dropped
/// on the list is copied into the folder.
class DocumentShelf : public QFrame {
public:
    explicit DocumentShelf(Form& form);

    /// Shows the files of a folder; an empty path for none.
    void show(const QString& folder);
    /// Keeps the folder that the user chose; throws Refusal.
    std::function<void(const QString& folder)> keepFolder;
    /// The user chose another folder: keeps it, says so and shows it.
    void take(const QString& folder);
    /// Copies files into the folder, as dropping them does.
    void add(const QStringList& files);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void chooseFolder();
    void openDocument(const QString& name);

    Form& form_;
    Workspace workspace_;
    Database documents_;
    QString folder_;
    Grid* grid_;
};

} // namespace molven
