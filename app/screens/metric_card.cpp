#include "app/screens/metric_card.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "app/theme/accessible.h"
#include "app/theme/card_painter.h"

namespace gruk {

namespace {

constexpr double barWidth = 28;
constexpr double metricBarHeight = 3;

}  // namespace

MetricCard::MetricCard(Theme& theme, const QString& eyebrow, Role colour, QWidget* parent)
    : Card(theme, Measure::cardPadding, parent), colour_(colour), eyebrowText_(eyebrow),
      value_(new Label(theme, TextStyle::value)), detail_(new Label(theme, TextStyle::detail)),
      places_(new QStackedLayout)
{
    setAccessibleRole(*this, QAccessible::Grouping);
    auto* head = new Label(theme, TextStyle::eyebrow);
    head->setText(eyebrow);
    head->setColour(Role::ink, Strength::quiet);
    detail_->setColour(Role::ink, Strength::quiet);

    auto* loading = new QWidget;
    auto* loadingRow = new QHBoxLayout(loading);
    loadingRow->setContentsMargins(0, 0, 0, 0);
    loadingRow->setSpacing(Measure::small);
    auto* word = new Label(theme, TextStyle::body);
    word->setText(QStringLiteral("Loading"));
    loadingRow->addWidget(new WorkMark(theme));
    loadingRow->addWidget(word, 1);
    places_->addWidget(value_);
    places_->addWidget(loading);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, Measure::small, 0, 0);
    column->setSpacing(Measure::hair);
    column->addWidget(head);
    column->addLayout(places_);
    column->addWidget(detail_);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void MetricCard::setFigure(const QString& value, const QString& detail)
{
    value_->setText(value);
    detail_->setText(detail);
    setAccessibleName(QStringLiteral("%1: %2, %3").arg(eyebrowText_, value, detail));
}

void MetricCard::setColour(Role colour)
{
    colour_ = colour;
    update();
}

void MetricCard::setLoading(bool isLoading)
{
    places_->setCurrentIndex(isLoading ? 1 : 0);
    if (isLoading) {
        setAccessibleName(QStringLiteral("%1: Loading").arg(eyebrowText_));
    }
}

QString MetricCard::valueText() const
{
    return places_->currentIndex() == 0 ? value_->text() : QStringLiteral("Loading");
}

void MetricCard::paintEvent(QPaintEvent* event)
{
    Card::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bar(contentsRect().left(), contentsRect().top() - metricBarHeight, barWidth,
                     metricBarHeight);
    painter.fillPath(
        cutPath(bar, {metricBarHeight, metricBarHeight, metricBarHeight, metricBarHeight}),
        theme().colour(colour_));
}

}  // namespace gruk
