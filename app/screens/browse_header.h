#pragma once

#include <optional>
#include <vector>

#include <QAbstractButton>
#include <QHeaderView>

#include "app/screens/browse_sort.h"
#include "app/theme/theme.h"

namespace gruk {

/// The head of the table: quiet words over a line, and an arrow at the column that it is sorted by.
/// Over each sortable column lies a button for the pointer and the keyboard, which asks for its
/// order.
class BrowseHeader : public QHeaderView {
    Q_OBJECT

public:
    explicit BrowseHeader(Theme& theme, QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* newModel) override;
    void setSort(const std::optional<TableSort>& sort);

    /// In the order of the columns; none before there is a model.
    [[nodiscard]] const std::vector<QAbstractButton*>& buttons() const { return buttons_; }

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    void sortPressed(gruk::ScanNodeModel::Column column);

protected:
    void paintEvent(QPaintEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;
    void updateGeometries() override;

private:
    void addButton(ScanNodeModel::Column column);
    void placeButtons();

    Theme& theme_;
    std::optional<TableSort> sort_;
    std::vector<QAbstractButton*> buttons_;
};

}  // namespace gruk
