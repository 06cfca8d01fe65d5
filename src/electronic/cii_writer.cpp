#include "electronic/cii_writer.h"

#include "electronic/xml_tree.h"

namespace molven::electronic {

namespace {

const QString Profile = QStringLiteral("urn:cen.eu:en16931:2017");
const QString Process = QStringLiteral("B1"); // an invoice of goods is handed in

/// Writes the elements of the syntax in the order of its schema.
class Writer {
public:
    explicit Writer(const Invoice& invoice) : invoice_(invoice), xml_(bytes_) {}

    QByteArray write() {
        writeDocument();
        return bytes_;
    }

private:
    using Attributes = QList<std::pair<const char*, QString>>;

    void text(const char* name, const QString& value, const Attributes& attributes = {}) {
        xml_.text(name, value, attributes);
    }
    void money(const char* name, const Decimal& amount) { text(name, amount.toFixed(2)); }
    /// A number with the decimals it has, two at least.
    static QString exact(const Decimal& number) {
        return number == number.rounded(2) ? number.toFixed(2) : number.toString();
    }
    void date(const char* name, const QDate& day) {
        if (!day.isValid()) return;
        const auto made = xml_.element(name);
        text("udt:DateTimeString", day.toString(QStringLiteral("yyyyMMdd")), {{"format", QStringLiteral("102")}});
    }
    void identifier(const char* name, const Identifier& id) {
        if (!id.isEmpty()) text(name, id.value, {{"schemeID", id.scheme}});
    }
    void reference(const char* name, const QString& number) {
        if (number.isEmpty()) return;
        const auto made = xml_.element(name);
        text("ram:IssuerAssignedID", number);
    }
    void indicator(bool value) {
        const auto made = xml_.element("ram:ChargeIndicator");
        text("udt:Indicator", value ? QStringLiteral("true") : QStringLiteral("false"));
    }

    void writeDocument();
    void writeContext();
    void writeHead();
    void writeNote(const Note& note);
    void writeLine(const Line& line);
    void writeProduct(const Line& line);
    void writePrices(const Line& line);
    void writeAgreement();
    void writeParty(const char* name, const Party& party, bool isTaxed);
    void writeContact(const Party& party);
    void writeAddress(const Party& party);
    void writeDelivery();
    void writeSettlement();
    void writeMeans();
    void writeVat(const Vat& vat);
    void writeTaxation(const char* name, const Taxation& tax);
    void writeAdjustment(const Adjustment& adjustment);
    void writeTerms();
    void writeTotals();

    const Invoice& invoice_;
    QByteArray bytes_;
    XmlTree xml_;
};

void Writer::writeDocument() {
    const auto document = xml_.root();
    writeContext();
    writeHead();
    const auto transaction = xml_.element("rsm:SupplyChainTradeTransaction");
    for (const Line& line : invoice_.lines) writeLine(line);
    writeAgreement();
    writeDelivery();
    writeSettlement();
}

void Writer::writeContext() {
    const auto context = xml_.element("rsm:ExchangedDocumentContext");
    {
        const auto process = xml_.element("ram:BusinessProcessSpecifiedDocumentContextParameter");
        text("ram:ID", Process);
    }
    const auto guideline = xml_.element("ram:GuidelineSpecifiedDocumentContextParameter");
    text("ram:ID", Profile);
}

void Writer::writeHead() {
    const auto head = xml_.element("rsm:ExchangedDocument");
    text("ram:ID", invoice_.number);
    text("ram:TypeCode", QString::number(invoice_.type));
    date("ram:IssueDateTime", invoice_.date);
    for (const Note& note : invoice_.notes) writeNote(note);
}

void Writer::writeNote(const Note& note) {
    const auto made = xml_.element("ram:IncludedNote");
    text("ram:Content", note.text);
    text("ram:SubjectCode", note.subject);
}

void Writer::writeLine(const Line& line) {
    const auto item = xml_.element("ram:IncludedSupplyChainTradeLineItem");
    {
        const auto head = xml_.element("ram:AssociatedDocumentLineDocument");
        text("ram:LineID", line.number);
        if (!line.notes.isEmpty()) writeNote({{}, line.notes.join(u' ')});
    }
    writeProduct(line);
    writePrices(line);
    {
        const auto delivery = xml_.element("ram:SpecifiedLineTradeDelivery");
        text("ram:BilledQuantity", line.quantity.toString(), {{"unitCode", line.unit}});
    }
    const auto settlement = xml_.element("ram:SpecifiedLineTradeSettlement");
    writeTaxation("ram:ApplicableTradeTax", line.tax);
    const auto sum = xml_.element("ram:SpecifiedTradeSettlementLineMonetarySummation");
    money("ram:LineTotalAmount", line.amount);
}

void Writer::writeProduct(const Line& line) {
    const auto product = xml_.element("ram:SpecifiedTradeProduct");
    identifier("ram:GlobalID", {QStringLiteral("0160"), line.ean});
    text("ram:SellerAssignedID", line.reference);
    text("ram:Name", line.name);
    text("ram:Description", line.description);
    for (const Attribute& attribute : line.attributes) {
        const auto made = xml_.element("ram:ApplicableProductCharacteristic");
        text("ram:Description", attribute.name);
        text("ram:Value", attribute.value);
    }
}

void Writer::writePrices(const Line& line) {
    const auto agreement = xml_.element("ram:SpecifiedLineTradeAgreement");
    if (!line.discount.isZero()) {
        const auto gross = xml_.element("ram:GrossPriceProductTradePrice");
        text("ram:ChargeAmount", exact(line.grossPrice));
        const auto allowance = xml_.element("ram:AppliedTradeAllowanceCharge");
        indicator(false);
        text("ram:ActualAmount", exact(line.discount));
    }
    const auto net = xml_.element("ram:NetPriceProductTradePrice");
    text("ram:ChargeAmount", exact(line.price));
}

void Writer::writeAgreement() {
    const auto agreement = xml_.element("ram:ApplicableHeaderTradeAgreement");
    text("ram:BuyerReference", invoice_.service);
    writeParty("ram:SellerTradeParty", invoice_.seller, true);
    writeParty("ram:BuyerTradeParty", invoice_.buyer, true);
    reference("ram:BuyerOrderReferencedDocument", invoice_.order);
}

void Writer::writeParty(const char* name, const Party& party, bool isTaxed) {
    const auto made = xml_.element(name);
    identifier("ram:GlobalID", party.id);
    text("ram:Name", party.name);
    if (!party.legal.isEmpty()) {
        const auto legal = xml_.element("ram:SpecifiedLegalOrganization");
        identifier("ram:ID", party.legal);
    }
    if (isTaxed) writeContact(party);
    writeAddress(party);
    if (!party.address.isEmpty()) {
        const auto address = xml_.element("ram:URIUniversalCommunication");
        identifier("ram:URIID", party.address);
    }
    if (party.vatNumber.isEmpty()) return;
    const auto registration = xml_.element("ram:SpecifiedTaxRegistration");
    text("ram:ID", party.vatNumber, {{"schemeID", QStringLiteral("VA")}});
}

void Writer::writeContact(const Party& party) {
    if (party.telephone.isEmpty() && party.mail.isEmpty()) return;
    const auto contact = xml_.element("ram:DefinedTradeContact");
    if (!party.telephone.isEmpty()) {
        const auto telephone = xml_.element("ram:TelephoneUniversalCommunication");
        text("ram:CompleteNumber", party.telephone);
    }
    if (party.mail.isEmpty()) return;
    const auto mail = xml_.element("ram:EmailURIUniversalCommunication");
    text("ram:URIID", party.mail);
}

void Writer::writeAddress(const Party& party) {
    const auto address = xml_.element("ram:PostalTradeAddress");
    text("ram:PostcodeCode", party.postcode);
    text("ram:LineOne", party.lines.value(0));
    text("ram:LineTwo", party.lines.value(1));
    text("ram:LineThree", party.lines.value(2));
    text("ram:CityName", party.town);
    text("ram:CountryID", party.country);
}

void Writer::writeDelivery() {
    const auto delivery = xml_.element("ram:ApplicableHeaderTradeDelivery");
    if (!invoice_.delivery.country.isEmpty()) writeParty("ram:ShipToTradeParty", invoice_.delivery, false);
    {
        const auto event = xml_.element("ram:ActualDeliverySupplyChainEvent");
        date("ram:OccurrenceDateTime", invoice_.delivered);
    }
    reference("ram:DespatchAdviceReferencedDocument", invoice_.notesOfDelivery);
}

void Writer::writeSettlement() {
    const auto settlement = xml_.element("ram:ApplicableHeaderTradeSettlement");
    text("ram:InvoiceCurrencyCode", invoice_.currency);
    writeMeans();
    for (const Vat& vat : invoice_.vat) writeVat(vat);
    for (const Adjustment& adjustment : invoice_.adjustments) writeAdjustment(adjustment);
    writeTerms();
    writeTotals();
    reference("ram:InvoiceReferencedDocument", invoice_.preceding);
}

void Writer::writeMeans() {
    if (invoice_.meansCode.isEmpty()) return;
    const auto means = xml_.element("ram:SpecifiedTradeSettlementPaymentMeans");
    text("ram:TypeCode", invoice_.meansCode);
    text("ram:Information", invoice_.meansText);
    if (invoice_.iban.isEmpty()) return;
    {
        const auto account = xml_.element("ram:PayeePartyCreditorFinancialAccount");
        text("ram:IBANID", invoice_.iban);
    }
    if (invoice_.bic.isEmpty()) return;
    const auto bank = xml_.element("ram:PayeeSpecifiedCreditorFinancialInstitution");
    text("ram:BICID", invoice_.bic);
}

void Writer::writeVat(const Vat& vat) {
    const auto made = xml_.element("ram:ApplicableTradeTax");
    money("ram:CalculatedAmount", vat.amount);
    text("ram:TypeCode", QStringLiteral("VAT"));
    text("ram:ExemptionReason", vat.tax.reason);
    money("ram:BasisAmount", vat.base);
    text("ram:CategoryCode", vat.tax.category);
    text("ram:ExemptionReasonCode", vat.tax.reasonCode);
    text("ram:RateApplicablePercent", exact(vat.tax.rate));
}

void Writer::writeTaxation(const char* name, const Taxation& tax) {
    const auto made = xml_.element(name);
    text("ram:TypeCode", QStringLiteral("VAT"));
    text("ram:CategoryCode", tax.category);
    text("ram:RateApplicablePercent", exact(tax.rate));
}

void Writer::writeAdjustment(const Adjustment& adjustment) {
    const auto made = xml_.element("ram:SpecifiedTradeAllowanceCharge");
    indicator(adjustment.isCharge);
    money("ram:ActualAmount", adjustment.amount);
    text("ram:ReasonCode", adjustment.reasonCode);
    text("ram:Reason", adjustment.reason);
    writeTaxation("ram:CategoryTradeTax", adjustment.tax);
}

void Writer::writeTerms() {
    const auto terms = xml_.element("ram:SpecifiedTradePaymentTerms");
    text("ram:Description", invoice_.terms);
    date("ram:DueDateDateTime", invoice_.due);
}

void Writer::writeTotals() {
    const auto sum = xml_.element("ram:SpecifiedTradeSettlementHeaderMonetarySummation");
    money("ram:LineTotalAmount", invoice_.linesTotal);
    money("ram:ChargeTotalAmount", invoice_.charges);
    money("ram:AllowanceTotalAmount", invoice_.allowances);
    money("ram:TaxBasisTotalAmount", invoice_.base);
    text("ram:TaxTotalAmount", invoice_.vatTotal.toFixed(2), {{"currencyID", invoice_.currency}});
    money("ram:GrandTotalAmount", invoice_.total);
    money("ram:TotalPrepaidAmount", invoice_.paid);
    money("ram:DuePayableAmount", invoice_.toPay);
}

} // namespace

QByteArray ciiOf(const Invoice& invoice) { return Writer(invoice).write(); }

} // namespace molven::electronic
