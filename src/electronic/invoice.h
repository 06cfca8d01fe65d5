#pragma once

#include "data/decimal.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

/// Invoices as data, in the terms of the European norm EN 16931.
namespace molven::electronic {

/// A number and the register that gave it, by its code of ISO 6523: "0002" SIREN, "0009" SIRET, "0225" an address of
/// the French directory; "EM" is an e-mail address.
struct Identifier {
    QString scheme, value;
    bool isEmpty() const { return value.isEmpty(); }
};

struct Party {
    QString name;
    Identifier id = {};    ///< of the establishment
    Identifier legal = {}; ///< of the company
    QString vatNumber = {};
    QStringList lines = {}; ///< of the address, three at most
    QString postcode = {}, town = {};
    QString country = {};    ///< ISO 3166: "FR"
    Identifier address = {}; ///< where its invoices go electronically
    QString telephone = {}, mail = {};
};

/// How an amount is taxed.
struct Taxation {
    QString category;                     ///< "S" at a rate, "E" exempt, "K" delivered within the Union, "G" exported
    Decimal rate;                         ///< percent
    QString reason = {}, reasonCode = {}; ///< why there is no VAT
    bool operator==(const Taxation& other) const { return category == other.category && rate == other.rate; }
};

/// What is known of the goods of a line: "Lot" -> "L2".
struct Attribute {
    QString name, value;
};

struct Line {
    QString number;
    QString reference; ///< the seller's
    QString ean = {};
    QString name;
    QString description = {};
    QStringList notes = {};
    QList<Attribute> attributes = {};
    Decimal quantity;                     ///< in pieces; below zero for goods taken back on an invoice
    QString unit = QStringLiteral("C62"); ///< UN/ECE recommendation 20: C62 pieces
    Decimal grossPrice = {};              ///< of one, without VAT, before `discount`; zero when not told apart
    Decimal discount = {};                ///< of one
    Decimal price;                        ///< of one, without VAT
    Decimal amount;                       ///< of the line, without VAT
    Taxation tax;

    /// The value of an attribute that bears one of these names; empty without.
    QString attribute(const QStringList& names) const;
};

/// What is taken off or added to the sum of the lines.
struct Adjustment {
    bool isCharge;
    Decimal amount;
    QString reason, reasonCode; ///< UNTDID 5189 of an allowance
    Taxation tax;
};

/// The VAT of everything that is taxed alike.
struct Vat {
    Taxation tax;
    Decimal base, amount;
};

/// A text and what it is, by UNTDID 4451: "PMD" penalties, "PMT" indemnity, "AAB" early payment; empty in general.
struct Note {
    QString subject, text;
};

struct Invoice {
    static constexpr int Commercial = 380, CreditNote = 381;

    int type = Commercial;
    QString number;
    QDate date;
    QString currency;
    QList<Note> notes = {};
    QString service = {};         ///< of the buyer, that the invoice is for
    QString order = {};           ///< the buyer's
    QString notesOfDelivery = {}; ///< their numbers
    QString preceding = {};       ///< the invoice that a credit note takes back from
    Party seller, buyer, delivery;
    QDate delivered;
    QString meansCode = {}, meansText = {}; ///< of payment, UNTDID 4461
    QString iban = {}, bic = {};
    QDate due = {};
    QString terms = {};

    QList<Line> lines = {};
    QList<Adjustment> adjustments = {};
    QList<Vat> vat = {};
    Decimal linesTotal, allowances, charges, base, vatTotal, total, paid, toPay;

    bool isCreditNote() const { return type == CreditNote; }
};

} // namespace molven::electronic
