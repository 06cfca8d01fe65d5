#pragma once

#include <QString>

namespace molven {

/// The one place that compares company codes: every difference between the companies served is a question here.
class CompanyRules {
public:
    CompanyRules() = default;
    /// `site` is the dossier word or site sub-code ("GV", "EO", ...).
    CompanyRules(const QString& company, const QString& site) : company_(company), site_(site) {}

    // Start-up and access
    /// This company works as "AD" everywhere; where it differs, the site word "EO" tells.
    bool worksAsAd() const { return company_ == u"EO"; }
    bool readsSecondSiteFolder() const { return company_ == u"IM"; }
    bool isSecondSite() const { return company_ == u"IM" && site_ == u"GV"; }
    bool showsSiteInTitle() const { return company_ == u"IM"; }
    bool hasUserFolders() const { return site_ == u"EO" || site_ == u"IM"; }
    bool acceptsBuiltInWord() const { return company_ != u"MD" && company_ != u"IM"; }
    bool passwordIsSiteWord() const { return company_ == u"IM"; }
    QString logoExtension() const { return isOneOf({u"AD", u"EO"}) ? QStringLiteral(".JPG") : QStringLiteral(".BMP"); }

    // Backup and compaction
    /// The folders of the dossier's users are part of its backup, which their first workstation makes.
    bool backsUpUserFolders() const { return company_ == u"IM"; }
    /// Users share molven.mdb alone: their sales lie in folders of their own.
    bool sharesUnitsOnly() const {
        return (company_ == u"IM" && site_ != u"GV") || (company_ == u"AD" && site_ == u"EO");
    }

    // Menu
    bool hasAncillarySets() const { return isOneOf({u"CE", u"LB"}); }
    bool hasEanPool() const { return company_ == u"CE"; }
    bool hasVirtualTraceability() const { return company_ == u"AD"; }
    bool hasOrderProgram() const { return isOneOf({u"CE", u"LB", u"AD", u"IM", u"CH"}); }
    bool hasDepotFamilies() const { return isOneOf({u"LB", u"CE", u"IM", u"CH"}); }
    bool hasSubFamilies() const { return isOneOf({u"EO", u"AD"}); }
    bool hasPanPrices() const { return isOneOf({u"CH", u"IM"}); }
    bool hasInvoiceBookChoice() const { return isOneOf({u"DA", u"MD"}); }
    bool printsLabelsFromMenu() const { return isOneOf({u"DA", u"MD"}); }

    /// Print screen of delivery notes and invoices.
    QString reprintScreen(bool invoice) const {
        if (company_ == u"CH") return QStringLiteral("T_docedt2");
        if (isOneOf({u"LB", u"CE", u"IM"})) return QStringLiteral("T_docedt3");
        return invoice && hasInvoiceBookChoice() ? QStringLiteral("T_docedt2") : QStringLiteral("T_docedt");
    }

    // Articles and units
    bool linksAncillaryFamilies() const { return company_ == u"CE"; }
    bool hasDocumentsRoot() const { return company_ == u"CE"; }
    bool hasEnglishLabels() const { return company_ == u"CE"; }
    bool allocatesEan() const { return company_ == u"CE"; }
    bool keepsSterilisationIndex() const { return hasDepotFamilies(); }
    bool showsDepotFamily() const { return company_ == u"CE"; }
    bool printsThirdLabel() const { return site_ == u"EO" || company_ == u"AD"; }
    bool labelsShowSupplierSerial() const { return company_ == u"MD"; }
    bool valuesInventoryByOwnPrice() const { return company_ == u"PL"; }
    int purchasePriceDecimals() const { return company_ == u"CH" ? 3 : 2; }
    QString country() const { return company_ == u"CH" ? QStringLiteral("Suisse") : QString(); }
    /// Two letters of ISO 3166.
    QString countryCode() const { return company_ == u"CH" ? QStringLiteral("CH") : QStringLiteral("FR"); }

    /// The supplier that a sister company is here, whose exchange files are taken; empty where there is none.
    QString sisterSupplier() const {
        if (isOneOf({u"IM", u"LB"})) return QStringLiteral("000100");
        return company_ == u"CH" ? QStringLiteral("000017") : QString();
    }

    // Sales
    /// Companies that may sell from the depot "261" in place of the main one.
    bool sellsFromDepot261() const { return isOneOf({u"IM", u"LB"}); }
    bool callsProformasQuotes() const { return company_ == u"AD" && site_ == u"EO"; }

private:
    bool isOneOf(std::initializer_list<QStringView> companies) const {
        for (const QStringView code : companies)
            if (company_ == code) return true;
        return false;
    }

    QString company_;
    QString site_;
};

} // namespace molven
