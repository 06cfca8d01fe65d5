#include "data/jet_file.h"

#include "data/errors.h"

#include <QDir>
#include <QFile>
#include <QList>

#include <cstdio>
#include <vector>

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

extern "C" {
#include <mdbtools.h>
}

namespace molven {

namespace {

constexpr std::size_t LongestValue = 256 * 1024; ///< bytes of a memo
const char DateFormat[] = "%d/%m/%Y";

JetFile::Kind kindOf(int type) {
    switch (type) {
    case MDB_TEXT:
    case MDB_MEMO:
        return JetFile::Kind::Text;
    case MDB_BYTE:
    case MDB_INT:
    case MDB_LONGINT:
    case MDB_MONEY:
    case MDB_FLOAT:
    case MDB_DOUBLE:
    case MDB_NUMERIC:
        return JetFile::Kind::Number;
    case MDB_BOOL:
        return JetFile::Kind::YesNo;
    case MDB_DATETIME:
        return JetFile::Kind::Date;
    default:
        return JetFile::Kind::Other;
    }
}

/// A floating number as it was meant: its last bits are noise.
QString numberText(const QString& text, int type) {
    if (type != MDB_FLOAT && type != MDB_DOUBLE) return text;
    constexpr int FloatDigits = 6, DoubleDigits = 12;
    return QString::number(text.toDouble(), 'f', type == MDB_FLOAT ? FloatDigits : DoubleDigits);
}

QString valueOf(const MdbColumn& column, const char* bytes, int length) {
    if (column.col_type == MDB_BOOL) return bytes[0] == '1' ? QStringLiteral("O") : QStringLiteral("N");
    if (length <= 0) return {};
    const QString text = QString::fromUtf8(bytes);
    return kindOf(column.col_type) == JetFile::Kind::Number ? numberText(text, column.col_type) : text;
}

using Definition = std::unique_ptr<MdbTableDef, decltype(&mdb_free_tabledef)>;

/// The library tells what it cannot read on the standard error, in English; what the program says of it is said apart.
class Silence {
public:
    Silence() : kept_(dup(STDERR_FILENO)) {
        std::fflush(stderr);
        const int nowhere = open("/dev/null", O_WRONLY);
        if (kept_ >= 0 && nowhere >= 0) dup2(nowhere, STDERR_FILENO);
        if (nowhere >= 0) close(nowhere);
    }
    ~Silence() {
        std::fflush(stderr);
        if (kept_ < 0) return;
        dup2(kept_, STDERR_FILENO);
        close(kept_);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    const int kept_;
};

} // namespace

struct JetFile::Handle {
    MdbHandle* mdb = nullptr;
    QString path;
    ~Handle() {
        if (mdb) mdb_close(mdb);
    }

    Definition table(const QString& name) const {
        const Silence silence;
        Definition found(mdb_read_table_by_name(mdb, name.toUtf8().data(), MDB_TABLE), mdb_free_tabledef);
        if (!found || !mdb_read_columns(found.get()))
            throw DataError(DataError::NotADatabase,
                            QStringLiteral("La table %1 de '%2' est illisible.").arg(name, path));
        return found;
    }
};

JetFile::JetFile(const QString& path) : handle_(std::make_unique<Handle>()) {
    handle_->path = QDir::toNativeSeparators(path);
    const Silence silence;
    handle_->mdb = mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS);
    if (!handle_->mdb || !mdb_read_catalog(handle_->mdb, MDB_TABLE))
        throw DataError(DataError::NotADatabase,
                        QStringLiteral("Le fichier '%1' n'est pas une base Jet lisible.").arg(handle_->path));
    mdb_set_bind_size(handle_->mdb, LongestValue);
    mdb_set_date_fmt(handle_->mdb, DateFormat);
    mdb_set_shortdate_fmt(handle_->mdb, DateFormat);
    for (guint i = 0; i < handle_->mdb->catalog->len; ++i) {
        auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(handle_->mdb->catalog, i));
        if (entry->object_type == MDB_TABLE && mdb_is_user_table(entry))
            tables_.append(QString::fromUtf8(entry->object_name));
    }
}

JetFile::~JetFile() = default;

QList<JetFile::Column> JetFile::columns(const QString& table) const {
    const Definition definition = handle_->table(table);
    QList<Column> found;
    for (guint i = 0; i < definition->columns->len; ++i) {
        const auto* column = static_cast<MdbColumn*>(g_ptr_array_index(definition->columns, i));
        found.append({QString::fromUtf8(column->name), kindOf(column->col_type)});
    }
    return found;
}

qint64 JetFile::announced(const QString& table) const { return handle_->table(table)->num_rows; }

qint64 JetFile::read(const QString& table, const std::function<void(const QStringList&)>& row) const {
    const Definition definition = handle_->table(table);
    const auto count = static_cast<std::size_t>(definition->columns->len);
    std::vector<std::vector<char>> bytes(count, std::vector<char>(LongestValue));
    std::vector<int> lengths(count);
    std::vector<const MdbColumn*> columns;
    for (std::size_t i = 0; i < count; ++i) {
        columns.push_back(static_cast<MdbColumn*>(g_ptr_array_index(definition->columns, i)));
        mdb_bind_column(definition.get(), static_cast<int>(i) + 1, bytes[i].data(), &lengths[i]);
    }
    mdb_rewind_table(definition.get());
    qint64 read = 0;
    const auto fetches = [&definition] {
        const Silence silence;
        return mdb_fetch_row(definition.get()) != 0;
    };
    while (fetches()) {
        QStringList values;
        for (std::size_t i = 0; i < count; ++i) values.append(valueOf(*columns[i], bytes[i].data(), lengths[i]));
        row(values);
        ++read;
    }
    return read;
}

} // namespace molven
