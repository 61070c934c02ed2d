#pragma once

#include <QVBoxLayout>

namespace gruk {

/// A column in `widget`, with nothing around it and `gap` between what stands in it.
[[nodiscard]] inline QVBoxLayout* columnIn(QWidget* widget, int gap)
{
    auto* column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    return column;
}

}  // namespace gruk
