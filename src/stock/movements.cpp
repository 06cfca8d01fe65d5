#include "stock/movements.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "data/require.h"
#include "reference/articles.h"
#include "reference/prices.h"
#include "stock/unit_locks.h"

#include <QUuid>

#include <algorithm>

namespace molven {

MovementFiles openMovementFiles(Workspace& workspace, const Session& session) {
    Database molven = workspace.open(session.molven());
    return {molven, workspace.open(session.path(DataFile::Stocks))};
}

namespace movements {

namespace {

constexpr int PriceDecimals = 3;

/// Quantities are shown and counted to the hundredth, below ten millions.
bool isQuantity(const Decimal& quantity) {
    return quantity > Decimal(0) && quantity < Decimal(10'000'000) && quantity == quantity.rounded(2);
}

bool isKind(const QString& kind) {
    return kind == movement::Entry || kind == movement::Exit || kind == movement::Inventory;
}

bool movesStock(const Record& movement) { return movement[strmvtstk.eta_stk] != movement::Inventory; }

/// The stock of one article while movements are undone and applied to it; its value is not rounded in between.
class ArticleStock {
public:
    ArticleStock(Database molven, const QString& reference)
        : molven_(molven), article_(requireArticle(molven, reference)) {
        const Record& read = article_;
        stock_ = read[strarticle.art_stk];
        value_ = stock_ * read[strarticle.art_pam];
    }

    void apply(const Record& movement) {
        move(movement, 1);
        if (movement[strmvtstk.eta_stk] == movement::Entry) lastPrice_ = movement[strmvtstk.pri_stk];
    }
    void undo(const Record& movement) { move(movement, -1); }

    /// `atZero` is the average price of no stock; nothing keeps the one there is.
    void write(const std::optional<Decimal>& atZero = std::nullopt) {
        QList<Assignment> changes{{strarticle.art_stk, stock_.toString()}};
        const auto average = stock_.isZero() ? atZero : std::optional<Decimal>(value_ / stock_);
        if (average) changes.append({strarticle.art_pam, average->rounded(PriceDecimals).toString()});
        if (lastPrice_) changes.append({strarticle.art_dpa, lastPrice_->toString()});
        molven_.update(strarticle, changes, strarticle.art_ref == article_[strarticle.art_ref]);
    }
    /// What is left of the value of no stock: nothing, but for prices rounded or changed meanwhile.
    Decimal valueLeft() const { return std::max(value_, Decimal(0)); }

private:
    void move(const Record& movement, int direction) {
        const Decimal sign = movement[strmvtstk.eta_stk] == movement::Entry ? direction : -direction;
        stock_ += sign * movement[strmvtstk.qte_stk];
        value_ += sign * movement[strmvtstk.qte_stk] * movement[strmvtstk.pri_stk];
    }

    Database molven_;
    Record article_;
    Decimal stock_, value_;
    std::optional<Decimal> lastPrice_;
};

void applyTo(Database molven, const Record& movement) {
    if (!movesStock(movement)) return;
    ArticleStock stock(molven, movement[strmvtstk.ref_stk]);
    stock.apply(movement);
    stock.write();
}

void undoIn(Database molven, const Record& movement) {
    if (!movesStock(movement)) return;
    ArticleStock stock(molven, movement[strmvtstk.ref_stk]);
    stock.undo(movement);
    stock.write(stock.valueLeft());
}

/// One movement in the place of another.
void exchange(Database molven, const Record& before, const Record& after) {
    const QString reference = after[strmvtstk.ref_stk];
    if (!movesStock(before) || !movesStock(after) || before[strmvtstk.ref_stk] != reference) {
        undoIn(molven, before);
        return applyTo(molven, after);
    }
    ArticleStock stock(molven, reference);
    stock.undo(before);
    stock.apply(after);
    stock.write();
}

Locks locksOf(const QList<Record>& movements) {
    QStringList names;
    for (const Record& movement : movements) names.append(unit_locks::article(movement[strmvtstk.ref_stk]));
    return Locks::of(names);
}

/// Checks a movement and gives it the form in which it is stored.
Record checked(Database molven, Record movement) {
    const auto& m = strmvtstk;
    const Record& read = movement;
    require(!read[m.ref_stk].trimmed().isEmpty(), " Référence obligatoire", m.ref_stk);
    require(!read[m.qte_stk].isZero(), " quantité obligatoire", m.qte_stk);
    require(isKind(read[m.eta_stk]), " Etat du mouvement incorrecte", m.eta_stk);
    movement[m.ref_stk] = requireArticle(molven, read[m.ref_stk]).value(strarticle.art_ref);
    checkQuantity(read[m.qte_stk]);
    require(read[m.pri_stk].isZero() || isPrice(read[m.pri_stk]), "Prix incorrect", m.pri_stk);
    require(dateFromText(read[m.dat_stk]).isValid(), "date invalide", m.dat_stk);
    movement[m.pri_stk] = read[m.pri_stk].rounded(PriceDecimals);
    movement[m.tri_stk] = sortKey(read[m.dat_stk]);
    return movement;
}

/// The stored movement that the user read. Those of old have no drawn key: any that holds the same will do.
std::optional<Recordset> stored(MovementFiles files, const Record& asRead) {
    const auto& m = strmvtstk;
    const bool isOld = asRead[m.uid_stk].isEmpty();
    const Criterion same =
        isOld ? m.ref_stk == asRead[m.ref_stk] && m.tri_stk == asRead[m.tri_stk] : m.uid_stk == asRead[m.uid_stk];
    for (Database file : files.all())
        for (Recordset found = file.select(m, same); !found.eof(); found.moveNext())
            if (!isOld || found.record() == asRead) return found;
    return std::nullopt;
}

Recordset requireStored(MovementFiles files, const Record& asRead) {
    auto found = stored(files, asRead);
    if (!found) throw Refusal(QStringLiteral("Ce mouvement a été modifié ou supprimé par un autre poste"));
    return *found;
}

} // namespace

Record blank(const QString& reference) {
    Record movement(strmvtstk);
    movement[strmvtstk.ref_stk] = reference;
    movement[strmvtstk.dat_stk] = dateText(Clock::today());
    return movement;
}

void checkValue(Database molven, const Text& field, const QString& value) {
    if (value.isEmpty()) return;
    if (&field == &strmvtstk.ref_stk) requireArticle(molven, value);
    if (&field == &strmvtstk.eta_stk) require(isKind(value), "Taper E ou S ou I!!", field);
    if (&field == &strmvtstk.dat_stk) require(dateFromText(value).isValid(), "date invalide", field);
}

void checkQuantity(const Decimal& quantity) {
    require(quantity >= Decimal(0), "Taper une valeur positive !!", strmvtstk.qte_stk);
    require(quantity.isZero() || isQuantity(quantity), "Quantité incorrecte", strmvtstk.qte_stk);
}

Record requireArticle(Database molven, const QString& reference) {
    const auto article = articles::find(molven, reference.trimmed());
    require(article.has_value(), " cette référence n'existe pas", strmvtstk.ref_stk);
    const QString followUp = (*article)[strarticle.art_aig];
    require(followUp != follow_up::ByUnit, "Ce choix est réservé aux références non suivies", strmvtstk.ref_stk);
    require(followUp == follow_up::ByMovements, "Cet article n'est pas tenu en stock", strmvtstk.ref_stk);
    return *article;
}

Record add(MovementFiles files, const Record& movement) {
    return Transaction::run(files.molven.workspace(), QStringLiteral("Mouvement de stock"), locksOf({movement}), [&] {
        Record written = checked(files.molven, movement);
        written[strmvtstk.uid_stk] = QUuid::createUuid().toString(QUuid::Id128);
        files.molven.insert(written);
        applyTo(files.molven, written);
        return written;
    });
}

Record change(MovementFiles files, const Record& asRead, const Record& movement) {
    const Locks locks = locksOf({asRead, movement});
    return Transaction::run(files.molven.workspace(), QStringLiteral("Modification d'un mouvement"), locks, [&] {
        Recordset record = requireStored(files, asRead);
        const Record written = checked(files.molven, movement);
        if (!(record.record() == asRead))
            throw DataError(DataError::RecordChanged, QStringLiteral("Un autre poste a modifié ce mouvement."));
        record.edit();
        record.draft() = written;
        record.update();
        exchange(files.molven, asRead, written);
        return written;
    });
}

void remove(MovementFiles files, const Record& asRead) {
    Transaction::run(files.molven.workspace(), QStringLiteral("Suppression d'un mouvement"), locksOf({asRead}), [&] {
        Recordset record = requireStored(files, asRead);
        if (!(record.record() == asRead))
            throw Refusal(QStringLiteral("Ce mouvement a été modifié par un autre poste : ") + title(record.record()));
        record.remove();
        undoIn(files.molven, asRead);
    });
}

std::optional<Record> find(MovementFiles files, const Record& asRead) {
    const auto found = stored(files, asRead);
    return found ? std::optional<Record>(found->record()) : std::nullopt;
}

QList<Record> of(MovementFiles files, const QString& reference) {
    QList<Record> found;
    for (Database file : files.all())
        for (const Record& movement : file.select(strmvtstk, strmvtstk.ref_stk == reference, strmvtstk.tri_stk))
            found.append(movement);
    std::stable_sort(found.begin(), found.end(),
                     [](const Record& a, const Record& b) { return a[strmvtstk.tri_stk] < b[strmvtstk.tri_stk]; });
    return found;
}

QString title(const Record& movement) {
    return QStringLiteral("Mouvement du %1, %2, %3 de %4")
        .arg(movement[strmvtstk.dat_stk], movement[strmvtstk.ref_stk], kindName(movement[strmvtstk.eta_stk]).toLower(),
             shown(movement[strmvtstk.qte_stk]));
}

QString kindName(const QString& kind) {
    if (kind == movement::Entry) return QStringLiteral("Entrée");
    return kind == movement::Exit ? QStringLiteral("Sortie") : QStringLiteral("Inventaire");
}

} // namespace movements
} // namespace molven
