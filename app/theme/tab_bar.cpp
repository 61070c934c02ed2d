#include "app/theme/tab_bar.h"

#include <algorithm>

#include <QPainter>

#include "app/theme/card_painter.h"

namespace gruk {

namespace {

constexpr int narrowestTab = 104;
constexpr int tabHeight = 52;

}  // namespace

TabBar::TabBar(Theme& theme, const QString& accessibleName, QWidget* parent)
    : QTabBar(parent), theme_(theme)
{
    setAccessibleName(accessibleName);
    setFont(theme_.font(TextStyle::bodyStrong));
    setFocusPolicy(Qt::StrongFocus);
    setDrawBase(false);
    setExpanding(false);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void TabBar::add(Icon icon, const QString& text)
{
    icons_.push_back(icon);
    addTab(text);
}

QSize TabBar::tabSizeHint(int index) const
{
    const int text = fontMetrics().horizontalAdvance(tabText(index)) + 2 * Measure::medium;
    return {std::max(narrowestTab, text), tabHeight};
}

void TabBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int index = 0; index < count(); ++index) {
        const bool isChosen = index == currentIndex();
        const QRect tab = tabRect(index);
        const double half = Measure::outline / 2;
        const QRectF body = QRectF(tab).adjusted(half, half, -half, -half);
        if (isChosen) {
            painter.fillPath(cutPath(body, buttonCorners), theme_.colour(Role::paperCard));
            painter.strokePath(cutPath(body, buttonCorners),
                               QPen(theme_.colour(Role::ink, Strength::outline), Measure::outline));
        } else if (underMouse() && tab.contains(mapFromGlobal(QCursor::pos()))) {
            painter.fillPath(cutPath(body, buttonCorners),
                             theme_.colour(Role::ink, Strength::shadow));
        }
        const QColor colour = theme_.colour(Role::ink, isChosen ? Strength::full : Strength::quiet);
        const int size = Measure::iconSize;
        drawIcon(painter, QPointF(tab.center().x() + 1 - size / 2.0, tab.top() + Measure::hair),
                 icons_[static_cast<std::size_t>(index)], colour, size);
        painter.setPen(colour);
        painter.drawText(tab.adjusted(0, Measure::hair + size, 0, -Measure::hair),
                         Qt::AlignCenter | Qt::TextSingleLine, tabText(index));
    }
}

}  // namespace gruk
