#include "screens/accounting/transfer_form.h"

#include "accounting/client_accounts.h"
#include "accounting/entry_files.h"
#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "data/safe_file.h"
#include "reference/seller.h"
#include "screens/accounting/figures.h"
#include "screens/accounting/transfer_paper.h"
#include "ui/access_keys.h"
#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/progress.h"
#include "ui/style.h"

#include <QComboBox>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

QList<GridColumn> entryColumns() {
    const auto& e = strecrit;
    return {{&e.ecr_num, QStringLiteral("Écriture"), 80},
            {&e.ecr_dat, QStringLiteral("Date"), 85},
            {&e.ecr_no, QStringLiteral("N° pièce"), 70},
            {&e.ecr_cpt, QStringLiteral("Compte"), 90},
            {&e.ecr_clt, QStringLiteral("Client"), 65},
            {&e.ecr_lib, QStringLiteral("Libellé"), 330},
            {&e.ecr_deb, QStringLiteral("Débit"), 100, Amount},
            {&e.ecr_cre, QStringLiteral("Crédit"), 100, Amount},
            {&e.ecr_tva, QStringLiteral("TVA"), 45},
            {&e.ecr_ech, QStringLiteral("Échéance"), 85}};
}

QList<GridColumn> leftOutColumns() {
    const auto& r = strrejet;
    return {{&r.rej_no, QStringLiteral("N° pièce"), 75},
            {&r.rej_aa, QStringLiteral("Année"), 55},
            {&r.rej_clt, QStringLiteral("Client"), 320},
            {&r.rej_mot, QStringLiteral("Laissée de côté parce que"), 420}};
}

QString wordsOf(const transfer::Past& past) {
    return QStringLiteral("N° %1 du %2, %3, %4")
        .arg(past.number, dayOfKey(past.day), counted(past.entries, QStringLiteral("ligne")),
             format(past.debit, Amount));
}

} // namespace

TransferForm::TransferForm(Desk& desk)
    : Form(desk, QStringLiteral("T_trsfac")),
      files_(transfer::openFiles(workspace_, session())),
      count_(new QLabel(this)),
      entries_(new Grid(QStringLiteral("DBGrid1"), entryColumns(), this)),
      leftOut_(new Grid(QStringLiteral("DBGrid2"), leftOutColumns(), this)) {
    count_->setObjectName(QStringLiteral("Label1"));
    count_->setTextFormat(Qt::PlainText);
    style::emphasise(*count_);
    entries_->setAccessibleName(QStringLiteral("Écritures"));
    leftOut_->setAccessibleName(QStringLiteral("Factures laissées de côté"));
    leftOut_->setFixedHeight(5 * style::RowHeight);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(buildTop());
    layout->addWidget(count_);
    layout->addWidget(entries_, 1);
    layout->addWidget(leftOut_);
    layout->addLayout(buildFiles());
    tabThrough(tabStopsOf(*layout));
    resize(1180, 720);
    applyTitle(QStringLiteral("Transfert en comptabilité"));
    leftOut_->hide();
    fillPast();
    until_->setFocus();
}

DateBox* TransferForm::dateBox(const QString& name) {
    auto* box = new DateBox(this);
    box->setObjectName(name);
    bind(name, box);
    return box;
}

QLayout* TransferForm::buildTop() {
    until_ = dateBox(To);
    auto* caption = new QLabel(QStringLiteral("&Factures et avoirs jusqu'au :"), this);
    caption->setBuddy(until_);
    auto* check = button(QStringLiteral("cmdvalide"), QStringLiteral("&Contrôler"), [this] { control(); });
    setDefaultButton(check);
    auto* row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(until_);
    row->addWidget(check);
    row->addWidget(button(QStringLiteral("Cmdok"), QStringLiteral("&Transférer"), [this] { run(); }));
    row->addStretch();
    row->addWidget(button(QStringLiteral("Cmdcpt"), QStringLiteral("Créer les comptes c&lients"),
                          [this] { openClientAccounts(); }));
    row->addWidget(leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); }));
    return row;
}

QLayout* TransferForm::buildFiles() {
    past_ = new QComboBox(this);
    past_->setObjectName(QStringLiteral("Cmbtrf"));
    past_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(past_, &QComboBox::activated, this, [this] { guarded([this] { showPast(); }); });
    yearFrom_ = dateBox(QStringLiteral("Mskexedeb"));
    yearTo_ = dateBox(QStringLiteral("Mskexefin"));
    const int year = Clock::today().year();
    yearFrom_->put(dateText(QDate(year, 1, 1)));
    yearTo_->put(dateText(QDate(year, 12, 31)));
    const auto captioned = [this](const QString& text, QWidget* buddy) {
        auto* label = new QLabel(text, this);
        label->setBuddy(buddy);
        return label;
    };
    auto* row = new QHBoxLayout;
    row->addWidget(captioned(QStringLiteral("Tran&sfert :"), past_));
    row->addWidget(past_);
    row->addWidget(button(QStringLiteral("Cmdfic"), QStringLiteral("&Refaire les fichiers"), [this] { writeFiles(); }));
    row->addWidget(button(QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(chosen()); }));
    row->addStretch();
    row->addWidget(captioned(QStringLiteral("E&xercice du :"), yearFrom_));
    row->addWidget(yearFrom_);
    row->addWidget(captioned(QStringLiteral("au :"), yearTo_));
    row->addWidget(yearTo_);
    row->addWidget(
        button(QStringLiteral("Cmdfec"), QStringLiteral("Fichier des &écritures (FEC)"), [this] { writeLegalFile(); }));
    return row;
}

void TransferForm::control() {
    control_.reset();
    entries_->rows().setRecords({});
    leftOut_->hide();
    count_->clear();
    control_ = transfer::control(files_, until_->value(), progress(*this, QStringLiteral("Contrôle des factures")));
    controlledDate_ = until_->value();
    count_->setText(
        QStringLiteral("À transférer : %1, %2 d'écriture, débit %3, crédit %4")
            .arg(counted(control_->documents, QStringLiteral("document")),
                 counted(control_->entries, QStringLiteral("ligne")), format(control_->debit, Amount),
                 format(control_->credit, Amount)) +
        (control_->leftOut.isEmpty()
             ? QString()
             : QStringLiteral(", %1 de côté").arg(counted(control_->leftOut.size(), QStringLiteral("laissée")))));
    showEntries(files_.lines.tri, {});
    showLeftOut(control_->leftOut);
}

void TransferForm::showEntries(Database file, const Criterion& criterion) {
    entries_->rows().setQuery([file, criterion](const Criterion& filter, const Order& order) mutable {
        const Order byNumber{strecrit.ecr_num, strecrit.ecr_lg};
        return file.select(strecrit, criterion && filter, order.orElse(byNumber));
    });
}

void TransferForm::showLeftOut(const QList<transfer::LeftOut>& leftOut) {
    QList<Record> rows;
    for (const transfer::LeftOut& one : leftOut) {
        Record row(strrejet);
        row[strrejet.rej_aa] = one.year;
        row[strrejet.rej_no] = one.number;
        row[strrejet.rej_clt] = one.client.left(strrejet.rej_clt.size);
        row[strrejet.rej_mot] = one.reason.left(strrejet.rej_mot.size);
        rows.append(row);
    }
    leftOut_->rows().setRecords(rows);
    leftOut_->setVisible(!rows.isEmpty());
}

void TransferForm::run() {
    if (!control_ || until_->value() != controlledDate_)
        throw Refusal(QStringLiteral("Contrôler d'abord les factures à transférer"), To);
    if (control_->documents == 0) throw Refusal(QStringLiteral("aucune facture sélectionnée"), To);
    const transfer::Control controlled = *control_;
    const QString number =
        transfer::run(files_, controlled, progress(*this, QStringLiteral("Transfert en comptabilité")));
    control_.reset();
    count_->setText(QStringLiteral("Transfert N° %1 : %2, %3 d'écriture, débit %4")
                        .arg(number, counted(controlled.documents, QStringLiteral("document")),
                             counted(controlled.entries, QStringLiteral("ligne")), format(controlled.debit, Amount)));
    fillPast();
    showEntries(files_.lines.compta, strecrit.ecr_trf == number);
    if (controlled.entries == 0) return;
    print(number);
    entry_files::writeTransfer(files_.lines.compta, number, session().chemin_tri);
}

void TransferForm::openClientAccounts() {
    const qint64 made = client_accounts::open(files_.lines.molven, files_.lines.compta);
    notify(QStringLiteral("Comptes clients créés dans le plan comptable : %1").arg(made));
    control_.reset();
}

void TransferForm::fillPast() {
    past_->clear();
    for (const transfer::Past& one : transfer::past(files_.lines.compta)) past_->addItem(wordsOf(one), one.number);
}

QString TransferForm::chosen() const {
    if (past_->count() == 0) throw Refusal(QStringLiteral("Aucun transfert"), To);
    return past_->currentData().toString();
}

void TransferForm::showPast() {
    control_.reset();
    leftOut_->hide();
    count_->setText(QStringLiteral("Transfert ") + past_->currentText());
    showEntries(files_.lines.compta, strecrit.ecr_trf == chosen());
}

void TransferForm::writeFiles() {
    const QString number = chosen();
    entry_files::writeTransfer(files_.lines.compta, number, session().chemin_tri);
    notify(QStringLiteral("Transfert N° %1 : %2 et %3 enregistrés dans %4")
               .arg(number, entry_files::FixedName, entry_files::SemicolonName,
                    QDir::toNativeSeparators(session().chemin_tri)));
}

void TransferForm::writeLegalFile() {
    const Period year =
        typedPeriod(yearFrom_->value(), yearTo_->value(), yearFrom_->objectName(), yearTo_->objectName());
    const QString name = entry_files::legalName(seller::siren(seller::read(files_.lines.molven)), year);
    writeWhole(session().chemin_tri + name, entry_files::legalFile(files_.lines.compta, files_.lines.molven, year));
    notify(QStringLiteral("%1 enregistré dans %2").arg(name, QDir::toNativeSeparators(session().chemin_tri)));
}

void TransferForm::print(const QString& number) { desk().print(printedTransfer(files_.lines.compta, number)); }

} // namespace molven
