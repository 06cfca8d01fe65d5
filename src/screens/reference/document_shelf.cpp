#include "screens/reference/document_shelf.h"

#include "reference/parties.h"
#include "reference/party_tables.h"
#include "shell/attached_documents.h"
#include "shell/folder_files.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/style.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

DocumentShelf::DocumentShelf(Form& form)
    : QFrame(&form),
      form_(form),
      documents_(workspace_.open(form.session().path(DataFile::Documents))),
      grid_(
          new Grid(QStringLiteral("DBGrid5"), {{&strdocs.doc_fic, QStringLiteral("Documents attachés"), 400}}, this)) {
    setObjectName(QStringLiteral("Framedoc"));
    setAcceptDrops(true);
    grid_->setAcceptDrops(false); // the shelf takes what is dropped on its list
    grid_->chosen = [this](const Record& document) { openDocument(document[strdocs.doc_fic]); };
    grid_->setFixedHeight(120);
    auto* choose = form.button(QStringLiteral("Cmddossier"), QStringLiteral("D&ossier des documents..."),
                               [this] { chooseFolder(); });
    auto* hint = new QLabel(QStringLiteral("Double clic : ouvrir. Glissez un fichier ici pour l'attacher."), this);
    hint->setWordWrap(true);
    auto* row = new QHBoxLayout;
    row->addWidget(hint, 1);
    row->addWidget(choose);
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->addLayout(row); // away from the buttons of the record
    layout->addWidget(grid_);
}

void DocumentShelf::show(const QString& folder) {
    folder_ = folder.trimmed().isEmpty() ? QString() : usableFolder(form_.session().dossier_app, folder);
    parties::listDocuments(documents_, attached_documents::list(folder_));
    QList<Record> rows; // the table is this workstation's, but its other windows use it too
    for (const Record& document : documents_.select(strdocs, {}, strdocs.doc_fic)) rows.append(document);
    grid_->rows().setRecords(rows);
}

void DocumentShelf::chooseFolder() {
    const QString start = folder_.isEmpty() ? attached_documents::root(form_.session()) : folder_;
    const QString chosen = QFileDialog::getExistingDirectory(this, QStringLiteral("Dossier des documents"), start);
    if (chosen.isEmpty()) return;
    take(chosen);
}

void DocumentShelf::take(const QString& folder) {
    keepFolder(folder);
    form_.notify(QStringLiteral("Enregistrés sous :  ") + QDir::toNativeSeparators(folder));
    show(folder);
}

void DocumentShelf::openDocument(const QString& name) {
    const QString path = QDir(folder_).filePath(name);
    if (attached_documents::isProgram(path) &&
        !form_.prompt().confirm(QStringLiteral("ATTENTION, êtes-vous sûr de vouloir lancer ce programme exécutable ?"),
                                path))
        return;
    const QString message = attached_documents::message(attached_documents::open(path));
    if (!message.isEmpty()) form_.prompt().tell(message, {}, Icon::Warning);
}

void DocumentShelf::add(const QStringList& files) {
    form_.guarded([&] {
        for (const QString& file : files) attached_documents::copyInto(folder_, file);
    });
    form_.guarded([this] { show(folder_); });
}

void DocumentShelf::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls() && !folder_.isEmpty()) event->acceptProposedAction();
}

void DocumentShelf::dropEvent(QDropEvent* event) {
    QStringList files;
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile()) files.append(url.toLocalFile());
    add(files);
    event->acceptProposedAction();
}

} // namespace molven
