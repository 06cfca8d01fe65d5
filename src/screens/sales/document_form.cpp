#include "screens/sales/document_form.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "reference/codes.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/documents.h"
#include "screens/sales/line_entry.h"
#include "screens/sales/note_choice.h"
#include "screens/sales/unit_range.h"
#include "screens/shell/trail_form.h"
#include "shell/menu_tree.h"
#include "ui/pick_lists.h"
#include "ui/record_panel.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

namespace molven {

namespace {

QList<FieldBox> headerBoxes(const DocumentKind& kind) {
    const auto& h = kind.headers;
    const bool credit = kind.isCredit;
    const auto list = [](const Field& field, const char* caption, const char* control, const char* button,
                         int characters = 0) {
        return FieldBox{&field, QString::fromUtf8(caption), QString::fromLatin1(control), characters, {}, false,
                        false,  QString::fromLatin1(button)};
    };
    return {{&h.fac_no, QStringLiteral("N° :"), QStringLiteral("txtno")},
            list(h.fac_clt, "Client :", "txtclt", "cmdclt"),
            {&h.fac_nom, QStringLiteral("Nom :"), QStringLiteral("Txtnom"), 28},
            {&h.fac_datf, QStringLiteral("Date :"), QStringLiteral("Mskdatf"), 0, {}, true},
            {&h.fac_refc, QStringLiteral("Réf. commande :"), QStringLiteral("txtrefc"), 20},
            {&h.fac_datc, QStringLiteral("Date commande :"), QStringLiteral("Mskdatc"), 0, {}, true},
            {&h.fac_pat, QStringLiteral("Patient :"), QStringLiteral("txtpat"), 24},
            {&h.fac_btr, QStringLiteral("Bon :"), QStringLiteral("txtbtr"), 20},
            list(h.fac_chr, "Chirurgien :", "txtchr", "cmdchr"),
            list(h.fac_trs, "Transport :", "txttrs", "Cmdtrs"),
            list(h.fac_mon, "Monnaie :", "Txtmon", "Cmdmon"),
            {&h.fac_eur, QStringLiteral("Euro :"), QStringLiteral("Txteur"), 8, {}, false, true},
            list(h.fac_dep, credit ? "Dépôt retour :" : "Dépôt :", credit ? "txtavodep" : "txtdep",
                 credit ? "Cmdavodep" : "Cmddep"),
            {&h.fac_rep, QStringLiteral("Représentant :"), QStringLiteral("txtrep"), 4, {}, false, true}};
}

QList<FieldBox> addressBoxes() {
    return {{&strbl.bl_l1, QStringLiteral("Livraison :"), {}, 24},
            {&strbl.bl_l2, {}, {}, 24},
            {&strbl.bl_l3, {}, {}, 24},
            {&strbl.bl_l4, {}, {}, 24},
            {&strbl.bl_l5, {}, {}, 24}};
}

QList<FieldBox> footerBoxes(const DocumentHeaders& h) {
    const QString money = QStringLiteral("#####0.00");
    return {{&h.fac_rem, QStringLiteral("Remise % :"), QStringLiteral("txtrem"), 8, QStringLiteral("#0.00")},
            {&h.fac_esc, QStringLiteral("Escompte % :"), QStringLiteral("txtesc"), 8, QStringLiteral("#0.00")},
            {&h.fac_port, QStringLiteral("Port HT :"), QStringLiteral("Txtport"), 10, money},
            {&h.fac_exo, QStringLiteral("Exonéré :"), QStringLiteral("Txtexo"), 10, money},
            {&h.fac_acpt, QStringLiteral("Acompte :"), QStringLiteral("txtacpt"), 10, money},
            {&h.fac_rglt,
             QStringLiteral("Règlement :"),
             QStringLiteral("txtrglt"),
             0,
             {},
             false,
             false,
             QStringLiteral("Cmdrgt")},
            {&h.fac_ech, QStringLiteral("Echéance :"), QStringLiteral("txtech"), 10, {}, false, true},
            {&h.fac_mes, QStringLiteral("Message :"), QStringLiteral("txtmes"), 26},
            {&h.fac_ht, QStringLiteral("Total HT :"), QStringLiteral("txtht"), 12, money, false, true},
            {&h.fac_tv1, QStringLiteral("TVA 1 :"), QStringLiteral("txttv1"), 10, money, false, true},
            {&h.fac_tv2, QStringLiteral("TVA 2 :"), QStringLiteral("txttv2"), 10, money, false, true},
            {&h.fac_tv3, QStringLiteral("TVA 3 :"), QStringLiteral("txttv3"), 10, money, false, true},
            {&h.fac_tvp, QStringLiteral("TVA port :"), QStringLiteral("txttvp"), 10, money, false, true},
            {&h.fac_ttc, QStringLiteral("Total TTC :"), QStringLiteral("txtttc"), 12, money, false, true},
            {&h.fac_ffa, QStringLiteral("Net à payer :"), QStringLiteral("txtffa"), 12, money, false, true}};
}

QList<GridColumn> lineColumns(const DocumentLines& l) {
    const QString money = QStringLiteral("#####0.00");
    return {{&l.fac_lg, QStringLiteral("Ligne"), 50},
            {&l.fac_imm, QStringLiteral("Immatriculation"), 115},
            {&l.fac_ref, QStringLiteral("Référence"), 120},
            {&l.fac_li1, QStringLiteral("Désignation"), 290},
            {&l.fac_id1, QStringLiteral("Identification"), 170},
            {&l.fac_qte, QStringLiteral("Qté"), 50},
            {&l.fac_px, QStringLiteral("Prix"), 80, money},
            {&l.fac_remx, QStringLiteral("Rem. %"), 60, QStringLiteral("#0.00")},
            {&l.fac_pv, QStringLiteral("Prix net"), 80, money},
            {&l.fac_ht, QStringLiteral("Total HT"), 90, money},
            {&l.fac_nbl, QStringLiteral("BL"), 70}};
}

} // namespace

DocumentForm::DocumentForm(Desk& desk)
    : Form(desk, QStringLiteral("T_gestion")), book_(session(), documentKind(mode())), table_(book_.kind().headers) {
    lines_ = new Grid(QStringLiteral("DBGrid1"), lineColumns(book_.kind().lines), this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addLayout(buildDocumentButtons());
    layout->addLayout(buildHeader());
    layout->addWidget(lines_, 1);
    layout->addLayout(buildLineButtons());
    buildTray();
    layout->addWidget(tray_);
    setPickers();
    setCancelButton(abandon_);
    resize(1264, 760);
    applyTitle(book_.kind().title);
    display(std::nullopt);
    add_->setFocus();
}

QLayout* DocumentForm::buildDocumentButtons() {
    add_ = button(QStringLiteral("CmdAjout"), QStringLiteral("&Ajouter"), [this] { startNew(); });
    auto* change = button(QStringLiteral("CmdModifier"), QStringLiteral("&Modifier"), [this] { startChanging(); });
    auto* validate = button(QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this] { validateHeader(); });
    abandon_ = leaveButton(QStringLiteral("cmdannule"), QStringLiteral("A&nnuler"), [this] { abandon(); });
    auto* remove = button(QStringLiteral("Cmdsup"), QStringLiteral("&Supprimer"), [this] { removeDocument(); });
    auto* before = button(QStringLiteral("CmdPrecede"), QStringLiteral("Précéden&t"), [this] {
        if (const auto found = documents::before(book_, requireDocument()[table_.fac_no])) display(found);
    });
    auto* after = button(QStringLiteral("CmdSuivant"), QStringLiteral("S&uivant"), [this] {
        if (const auto found = documents::after(book_, requireDocument()[table_.fac_no])) display(found);
    });
    auto* last =
        button(QStringLiteral("cmdLast"), QStringLiteral("Der&nier"), [this] { display(documents::last(book_)); });
    auto* ofClient =
        button(QStringLiteral("Cmddoc"), QStringLiteral("&Documents du client"), [this] { pickDocument(); });
    auto* printButton = button(QStringLiteral("cmdedt"), QStringLiteral("&Edition"), [this] { print(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    whenShown_ += {change, remove, before, after, printButton};
    whenEntering_ = {validate, abandon_};
    kindLabel_ = new QLabel(book_.kind().label, this);
    kindLabel_->setObjectName(QStringLiteral("Label1"));
    QFont bold = kindLabel_->font();
    bold.setBold(true);
    kindLabel_->setFont(bold);
    auto* row = new QHBoxLayout;
    row->addWidget(kindLabel_);
    row->addSpacing(12);
    for (QPushButton* made : {add_, change, validate, abandon_, remove}) row->addWidget(made);
    row->addStretch();
    for (QPushButton* made : {before, after, last, ofClient, printButton, quit}) row->addWidget(made);
    return row;
}

QLayout* DocumentForm::buildHeader() {
    header_ = new RecordPanel(headerBoxes(book_.kind()), 2, this);
    address_ = new RecordPanel(addressBoxes(), 1, this);
    memo_ = new QLabel(this);
    memo_->setObjectName(QStringLiteral("Lblmemo"));
    memo_->setTextFormat(Qt::PlainText);
    memo_->setWordWrap(true);
    for (const FieldBox& box : header_->boxes()) bind(box.field->name, header_->edit(*box.field));
    auto* right = new QVBoxLayout;
    right->addWidget(address_);
    right->addWidget(memo_);
    auto* row = new QHBoxLayout;
    row->addWidget(header_, 3);
    row->addLayout(right, 1);
    return row;
}

QLayout* DocumentForm::buildLineButtons() {
    addLine_ = button(QStringLiteral("Cmdajoutlig"), QStringLiteral("Ajouter une &ligne"), [this] { addLine(); });
    auto* insert = button(QStringLiteral("Cmdinsertlig"), QStringLiteral("&Insérer"), [this] { insertLine(); });
    auto* change =
        button(QStringLiteral("cmdmodiflig"), QStringLiteral("Modifier la li&gne"), [this] { changeLine(); });
    auto* remove = button(QStringLiteral("Cmdsuplig"), QStringLiteral("Supprimer la lign&e"), [this] { removeLine(); });
    auto* notes = button(QStringLiteral("Cmdchoix"), QStringLiteral("Intégrer des &BL"), [this] { openIntegration(); });
    auto* footer = button(QStringLiteral("Cmdvisupied"), QStringLiteral("&Pied"), [this] { openFooter(); });
    notes->setVisible(book_.kind().isInvoice());
    whenShown_ += {addLine_, insert, change, remove, notes, footer};
    total_ = new QLabel(this);
    total_->setObjectName(QStringLiteral("lbltotal"));
    auto* row = new QHBoxLayout;
    for (QPushButton* made : {addLine_, insert, change, remove, notes, footer}) row->addWidget(made);
    row->addWidget(trailButton(*this, [this] {
        const Record& shown = requireDocument();
        return TrailSubject{TrailSubject::Kind::Document,
                            QStringList{table_.name, shown[table_.fac_aa], shown[table_.fac_no]}.join(u'/')};
    }));
    row->addStretch();
    row->addWidget(total_);
    return row;
}

QWidget* DocumentForm::buildFooter() {
    auto* part = new QWidget(this);
    footer_ = new RecordPanel(footerBoxes(table_), 3, part);
    for (const FieldBox& box : footer_->boxes()) bind(box.field->name, footer_->edit(*box.field));
    auto* validate =
        button(QStringLiteral("Cmdvalpied"), QStringLiteral("&Valider le pied"), [this] { validateFooter(); });
    auto* leave =
        leaveButton(QStringLiteral("Cmdquitpied"), QStringLiteral("&Fermer le pied"), [this] { leaveTray(); });
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(validate);
    row->addWidget(leave);
    auto* layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(footer_);
    layout->addLayout(row);
    return part;
}

void DocumentForm::buildTray() {
    lineEntry_ = new LineEntry(*this, book_);
    unitRange_ = new UnitRange(*this, book_);
    noteChoice_ = new NoteChoice(*this, book_);
    footerPart_ = buildFooter();
    lineEntry_->written = [this] { refresh(); };
    lineEntry_->finished = [this] { leaveTray(); };
    lineEntry_->rangeWanted = [this](const QString& reference, const QString& first) {
        unitRange_->open(*document_, reference, first);
        showTray(unitRange_);
    };
    unitRange_->chosen = [this](const QStringList& units) { addRange(units); };
    unitRange_->left = [this] { addLine(); };
    noteChoice_->integrated = [this] { refresh(); };
    noteChoice_->left = [this] { leaveTray(); };
    tray_ = new QStackedWidget(this);
    for (QWidget* part : {static_cast<QWidget*>(lineEntry_), static_cast<QWidget*>(unitRange_),
                          static_cast<QWidget*>(noteChoice_), footerPart_})
        tray_->addWidget(part);
    tray_->setFixedHeight(220);
}

void DocumentForm::setPickers() {
    const auto put = [this](const Text& field, const Text& from) {
        return [this, &field, &from](const Record& row) {
            header_->edit(field)->put(row[from]);
            showWords();
        };
    };
    const auto picker = [this](RecordPanel* panel, const Text& field, const std::function<PickList()>& makeList) {
        onPick(
            panel->edit(field),
            [this, panel, &field, makeList] {
                if (!panel->edit(field)->isReadOnly()) pick(makeList());
            },
            panel->listButton(field));
    };
    picker(header_, table_.fac_clt, [this] {
        return pick_lists::clients(book_.molven, [this](const Record& client) {
            header_->edit(table_.fac_clt)->put(client[strclient.clt_cod]);
            guarded([this] { takeClient(); });
        });
    });
    const std::tuple<const Text*, QString, QString> lists[] = {
        {&table_.fac_chr, list::Surgeon, QStringLiteral("LES CHIRURGIENS")},
        {&table_.fac_trs, list::Dispatch, QStringLiteral("LES TRANSPORTEURS")},
        {&table_.fac_dep, list::Depot, QStringLiteral("LES DEPOTS")}};
    for (const auto& [field, letter, title] : lists)
        picker(header_, *field, [this, put, field = field, letter = letter, title = title] {
            return pick_lists::parameters(book_.molven, letter, title, put(*field, strparam.num_par));
        });
    picker(header_, table_.fac_mon,
           [this, put] { return pick_lists::currencies(book_.molven, put(table_.fac_mon, strmonnaie.mon_cle)); });
    picker(footer_, table_.fac_rglt, [this] {
        return pick_lists::paymentModes(book_.molven, [this](const Record& mode) {
            footer_->edit(table_.fac_rglt)->put(mode[strparrgt.cde_rglt]);
        });
    });
    header_->edit(table_.fac_no)->isKey = true;
    onLeft(header_->edit(table_.fac_no), [this] { displayTyped(); });
    onLeft(header_->edit(table_.fac_clt), [this] { takeClient(); });
    onLeft(header_->edit(table_.fac_nom), [this] { searchClient(); });
    const auto completed = [this](RecordPanel* panel, const Text& field, bool refuses) {
        onLeft(panel->edit(field), [this, edit = panel->edit(field), &field, refuses] {
            edit->put(codes::completed(book_.molven, *field.code, edit->value()));
            showWords();
            if (refuses) codes::require(book_.molven, field, *field.code, edit->value());
        });
    };
    for (const Text* field : {&table_.fac_chr, &table_.fac_trs, &table_.fac_dep}) completed(header_, *field, true);
    completed(header_, table_.fac_mon, false);
    completed(footer_, table_.fac_rglt, false);
}

} // namespace molven
