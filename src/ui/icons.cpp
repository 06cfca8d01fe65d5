#include "ui/icons.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>

namespace molven::icons {

namespace {

/// Drawn on 16 x 16; "@" is the colour of the words.
constexpr const char* List = R"(<g fill="@"><circle cx="3" cy="4" r="1.1"/><circle cx="3" cy="8" r="1.1"/>
<circle cx="3" cy="12" r="1.1"/></g><path d="M6 4h8M6 8h8M6 12h8" stroke="@" stroke-width="1.4"/>)";
constexpr const char* Print = R"(<g fill="none" stroke="@" stroke-width="1.2" stroke-linejoin="round">
<path d="M4.6 6V1.8h6.8V6"/><path d="M4.6 11.6H2V6h12v5.6h-2.6"/><path d="M4.6 9.6h6.8v4.6H4.6z"/></g>
<circle cx="11.8" cy="7.9" r="0.8" fill="@"/>)";
constexpr const char* History = R"(<g fill="none" stroke="@" stroke-width="1.3" stroke-linecap="round"
stroke-linejoin="round"><path d="M2.4 8a5.6 5.6 0 1 0 1.9-4.2L2.4 5.5"/><path d="M2.4 2.4v3.1h3.1"/>
<path d="M8 5v3.2l2.2 1.4"/></g>)";
constexpr const char* Scan = R"(<g stroke="@"><path d="M1.6 3v10M14.4 3v10" stroke-width="1.6"/>
<path d="M4.5 3v10M10.2 3v10" stroke-width="1.2"/><path d="M7.4 3v10" stroke-width="2.2"/>
<path d="M12.2 3v10" stroke-width="0.9"/></g>)";
constexpr const char* Program = R"(<rect width="16" height="16" rx="3.2" fill="#1b5faa"/>
<g fill="none" stroke="#ffffff" stroke-linecap="round"><path d="M5 13.2C5.2 9.4 6 7.4 9.4 5.4" stroke-width="2.2"/>
<path d="M5 13.2l-.1-1.4" stroke-width="2.8"/></g><circle cx="10.6" cy="4.7" r="2.4" fill="#ffffff"/>)";

QImage drawn(const char* lines, const QColor& colour, const QSize& size) {
    QByteArray picture = QByteArrayLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 16 16\">") + lines +
                         QByteArrayLiteral("</svg>");
    picture.replace('@', colour.name().toLatin1());
    QBuffer buffer(&picture);
    QImageReader reader(&buffer, "svg");
    reader.setScaledSize(size);
    return reader.read();
}

/// Draws at the moment of painting: the scheme and the zoom may have changed since the icon was given out.
class Drawing : public QIconEngine {
public:
    explicit Drawing(const char* lines) : lines_(lines) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QSize dots = rect.size() * painter->device()->devicePixelRatioF();
        painter->drawImage(rect, drawn(lines_, ofWords(mode), dots));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return QPixmap::fromImage(drawn(lines_, ofWords(mode), size));
    }
    QIconEngine* clone() const override { return new Drawing(lines_); }

private:
    static QColor ofWords(QIcon::Mode mode) {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        return QGuiApplication::palette().color(group, QPalette::ButtonText);
    }

    const char* lines_;
};

QIcon icon(const char* lines) { return QIcon(new Drawing(lines)); }

} // namespace

QIcon list() { return icon(List); }
QIcon print() { return icon(Print); }
QIcon history() { return icon(History); }
QIcon scan() { return icon(Scan); }
QIcon program() { return icon(Program); }

QIcon ofButton(const QString& name) {
    static const QHash<QString, QIcon (*)()> drawings{{QStringLiteral("cmdimp"), print},
                                                      {QStringLiteral("cmdvisu"), print},
                                                      {QStringLiteral("cmdetiq"), print},
                                                      {QStringLiteral("cmdhisto"), history},
                                                      {QStringLiteral("cmdlecture"), scan}};
    const auto drawing = drawings.value(name.toLower());
    return drawing ? drawing() : QIcon();
}

} // namespace molven::icons
