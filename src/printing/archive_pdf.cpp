#include "printing/archive_pdf.h"

#include "data/errors.h"

#include <QXmlStreamWriter>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFEFStreamObjectHelper.hh>
#include <qpdf/QPDFEmbeddedFileDocumentHelper.hh>
#include <qpdf/QPDFFileSpecObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <exception>

namespace molven::archive_pdf {

namespace {

const QString Rdf = QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#"),
              FacturX = QStringLiteral("urn:factur-x:pdfa:CrossIndustryDocument:invoice:1p0#"),
              Schema = QStringLiteral("http://www.aiim.org/pdfa/ns/schema#"),
              Property = QStringLiteral("http://www.aiim.org/pdfa/ns/property#");

/// A date of the information dictionary, "D:20260305101500+01'00'", as the metadata write it.
QString isoDate(const QString& pdfDate) {
    const QString d = pdfDate.mid(2);
    if (d.size() < 14) return {};
    QString zone = d.mid(14).remove(u'\'');
    if (zone.size() == 5) zone.insert(3, u':');
    return QStringLiteral("%1-%2-%3T%4:%5:%6%7")
        .arg(d.mid(0, 4), d.mid(4, 2), d.mid(6, 2), d.mid(8, 2), d.mid(10, 2), d.mid(12, 2),
             zone.isEmpty() ? QStringLiteral("Z") : zone);
}

/// The metadata of a PDF/A-3 say the same as its information dictionary, and name the invoice inside.
class Metadata {
public:
    Metadata(QPDFObjectHandle information, const Factur& factur)
        : information_(std::move(information)), factur_(factur), xml_(&bytes_) {}

    QByteArray write() {
        xml_.writeProcessingInstruction(QStringLiteral("xpacket"),
                                        QStringLiteral("begin=\"\uFEFF\" id=\"W5M0MpCehiHzreSzNTczkc9d\""));
        start("x:xmpmeta", "adobe:ns:meta/", "x");
        xml_.writeStartElement(QStringLiteral("rdf:RDF"));
        xml_.writeAttribute(QStringLiteral("xmlns:rdf"), Rdf);
        writeConformance();
        writeInformation();
        writeInvoice();
        writeExtension();
        xml_.writeEndElement();
        xml_.writeEndElement();
        xml_.writeProcessingInstruction(QStringLiteral("xpacket"), QStringLiteral("end=\"w\""));
        return bytes_;
    }

private:
    void start(const char* name, const QString& space, const char* prefix) {
        xml_.writeStartElement(QString::fromLatin1(name));
        xml_.writeAttribute(QStringLiteral("xmlns:") + QString::fromLatin1(prefix), space);
    }
    void start(const char* name, const char* space, const char* prefix) {
        start(name, QString::fromLatin1(space), prefix);
    }
    void describe(const QString& space, const char* prefix) {
        start("rdf:Description", space, prefix);
        xml_.writeAttribute(QStringLiteral("rdf:about"), QString());
    }
    void text(const char* name, const QString& value) {
        if (!value.isEmpty()) xml_.writeTextElement(QString::fromLatin1(name), value);
    }
    QString known(const char* key) {
        QPDFObjectHandle value = information_.isDictionary() ? information_.getKey(key) : QPDFObjectHandle();
        return value.isInitialized() && value.isString() ? QString::fromStdString(value.getUTF8Value()) : QString();
    }

    void writeConformance() {
        describe(QStringLiteral("http://www.aiim.org/pdfa/ns/id/"), "pdfaid");
        text("pdfaid:part", QStringLiteral("3"));
        text("pdfaid:conformance", QStringLiteral("B"));
        xml_.writeEndElement();
    }

    void writeInformation() {
        describe(QStringLiteral("http://purl.org/dc/elements/1.1/"), "dc");
        if (const QString title = known("/Title"); !title.isEmpty()) {
            xml_.writeStartElement(QStringLiteral("dc:title"));
            xml_.writeStartElement(QStringLiteral("rdf:Alt"));
            xml_.writeStartElement(QStringLiteral("rdf:li"));
            xml_.writeAttribute(QStringLiteral("xml:lang"), QStringLiteral("x-default"));
            xml_.writeCharacters(title);
            for (int i = 0; i < 3; ++i) xml_.writeEndElement();
        }
        xml_.writeEndElement();
        describe(QStringLiteral("http://ns.adobe.com/xap/1.0/"), "xmp");
        text("xmp:CreatorTool", known("/Creator"));
        text("xmp:CreateDate", isoDate(known("/CreationDate")));
        text("xmp:ModifyDate", isoDate(known("/ModDate")));
        xml_.writeEndElement();
        describe(QStringLiteral("http://ns.adobe.com/pdf/1.3/"), "pdf");
        text("pdf:Producer", known("/Producer"));
        xml_.writeEndElement();
    }

    void writeInvoice() {
        describe(FacturX, "fx");
        text("fx:DocumentType", QStringLiteral("INVOICE"));
        text("fx:DocumentFileName", factur_.fileName);
        text("fx:Version", QStringLiteral("1.0"));
        text("fx:ConformanceLevel", factur_.profile);
        xml_.writeEndElement();
    }

    /// PDF/A wants a property that it does not know described.
    void writeExtension() {
        describe(QStringLiteral("http://www.aiim.org/pdfa/ns/extension/"), "pdfaExtension");
        xml_.writeAttribute(QStringLiteral("xmlns:pdfaSchema"), Schema);
        xml_.writeAttribute(QStringLiteral("xmlns:pdfaProperty"), Property);
        startList("pdfaExtension:schemas", "rdf:Bag");
        text("pdfaSchema:schema", QStringLiteral("Factur-X PDFA Extension Schema"));
        text("pdfaSchema:namespaceURI", FacturX);
        text("pdfaSchema:prefix", QStringLiteral("fx"));
        xml_.writeStartElement(QStringLiteral("pdfaSchema:property"));
        xml_.writeStartElement(QStringLiteral("rdf:Seq"));
        for (const char* name : {"DocumentFileName", "DocumentType", "Version", "ConformanceLevel"})
            writeProperty(name);
        for (int i = 0; i < 6; ++i) xml_.writeEndElement();
    }

    /// Opens a list and its one entry: three elements.
    void startList(const char* name, const char* list) {
        xml_.writeStartElement(QString::fromLatin1(name));
        xml_.writeStartElement(QString::fromLatin1(list));
        startEntry();
    }
    void startEntry() {
        xml_.writeStartElement(QStringLiteral("rdf:li"));
        xml_.writeAttribute(QStringLiteral("rdf:parseType"), QStringLiteral("Resource"));
    }
    void writeProperty(const char* name) {
        startEntry();
        text("pdfaProperty:name", QString::fromLatin1(name));
        text("pdfaProperty:valueType", QStringLiteral("Text"));
        text("pdfaProperty:category", QStringLiteral("external"));
        text("pdfaProperty:description", QStringLiteral("Electronic invoice: ") + QString::fromLatin1(name));
        xml_.writeEndElement();
    }

    QPDFObjectHandle information_;
    const Factur& factur_;
    QByteArray bytes_;
    QXmlStreamWriter xml_;
};

void open(QPDF& pdf, const QByteArray& bytes) {
    pdf.setSuppressWarnings(true);
    pdf.processMemoryFile("pdf", bytes.constData(), static_cast<size_t>(bytes.size()));
}

void attach(QPDF& pdf, const Attachment& file) {
    auto stream = QPDFEFStreamObjectHelper::createEFStream(pdf, file.bytes.toStdString());
    stream.setSubtype("text/xml");
    QPDFObjectHandle information = pdf.getTrailer().getKey("/Info");
    if (information.isDictionary() && information.getKey("/CreationDate").isString()) {
        const std::string moment = information.getKey("/CreationDate").getUTF8Value();
        stream.setCreationDate(moment).setModDate(moment);
    }
    auto attached = QPDFFileSpecObjectHelper::createFileSpec(pdf, file.name.toStdString(), stream);
    attached.setDescription("Factur-X");
    QPDFObjectHandle handle = attached.getObjectHandle();
    handle.replaceKey("/AFRelationship", QPDFObjectHandle::newName("/Alternative"));
    QPDFEmbeddedFileDocumentHelper(pdf).replaceEmbeddedFile(file.name.toStdString(), attached);
    QPDFObjectHandle associated = QPDFObjectHandle::newArray();
    associated.appendItem(handle);
    pdf.getRoot().replaceKey("/AF", associated);
}

QByteArray written(QPDF& pdf) {
    QPDFWriter writer(pdf);
    writer.setOutputMemory();
    writer.setMinimumPDFVersion("1.7");
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.write();
    const auto buffer = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char*>(buffer->getBuffer()), static_cast<qsizetype>(buffer->getSize())};
}

} // namespace

QByteArray embed(const QByteArray& pages, const Attachment& file, const Factur& factur) {
    QPDF pdf;
    open(pdf, pages);
    attach(pdf, file);
    const QByteArray metadata = Metadata(pdf.getTrailer().getKey("/Info"), factur).write();
    QPDFObjectHandle stream = pdf.newStream(metadata.toStdString());
    stream.getDict().replaceKey("/Type", QPDFObjectHandle::newName("/Metadata"));
    stream.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/XML"));
    pdf.getRoot().replaceKey("/Metadata", stream);
    return written(pdf);
}

QList<Attachment> attachments(const QByteArray& bytes) {
    try {
        QPDF pdf;
        open(pdf, bytes);
        QList<Attachment> found;
        for (const auto& [name, file] : QPDFEmbeddedFileDocumentHelper(pdf).getEmbeddedFiles()) {
            QPDFObjectHandle stream = file->getEmbeddedFileStream();
            if (!stream.isStream()) continue;
            const auto data = stream.getStreamData(qpdf_dl_all);
            found.append({QString::fromStdString(file->getFilename()),
                          {reinterpret_cast<const char*>(data->getBuffer()), static_cast<qsizetype>(data->getSize())}});
        }
        return found;
    } catch (const std::exception&) {
        throw Refusal(QStringLiteral("Ce fichier n'est pas un PDF lisible"));
    }
}

} // namespace molven::archive_pdf
