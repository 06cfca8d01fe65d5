#include "screens/stock/received_invoice_form.h"

#include "data/dates.h"
#include "data/format.h"
#include "electronic/factur_x.h"
#include "electronic/invoice_words.h"
#include "electronic/received_goods.h"
#include "screens/stock/receipt_form.h"
#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/style.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

QList<GridColumn> invoiceLineColumns() {
    const auto& r = strrecu;
    return {{&r.rec_ref, QStringLiteral("Référence"), 120},
            {&r.rec_des, QStringLiteral("Désignation"), 290},
            {&r.rec_lot, QStringLiteral("Lot"), 110},
            {&r.rec_per, QStringLiteral("Péremption"), 90},
            {&r.rec_qte, QStringLiteral("Qté"), 50},
            {&r.rec_pri, QStringLiteral("Prix HT"), 90, QStringLiteral("#####0.00")},
            {&r.rec_ser, QStringLiteral("N° de série"), 240}};
}

} // namespace

ReceivedInvoiceForm::ReceivedInvoiceForm(Desk& desk)
    : Form(desk, QStringLiteral("T_facturx")), molven_(workspace_.open(session().molven())) {
    title_ = new QLabel(this);
    title_->setObjectName(QStringLiteral("Label1"));
    title_->setTextFormat(Qt::PlainText);
    style::makeHeading(*title_);
    words_ = new QPlainTextEdit(this);
    words_->setObjectName(QStringLiteral("txtlire"));
    words_->setReadOnly(true);
    words_->setTabChangesFocus(true);
    goods_ = new Grid(QStringLiteral("DBGrid1"), invoiceLineColumns(), this);
    receive_ = button(QStringLiteral("Cmdrecep"), QStringLiteral("&Réceptionner le lot"), [this] { receive(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(receive_);
    buttons->addWidget(quit);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(buildFile());
    layout->addWidget(title_);
    layout->addWidget(words_, 3);
    layout->addWidget(goods_, 2);
    layout->addLayout(buttons);
    allow(receive_, false, QStringLiteral("Aucune facture n'est lue"));
    resize(1100, 680);
    applyTitle(QStringLiteral("Facture électronique reçue"));
    file_->setFocus();
}

QLayout* ReceivedInvoiceForm::buildFile() {
    file_ = new Edit(this);
    file_->setObjectName(QStringLiteral("txtfic"));
    bind(file_->objectName(), file_);
    auto* caption = new QLabel(QStringLiteral("&Fichier PDF ou XML :"), this);
    caption->setBuddy(file_);
    auto* browse = button(QStringLiteral("Cmdfic"), QStringLiteral("&Parcourir..."), [this] { choose(); });
    auto* validate = button(QStringLiteral("cmdvalide"), QStringLiteral("&Lire"), [this] { read(); });
    setDefaultButton(validate);
    auto* row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(file_, 1);
    row->addWidget(browse);
    row->addWidget(validate);
    return row;
}

void ReceivedInvoiceForm::choose() {
    const QString chosen = QFileDialog::getOpenFileName(this, QStringLiteral("Facture reçue"), file_->text(),
                                                        QStringLiteral("Factures (*.pdf *.xml)"));
    if (chosen.isEmpty()) return;
    file_->put(QDir::toNativeSeparators(chosen));
    read();
}

void ReceivedInvoiceForm::read() {
    const QString typed = file_->text().trimmed();
    if (typed.isEmpty()) throw Refusal(QStringLiteral("Fichier obligatoire"), file_->objectName());
    invoice_ = electronic::readFile(QDir(session().dossier_app).absoluteFilePath(QDir::fromNativeSeparators(typed)));
    title_->setText(QStringLiteral("%1 %2 du %3, %4 : %5 %6")
                        .arg(electronic::typeWords(invoice_), invoice_.number, dateText(invoice_.date),
                             invoice_.seller.name, format(invoice_.toPay, QStringLiteral("#####0.00")),
                             invoice_.currency));
    words_->setPlainText(electronic::words(invoice_).join(u'\n'));
    const QList<Record> goods = electronic::goodsOf(invoice_);
    goods_->rows().setRecords(goods);
    allow(receive_, !goods.isEmpty() && !invoice_.isCreditNote(),
          QStringLiteral("Rien à réceptionner sur ce document"));
    if (goods.isEmpty()) return;
    goods_->selectRow(0);
    goods_->setFocus();
}

void ReceivedInvoiceForm::receive() {
    const auto goods = goods_->current();
    if (!goods) throw Refusal(QStringLiteral("Faire une sélection"), goods_->objectName());
    const Receipt receipt = electronic::receiptOf(molven_, invoice_, *goods);
    Form* opened = desk().open(QStringLiteral("T_proges"));
    if (auto* form = dynamic_cast<ReceiptForm*>(opened)) form->guarded([&] { form->fill(receipt); });
}

} // namespace molven
