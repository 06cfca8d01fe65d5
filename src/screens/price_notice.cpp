#include "screens/price_notice.h"

#include "shell/session.h"

#include <QLabel>

namespace molven {

QLabel* priceNotice(const Session& session, QWidget* parent) {
    // A company that names no currency works in the one its documents take.
    const QString currency = session.spe_mon.trimmed().isEmpty() ? QStringLiteral("EUR") : session.spe_mon;
    auto* notice = new QLabel(QStringLiteral("LES PRIX DOIVENT ETRE EXPRIMES EN : ") + currency, parent);
    notice->setObjectName(QStringLiteral("lblprix"));
    notice->setTextFormat(Qt::PlainText);
    return notice;
}

} // namespace molven
