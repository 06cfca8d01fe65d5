#include "screens/shell/first_start.h"

#include "data/errors.h"
#include "dossier/conversion.h"
#include "dossier/creation.h"
#include "dossier/demo.h"
#include "ui/progress.h"
#include "ui/prompt.h"
#include "ui/style.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace molven {

namespace {

constexpr int DemonstrationUnits = 600;
constexpr qsizetype DifferencesTold = 12;

/// A folder is typed, or chosen by the button beside it.
QLayout* withBrowser(QLineEdit* box, const QString& name) {
    auto* layout = new QHBoxLayout;
    auto* browse = new QPushButton(QStringLiteral("Parcourir..."), box->parentWidget());
    browse->setObjectName(name);
    browse->setAutoDefault(false);
    QObject::connect(browse, &QPushButton::clicked, box, [box] {
        const QString chosen = QFileDialog::getExistingDirectory(box->window(), QString(), box->text());
        if (!chosen.isEmpty()) box->setText(QDir::toNativeSeparators(chosen));
    });
    layout->addWidget(box, 1);
    layout->addWidget(browse);
    return layout;
}

} // namespace

FirstStart::FirstStart(Prompt& prompt)
    : prompt_(prompt),
      deeds_(new QButtonGroup(this)),
      folder_(new QLineEdit(this)),
      code_(new QLineEdit(this)),
      name_(new QLineEdit(this)),
      source_(new QLineEdit(this)),
      told_(new QLabel(this)) {
    setObjectName(QStringLiteral("T_premier"));
    setWindowTitle(QStringLiteral("Premier démarrage"));
    auto* layout = new QVBoxLayout(this);
    style::letBreathe(*layout);
    layout->addWidget(
        new QLabel(QStringLiteral("Aucun dossier n'est connu sur ce poste. Que voulez-vous faire ?"), this));
    const QStringList captions{QStringLiteral("&Créer un dossier"), QStringLiteral("&Ouvrir un dossier existant"),
                               QStringLiteral("Con&vertir un dossier de bases Jet"),
                               QStringLiteral("&Essayer la démonstration")};
    const QStringList names{QStringLiteral("Optcreer"), QStringLiteral("Optouvrir"), QStringLiteral("Optconvertir"),
                            QStringLiteral("Optdemo")};
    for (int i = 0; i < captions.size(); ++i) {
        auto* choice = new QRadioButton(captions[i], this);
        choice->setObjectName(names[i]);
        deeds_->addButton(choice, i);
        layout->addWidget(choice);
    }
    deeds_->button(static_cast<int>(Deed::Demonstrate))->setChecked(true);
    addBoxes();
    connect(deeds_, &QButtonGroup::idToggled, this, [this] { adapt(); });
    folder_->setText(QDir::toNativeSeparators(QDir::home().filePath(QStringLiteral("molven"))));
    resize(620, 360);
    adapt();
}

void FirstStart::addBoxes() {
    folder_->setObjectName(QStringLiteral("txtdossier"));
    code_->setObjectName(QStringLiteral("txtcode"));
    code_->setMaxLength(2);
    name_->setObjectName(QStringLiteral("txtnom"));
    source_->setObjectName(QStringLiteral("txtsource"));
    told_->setObjectName(QStringLiteral("Lblrefus"));
    told_->setTextFormat(Qt::PlainText);
    told_->setWordWrap(true);
    style::makeRefusal(*told_);
    auto* boxes = new QFormLayout;
    QLayout* folders = withBrowser(folder_, QStringLiteral("Cmddossier"));
    QLayout* sources = withBrowser(source_, QStringLiteral("Cmdsource"));
    boxes->addRow(QStringLiteral("&Dossier du programme :"), folders);
    boxes->addRow(QStringLiteral("Code &société (deux lettres) :"), code_);
    boxes->addRow(QStringLiteral("&Nom de la société :"), name_);
    boxes->addRow(QStringLiteral("&Bases à convertir :"), sources);
    static_cast<QLabel*>(boxes->labelForField(folders))->setBuddy(folder_);
    static_cast<QLabel*>(boxes->labelForField(sources))->setBuddy(source_);
    auto* buttons = new QDialogButtonBox(this);
    auto* ok = buttons->addButton(QStringLiteral("Con&tinuer"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("Cmdok"));
    buttons->addButton(QStringLiteral("&Annuler"), QDialogButtonBox::RejectRole)
        ->setObjectName(QStringLiteral("Cmdannul"));
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { proceed(); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* column = static_cast<QVBoxLayout*>(layout());
    column->addLayout(boxes);
    column->addWidget(told_);
    column->addStretch();
    column->addWidget(buttons);
    QWidget* last = deeds_->buttons().constLast();
    for (const char* name :
         {"txtdossier", "Cmddossier", "txtcode", "txtnom", "txtsource", "Cmdsource", "Cmdok", "Cmdannul"}) {
        auto* next = findChild<QWidget*>(QString::fromLatin1(name));
        setTabOrder(last, next); // as one reads
        last = next;
    }
}

FirstStart::Deed FirstStart::deed() const { return static_cast<Deed>(deeds_->checkedId()); }

/// Only what the deed asks can be typed.
void FirstStart::adapt() {
    code_->setEnabled(deed() == Deed::Create);
    name_->setEnabled(deed() == Deed::Create);
    source_->setEnabled(deed() == Deed::Convert);
    findChild<QPushButton*>(QStringLiteral("Cmdsource"))->setEnabled(deed() == Deed::Convert);
    told_->clear();
}

void FirstStart::proceed() {
    const QString typed = QDir::fromNativeSeparators(folder_->text().trimmed());
    told_->clear();
    try {
        if (typed.isEmpty()) throw Refusal(QStringLiteral("Indiquez le dossier du programme"));
        const QString folder = QDir(typed).absolutePath();
        carryOut(folder);
        home_ = folder;
        accept();
    } catch (const Refusal& refusal) {
        told_->setText(refusal.text.trimmed());
        for (QLineEdit* box : {source_, name_, code_, folder_}) // the first that lacks its answer
            if (box->isEnabled() && box->text().trimmed().isEmpty()) box->setFocus();
    } catch (const DataError& error) {
        told_->setText(QStringLiteral("%1 (erreur %2)").arg(error.description).arg(error.number));
    }
}

void FirstStart::carryOut(const QString& folder) {
    switch (deed()) {
    case Deed::Create:
        creation::create({folder, code_->text().trimmed().toUpper(), name_->text().trimmed(), false});
        return;
    case Deed::Open:
        creation::open(folder); // refuses what is no installation
        return;
    case Deed::Convert:
        return convert(folder);
    case Deed::Demonstrate:
        demo::create(folder, QStringLiteral("CE"), {DemonstrationUnits, 1},
                     progress(*this, QStringLiteral("La démonstration se remplit")));
        return;
    }
}

/// What is not as it was in the bases, the user must know before working in the dossier.
void FirstStart::convert(const QString& folder) {
    QStringList differences = conversion::convert(QDir::fromNativeSeparators(source_->text().trimmed()), folder, false,
                                                  progress(*this, QStringLiteral("Conversion")))
                                  .differences();
    if (differences.isEmpty()) return;
    if (const qsizetype more = differences.size() - DifferencesTold; more > 0)
        differences = differences.mid(0, DifferencesTold) << QStringLiteral("... et %1 autres").arg(more);
    prompt_.tell(QStringLiteral("Le dossier est converti. À savoir :\n\n") + differences.join(u'\n') +
                     QStringLiteral("\n\nContrôlez-le par molvenctl check."),
                 windowTitle(), Icon::Warning);
}

} // namespace molven
