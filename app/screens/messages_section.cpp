#include "app/screens/messages_section.h"

#include <QVBoxLayout>

#include "app/screens/repaint_once.h"
#include "app/theme/text.h"
#include "core/patrol/patrol_copy.h"

namespace gruk {

namespace {

QString textOf(const std::optional<std::string>& message)
{
    return message ? displayString(*message) : QString();
}

}  // namespace

MessagesSection::MessagesSection(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), coverage_(new StatusBanner(theme, Role::yellow, Icon::eye)),
      error_(new StatusBanner(theme, Role::red, Icon::warning)),
      action_(new StatusBanner(theme, Role::blue, Icon::check))
{
    coverage_->setObjectName(QStringLiteral("coverageNote"));
    error_->setObjectName(QStringLiteral("errorMessage"));
    action_->setObjectName(QStringLiteral("lastActionMessage"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::small);
    for (StatusBanner* banner : {coverage_, error_, action_}) {
        column->addWidget(banner);
    }

    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    repaint->on(model_, &AppModel::latestSnapshotChanged);
    repaint->on(model_, &AppModel::errorMessageChanged);
    repaint->on(model_, &AppModel::lastActionMessageChanged);
    showModel();
}

void MessagesSection::showModel()
{
    std::optional<std::string> coverage;
    if (const AppModel::Snapshot& latest = model_.latestSnapshot()) {
        coverage = PatrolCopy::coverageNote(static_cast<std::int64_t>(latest->issues.size()),
                                            latest->isComplete);
    }
    coverage_->setMessage(textOf(coverage));
    error_->setMessage(textOf(model_.errorMessage()));
    action_->setMessage(textOf(model_.lastActionMessage()));
    setVisible(coverage || model_.errorMessage() || model_.lastActionMessage());
}

}  // namespace gruk
