#include "app/screens/organise_sheet.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>

#include "app/screens/organise_row.h"
#include "app/screens/section_title.h"
#include "app/theme/accessible.h"
#include "app/theme/button.h"
#include "app/theme/tab_order.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

constexpr int contentWidth = 520;
constexpr int smallestListHeight = 96;

/// As high as its rows where there is room for them.
class RowsArea : public QScrollArea {
public:
    RowsArea()
    {
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setFocusPolicy(Qt::NoFocus);
        setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
        setMinimumHeight(0);
        viewport()->setAutoFillBackground(false);
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        const int height = widget()->layout()->totalHeightForWidth(contentWidth);
        return {contentWidth, std::max(height, widget()->sizeHint().height())};
    }
    [[nodiscard]] QSize minimumSizeHint() const override
    {
        return {contentWidth, std::min(smallestListHeight, sizeHint().height())};
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const bool isHandled = QScrollArea::eventFilter(watched, event);
        if (watched == widget() && event->type() == QEvent::LayoutRequest) {
            updateGeometry();
        }
        if (watched == widget()
            && (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize)) {
            keepFocusInView();
        }
        return isHandled;
    }

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QScrollArea::resizeEvent(event);
        keepFocusInView();
    }

private:
    /// A row that grows, for its editor or for a word in it, may grow out of view.
    void keepFocusInView()
    {
        QWidget* const focus = window()->focusWidget();
        if (focus == nullptr || !widget()->isAncestorOf(focus)) {
            return;
        }
        QWidget* row = focus;
        while (row->parentWidget() != widget()) {
            row = row->parentWidget();
        }
        ensureWidgetVisible(row, 0, 0);
        ensureWidgetVisible(focus, 0, Measure::small);
    }
};

std::size_t fileCount(const OrganisePlan& plan)
{
    std::size_t count = 0;
    for (const OrganisePlan::CategoryMove& move : plan.moves) {
        count += move.files.size();
    }
    return count;
}

QString summaryOf(const OrganisePlan& plan)
{
    return QStringLiteral(
               "The Gruk will gather %1 loose files into %2 folders. Nothing is deleted, "
               "nothing leaves this realm, and one click puts everything back.")
        .arg(groupedNumber(static_cast<qint64>(fileCount(plan))),
             groupedNumber(static_cast<qint64>(plan.moves.size())));
}

}  // namespace

OrganiseSheet::OrganiseSheet(AppModel& model, Theme& theme, OrganisePlan plan, FileURL realm,
                             QWidget* window)
    : Sheet(theme, QStringLiteral("Organise this realm"), window), model_(model),
      plan_(std::move(plan)), realm_(std::move(realm)), summary_(new Label(theme, TextStyle::body))
{
    addContent();
    connect(&model_, &AppModel::reviewOnlyModeChanged, this, &OrganiseSheet::showMode);
    showMode();
    showPlan();
}

void OrganiseSheet::addContent()
{
    summary_->setWordWrap(true);
    auto* list = new QWidget;
    setAccessibleRole(*list, QAccessible::List);
    list->setAccessibleName(QStringLiteral("Folders"));
    rows_ = new QVBoxLayout(list);
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setSpacing(0);
    auto* area = new RowsArea;
    area->setWidget(list);
    list->setAutoFillBackground(false);
    column()->addWidget(sectionTitle(theme(), QStringLiteral("Organise this realm")));
    column()->addWidget(summary_);
    column()->addWidget(area, 1);
    column()->addLayout(makeFooter());
}

QLayout* OrganiseSheet::makeFooter()
{
    notNow_ = new Button(theme(), Button::Kind::secondary, QStringLiteral("Not now"));
    organise_ = new Button(theme(), Button::Kind::primary, QStringLiteral("Organise"));
    auto* footer = new QHBoxLayout;
    footer->setSpacing(Measure::small);
    footer->addStretch();
    footer->addWidget(notNow_);
    footer->addWidget(organise_);
    setInitialFocus(notNow_);
    connect(notNow_, &QPushButton::clicked, this, &Overlay::reject);
    connect(organise_, &QPushButton::clicked, this, [this] {
        model_.organise(plan_);
        accept();
    });
    return footer;
}

void OrganiseSheet::showPlan()
{
    summary_->setText(summaryOf(plan_));
    removeRows(*rows_);
    shown_.clear();
    for (const OrganisePlan::CategoryMove& move : plan_.moves) {
        auto* row = new OrganiseRow(theme(), move);
        row->setNote(noteOf(move));
        rows_->addWidget(row);
        // At once, so that one of them can have the focus.
        row->show();
        shown_.push_back(row);
        const FileKind kind = move.kind;
        connect(row, &OrganiseRow::editRequested, this, [this, kind] { edit(kind); });
        connect(row, &OrganiseRow::cancelRequested, this, [this] { edit(std::nullopt); });
        connect(row, &OrganiseRow::saveRequested, this,
                [this, kind](const QString& name) { save(kind, name); });
    }
    chainTabStops(tabStops());
}

std::vector<QWidget*> OrganiseSheet::tabStops() const
{
    std::vector<QWidget*> stops;
    for (const OrganiseRow* row : shown_) {
        std::ranges::copy(row->tabStops(), std::back_inserter(stops));
    }
    stops.push_back(notNow_);
    stops.push_back(organise_);
    return stops;
}

QString OrganiseSheet::noteOf(const OrganisePlan::CategoryMove& move) const
{
    const auto remembered = justRememberedKinds_.find(move.kind);
    if (remembered == justRememberedKinds_.end()) {
        return {};
    }
    const QString note = QStringLiteral("Remembered for this realm.");
    return remembered->second == move.destinationFolderName
               ? note
               : note + QStringLiteral(" A filing rule names the folder until you remove it.");
}

void OrganiseSheet::edit(std::optional<FileKind> kind)
{
    const std::optional<FileKind> former = std::exchange(editingKind_, kind);
    for (OrganiseRow* each : shown_) {
        each->setEditing(each->kind() == editingKind_);
    }
    OrganiseRow* const left = former && !editingKind_ ? row(*former) : nullptr;
    if (left != nullptr) {
        left->pencil()->setFocus(Qt::OtherFocusReason);
    }
}

void OrganiseSheet::save(FileKind kind, const QString& folderName)
{
    const std::string name = folderName.toStdString();
    model_.saveOrganiseOverride(name, kind, realm_);
    std::optional<OrganisePlan> plan = newPlan();
    if (!plan) {
        // What is shown would not be what is done.
        reject();
        return;
    }
    plan_ = *std::move(plan);
    justRememberedKinds_[kind] = name;
    edit(std::nullopt);
    showPlan();
    OrganiseRow* const saved = row(kind);
    (saved != nullptr ? saved->pencil() : organise_)->setFocus(Qt::OtherFocusReason);
}

std::optional<OrganisePlan> OrganiseSheet::newPlan() const
{
    const auto isOfThisRealm = [this](const std::optional<OrganisePlan>& plan) {
        return plan && plan->realm.path() == realm_.standardized().path();
    };
    std::optional<OrganisePlan> plan = model_.organisePlanForActiveRealm();
    if (!isOfThisRealm(plan)) {
        plan = model_.organisePlanForDesktop();
    }
    return isOfThisRealm(plan) ? plan : std::nullopt;
}

OrganiseRow* OrganiseSheet::row(FileKind kind) const
{
    const auto found = std::ranges::find(shown_, kind, &OrganiseRow::kind);
    return found == shown_.end() ? nullptr : *found;
}

void OrganiseSheet::showMode()
{
    organise_->setEnabled(!model_.reviewOnlyMode());
}

}  // namespace gruk
