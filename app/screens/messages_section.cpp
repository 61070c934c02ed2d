#include "app/screens/messages_section.h"

#include <algorithm>

#include <QVBoxLayout>

#include "app/screens/repaint_once.h"
#include "app/screens/review_only_panel.h"
#include "app/screens/undo_offer.h"
#include "app/screens/unseen_places_section.h"
#include "app/theme/accessible.h"
#include "app/theme/text.h"
#include "core/patrol/patrol_copy.h"

namespace gruk {

namespace {

QString messageText(const std::optional<std::string>& message)
{
    return message ? displayName(*message) : QString();
}

}  // namespace

MessagesSection::MessagesSection(AppModel& model, Theme& theme, Place place, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme), place_(place),
      coverage_(new StatusBanner(theme, Role::yellow, Icon::eyeWarning)),
      error_(new StatusBanner(theme, Role::red, Icon::warning)),
      filing_(new StatusBanner(theme, Role::fernDark, Icon::scroll)),
      action_(new StatusBanner(theme, Role::blue, Icon::check))
{
    coverage_->setObjectName(QStringLiteral("coverageNote"));
    error_->setObjectName(QStringLiteral("errorMessage"));
    filing_->setObjectName(QStringLiteral("ruleFiling"));
    action_->setObjectName(QStringLiteral("lastActionMessage"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::small);
    for (StatusBanner* banner : {coverage_, error_, filing_, action_}) {
        column->addWidget(banner);
        if (place_ == Place::echo) {
            // Whoever listens has heard it.
            setAccessibleRole(*banner, QAccessible::Grouping);
        }
    }
    if (place_ == Place::realmPage) {
        column->insertWidget(1, new UnseenPlacesSection(model_, theme));
    }

    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    repaint->on(model_, &AppModel::latestSnapshotChanged);
    repaint->on(model_, &AppModel::errorMessageChanged);
    repaint->on(model_, &AppModel::lastActionMessageChanged);
    repaint->on(model_, &AppModel::pendingRuleFilingPlanChanged);
    repaint->on(model_, &AppModel::reviewOnlyModeChanged);
    repaint->on(model_, &AppModel::lastTrashOperationChanged);
    repaint->on(model_, &AppModel::lastStashOperationChanged);
    repaint->on(model_, &AppModel::lastOrganiseOperationChanged);
    showModel();
}

QRect MessagesSection::whatHappened() const
{
    QRect told;
    for (const StatusBanner* banner : {error_, action_}) {
        if (!banner->isHidden()) {
            told = told.united(banner->geometry());
        }
    }
    return told;
}

QString MessagesSection::coverage() const
{
    const AppModel::Snapshot& latest = model_.latestSnapshot();
    if (place_ != Place::realmPage || !latest) {
        return {};
    }
    return messageText(PatrolCopy::coverageNote(static_cast<std::int64_t>(latest->issues.size()),
                                                latest->isComplete));
}

void MessagesSection::showModel()
{
    coverage_->setMessage(coverage());
    error_->setMessage(messageText(model_.errorMessage()));
    error_->setChoices(choices());
    showFiling();
    action_->setMessage(messageText(model_.lastActionMessage()),
                        undoOffer(model_).value_or(BannerAction()));
    const StatusBanner* const banners[] = {coverage_, error_, filing_, action_};
    isEmpty_ =
        std::ranges::all_of(banners, [](const StatusBanner* banner) { return banner->isHidden(); });
    setVisible(!isEmpty_);
    Q_EMIT shown();
}

std::vector<BannerAction> MessagesSection::choices() const
{
    if (!model_.errorMessage() || model_.errorRemedy() != ErrorRemedy::damagedMemory) {
        return {};
    }
    return {{QStringLiteral("Show it"), [this] { model_.revealMemory(); }},
            {QStringLiteral("Set it aside and begin anew"), [this] { model_.setMemoryAside(); }}};
}

void MessagesSection::showFiling()
{
    const std::optional<OrganisePlan>& plan = model_.pendingRuleFilingPlan();
    if (place_ != Place::realmPage || !plan) {
        return filing_->setMessage({});
    }
    qint64 files = 0;
    for (const OrganisePlan::CategoryMove& move : plan->moves) {
        files += static_cast<qint64>(move.files.size());
    }
    const BannerAction file = {QStringLiteral("File them"),
                               [this] { model_.filePendingRuleMatches(); }};
    // A bulk move, which Review Only holds back.
    const BannerAction unlock = {QStringLiteral("Enable Trash actions…"),
                                 [this] { askToEnableTrashActions(model_, theme_, this); },
                                 {},
                                 QStringLiteral("Enable Trash actions… to file them")};
    filing_->setMessage(QStringLiteral("The Gruk can file %1 new arrivals under your rules.")
                            .arg(groupedNumber(files)),
                        model_.reviewOnlyMode() ? unlock : file);
}

}  // namespace gruk
