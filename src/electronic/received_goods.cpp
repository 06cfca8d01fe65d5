#include "electronic/received_goods.h"

#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"

#include <QRegularExpression>

namespace molven::electronic {

namespace {

const auto& r = strrecu;
const QString SerialSeparator = QStringLiteral(", ");

/// "04/2031" of "30/04/2031", "2031-04-30" or as it is.
QString monthOf(const QString& text) {
    static const QRegularExpression french(QStringLiteral("([0-9]{2}/[0-9]{4})$")),
        iso(QStringLiteral("^([0-9]{4})-([0-9]{2})"));
    if (const auto found = french.match(text); found.hasMatch()) return found.captured(1);
    if (const auto found = iso.match(text); found.hasMatch()) return found.captured(2) + u'/' + found.captured(1);
    return {};
}

Record goodsOf(const Line& line) {
    const auto named = [&line](const char* french, const char* english) {
        return line.attribute({QString::fromUtf8(french), QString::fromLatin1(english)});
    };
    Record goods(r);
    goods[r.rec_ref] = line.reference;
    goods[r.rec_ean] = line.ean;
    goods[r.rec_fref] = named("Référence fournisseur", "Manufacturer reference");
    goods[r.rec_des] = line.name;
    goods[r.rec_lot] = line.attribute({QStringLiteral("Lot"), QStringLiteral("N° Lot"), QStringLiteral("N° de lot"),
                                       QStringLiteral("Numéro de lot"), QStringLiteral("Batch")});
    goods[r.rec_per] = monthOf(line.attribute({QStringLiteral("Péremption"), QStringLiteral("Date de péremption"),
                                               QStringLiteral("Expiry"), QStringLiteral("Expiry date")}));
    goods[r.rec_ste] = named("Lot de stérilisation", "Sterilisation batch");
    goods[r.rec_dst] = monthOf(named("Date de stérilisation", "Sterilisation date"));
    goods[r.rec_qte] = line.quantity;
    goods[r.rec_pri] = line.price;
    goods[r.rec_ser] = line.attribute({QStringLiteral("Numéro de série"), QStringLiteral("N° de série"),
                                       QStringLiteral("Serial"), QStringLiteral("Serial number")});
    return goods;
}

/// True for goods that go on one receipt.
bool belongTogether(const Record& a, const Record& b) {
    for (const Field* field :
         std::initializer_list<const Field*>{&r.rec_ref, &r.rec_lot, &r.rec_per, &r.rec_ste, &r.rec_dst, &r.rec_pri})
        if (a.value(*field) != b.value(*field)) return false;
    return true;
}

QString articleOf(Database molven, const Record& goods) {
    const auto& a = strarticle;
    const QStringList references{goods[r.rec_ref], goods[r.rec_fref]};
    for (const auto& [field, codes] : {std::pair(&a.art_ref, references), std::pair(&a.art_rfou, references),
                                       std::pair(&a.art_ean, QStringList{goods[r.rec_ean]})})
        for (const QString& code : codes)
            if (!code.trimmed().isEmpty())
                if (const auto article = molven.find(a, *field == code.trimmed())) return (*article)[a.art_ref];
    throw Refusal(QStringLiteral("Aucun article n'a la référence %1 : le créer d'abord").arg(goods[r.rec_ref]));
}

} // namespace

QList<Record> goodsOf(const Invoice& invoice) {
    QList<Record> all;
    for (const Line& line : invoice.lines) {
        const Record goods = goodsOf(line);
        const auto same =
            std::find_if(all.begin(), all.end(), [&goods](const Record& one) { return belongTogether(one, goods); });
        if (same == all.end()) {
            all.append(goods);
            continue;
        }
        QStringList serials{(*same).value(r.rec_ser), goods[r.rec_ser]};
        serials.removeAll(QString());
        (*same)[r.rec_qte] = (*same)[r.rec_qte] + goods[r.rec_qte];
        (*same)[r.rec_ser] = serials.join(SerialSeparator);
    }
    return all;
}

Receipt receiptOf(Database molven, const Invoice& invoice, const Record& goods) {
    Receipt receipt;
    receipt.reference = articleOf(molven, goods);
    receipt.orderNumber = invoice.order;
    receipt.deliveryNumber = invoice.notesOfDelivery.isEmpty() ? invoice.number : invoice.notesOfDelivery;
    receipt.quantity = QString::number(goods[r.rec_qte].toInteger());
    receipt.purchasePrice = shown(goods[r.rec_pri].rounded(2));
    receipt.lot = goods[r.rec_lot];
    receipt.sterilisationBatch = goods[r.rec_ste];
    receipt.sterilisationDate = goods[r.rec_dst];
    receipt.expiryDate = goods[r.rec_per];
    receipt.supplierSerials = QString(goods[r.rec_ser]).split(SerialSeparator, Qt::SkipEmptyParts);
    return receipt;
}

} // namespace molven::electronic
