#include "app/screens/filing_rule_row.h"

#include <QHBoxLayout>

#include "app/screens/file_kind_copy.h"
#include "app/theme/label.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

IconLabel* quietIcon(Theme& theme, Icon icon)
{
    auto* label = new IconLabel(theme, icon, Measure::smallIconSize);
    label->setColour(Role::ink, Strength::quiet);
    return label;
}

}  // namespace

FilingRuleRow::FilingRuleRow(Theme& theme, const RealmRule& rule, QWidget* parent)
    : Row(theme, parent),
      removal_(new IconButton(
          theme, Icon::trash,
          QStringLiteral("Remove filing rule for %1 files").arg(nameInSentence(rule.kind))))
{
    auto* kind = new Label(theme, TextStyle::body);
    kind->setText(nameOf(rule.kind));
    auto* folder = new ElidedLabel(theme, TextStyle::bodyStrong, Qt::ElideMiddle);
    folder->setFullText(displayName(rule.destinationFolderName));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, Measure::hair, 0, Measure::hair);
    row->setSpacing(Measure::small);
    row->addWidget(new IconLabel(theme, iconFor(rule.kind), Measure::iconSize));
    row->addWidget(kind);
    row->addWidget(quietIcon(theme, Icon::arrowRight));
    row->addWidget(folder, 1);
    setAccessibleName(QStringLiteral("%1, %2").arg(kind->text(), folder->text()));
    if (rule.applyAfterPatrol) {
        auto* tag = new Label(theme, TextStyle::detail);
        tag->setColour(Role::ink, Strength::quiet);
        tag->setText(QStringLiteral("After patrol"));
        row->addWidget(quietIcon(theme, Icon::hiking));
        row->addWidget(tag);
        row->addSpacing(Measure::small);
    }
    row->addWidget(removal_);
    connect(removal_, &QAbstractButton::clicked, this, &FilingRuleRow::removeRequested);
}

}  // namespace gruk
