#pragma once

class QLabel;
class QWidget;

namespace molven {

struct Session;

/// Stands where prices are typed: "LES PRIX DOIVENT ETRE EXPRIMES EN : " and the company's currency.
QLabel* priceNotice(const Session& session, QWidget* parent);

} // namespace molven
