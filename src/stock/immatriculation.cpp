#include "stock/immatriculation.h"

#include "data/errors.h"
#include "data/format.h"

namespace molven {

UnitFiles openUnitFiles(Workspace& workspace, const Session& session) {
    const auto others = std::make_shared<const OtherFolders>(session);
    return {workspace.open(session.molven()), QList<Database>{workspace.open(session.historic())} + others->archives(),
            others};
}

Immatriculation Immatriculation::fromText(const QString& typed) {
    const QString number = padded(typed, 8);
    return {number, number.left(2) < u"90" ? QStringLiteral("20") : QStringLiteral("19")};
}

Immatriculation Immatriculation::next(UnitFiles files, const QDate& receipt, int quantity) {
    const bool offset =
        QString(files.molven.path()).replace(u'\\', u'/').section(u'/', 0, -2).endsWith(u"quilde", Qt::CaseInsensitive);
    QString prefix = receipt.toString(QStringLiteral("yyMM"));
    if (offset) prefix = QString::number(prefix.toInt() + 1000).rightJustified(4, u'0');
    if (fromText(prefix + QStringLiteral("0001")).century_ != u"20")
        throw Refusal(QStringLiteral("date livraison invalide"), strproduit.dat_liv.name);
    const Criterion ofMonth = strproduit.pro_ann == QStringLiteral("20") && startsWith(strproduit.imm_art, prefix);
    QString last;
    for (Database file : files.all()) last = std::max(last, file.greatest(strproduit, strproduit.imm_art, ofMonth));
    const int first = last.isEmpty() ? (offset ? 1001 : 1) : last.mid(4).toInt() + 1;
    if (first + quantity - 1 > LastOfMonth)
        throw Refusal(QStringLiteral("Création impossible il y a deja 9999 entrees"), QStringLiteral("txtqte"));
    return {prefix + QString::number(first).rightJustified(4, u'0'), QStringLiteral("20")};
}

Immatriculation Immatriculation::imposed(UnitFiles files, const QString& typed, int quantity) {
    const Immatriculation first = fromText(typed);
    const int month = first.number_.mid(2, 2).toInt(), sequence = first.number_.mid(4).toInt();
    if (!first.isValid() || first.century_ != u"20" || month < 1 || month > 12 || sequence < 1 ||
        sequence + quantity - 1 > LastOfMonth)
        throw Refusal(QStringLiteral("Immatriculation incorrecte"), strproduit.imm_art.name);
    const Criterion run = strproduit.pro_ann == first.century_ && strproduit.imm_art >= first.number_ &&
                          strproduit.imm_art <= first.plus(quantity - 1).number_;
    for (Database file : files.all())
        if (file.count(strproduit, run) > 0)
            throw Refusal(QStringLiteral("Cette immatriculation existe déjà"), strproduit.imm_art.name);
    return first;
}

bool Immatriculation::isValid() const {
    return number_.size() == 8 &&
           std::all_of(number_.begin(), number_.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

Immatriculation Immatriculation::plus(int step) const {
    return {number_.left(4) + QString::number(number_.mid(4).toInt() + step).rightJustified(4, u'0'), century_};
}

} // namespace molven
