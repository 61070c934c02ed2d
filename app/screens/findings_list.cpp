#include "app/screens/findings_list.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <QResizeEvent>
#include <QVariantAnimation>

#include "app/theme/accessible.h"
#include "app/theme/text.h"
#include "platform/foundation/require.h"

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
    setAccessibleRole(*this, QAccessible::List);
    setAccessibleName(QStringLiteral("Findings"));
}

FindingsList::Findings FindingsList::setFindings(Findings findings)
{
    const std::optional<FocusPlace> focus = focusPlace();
    stopMoving();
    Rows former = std::exchange(rows_, {});
    std::swap(findings_, findings);
    geometry_.reset(std::min(findings_->size(), mostRows));
    reuseRows(former, *findings);
    measureOpenRows();
    // Only the rows near the view are there to be counted.
    setAccessibleName(QStringLiteral("Findings, %1 in all")
                          .arg(groupedNumber(static_cast<qint64>(findings_->size()))));
    setFixedHeight(geometry_.totalHeight());
    if (focus && geometry_.count() > 0) {
        restoreFocus(*focus);
    }
    for (const auto& [index, row] : former) {
        dropRow(*row);
    }
    placeRows();
    makeRowsWithin(viewTop_, viewBottom_);
    Q_EMIT shownChanged();
    return findings;
}

std::optional<FindingsList::FocusPlace> FindingsList::focusPlace() const
{
    const QWidget* focused = window()->focusWidget();
    for (const auto& [index, row] : rows_) {
        const std::vector<QWidget*> controls = row->controls();
        const auto found = std::ranges::find(controls, focused);
        if (found != controls.end()) {
            return FocusPlace{(*findings_)[index].id, index,
                              static_cast<std::size_t>(found - controls.begin())};
        }
    }
    return std::nullopt;
}

void FindingsList::restoreFocus(const FocusPlace& place)
{
    const auto all = shown();
    const auto found = std::ranges::find(all, place.id, &ReviewFinding::id);
    const std::size_t index = found != all.end() ? static_cast<std::size_t>(found - all.begin())
                                                 : std::min(place.index, all.size() - 1);
    if (!rows_.contains(index)) {
        rows_[index] = makeRow(index);
    }
    rows_[index]->focusControl(place.control);
}

void FindingsList::reuseRows(Rows& former, const std::vector<ReviewFinding>& findings)
{
    std::unordered_map<std::string_view, std::size_t> places;
    for (const auto& [index, row] : former) {
        places.emplace(findings[index].id, index);
    }
    for (std::size_t index = 0; index < geometry_.count() && !places.empty(); ++index) {
        const auto place = places.find((*findings_)[index].id);
        if (place == places.end()) {
            continue;
        }
        if (findings[place->second] == (*findings_)[index]) {
            rows_[index] = former.extract(place->second).mapped();
        }
        places.erase(place);
    }
}

std::span<const ReviewFinding> FindingsList::shown() const
{
    return std::span(*findings_).first(geometry_.count());
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

void FindingsList::dropRow(FindingRow& row)
{
    disconnect(&row, nullptr, this, nullptr);
    row.hide();
    row.deleteLater();
}

void FindingsList::dropRows()
{
    for (const auto& [index, row] : std::exchange(rows_, {})) {
        dropRow(*row);
    }
}

void FindingsList::showWithin(int top, int bottom)
{
    viewTop_ = top;
    viewBottom_ = bottom;
    if (makeRowsWithin(top, bottom)) {
        Q_EMIT shownChanged();
    }
}

bool FindingsList::makeRowsWithin(int top, int bottom)
{
    const int spare = spareRows * FindingRow::closedHeight(theme_);
    std::size_t first = 0;
    std::size_t end = 0;
    if (geometry_.count() > 0) {
        // Also where none is in view: the keyboard comes to them from what stands over or under.
        const int total = geometry_.totalHeight();
        first = geometry_.rowAt(std::clamp(top, 0, total) - spare);
        end = geometry_.rowAt(std::clamp(bottom, 0, total) + spare) + 1;
    }
    bool isOther = false;
    for (auto at = rows_.begin(); at != rows_.end();) {
        const auto [index, row] = *at;
        // A row that holds the focus stays, or the keyboard would be lost.
        if ((index < first || index >= end) && !row->isAncestorOf(window()->focusWidget())) {
            dropRow(*row);
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
    }
    return isOther;
}

FindingRow* FindingsList::makeRow(std::size_t index)
{
    const ReviewFinding& finding = (*findings_)[index];
    auto* row = new FindingRow(theme_, finding, open_.contains(finding.id), this);
    connect(row, &FindingRow::openChanged, this,
            [this, row](bool isOpen) { setOpen(indexOf(row), isOpen); });
    connect(row, &FindingRow::selectionToggled, this, [this, row](Qt::KeyboardModifiers modifiers) {
        Q_EMIT selectionToggled(indexOf(row), modifiers);
    });
    connect(row, &FindingRow::revealRequested, this,
            [this, row] { Q_EMIT revealRequested(indexOf(row)); });
    connect(row, &FindingRow::trashRequested, this,
            [this, row] { Q_EMIT trashRequested(indexOf(row)); });
    row->setReviewOnly(reviewOnly_);
    row->setSelected(selection_ != nullptr && selection_->ids.contains(finding.id));
    row->show();
    return row;
}

std::size_t FindingsList::indexOf(const FindingRow* row) const
{
    // Where a row stands changes; a row that is dropped is not heard any more.
    const auto found =
        std::ranges::find_if(rows_, [&](const auto& each) { return each.second == row; });
    GRUK_REQUIRE(found != rows_.end(), "a row without a place");
    return found->first;
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
        geometry_.setExtra(index, move->endValue().toInt());
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
    QWidget* before = controlBefore_;
    for (const auto& [index, row] : rows_) {
        row->setGeometry(0, geometry_.top(index), width(), geometry_.height(index));
        // Rows are made in any order; the focus goes down the list.
        for (QWidget* control : row->controls()) {
            if (before != nullptr) {
                QWidget::setTabOrder(before, control);
            }
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

void FindingsList::showGone(const std::vector<FileURL>& asked, const std::vector<FileURL>& gone)
{
    for (const auto& [index, row] : rows_) {
        const FileURL& url = (*findings_)[index].url;
        if (std::ranges::find(asked, url) != asked.end()) {
            row->setGone(std::ranges::find(gone, url) != gone.end());
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
