#include "screens/reference/ean_pool_form.h"

#include "printing/report.h"
#include "reference/article_tables.h"
#include "reference/ean.h"
#include "sales/lpp_codification.h"
#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/printed_list.h"
#include "ui/progress.h"
#include "ui/style.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

EanPoolForm::EanPoolForm(Desk& desk)
    : Form(desk, QStringLiteral("T_gencode")),
      gencode_(workspace_.open(session().path(DataFile::Gencode))),
      grid_(new Grid(QStringLiteral("DBGrid1"),
                     {{&strgencode.ean_code, QStringLiteral("Code EAN"), 200},
                      {&strgencode.ean_art, QStringLiteral("Article"), 200}},
                     this)),
      code_(new Edit(this)),
      quantity_(new Edit(this)),
      count_(new QLabel(this)) {
    code_->setObjectName(QStringLiteral("txtean_code"));
    code_->setMaxLength(13);
    code_->setFixedWidth(style::boxWidth(13));
    quantity_->setObjectName(QStringLiteral("txtnb"));
    quantity_->setMaxLength(6);
    quantity_->setFixedWidth(style::boxWidth(6));
    count_->setObjectName(QStringLiteral("Label1"));
    bind(strgencode.ean_code.name, code_);
    grid_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return gencode_.select(strgencode, filter, order.orElse(Order(strgencode.ean_code)));
    });
    grid_->becameCurrent = grid_->chosen = [this](const Record& row) { code_->put(row[strgencode.ean_code]); };
    auto* addButton = button(QStringLiteral("CmdAjout"), QStringLiteral("&Ajouter"), [this] { add(); });
    auto* removeButton = button(QStringLiteral("CmdSupprime"), QStringLiteral("&Supprimer"), [this] { remove(); });
    auto* printButton = button(QStringLiteral("Cmdvisu"), QStringLiteral("&Imprimer"),
                               [this] { this->desk().print(printedList(QStringLiteral("Gencode"), grid_->rows())); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* entry = new QHBoxLayout;
    const std::pair<const char*, Edit*> boxes[]{{"Code (12 chiffres, la clé est calculée) :", code_},
                                                {"Nombre de codes :", quantity_}};
    for (const auto& [words, box] : boxes) {
        auto* caption = new QLabel(QString::fromUtf8(words), this);
        caption->setBuddy(box);
        entry->addWidget(caption);
        entry->addWidget(box);
    }
    entry->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(addButton);
    buttons->addWidget(removeButton);
    buttons->addStretch();
    buttons->addWidget(printButton);
    buttons->addWidget(quit);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(grid_, 1);
    layout->addWidget(count_);
    layout->addLayout(entry);
    layout->addLayout(buttons);
    resize(760, 560);
    applyTitle(QStringLiteral("Gencode"));
    refresh();
    code_->setFocus();
}

void EanPoolForm::refresh() {
    grid_->rows().refresh();
    const qint64 free = gencode_.count(strgencode, trimmed(strgencode.ean_art) == QString());
    count_->setText(QStringLiteral("%1 codes, dont %2 libres").arg(grid_->rows().rowCount()).arg(free));
}

void EanPoolForm::add() {
    ean::add(gencode_, code_->text(), quantity_->text(), progress(*this, QStringLiteral("Création des codes EAN")));
    code_->put({});
    quantity_->put({});
    refresh();
    code_->setFocus();
}

void EanPoolForm::remove() {
    ean::requireUnused(gencode_, code_->text());
    if (!prompt().confirm(QStringLiteral("Etes-vous sûr de vouloir supprimer cette fiche ? "),
                          QStringLiteral("Code EAN ") + code_->text().trimmed()))
        return;
    ean::remove(gencode_, code_->text());
    code_->put({});
    refresh();
}

LppCodificationForm::LppCodificationForm(Desk& desk)
    : Form(desk, QStringLiteral("T_tipslpp")), step_(new QLabel(this)) {
    step_->setObjectName(QStringLiteral("Label1"));
    step_->setText(QStringLiteral("Codes LPP des articles, des produits et des bons de livraison non facturés"));
    auto* start = button(QStringLiteral("cmdvalide"), QStringLiteral("&Lancer le traitement"), [this] { run(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(start);
    row->addWidget(quit);
    auto* layout = new QVBoxLayout(this);
    style::letBreathe(*layout);
    layout->addWidget(step_);
    layout->addStretch();
    layout->addLayout(row);
    resize(620, 140);
    applyTitle(QStringLiteral("Codification des LPP à partir des codes TIPS"));
    start->setFocus();
}

void LppCodificationForm::run() {
    QList<lpp_codification::Fault> faults;
    const QString before = step_->text();
    const bool done = guarded([&] {
        faults = lpp_codification::run(session(), [this](const QString& title) {
            step_->setText(title);
            step_->repaint();
            return progress(*this, title);
        });
    });
    if (!done) return step_->setText(before);
    notify(QStringLiteral("Traitement termine"));
    if (faults.isEmpty()) return;
    Report report(QStringLiteral("Liste des erreurs - Codification des LPP à partir des codes TIPS"),
                  {{QStringLiteral("Référence")},
                   {QStringLiteral("Désignation ")},
                   {QStringLiteral("Code T.I.P.S.")},
                   {QStringLiteral("Code LPP")}});
    for (const lpp_codification::Fault& fault : faults)
        report.row({fault.reference, fault.label, fault.tips, fault.lpp});
    report.count();
    desk().print(report);
}

} // namespace molven
