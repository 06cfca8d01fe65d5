#include "ui/code_boxes.h"

#include "reference/codes.h"
#include "ui/completion.h"
#include "ui/form.h"
#include "ui/pick_lists.h"
#include "ui/record_panel.h"

namespace molven {

CodeBoxes::CodeBoxes(Form& form, RecordPanel& panel, const QHash<DataFile, Database>& files)
    : form_(form), panel_(panel), files_(files) {}

void CodeBoxes::wire(const std::function<void(const Field&)>& changed) {
    changed_ = changed;
    offer();
    for (const FieldBox& box : panel_.boxes()) {
        const Field& field = *box.field;
        if (!field.code) continue;
        form_.onLeft(panel_.edit(field), [this, &field] { leave(field); });
        form_.onPick(
            panel_.edit(field), [this, &field] { openList(field); }, panel_.listButton(field));
    }
}

void CodeBoxes::list(const Field& field, const std::function<PickList()>& makeList) {
    form_.onPick(panel_.edit(field), [this, makeList] { form_.pick(makeList()); });
}

std::function<void(const Record&)> CodeBoxes::put(const Field& field, const Field& from) {
    return [this, &field, &from](const Record& row) { take(field, row.value(from)); };
}

void CodeBoxes::take(const Field& field, const QString& code) {
    panel_.edit(field)->put(code);
    form_.guarded([this, &field] { leave(field); });
}

void CodeBoxes::offer() {
    for (const FieldBox& box : panel_.boxes()) {
        const Field& field = *box.field;
        if (!field.code) continue;
        new Completion(panel_.edit(field), [this, &field](const QString& typed) {
            QList<Completion::Line> lines;
            form_.guarded([&] {
                const auto coded = boxOf(field);
                if (!coded || coded->kind.key == &field) return;
                for (const codes::Offer& offer : codes::offers(coded->file, coded->kind, typed, Completion::MostLines))
                    lines.append({offer.code, offer.words});
            });
            return lines;
        });
    }
}

std::optional<CodeBoxes::Box> CodeBoxes::boxOf(const Field& field) const {
    const CodeKind* kind = codes::kindOf(field, [this](const Text& other) {
        const Edit* edit = panel_.edit(other);
        return edit ? edit->value().trimmed() : valueOf(other);
    });
    if (!kind) return std::nullopt;
    const auto file = files_.constFind(kind->file);
    if (file == files_.constEnd()) return std::nullopt;
    return Box{*kind, *file};
}

void CodeBoxes::leave(const Field& field) {
    const auto box = boxOf(field);
    Edit* edit = panel_.edit(field);
    if (box && !edit->takesScans) edit->put(codes::completed(box->file, box->kind, edit->value()));
    changed_(field);
    if (box && refusing_.contains(&field)) codes::require(box->file, field, box->kind, edit->value());
}

void CodeBoxes::openList(const Field& field) {
    if (!field.code->letters.isEmpty())
        return form_.pick(
            pick_lists::letters(*field.code, [this, &field](const QString& letter) { take(field, letter); }));
    if (const auto box = boxOf(field)) form_.pick(pick_lists::codes(box->file, box->kind, put(field, *box->kind.key)));
}

void CodeBoxes::showWords() {
    for (const FieldBox& box : panel_.boxes()) {
        const Field& field = *box.field;
        const auto coded = boxOf(field);
        if (coded && coded->kind.key != &field)
            panel_.setHint(field, codes::words(coded->file, field, coded->kind, panel_.edit(field)->value()));
    }
}

} // namespace molven
