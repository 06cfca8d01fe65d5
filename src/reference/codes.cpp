#include "reference/codes.h"

#include "data/errors.h"
#include "data/format.h"

#include <algorithm>

namespace molven::codes {

const CodeKind* kindOf(const Field& field, const Record& record) {
    return kindOf(field, [&record](const Text& other) { return record.value(other); });
}

const CodeKind* kindOf(const Field& field, const std::function<QString(const Text&)>& valueOf) {
    const CodeKind* kind = field.code;
    if (!kind || kind->table || !kind->letters.isEmpty()) return kind;
    const auto holds = [&valueOf](const CodeKind::Case& one) {
        return valueOf(one.field).compare(one.value, Qt::CaseInsensitive) == 0;
    };
    const auto found = std::find_if(kind->cases.begin(), kind->cases.end(), holds);
    return found == kind->cases.end() ? kind->otherwise : &found->kind;
}

Criterion ofKind(const CodeKind& kind) { return kind.list ? *kind.list == kind.letter : Criterion(); }

QStringList formsOf(const CodeKind& kind, const QString& typed) {
    QStringList forms{typed};
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if (!std::all_of(typed.begin(), typed.end(), isDigit)) return forms;
    const auto shortest = static_cast<int>(typed.size()) + 1;
    for (int width = std::max(shortest, kind.digits); width <= kind.key->size; ++width)
        forms.append(padded(typed, width));
    if (kind.digits == 0) return forms;
    QString bare = typed;
    while (bare.startsWith(u'0')) bare.remove(0, 1);
    if (!bare.isEmpty() && bare != typed) forms.append(bare);
    return forms;
}

namespace {

bool isBeside(const CodeKind& kind, const QString& code) { return kind.besides.contains(code, Qt::CaseInsensitive); }

} // namespace

std::optional<Record> find(Database file, const CodeKind& kind, const QString& typed) {
    const QString code = typed.trimmed();
    if (code.isEmpty() || !kind.table) return std::nullopt;
    for (const QString& form : formsOf(kind, code))
        if (const auto record = file.find(*kind.table, ofKind(kind) && *kind.key == form)) return record;
    return std::nullopt;
}

QString completed(Database file, const CodeKind& kind, const QString& typed) {
    const QString code = typed.trimmed();
    if (!kind.letters.isEmpty()) return code.toUpper();
    if (code.isEmpty() || isBeside(kind, code)) return code.toUpper();
    const auto record = find(file, kind, code);
    return padded(record ? record->value(*kind.key) : code, kind.digits);
}

bool isKnown(Database file, const CodeKind& kind, const QString& typed) {
    const QString code = typed.trimmed();
    if (code.isEmpty() || isBeside(kind, code)) return true;
    if (!kind.letters.isEmpty()) return code.size() == 1 && kind.letters.contains(code, Qt::CaseInsensitive);
    return find(file, kind, code).has_value();
}

QString words(Database file, const Field& field, const CodeKind& kind, const QString& typed) {
    if (!kind.table || typed.trimmed().isEmpty()) return {};
    if (const auto record = find(file, kind, typed)) return kind.words ? record->value(*kind.words) : QString();
    if (isBeside(kind, typed.trimmed())) return {};
    return kind.hint.isEmpty() ? field.unknown : kind.hint;
}

QList<Offer> offers(Database file, const CodeKind& kind, const QString& typed, int most) {
    QList<Offer> found;
    const QString text = typed.trimmed();
    if (text.isEmpty() || !kind.table) return found;
    const Criterion byCode = startsWith(*kind.key, text) || isOneOf(*kind.key, formsOf(kind, text));
    const auto add = [&](const Criterion& criterion, const Field& order) {
        const Recordset records = file.select(*kind.table, ofKind(kind) && criterion, order);
        for (qint64 i = 0; i < records.count() && found.size() < most; ++i) {
            const Record& record = records.at(i);
            found.append({record.value(*kind.key), kind.words ? record.value(*kind.words) : QString()});
        }
    };
    add(byCode, *kind.key);
    if (kind.words && found.size() < most) add(contains(*kind.words, text) && !byCode, *kind.words);
    return found;
}

void require(Database file, const Field& field, const CodeKind& kind, const QString& code) {
    if (!field.unknown.isEmpty() && !kind.acceptsUnknown && !isKnown(file, kind, code))
        throw Refusal(field.unknown, field.name);
}

void check(const QHash<DataFile, Database>& files, Record& record, const Record* before) {
    for (const Field* field : record.table().fields()) {
        const CodeKind* kind = kindOf(*field, record);
        if (!kind) continue;
        const auto file = files.constFind(kind->file);
        if (file == files.constEnd()) continue;
        const QString stands = record.value(*field);
        if (before && before->value(*field) == stands) continue;
        record.set(*field, completed(*file, *kind, stands));
        require(*file, *field, *kind, stands);
    }
}

} // namespace molven::codes
