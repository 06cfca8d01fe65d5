#include "data/schema.h"

namespace molven {

Field::Field(Table* table, const char* name, Kind kind, int size, int scale, const CodeKind* code, const char* unknown)
    : name(QString::fromLatin1(name)),
      kind(kind),
      size(size),
      scale(scale),
      position(static_cast<int>(table->fields_.size())),
      code(code),
      unknown(QString::fromUtf8(unknown)) {
    if (!table->fields_.isEmpty()) table->columns_ += u',';
    table->columns_ += this->name;
    table->fields_.append(this);
}

KeptFields::KeptFields(Table* table, std::initializer_list<std::reference_wrapper<const Field>> fields) {
    for (const Field& field : fields) table->kept_.append(&field);
}

Trail::Trail(Table* table, std::initializer_list<std::reference_wrapper<const Field>> fields) {
    for (const Field& field : fields) key.append(&field);
    table->trail_ = this;
}

Index::Index(Table* table, std::initializer_list<std::reference_wrapper<const Field>> indexed, Uniqueness uniqueness)
    : uniqueness(uniqueness) {
    for (const Field& field : indexed) fields.append(&field);
    table->indexes_.append(this);
}

const Field* Table::field(const QString& fieldName) const {
    for (const Field* field : fields_)
        if (field->name.compare(fieldName, Qt::CaseInsensitive) == 0) return field;
    return nullptr;
}

} // namespace molven
