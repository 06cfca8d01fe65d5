#pragma once

#include <QString>

namespace molven {

/// Code 128 for a barcode font: turns a text into the characters that the font draws, its human-readable form,
/// or its check character. Symbol values 1 to 94 are the characters 33 to 126, 95 to 106 the characters 195 to
/// 206, 0 is the character 194.
///
/// The encoder keeps its start character between calls: a text whose first character fits no set is encoded
/// with the start of the text before it.
class Code128Encoder {
public:
    enum ReturnKind : short {
        Bars = 0,          ///< start, symbols, check, stop and a blank
        HumanReadable = 1, ///< the text with GS1 application identifiers in brackets
        CheckCharacter = 2
    };

    /// `data` is emptied before returning. The characters 202 and 212 to 215 in it stand for FNC1, the latter
    /// followed by an identifier of 2 to 5 digits. Characters from 127 upward are otherwise dropped. Any
    /// other kind gives the empty text. Throws std::invalid_argument when the two characters behind a marker
    /// are not digits.
    QString encode(QString& data, short returnKind);

private:
    enum class Set { A, B, C };

    void chooseStart(const QString& data);
    QString symbols(const QString& data);
    static QString humanReadable(const QString& data);
    QChar checkCharacter(const QString& symbols) const;
    void switchTo(Set set, QString& symbols);

    ushort start_ = 204;
    Set set_ = Set::B;
};

/// The program's one encoder.
QString EncodeCode128(QString& data, short returnKind);

} // namespace molven
