#include "screens/shell/guide_form.h"

#include "data/engine_version.h"
#include "data/journal.h"
#include "shell/guide.h"
#include "ui/icons.h"
#include "ui/style.h"

#include <QDir>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace molven {

GuideForm::GuideForm(Desk& desk) : Form(desk, QStringLiteral("T_guide")), page_(new QTextBrowser(this)) {
    page_->setObjectName(QStringLiteral("Page"));
    page_->setAccessibleName(QStringLiteral("Page du guide"));
    page_->setOpenExternalLinks(false);
    page_->viewport()->installEventFilter(this);
    page_->setLineWrapMode(QTextEdit::FixedPixelWidth);
    page_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // the room does not change by what stands in it
    connect(page_, &QTextBrowser::sourceChanged, this, [this] { pageShown(); });
    auto* contents = button(QStringLiteral("Cmdsommaire"), QStringLiteral("&Sommaire"),
                            [this] { page_->setSource(guide::addressOf(guide::Contents)); });
    auto* back = button(QStringLiteral("Cmdretour"), QStringLiteral("Page p&récédente"), [this] { page_->backward(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    connect(page_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    back->setEnabled(false);
    auto* row = new QHBoxLayout;
    row->addWidget(contents);
    row->addWidget(back);
    row->addStretch();
    row->addWidget(quit);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(page_, 1);
    layout->addLayout(row);
    resize(900, 700);
    const QString asked = guide::textOf(mode()).isEmpty() ? guide::Contents : mode();
    page_->setSource(guide::addressOf(asked));
    applyTitle(QStringLiteral("Guide de l'utilisateur"));
    page_->setFocus();
}

/// Lines stay readable in the widest window; pictures take what it has.
void GuideForm::pageShown() {
    const int room = std::max(200, page_->viewport()->width());
    page_->setLineWrapColumnOrWidth(std::min(room, style::readableWidth()));
    guide::fitPictures(*page_->document(), room - 2 * static_cast<int>(page_->document()->documentMargin()));
}

bool GuideForm::eventFilter(QObject* watched, QEvent* event) {
    const bool handled = Form::eventFilter(watched, event);
    if (event->type() == QEvent::Resize) pageShown();
    return handled;
}

AboutForm::AboutForm(Desk& desk) : Form(desk, QStringLiteral("T_apropos")) {
    auto* facts = new QFormLayout;
    const auto add = [this, facts](const QString& name, const QString& caption, const QString& text) {
        auto* label = new QLabel(text, this);
        label->setObjectName(name);
        label->setTextFormat(Qt::PlainText);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        facts->addRow(caption, label);
    };
    add(QStringLiteral("Lblversion"), QStringLiteral("Version :"),
        QStringLiteral("MOLVEN ") + author::programVersion());
    add(QStringLiteral("Lblmoteur"), QStringLiteral("Moteur de données :"), engineVersion(session().molven()));
    add(QStringLiteral("Lblkit"), QStringLiteral("Fenêtres :"),
        QStringLiteral("Qt ") + QString::fromLatin1(qVersion()));
    add(QStringLiteral("Lbldossier"), QStringLiteral("Dossier :"),
        session().spe_nom.isEmpty() ? QStringLiteral("aucun dossier ouvert")
                                    : QStringLiteral("%1 (%2)").arg(session().spe_nom, session().spe_cod));
    add(QStringLiteral("Lbldonnees"), QStringLiteral("Données :"), QDir::toNativeSeparators(session().chemin_base));
    add(QStringLiteral("Lblprogramme"), QStringLiteral("Programme :"), QDir::toNativeSeparators(session().dossier_app));
    const auto opener = [this](const QString& page) {
        return [this, page] { this->desk().open(QStringLiteral("T_guide"), page); };
    };
    auto* row = new QHBoxLayout;
    row->addWidget(
        button(QStringLiteral("Cmdlicences"), QStringLiteral("&Licences"), opener(QStringLiteral("licences"))));
    row->addWidget(button(QStringLiteral("Cmdguide"), QStringLiteral("&Guide"), opener(guide::Contents)));
    row->addStretch();
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    row->addWidget(quit);
    auto* layout = new QVBoxLayout(this);
    style::letBreathe(*layout);
    layout->addLayout(facts);
    layout->addStretch();
    layout->addLayout(row);
    setDefaultButton(quit);
    resize(560, 260);
    applyTitle(QStringLiteral("A propos de MOLVEN"));
    quit->setFocus();
}

} // namespace molven
