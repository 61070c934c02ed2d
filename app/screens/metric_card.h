#pragma once

#include "app/theme/card.h"
#include "app/theme/label.h"
#include "app/theme/work_mark.h"

class QStackedLayout;

namespace gruk {

/// One of a page's figures: what it is, the figure, what it counts.
class MetricCard : public Card {
    Q_OBJECT

public:
    MetricCard(Theme& theme, const QString& eyebrow, Role colour, QWidget* parent = nullptr);

    void setFigure(const QString& value, const QString& detail);
    /// What the figure says, by its colour.
    void setColour(Role colour);
    /// Shows the turning mark and "Loading" in the figure's place; nothing else moves.
    void setLoading(bool isLoading);

    [[nodiscard]] QString valueText() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Role colour_;
    QString eyebrowText_;
    Label* value_;
    Label* detail_;
    QStackedLayout* places_;
};

}  // namespace gruk
