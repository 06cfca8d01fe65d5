#pragma once

#include <QStringList>
#include <QWidget>

class QLabel;

namespace molven {

class Grid;

/// The serials scanned for a receipt of several units, one each: a list with its count; Delete takes the current one
/// out.
class SerialList : public QWidget {
public:
    explicit SerialList(QWidget* parent);

    /// Adds one at the end. Throws Refusal on `field` when it is listed already, or as many are as there are units.
    void add(const QString& serial, const QString& field);
    void clear();
    /// How many units there are; shown beside the count.
    void expect(int units);
    const QStringList& serials() const { return serials_; }
    bool isFull() const { return serials_.size() >= units_; }

private:
    void removeCurrent();
    void showRows();

    QLabel* count_;
    Grid* grid_;
    QStringList serials_;
    int units_ = 1;
};

} // namespace molven
