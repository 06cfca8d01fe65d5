#include "screens/sales/archive_form.h"

#include "data/clock.h"
#include "data/format.h"
#include "sales/document_archive.h"
#include "stock/unit_archive.h"
#include "stock/unit_tables.h"
#include "ui/edit.h"
#include "ui/icons.h"
#include "ui/pick_lists.h"
#include "ui/progress.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace molven {

using archive::Direction;

struct ArchiveForm::Task {
    QString title, noun, none; ///< "documents"; said of an empty range
    const DocumentKind* kind;  ///< null for units
    Direction direction;

    bool isOfUnits() const { return !kind; }
    bool archives() const { return direction == Direction::ToHistory; }
    QString verb() const { return archives() ? QStringLiteral("archiver") : QStringLiteral("réactualiser"); }
    archive::Subject subject() const { return kind ? document_archive::subject(*kind) : unit_archive::subject(); }
    Criterion eligible() const {
        return kind ? document_archive::eligible(*kind, direction) : unit_archive::eligible();
    }
};

namespace {

constexpr int DoublesTold = 5;

QString plural(const QString& mode) {
    if (mode == u"LIV") return QStringLiteral("Bons de Livraison");
    if (mode == u"CSG") return QStringLiteral("Bons de Consignation");
    if (mode == u"BTR") return QStringLiteral("Bons de Transfert");
    return QStringLiteral("Factures");
}

QList<GridColumn> columnsOf(const DocumentKind& kind) {
    const DocumentHeaders& h = kind.headers;
    QList<GridColumn> columns{{&h.fac_aa, QStringLiteral("Année"), 60},
                              {&h.fac_no, QStringLiteral("N°"), 80},
                              {&h.fac_datf, QStringLiteral("Date"), 95},
                              {&h.fac_clt, QStringLiteral("Client"), 75},
                              {&h.fac_nom, QStringLiteral("Nom"), 300}};
    if (kind.isPriced) columns.append({&h.fac_ttc, QStringLiteral("T.T.C."), 100, QStringLiteral("#####0.00")});
    return columns;
}

QList<GridColumn> unitColumns() {
    return QList<GridColumn>{{&strproduit.pro_ann, QStringLiteral("Siècle"), 55}} + pick_lists::unitColumns();
}

} // namespace

ArchiveForm::Task ArchiveForm::taskOf(const QString& name, const QString& mode) {
    const bool archives = name.startsWith(u"T_arc");
    const Direction direction = archives ? Direction::ToHistory : Direction::FromHistory;
    const QString head = archives ? QStringLiteral("Archivage des ") : QStringLiteral("Réactualisation des ");
    if (name.endsWith(u"pro"))
        return {head + QStringLiteral("Produits"), QStringLiteral("immatriculations"),
                archives ? QStringLiteral("Aucune Immatriculation sera archivée")
                         : QStringLiteral("Aucune Immatriculation ne sera réactualisée"),
                nullptr, direction};
    if (name.endsWith(u"btr"))
        return {head + plural(QStringLiteral("BTR")), QStringLiteral("bons de transfert"),
                archives ? QStringLiteral("Aucune Bon de Transfert ne sera archivée")
                         : QStringLiteral("Aucun Bon de Transfert ne sera réactualisé"),
                &documentKind(QStringLiteral("BTR")), direction};
    return {head + plural(mode), QStringLiteral("documents"),
            archives ? QStringLiteral("Aucun document ne sera archivée")
                     : QStringLiteral("Aucun document ne sera réactualisé"),
            &documentKind(mode), direction};
}

ArchiveForm::ArchiveForm(Desk& desk, const QString& name)
    : Form(desk, name),
      task_(std::make_shared<const Task>(taskOf(name, mode()))),
      working_(workspace_.open(task_->isOfUnits() ? session().molven() : session().vente())),
      history_(workspace_.open(session().historic())),
      list_(new Grid(QStringLiteral("DBGrid1"), task_->isOfUnits() ? unitColumns() : columnsOf(*task_->kind), this)),
      result_(new QLabel(this)) {
    result_->setObjectName(QStringLiteral("Label1"));
    result_->setTextFormat(Qt::PlainText);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(criteriaRow());
    layout->addWidget(list_, 1);
    layout->addLayout(deedRow());
    asked_ = first_;
    list_->chosen = [this](const Record& chosen) { take(chosen); };
    list_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        const archive::Keyed head = task_->subject().head;
        return (task_->archives() ? working_ : history_)
            .select(head.table, task_->eligible() && filter, order.orElse(Order{head.group, head.key}));
    });
    resize(980, 620);
    applyTitle(task_->title);
    (year_ ? year_ : first_)->setFocus();
}

Edit* ArchiveForm::box(QHBoxLayout& row, const QString& name, const QString& caption, int characters) {
    auto* edit = new Edit(this);
    edit->setObjectName(name);
    edit->setMaxLength(characters);
    edit->setFixedWidth(style::boxWidth(characters));
    auto* label = new QLabel(caption, this);
    label->setBuddy(edit);
    row.addWidget(label);
    row.addWidget(edit);
    return edit;
}

void ArchiveForm::bound(QHBoxLayout& row, Edit*& edit, const QString& caption, const QString& list) {
    const bool isUnit = task_->isOfUnits(), isFirst = &edit == &first_;
    const QString name = isUnit ? (isFirst ? QStringLiteral("txtdebimm") : QStringLiteral("txtfinimm"))
                                : (isFirst ? QStringLiteral("txtdeb") : QStringLiteral("Txtfin"));
    edit = box(row, name, caption, isUnit ? 12 : 6); // a key typed too long is refused, not cut
    auto* button = new QToolButton(this);
    button->setObjectName(list);
    button->setIcon(icons::list());
    button->setFocusPolicy(Qt::NoFocus);
    row.addWidget(button);
    Edit* typed = edit;
    onPick(
        typed,
        [this, typed] {
            asked_ = typed;
            list_->rows().refresh();
            if (list_->rows().rowCount() > 0 && !list_->current()) list_->selectRow(0);
            list_->setFocus();
        },
        button);
    if (isUnit) {
        onLeft(typed, [typed, name] {
            if (typed->text().trimmed().size() != 10) throw Refusal(QStringLiteral(" 10 caracteres SVP"), name);
        });
    } else {
        typed->put(isFirst ? QStringLiteral("000000") : QStringLiteral("999999"));
        onLeft(typed, [typed] { typed->put(padded(typed->text(), 6)); });
    }
}

QHBoxLayout* ArchiveForm::criteriaRow() {
    auto* row = new QHBoxLayout;
    if (!task_->isOfUnits()) {
        year_ = box(*row, QStringLiteral("txtann"), QStringLiteral("A&nnée :"), 4);
        year_->put(QString::number(Clock::today().year()));
        row->addSpacing(style::WideGap);
    }
    const bool isUnit = task_->isOfUnits();
    bound(*row, first_, isUnit ? QStringLiteral("&De l'immat. :") : QStringLiteral("&Du N° :"),
          isUnit ? QStringLiteral("Cmddebimm") : QStringLiteral("cmddeb"));
    row->addSpacing(style::WideGap);
    bound(*row, last_, isUnit ? QStringLiteral("&à l'immat. :") : QStringLiteral("&au N° :"),
          isUnit ? QStringLiteral("Cmdfinimm") : QStringLiteral("Cmdfin"));
    if (isUnit) {
        auto* hint = new QLabel(QStringLiteral("siècle et immatriculation, 10 caractères"), this);
        style::makeQuiet(*hint);
        row->addSpacing(style::Gap);
        row->addWidget(hint);
    }
    row->addStretch();
    return row;
}

QHBoxLayout* ArchiveForm::deedRow() {
    auto* row = new QHBoxLayout;
    auto* counting = button(QStringLiteral("cmdvalide"), QStringLiteral("&Compter"), [this] { tellCount(); });
    row->addWidget(counting);
    row->addWidget(result_, 1);
    row->addWidget(button(QStringLiteral("Cmdok"),
                          task_->archives() ? QStringLiteral("A&rchiver") : QStringLiteral("&Réactualiser"),
                          [this] { run(); }));
    row->addWidget(leaveButton(QStringLiteral("Cmdquitte"), QStringLiteral("&Quitter"), [this] { close(); }));
    setDefaultButton(counting);
    return row;
}

void ArchiveForm::take(const Record& chosen) {
    const archive::Keyed head = task_->subject().head;
    const QString group = chosen.value(head.group), key = chosen.value(head.key);
    if (year_ && asked_ == first_) year_->put(group);
    asked_->put(task_->isOfUnits() ? group + key : key);
    asked_->setFocus();
    asked_ = asked_ == first_ ? last_ : first_;
}

Criterion ArchiveForm::range() const {
    if (task_->isOfUnits()) return unit_archive::within({first_->text().trimmed(), last_->text().trimmed()});
    return document_archive::within(*task_->kind, task_->direction, {year_->text(), first_->text(), last_->text()});
}

qint64 ArchiveForm::count() {
    return (task_->archives() ? working_ : history_).count(task_->subject().head.table, range());
}

void ArchiveForm::tellCount() {
    const qint64 found = count(); // refuses a range that is none
    result_->clear();
    if (!task_->isOfUnits()) notify(QStringLiteral("Debut du traitement"));
    notify(found == 0 ? task_->none
                      : QStringLiteral("Nous allons %1 %2 %3").arg(task_->verb()).arg(found).arg(task_->noun));
}

void ArchiveForm::run() {
    if (count() == 0) return notify(task_->none);
    result_->clear();
    const archive::Outcome outcome = archive::move(
        task_->archives() ? working_ : history_, task_->archives() ? history_ : working_, task_->subject(), range(),
        task_->archives() ? QStringLiteral("Archivage") : QStringLiteral("Réactualisation"),
        progress(*this, task_->title));
    list_->rows().refresh();
    tellDoubles(outcome.doubles);
    const QString moved = task_->archives() ? QStringLiteral("archivés") : QStringLiteral("réactualisés");
    result_->setText(QStringLiteral("%1 : %2")
                         .arg(outcome.isStopped ? QStringLiteral("Interrompu, %1").arg(moved)
                                                : QStringLiteral("Enregistrements %1").arg(moved))
                         .arg(outcome.moved));
    if (outcome.isStopped) return notify(QStringLiteral("Opération abandonnée"));
    notify(QStringLiteral("Fin du traitement"));
    if (task_->archives() || !task_->isOfUnits()) notify(QStringLiteral("Veuillez faire un recompactage"));
}

/// Those that stand in both files stay where they are.
void ArchiveForm::tellDoubles(const QStringList& doubles) {
    const QString head =
        task_->isOfUnits() ? QStringLiteral("immat en double ") : QStringLiteral("document en double ");
    for (const QString& key : doubles.mid(0, DoublesTold)) notify(head + key);
    if (doubles.size() > DoublesTold)
        notify(head + QStringLiteral(": et %1 autres, restés où ils étaient").arg(doubles.size() - DoublesTold));
}

} // namespace molven
