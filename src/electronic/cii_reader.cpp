#include "electronic/cii_reader.h"

#include "data/errors.h"

#include <QXmlStreamReader>

namespace molven::electronic {

namespace {

/// An element and what is in it, without name spaces: files use whichever prefixes they like.
struct Node {
    QString name, text;
    QHash<QString, QString> attributes;
    QList<Node> children;

    /// The first element on a path "A/B"; an empty one without.
    const Node& at(const QString& path) const {
        static const Node none;
        const Node* node = this;
        for (const QString& step : path.split(u'/')) {
            const auto found = std::find_if(node->children.begin(), node->children.end(),
                                            [&step](const Node& child) { return child.name == step; });
            if (found == node->children.end()) return none;
            node = &*found;
        }
        return *node;
    }
    QString textAt(const QString& path) const { return at(path).text; }
    Decimal numberAt(const QString& path) const { return Decimal::fromText(textAt(path)); }
    /// All elements of that name below this one.
    QList<const Node*> all(const QString& wanted) const {
        QList<const Node*> found;
        for (const Node& child : children)
            if (child.name == wanted) found.append(&child);
        return found;
    }
};

constexpr int DeepestNesting = 40; ///< of elements; an invoice has a dozen

[[noreturn]] void refuse() { throw Refusal(QStringLiteral("Ce fichier n'est pas une facture électronique lisible")); }

Node readNode(QXmlStreamReader& xml, int depth) {
    if (depth > DeepestNesting) refuse();
    Node node;
    node.name = xml.name().toString();
    for (const QXmlStreamAttribute& attribute : xml.attributes())
        node.attributes.insert(attribute.name().toString(), attribute.value().toString());
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::EndElement) break;
        if (token == QXmlStreamReader::StartElement) node.children.append(readNode(xml, depth + 1));
        if (token == QXmlStreamReader::Characters) node.text += xml.text();
        if (token == QXmlStreamReader::EntityReference) refuse();
    }
    node.text = node.text.trimmed();
    return node;
}

QDate dateAt(const Node& node, const QString& path) {
    const Node& found = node.at(path);
    const QString text = found.children.isEmpty() ? found.text : found.children.first().text;
    return QDate::fromString(text.left(8), QStringLiteral("yyyyMMdd"));
}

Identifier identifierAt(const Node& node, const QString& path) {
    const Node& found = node.at(path);
    return {found.attributes.value(QStringLiteral("schemeID")), found.text};
}

Party partyOf(const Node& node) {
    const QString address = QStringLiteral("PostalTradeAddress/");
    Party party;
    party.name = node.textAt(QStringLiteral("Name"));
    party.id = identifierAt(node, QStringLiteral("GlobalID"));
    party.legal = identifierAt(node, QStringLiteral("SpecifiedLegalOrganization/ID"));
    party.address = identifierAt(node, QStringLiteral("URIUniversalCommunication/URIID"));
    for (const Node* tax : node.all(QStringLiteral("SpecifiedTaxRegistration")))
        if (const Node& id = tax->at(QStringLiteral("ID")); id.attributes.value(QStringLiteral("schemeID")) != u"FC")
            party.vatNumber = id.text;
    for (const char* line : {"LineOne", "LineTwo", "LineThree"})
        if (const QString text = node.textAt(address + QString::fromLatin1(line)); !text.isEmpty())
            party.lines.append(text);
    party.postcode = node.textAt(address + QStringLiteral("PostcodeCode"));
    party.town = node.textAt(address + QStringLiteral("CityName"));
    party.country = node.textAt(address + QStringLiteral("CountryID"));
    return party;
}

Taxation taxOf(const Node& node) {
    return {node.textAt(QStringLiteral("CategoryCode")), node.numberAt(QStringLiteral("RateApplicablePercent")),
            node.textAt(QStringLiteral("ExemptionReason")), node.textAt(QStringLiteral("ExemptionReasonCode"))};
}

/// The lots and serials that the extended profile keeps apart become attributes like the others.
QList<Attribute> attributesOf(const Node& product) {
    QList<Attribute> found;
    const auto add = [&found](const QString& name, const QString& value) {
        if (!value.isEmpty()) found.append({name, value});
    };
    for (const Node* one : product.all(QStringLiteral("ApplicableProductCharacteristic")))
        add(one->textAt(QStringLiteral("Description")), one->textAt(QStringLiteral("Value")));
    for (const Node* one : product.all(QStringLiteral("IndividualTradeProductInstance"))) {
        add(QStringLiteral("Lot"), one->textAt(QStringLiteral("BatchID")));
        for (const char* serial : {"SupplierAssignedSerialID", "SerialID", "GlobalSerialID"})
            add(QStringLiteral("Numéro de série"), one->textAt(QString::fromLatin1(serial)));
        for (const char* expiry : {"ExpiryDateTime", "BestBeforeDateTime"})
            if (const QDate day = dateAt(*one, QString::fromLatin1(expiry)); day.isValid())
                add(QStringLiteral("Péremption"), day.toString(QStringLiteral("MM/yyyy")));
    }
    return found;
}

Line lineOf(const Node& node) {
    const Node& product = node.at(QStringLiteral("SpecifiedTradeProduct"));
    const Node& agreement = node.at(QStringLiteral("SpecifiedLineTradeAgreement"));
    const Node& settlement = node.at(QStringLiteral("SpecifiedLineTradeSettlement"));
    const Node& billed = node.at(QStringLiteral("SpecifiedLineTradeDelivery/BilledQuantity"));
    const Node& net = agreement.at(QStringLiteral("NetPriceProductTradePrice"));
    Line line;
    line.number = node.textAt(QStringLiteral("AssociatedDocumentLineDocument/LineID"));
    for (const Node* note :
         node.at(QStringLiteral("AssociatedDocumentLineDocument")).all(QStringLiteral("IncludedNote")))
        line.notes.append(note->textAt(QStringLiteral("Content")));
    line.reference = product.textAt(QStringLiteral("SellerAssignedID"));
    line.ean = product.textAt(QStringLiteral("GlobalID"));
    line.name = product.textAt(QStringLiteral("Name"));
    line.description = product.textAt(QStringLiteral("Description"));
    line.attributes = attributesOf(product);
    line.quantity = Decimal::fromText(billed.text);
    line.unit = billed.attributes.value(QStringLiteral("unitCode"));
    line.price = net.numberAt(QStringLiteral("ChargeAmount"));
    const Decimal basis = net.numberAt(QStringLiteral("BasisQuantity"));
    if (basis > Decimal(0)) line.price = line.price / basis;
    line.amount = settlement.numberAt(QStringLiteral("SpecifiedTradeSettlementLineMonetarySummation/LineTotalAmount"));
    line.tax = taxOf(settlement.at(QStringLiteral("ApplicableTradeTax")));
    return line;
}

void readSettlement(const Node& node, Invoice& invoice) {
    invoice.currency = node.textAt(QStringLiteral("InvoiceCurrencyCode"));
    const Node& means = node.at(QStringLiteral("SpecifiedTradeSettlementPaymentMeans"));
    invoice.meansCode = means.textAt(QStringLiteral("TypeCode"));
    invoice.meansText = means.textAt(QStringLiteral("Information"));
    invoice.iban = means.textAt(QStringLiteral("PayeePartyCreditorFinancialAccount/IBANID"));
    invoice.bic = means.textAt(QStringLiteral("PayeeSpecifiedCreditorFinancialInstitution/BICID"));
    for (const Node* tax : node.all(QStringLiteral("ApplicableTradeTax")))
        invoice.vat.append({taxOf(*tax), tax->numberAt(QStringLiteral("BasisAmount")),
                            tax->numberAt(QStringLiteral("CalculatedAmount"))});
    for (const Node* one : node.all(QStringLiteral("SpecifiedTradeAllowanceCharge")))
        invoice.adjustments.append({one->textAt(QStringLiteral("ChargeIndicator/Indicator")) == u"true",
                                    one->numberAt(QStringLiteral("ActualAmount")),
                                    one->textAt(QStringLiteral("Reason")), one->textAt(QStringLiteral("ReasonCode")),
                                    taxOf(one->at(QStringLiteral("CategoryTradeTax")))});
    const Node& terms = node.at(QStringLiteral("SpecifiedTradePaymentTerms"));
    invoice.terms = terms.textAt(QStringLiteral("Description"));
    invoice.due = dateAt(terms, QStringLiteral("DueDateDateTime"));
    const Node& sum = node.at(QStringLiteral("SpecifiedTradeSettlementHeaderMonetarySummation"));
    invoice.linesTotal = sum.numberAt(QStringLiteral("LineTotalAmount"));
    invoice.charges = sum.numberAt(QStringLiteral("ChargeTotalAmount"));
    invoice.allowances = sum.numberAt(QStringLiteral("AllowanceTotalAmount"));
    invoice.base = sum.numberAt(QStringLiteral("TaxBasisTotalAmount"));
    invoice.vatTotal = sum.numberAt(QStringLiteral("TaxTotalAmount"));
    invoice.total = sum.numberAt(QStringLiteral("GrandTotalAmount"));
    invoice.paid = sum.numberAt(QStringLiteral("TotalPrepaidAmount"));
    invoice.toPay = sum.numberAt(QStringLiteral("DuePayableAmount"));
    invoice.preceding = node.textAt(QStringLiteral("InvoiceReferencedDocument/IssuerAssignedID"));
}

} // namespace

Invoice invoiceOfCii(const QByteArray& bytes) {
    QXmlStreamReader xml(bytes);
    while (!xml.atEnd() && xml.readNext() != QXmlStreamReader::StartElement)
        if (xml.tokenType() == QXmlStreamReader::DTD) refuse(); // an invoice defines nothing
    if (xml.name() != u"CrossIndustryInvoice") refuse();
    const Node root = readNode(xml, 0);
    if (xml.hasError()) refuse();
    const Node& head = root.at(QStringLiteral("ExchangedDocument"));
    const Node& transaction = root.at(QStringLiteral("SupplyChainTradeTransaction"));
    const Node& agreement = transaction.at(QStringLiteral("ApplicableHeaderTradeAgreement"));
    const Node& delivery = transaction.at(QStringLiteral("ApplicableHeaderTradeDelivery"));
    Invoice invoice;
    invoice.type = head.textAt(QStringLiteral("TypeCode")).toInt();
    invoice.number = head.textAt(QStringLiteral("ID"));
    invoice.date = dateAt(head, QStringLiteral("IssueDateTime"));
    for (const Node* note : head.all(QStringLiteral("IncludedNote")))
        invoice.notes.append({note->textAt(QStringLiteral("SubjectCode")), note->textAt(QStringLiteral("Content"))});
    invoice.service = agreement.textAt(QStringLiteral("BuyerReference"));
    invoice.seller = partyOf(agreement.at(QStringLiteral("SellerTradeParty")));
    invoice.buyer = partyOf(agreement.at(QStringLiteral("BuyerTradeParty")));
    invoice.order = agreement.textAt(QStringLiteral("BuyerOrderReferencedDocument/IssuerAssignedID"));
    invoice.delivery = partyOf(delivery.at(QStringLiteral("ShipToTradeParty")));
    invoice.delivered = dateAt(delivery, QStringLiteral("ActualDeliverySupplyChainEvent/OccurrenceDateTime"));
    invoice.notesOfDelivery = delivery.textAt(QStringLiteral("DespatchAdviceReferencedDocument/IssuerAssignedID"));
    for (const Node* line : transaction.all(QStringLiteral("IncludedSupplyChainTradeLineItem")))
        invoice.lines.append(lineOf(*line));
    readSettlement(transaction.at(QStringLiteral("ApplicableHeaderTradeSettlement")), invoice);
    return invoice;
}

} // namespace molven::electronic
