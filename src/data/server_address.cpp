#include "data/server_address.h"

#include <QRegularExpression>

#include <algorithm>

namespace molven::server_address {

bool isOne(const QString& place) {
    static const QRegularExpression address(QStringLiteral("^(postgres(ql)?://|service=)"));
    return address.match(place).hasMatch();
}

QString folder(const QString& address) {
    if (!address.contains(u'#')) return address + u'#';
    return address.endsWith(u'#') || address.endsWith(u'/') ? address : address + u'/';
}

QString folderOf(const QString& path) {
    return path.left(std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'#')) + 1);
}

QString connection(const QString& place) { return place.section(u'#', 0, 0); }

QString schema(const QString& path) {
    static const QRegularExpression others(QStringLiteral("[^a-z0-9]+"));
    QString name = path.section(u'#', 1).toLower();
    if (name.endsWith(u".mdb")) name.chop(4);
    return name.replace(others, QStringLiteral("_"));
}

} // namespace molven::server_address
