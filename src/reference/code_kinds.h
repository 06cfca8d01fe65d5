#pragma once

namespace molven {

struct CodeKind;

/// The kinds of codes that the fields of the tables are declared with. Those that units and documents alone know
/// stand with their tables.
namespace codes {

extern const CodeKind Client, Supplier, Article, ArticleOfTariff;
extern const CodeKind PaymentMode, VatCode, Currency, Account, LppCode, TipsCode, DiscountCategory;
extern const CodeKind ClientFamily, ArticleFamily, SubFamily, SupplierFamily, AncillaryFamily, DepotFamily;
extern const CodeKind Representative, Depot, Dispatch, Surgeon, Reworked, Derogated, Scrapped;

extern const CodeKind FamilyOfArticle;    ///< by `art_anc`
extern const CodeKind AccountOfParameter; ///< by `cod_par`: the family of a sub-family, else an account
extern const CodeKind FamilyOfParameter;  ///< by `cod_par`: of a depot, of an article family

extern const CodeKind YesNo, ArticleType, Origin, PriceBasis, Reimbursement;

} // namespace codes
} // namespace molven
