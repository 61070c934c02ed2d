#include "app/screens/findings_list.h"

#include <algorithm>
#include <utility>

#include <QResizeEvent>
#include <QVariantAnimation>

namespace gruk {

namespace {

/// How many rows are kept ready above and below the view, so that the focus can move on to them.
constexpr int spareRows = 3;
constexpr int disclosureDuration = 160;

}  // namespace

FindingsList::FindingsList(Theme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme),
      findings_(std::make_shared<const std::vector<ReviewFinding>>()),
      geometry_(FindingRow::closedHeight(theme))
{
    setAccessibleName(QStringLiteral("Findings"));
}

FindingsList::Findings FindingsList::setFindings(Findings findings)
{
    stopMoving();
    dropRows();
    std::swap(findings_, findings);
    geometry_.reset(std::min(findings_->size(), mostRows));
    measureOpenRows();
    setFixedHeight(geometry_.totalHeight());
    showWithin(viewTop_, viewBottom_);
    return findings;
}

FindingsList::Findings FindingsList::takeFindings()
{
    stopMoving();
    dropRows();
    geometry_.reset(0);
    return std::exchange(findings_, std::make_shared<const std::vector<ReviewFinding>>());
}

void FindingsList::setSelection(const FindingsSelection* selection)
{
    selection_ = selection;
    showSelection();
}

void FindingsList::showSelection()
{
    for (const auto& [index, row] : rows_) {
        row->setSelected(selection_ != nullptr && selection_->ids.contains((*findings_)[index].id));
    }
}

void FindingsList::setReviewOnly(bool reviewOnly)
{
    reviewOnly_ = reviewOnly;
    for (const auto& [index, row] : rows_) {
        row->setReviewOnly(reviewOnly);
    }
}

void FindingsList::dropRows()
{
    for (const auto& [index, row] : rows_) {
        row->hide();
        row->deleteLater();
    }
    rows_.clear();
}

void FindingsList::showWithin(int top, int bottom)
{
    viewTop_ = top;
    viewBottom_ = bottom;
    const int spare = spareRows * FindingRow::closedHeight(theme_);
    std::size_t first = 0;
    std::size_t end = 0;
    if (geometry_.count() > 0 && bottom > 0 && top < geometry_.totalHeight()) {
        first = geometry_.rowAt(top - spare);
        end = geometry_.rowAt(bottom + spare) + 1;
    }
    bool isOther = false;
    for (auto at = rows_.begin(); at != rows_.end();) {
        const auto [index, row] = *at;
        // A row that holds the focus stays, or the keyboard would be lost.
        if ((index < first || index >= end) && !row->isAncestorOf(window()->focusWidget())) {
            row->hide();
            row->deleteLater();
            at = rows_.erase(at);
            isOther = true;
        } else {
            ++at;
        }
    }
    for (std::size_t index = first; index < end; ++index) {
        if (!rows_.contains(index)) {
            rows_[index] = makeRow(index);
            isOther = true;
        }
    }
    if (isOther) {
        placeRows();
        Q_EMIT shownChanged();
    }
}

FindingRow* FindingsList::makeRow(std::size_t index)
{
    const ReviewFinding& finding = (*findings_)[index];
    auto* row = new FindingRow(theme_, finding, open_.contains(finding.id), this);
    connect(row, &FindingRow::openChanged, this,
            [this, index](bool isOpen) { setOpen(index, isOpen); });
    connect(row, &FindingRow::selectionToggled, this,
            [this, index](Qt::KeyboardModifiers modifiers) {
                Q_EMIT selectionToggled(index, modifiers);
            });
    connect(row, &FindingRow::revealRequested, this,
            [this, index] { Q_EMIT revealRequested(index); });
    connect(row, &FindingRow::trashRequested, this,
            [this, index] { Q_EMIT trashRequested(index); });
    row->setReviewOnly(reviewOnly_);
    row->setSelected(selection_ != nullptr && selection_->ids.contains(finding.id));
    row->show();
    return row;
}

void FindingsList::setOpen(std::size_t index, bool isOpen)
{
    const ReviewFinding& finding = (*findings_)[index];
    if (isOpen) {
        open_.insert(finding.id);
    } else {
        open_.erase(finding.id);
    }
    const int extra = isOpen ? FindingRow::openExtra(theme_, finding, width()) : 0;
    if (const auto before = moving_.extract(index)) {
        delete before.mapped();
    }
    const int duration = theme_.duration(disclosureDuration);
    if (duration == 0) {
        return setExtra(index, extra);
    }
    auto* move = new QVariantAnimation(this);
    move->setStartValue(geometry_.extra(index));
    move->setEndValue(extra);
    move->setDuration(duration);
    move->setEasingCurve(QEasingCurve::InOutQuad);
    connect(move, &QVariantAnimation::valueChanged, this,
            [this, index](const QVariant& value) { setExtra(index, value.toInt()); });
    connect(move, &QVariantAnimation::finished, this, [this, index] { moving_.erase(index); });
    moving_[index] = move;
    move->start(QAbstractAnimation::DeleteWhenStopped);
}

void FindingsList::setExtra(std::size_t index, int extra)
{
    geometry_.setExtra(index, extra);
    setFixedHeight(geometry_.totalHeight());
    placeRows();
    showWithin(viewTop_, viewBottom_);
}

void FindingsList::stopMoving()
{
    for (const auto& [index, move] : moving_) {
        delete move;
    }
    moving_.clear();
}

void FindingsList::measureOpenRows()
{
    if (open_.empty()) {
        return;
    }
    stopMoving();
    for (std::size_t index = 0; index < geometry_.count(); ++index) {
        const ReviewFinding& finding = (*findings_)[index];
        if (open_.contains(finding.id)) {
            geometry_.setExtra(index, FindingRow::openExtra(theme_, finding, width()));
        }
    }
}

void FindingsList::placeRows()
{
    QWidget* before = this;
    for (const auto& [index, row] : rows_) {
        row->setGeometry(0, geometry_.top(index), width(), geometry_.height(index));
        // Rows are made in any order; the focus goes down the list.
        for (QWidget* control : row->controls()) {
            QWidget::setTabOrder(before, control);
            before = control;
        }
    }
}

std::vector<FileURL> FindingsList::shownURLs() const
{
    std::vector<FileURL> urls;
    for (const auto& [index, row] : rows_) {
        urls.push_back((*findings_)[index].url);
    }
    return urls;
}

void FindingsList::showGone(const std::vector<FileURL>& urls)
{
    for (const auto& [index, row] : rows_) {
        if (std::find(urls.begin(), urls.end(), (*findings_)[index].url) != urls.end()) {
            row->showGone();
        }
    }
}

void FindingsList::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    // A panel that grows makes the list taller; only another width makes it another panel.
    if (event->oldSize().width() != event->size().width()) {
        measureOpenRows();
        if (geometry_.totalHeight() != height()) {
            setFixedHeight(geometry_.totalHeight());
        }
    }
    placeRows();
}

}  // namespace gruk
