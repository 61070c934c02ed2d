#include "app/screens/first_run_panel.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/screens/repaint_once.h"
#include "app/theme/accessible.h"
#include "app/theme/label.h"
#include "app/theme/layouts.h"
#include "app/theme/text.h"
#include "core/patrol/outermost_findings.h"
#include "core/patrol/patrol_copy.h"

namespace gruk {

namespace {

QLayout* withSymbol(Theme& theme, Icon icon, Label* label)
{
    auto* row = new QHBoxLayout;
    row->setSpacing(Measure::small);
    auto* symbol = new IconLabel(theme, icon, Measure::smallIconSize);
    symbol->setColour(Role::ink, Strength::quiet);
    row->addWidget(symbol, 0, Qt::AlignTop);
    row->addWidget(label, 1);
    return row;
}

}  // namespace

FirstRunPanel::FirstRunPanel(AppModel& model, Theme& theme, QWidget* parent)
    : Card(theme, Measure::cardPadding, parent)
{
    auto* note = paragraph(
        theme, TextStyle::detail,
        QStringLiteral("Large disks can take a while. An interrupted patrol is discarded, never "
                       "saved as a misleading snapshot."));
    note->setColour(Role::ink, Strength::quiet);
    QVBoxLayout* column = columnIn(this, Measure::small);
    column->addWidget(
        paragraph(theme, TextStyle::sectionTitle, QStringLiteral("First, Gruk needs a map")));
    column->addWidget(paragraph(
        theme, TextStyle::body,
        QStringLiteral("The first patrol looks for what it can already tell you about — duplicate "
                       "downloads, installers you're finished with, caches you don't need — and "
                       "starts a private baseline so next time it can show you what changed.")));
    column->addLayout(withSymbol(theme, Icon::info, note));

    const auto showModel = [this, &model] {
        setVisible(!model.latestSnapshot() && !model.isLoadingRealmHistory());
    };
    auto* repaint = new RepaintOnce(showModel, this);
    repaint->on(model, &AppModel::latestSnapshotChanged);
    repaint->on(model, &AppModel::isLoadingRealmHistoryChanged);
    showModel();
}

BaselineNote::BaselineNote(AppModel& model, Theme& theme, QWidget* parent)
    : Card(theme, Measure::cardPadding, parent)
{
    auto* headline = paragraph(theme, TextStyle::body);
    QVBoxLayout* column = columnIn(this, Measure::small);
    setAccessibleRole(*this, QAccessible::Notification);
    setAccessibleName(QStringLiteral("First patrol complete."));
    column->addWidget(paragraph(theme, TextStyle::lead, QStringLiteral("First patrol complete.")));
    column->addWidget(headline);
    column->addLayout(withSymbol(
        theme, Icon::map,
        paragraph(theme, TextStyle::body,
                  QStringLiteral("Also: baseline recorded. From now on the Gruk knows what your "
                                 "territory looks like, so next patrol it can tell you what "
                                 "changed — not just what's big."))));

    const auto showModel = [this, &model, headline] {
        const AppModel::Snapshot& latest = model.latestSnapshot();
        const bool isFirst = latest && !model.previousSnapshot();
        setVisible(isFirst);
        const auto isNothing = [](const ReviewFinding& each) { return each.allocatedSize < 1; };
        // What went to the Trash was found: of nothing left it is not said that there was nothing.
        headline->setVisible(!model.haveFindingsLeft()
                             || !std::ranges::all_of(model.findings(), isNothing));
        if (isFirst) {
            headline->setText(displayString(PatrolCopy::summary(
                OutermostFindings::among(model.findings()),
                static_cast<std::int64_t>(latest->issues.size()), latest->isComplete)));
        }
    };
    auto* repaint = new RepaintOnce(showModel, this);
    repaint->on(model, &AppModel::latestSnapshotChanged);
    repaint->on(model, &AppModel::previousSnapshotChanged);
    repaint->on(model, &AppModel::findingsChanged);
    showModel();
}

}  // namespace gruk
