#include "screens/shell/search_box.h"

#include "ui/style.h"

#include <QHash>
#include <QKeyEvent>
#include <QListWidget>

namespace molven {

namespace {

constexpr int LongestWord = 80;

QString headingOf(Finding::Kind kind) {
    using Kind = Finding::Kind;
    static const QHash<Kind, QString> headings{
        {Kind::Unit, QStringLiteral("Produits")},        {Kind::Document, QStringLiteral("Documents")},
        {Kind::Client, QStringLiteral("Clients")},       {Kind::Patient, QStringLiteral("Patients")},
        {Kind::Article, QStringLiteral("Articles")},     {Kind::Lot, QStringLiteral("Lots")},
        {Kind::Set, QStringLiteral("Ancillaires")},      {Kind::SetType, QStringLiteral("Types d'ancillaires")},
        {Kind::Supplier, QStringLiteral("Fournisseurs")}};
    return headings.value(kind);
}

} // namespace

SearchBox::SearchBox(QWidget* parent) : QLineEdit(parent) {
    setObjectName(QStringLiteral("txtrecherche"));
    setAccessibleName(QStringLiteral("Rechercher partout"));
    setPlaceholderText(QStringLiteral("Rechercher : produit, document, client, patient, article, lot…   (Ctrl+K)"));
    setMaxLength(LongestWord);
    setClearButtonEnabled(true);
    connect(this, &QLineEdit::textChanged, this, [this] { answer(); });
}

/// Asked at every key: the answers are there before the next.
void SearchBox::answer() {
    if (text().trimmed().isEmpty()) return close();
    findings_ = search ? search(text()) : QList<Finding>();
    if (!list_) {
        list_ = new QListWidget(window());
        list_->setObjectName(QStringLiteral("LstTrouve"));
        list_->setFocusPolicy(Qt::NoFocus);
        list_->setAccessibleName(QStringLiteral("Réponses"));
        list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        list_->setTextElideMode(Qt::ElideRight);
        connect(list_, &QListWidget::itemClicked, this, [this] { choose(); });
    }
    fill();
    place();
    list_->show();
    list_->raise();
}

void SearchBox::fill() {
    list_->clear();
    const auto heading = [this](const QString& words) {
        auto* item = new QListWidgetItem(words, list_);
        item->setFlags(Qt::NoItemFlags);
        item->setSizeHint({0, style::RowHeight});
        item->setForeground(style::colour(style::Tone::Quiet));
    };
    if (findings_.isEmpty()) heading(QStringLiteral("Aucune réponse"));
    for (qsizetype i = 0; i < findings_.size(); ++i) {
        const Finding& one = findings_[i];
        if (i == 0 || findings_[i - 1].kind != one.kind) heading(headingOf(one.kind));
        const QString words = one.words.isEmpty() ? one.code : one.code + QStringLiteral("   ") + one.words;
        auto* item = new QListWidgetItem(QStringLiteral("    ") + words, list_);
        item->setData(Qt::UserRole, i);
        item->setSizeHint({0, style::RowHeight});
        item->setToolTip(words);
    }
    list_->setCurrentRow(findings_.isEmpty() ? -1 : 1);
}

/// Below the box, as far as the window goes.
void SearchBox::place() {
    const QWidget* window = this->window();
    const QPoint below = mapTo(window, rect().bottomLeft());
    const int wanted = list_->sizeHintForRow(0) * list_->count() + 2 * list_->frameWidth();
    list_->setGeometry(below.x(), below.y(), width(), std::min(wanted, window->height() - below.y() - style::WideGap));
}

/// To the next answer, over the headings.
void SearchBox::move(int step) {
    for (int row = list_->currentRow() + step; row >= 0 && row < list_->count(); row += step)
        if (list_->item(row)->flags() & Qt::ItemIsSelectable) return list_->setCurrentRow(row);
}

void SearchBox::choose() {
    const QListWidgetItem* item = list_ ? list_->currentItem() : nullptr;
    if (!item || !(item->flags() & Qt::ItemIsSelectable)) return;
    const Finding finding = findings_.at(item->data(Qt::UserRole).toLongLong());
    close();
    clear();
    if (chosen) chosen(finding);
}

void SearchBox::close() {
    if (list_) list_->hide();
}

void SearchBox::keyPressEvent(QKeyEvent* event) {
    const bool isOpen = list_ && list_->isVisible();
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!isOpen) answer();
        return choose();
    case Qt::Key_Down:
    case Qt::Key_Up:
        if (!isOpen) return answer();
        return move(event->key() == Qt::Key_Down ? 1 : -1);
    case Qt::Key_Escape:
        if (text().isEmpty()) break;
        return clear();
    default:
        break;
    }
    QLineEdit::keyPressEvent(event);
}

void SearchBox::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    close();
}

void SearchBox::hideEvent(QHideEvent* event) {
    QLineEdit::hideEvent(event);
    close();
}

} // namespace molven
