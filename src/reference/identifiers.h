#pragma once

#include <QString>

/// Numbers that authorities and banks give, by their check digits. All are written without blanks.
namespace molven::identifiers {

/// A number as it is kept: upper case, without blanks, points and hyphens.
QString compact(const QString& typed);

/// 14 digits, the sum of Luhn over them (and over the first nine, the SIREN) right. The post office's own
/// establishments have a sum of their own.
bool isSiret(const QString& number);
/// Nine digits with the sum of Luhn.
bool isSiren(const QString& number);
/// A country's two letters and 2 to 13 further signs; of a French one, the key of its SIREN.
bool isVatNumber(const QString& number);
/// ISO 13616: country, key, account; remainder 1 by 97.
bool isIban(const QString& number);
/// ISO 9362: 8 or 11 signs.
bool isBic(const QString& code);
/// For reading: an IBAN in groups of four.
QString inFours(const QString& iban);

} // namespace molven::identifiers
