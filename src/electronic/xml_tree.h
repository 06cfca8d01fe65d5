#pragma once

#include <QList>
#include <QString>
#include <QXmlStreamWriter>

namespace molven::electronic {

/// Writes the elements of an invoice in the UN/CEFACT syntax, which stay open as long as what element() gave lives.
class XmlTree {
public:
    explicit XmlTree(QByteArray& bytes) : xml_(&bytes) {
        xml_.setAutoFormatting(true);
        xml_.setAutoFormattingIndent(1);
        xml_.writeStartDocument();
    }

    class Element {
    public:
        explicit Element(QXmlStreamWriter& xml) : xml_(xml) {}
        ~Element() { xml_.writeEndElement(); }
        Element(const Element&) = delete;
        Element& operator=(const Element&) = delete;

    private:
        QXmlStreamWriter& xml_;
    };

    [[nodiscard]] Element root() {
        open("rsm:CrossIndustryInvoice");
        const QString base = QStringLiteral("urn:un:unece:uncefact:data:");
        xml_.writeAttribute(QStringLiteral("xmlns:rsm"), base + QStringLiteral("standard:CrossIndustryInvoice:100"));
        xml_.writeAttribute(QStringLiteral("xmlns:ram"),
                            base + QStringLiteral("standard:ReusableAggregateBusinessInformationEntity:100"));
        xml_.writeAttribute(QStringLiteral("xmlns:udt"), base + QStringLiteral("standard:UnqualifiedDataType:100"));
        xml_.writeAttribute(QStringLiteral("xmlns:qdt"), base + QStringLiteral("standard:QualifiedDataType:100"));
        return Element(xml_);
    }
    [[nodiscard]] Element element(const char* name) {
        open(name);
        return Element(xml_);
    }
    /// An element of text alone; none for an empty one. What no XML may hold is left out.
    void text(const char* name, const QString& value, const QList<std::pair<const char*, QString>>& attributes) {
        if (value.isEmpty()) return;
        open(name);
        for (const auto& [attribute, said] : attributes) xml_.writeAttribute(QString::fromLatin1(attribute), said);
        xml_.writeCharacters(legal(value));
        xml_.writeEndElement();
    }

private:
    void open(const char* name) { xml_.writeStartElement(QString::fromLatin1(name)); }
    static QString legal(QString text) {
        text.removeIf([](QChar sign) { return sign < u' ' && sign != u'\n' && sign != u'\t'; });
        return text;
    }

    QXmlStreamWriter xml_;
};

} // namespace molven::electronic
