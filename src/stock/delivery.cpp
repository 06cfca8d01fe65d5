#include "stock/delivery.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "stock/gs1.h"

#include <algorithm>

namespace molven::deliveries {

namespace {

[[noreturn]] void refuse(const QString& why) { throw Refusal(why, strproduit.fou_imm.name); }

bool isSameKind(const DeliveredUnit& a, const DeliveredUnit& b) {
    return a.reference == b.reference && a.lot == b.lot && a.expiry == b.expiry && a.price == b.price &&
           a.supplierReference == b.supplierReference && a.serial.isEmpty() == b.serial.isEmpty();
}

Receipt receiptOf(const Receipt& delivery, const DeliveredUnit& unit) {
    Receipt receipt = delivery;
    receipt.reference = unit.reference;
    receipt.lot = unit.lot;
    receipt.expiryDate = unit.expiry;
    receipt.purchasePrice = unit.price;
    receipt.supplierReference = unit.supplierReference;
    receipt.scannedEan = unit.ean;
    receipt.supplierSerials.clear();
    return receipt;
}

/// One receipt for each run of units of the same kind.
QList<Receipt> receiptsOf(const Receipt& delivery, const QList<DeliveredUnit>& units) {
    QList<Receipt> all;
    for (qsizetype i = 0; i < units.size();) {
        Receipt receipt = receiptOf(delivery, units[i]);
        qsizetype end = i;
        for (; end < units.size() && isSameKind(units[end], units[i]); ++end)
            if (!units[end].serial.isEmpty()) receipt.supplierSerials.append(units[end].serial);
        receipt.quantity = QString::number(end - i);
        all.append(receipt);
        i = end;
    }
    return all;
}

QList<receipts::Created> receiveAll(UnitFiles files, const CompanyRules& rules, const Receipt& delivery,
                                    const QList<DeliveredUnit>& units, const Progress& progress) {
    const auto total = static_cast<int>(units.size());
    int done = 0;
    QList<receipts::Created> created;
    for (const Receipt& receipt : receiptsOf(delivery, units)) {
        try {
            created.append(receipts::receive(
                files, rules, receipt, [&](int ofThese, int) { return !progress || progress(done + ofThese, total); }));
        } catch (const Refusal& refusal) {
            if (refusal.field.isEmpty()) throw; // given up
            throw Refusal(QStringLiteral("%1 lot %2 : %3").arg(receipt.reference, receipt.lot, refusal.text),
                          refusal.field);
        }
        done += receipt.quantity.toInt();
    }
    return created;
}

} // namespace

DeliveredUnit read(Database molven, const QString& scanned, const QList<DeliveredUnit>& before) {
    const QString text = scanned.trimmed();
    if (!gs1::isScan(text)) refuse(QStringLiteral("Ce n'est pas un code de fournisseur : ") + text);
    const Gs1Code code = gs1::parse(text, Clock::today(), strproduit.fou_imm.name);
    const auto found = articles::findScanned(molven, code.ean(), code.supplierReference);
    if (!found)
        refuse(QStringLiteral("Référence inconnue : ") + (code.gtin.isEmpty() ? code.supplierReference : code.gtin));
    const Record article = receipts::followedArticle(molven, found->value(strarticle.art_ref));
    DeliveredUnit unit;
    unit.reference = article[strarticle.art_ref];
    unit.designation = article[strarticle.art_li1];
    unit.lot = code.lot;
    unit.expiry = monthText(code.expiry);
    unit.serial = code.serial;
    unit.supplierReference =
        code.supplierReference.isEmpty() ? QString(article[strarticle.art_rfou]) : code.supplierReference;
    unit.ean = code.ean();
    const Decimal lastPrice = article[strarticle.art_dpa];
    if (!lastPrice.isZero()) unit.price = shown(lastPrice);
    const bool isRead = std::any_of(before.begin(), before.end(), [&](const DeliveredUnit& other) {
        return !unit.serial.isEmpty() && other.reference == unit.reference &&
               other.serial.compare(unit.serial, Qt::CaseInsensitive) == 0;
    });
    if (isRead) refuse(QStringLiteral("N° de série saisi deux fois : ") + unit.serial);
    return unit;
}

QList<receipts::Created> receive(UnitFiles files, const CompanyRules& rules, const Receipt& delivery,
                                 const QList<DeliveredUnit>& units, const Progress& progress) {
    if (units.isEmpty()) refuse(QStringLiteral("Aucun produit lu"));
    QStringList references;
    for (const DeliveredUnit& unit : units) references.append(unit.reference);
    return Transaction::run(files.molven.workspace(), receipts::ReceiptDeed, receipts::receiptLocks(references),
                            [&] { return receiveAll(files, rules, delivery, units, progress); });
}

} // namespace molven::deliveries
