#include "screens/sales/scan_entry.h"

#include "sales/documents.h"
#include "sales/lines.h"
#include "sales/scanned_units.h"
#include "sales/unit_rules.h"
#include "screens/sales/unit_warnings.h"
#include "ui/form.h"
#include "ui/scan_box.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace molven {

ScanEntry::ScanEntry(Form& form, SalesBook& book)
    : TrayPart(&form),
      form_(form),
      book_(book),
      box_(new ScanBox(
          form, QStringLiteral("txtlect"),
          [this](const QString& scanned) {
              bool added = false;
              attempt([&] { added = add(scanned); });
              return added;
          },
          this)),
      last_(new QLabel(this)),
      takeBack_(form.button(QStringLiteral("Cmdannullect"), QStringLiteral("Re&tirer la dernière"),
                            [this] { attempt([this] { takeBack(); }); })) {
    last_->setObjectName(QStringLiteral("lbllect"));
    last_->setTextFormat(Qt::PlainText);
    auto* caption = new QLabel(QStringLiteral("&Lire :"), this);
    caption->setBuddy(box_);
    auto* leave =
        form.leaveButton(QStringLiteral("Cmdquitlect"), QStringLiteral("&Fin de la lecture"), [this] { left(); });
    auto* row = new QHBoxLayout(this);
    style::nest(*row);
    row->addWidget(caption);
    row->addWidget(box_, 1);
    row->addWidget(last_, 2);
    row->addWidget(takeBack_);
    row->addWidget(leave);
}

void ScanEntry::open(const Record& header) {
    header_ = header;
    taken_.clear();
    box_->put({});
    showLast({});
    box_->setFocus();
}

QString ScanEntry::unsaved() const {
    return box_->text().trimmed().isEmpty() ? QString() : QStringLiteral("Code lu : ") + box_->text().trimmed();
}

bool ScanEntry::add(const QString& scanned) {
    const Record unit = scanned_units::find(book_, *header_, scanned);
    if (!unit_warnings::areAccepted(form_, book_, *header_, {unit})) return false;
    document_lines::Draft draft = document_lines::preset(book_, *header_, unit[strproduit.ref_art]);
    document_lines::setUnit(book_, draft, unit);
    document_lines::add(book_, *header_, {draft});
    taken_.append(unit[strproduit.imm_art]);
    for (const QString& note : unit_rules::warnings(book_, *header_, unit).notes) form_.notify(note);
    showLast(QStringLiteral("%1 %2").arg(unit[strproduit.imm_art], unit[strproduit.pro_li1]));
    written();
    return true;
}

void ScanEntry::takeBack() {
    const DocumentLines& table = book_.kind().lines;
    const QString unit = taken_.last();
    for (const Record& line : documents::lines(book_, *header_)) {
        if (line[table.fac_imm] != unit) continue;
        const Record asRead = line;
        document_lines::remove(book_, *header_, asRead);
        break;
    }
    taken_.removeLast();
    showLast(QStringLiteral("%1 retiré").arg(unit));
    written();
    box_->put({});
    box_->setFocus();
}

/// What was done last, and how many lines were read.
void ScanEntry::showLast(const QString& text) {
    last_->setText(QStringLiteral("Lignes lues : %1     %2").arg(taken_.size()).arg(text).trimmed());
    takeBack_->setEnabled(!taken_.isEmpty());
}

} // namespace molven
