#pragma once

#include "data/database.h"
#include "shell/session.h"
#include "stock/stock_tables.h"

namespace molven {

/// Kinds of a movement, `eta_stk`.
namespace movement {
inline const QString Entry = QStringLiteral("E");
inline const QString Exit = QStringLiteral("S");
inline const QString Inventory = QStringLiteral("I"); ///< changes neither stock nor average price
} // namespace movement

/// The files that hold movements: those entered by hand, and those that inventories wrote. Opened in one workspace, in
/// this order.
struct MovementFiles {
    Database molven;
    Database stocks;

    QList<Database> all() const { return {molven, stocks}; }
};
MovementFiles openMovementFiles(Workspace& workspace, const Session& session);

/// Movements of the articles kept by quantity, each written with the article's stock in one transaction. An entry adds
/// its quantity, and its price times its quantity to the value of the stock; an exit takes them off; the average
/// purchase price is that value by the stock, to the thousandth, and stays while there is no stock.
namespace movements {

/// What the screens start a movement from: an article, today.
Record blank(const QString& reference);

/// Throws Refusal, with the field, when a value may not stand in that field; an empty one may.
void checkValue(Database molven, const Text& field, const QString& value);
void checkQuantity(const Decimal& quantity);
/// The article of a reference. Throws Refusal for an unknown one and for one that is not kept by quantity.
Record requireArticle(Database molven, const QString& reference);

/// Writes a new movement and its effect; answers it as stored. Throws Refusal with the field of the first fault.
Record add(MovementFiles files, const Record& movement);
/// Undoes the effect of the movement, as the user read it, then applies the changed one; answers it as stored. Throws
/// Refusal, DataError RecordChanged when another workstation changed it meanwhile.
Record change(MovementFiles files, const Record& asRead, const Record& movement);
/// Undoes the effect of the movement, as the user read it, and deletes it; without stock left the article's average
/// price is the value left, usually none. Throws as change() does.
void remove(MovementFiles files, const Record& asRead);

/// The movement as stored now; nothing when it was deleted.
std::optional<Record> find(MovementFiles files, const Record& asRead);
/// The movements of an article in both files, by date.
QList<Record> of(MovementFiles files, const QString& reference);
/// "Mouvement du 05/03/2026, VSP015, entrée de 10": which one it is, in words.
QString title(const Record& movement);
/// "Entrée", "Sortie" or "Inventaire".
QString kindName(const QString& kind);

} // namespace movements
} // namespace molven
