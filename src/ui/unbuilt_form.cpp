#include "ui/unbuilt_form.h"

#include "ui/style.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

UnbuiltForm::UnbuiltForm(Desk& desk, const QString& name, const QString& title) : Form(desk, name) {
    auto* layout = new QVBoxLayout(this);
    auto* text = new QLabel(QStringLiteral("Cet écran n'est pas encore disponible dans cette version."), this);
    text->setObjectName(QStringLiteral("Label1"));
    style::letBreathe(*layout);
    layout->addWidget(text);
    layout->addStretch();
    layout->addWidget(leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); }), 0,
                      Qt::AlignRight);
    resize(460, 160);
    applyTitle(QString(title).remove(u'&').simplified());
}

} // namespace molven
