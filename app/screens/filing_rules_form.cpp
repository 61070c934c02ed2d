#include "app/screens/filing_rules_form.h"

#include <algorithm>
#include <vector>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "app/screens/file_kind_copy.h"
#include "app/screens/folder_name.h"
#include "app/screens/refusal_note.h"
#include "app/screens/section_title.h"
#include "app/theme/key_press.h"
#include "core/actions/realm_rules.h"

namespace gruk {

namespace {

/// The kinds of which there are loose files; a folder never is one.
std::vector<FileKind> filedKinds()
{
    std::vector<FileKind> kinds;
    std::ranges::copy_if(allFileKinds, std::back_inserter(kinds),
                         [](FileKind kind) { return kind != FileKind::folder; });
    return kinds;
}

QStringList filedKindNames()
{
    QStringList names;
    for (const FileKind kind : filedKinds()) {
        names.append(nameOf(kind));
    }
    return names;
}

QString fullText()
{
    return QStringLiteral("This realm has %1 filing rules, which is as many as a realm can have. "
                          "Remove one to make room.")
        .arg(RealmRules::maximumRulesPerRealm);
}

}  // namespace

FilingRulesForm::FilingRulesForm(Theme& theme, QWidget* parent)
    : QWidget(parent), fields_(new QWidget(this)),
      kind_(new Picker(theme, filedKindNames(), QStringLiteral("Kind"))),
      folder_(new TextField(theme, QStringLiteral("Folder name"), QStringLiteral("Folder name"))),
      afterPatrol_(new Toggle(theme, QStringLiteral("Also file right after each patrol"))),
      add_(new Button(theme, Button::Kind::secondary, QStringLiteral("Add rule"))),
      refusal_(new RefusalNote(theme, *folder_)), fullNote_(sectionNote(theme, fullText()))
{
    fullNote_->hide();
    folder_->installEventFilter(this);

    auto* lines = new QVBoxLayout(fields_);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(Measure::small);
    lines->addLayout(makeLine(theme));
    lines->addWidget(refusal_);
    lines->addWidget(afterPatrol_, 0, Qt::AlignLeft);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(fields_);
    column->addWidget(fullNote_);

    connect(add_, &QPushButton::clicked, this, &FilingRulesForm::submit);
}

QLayout* FilingRulesForm::makeLine(Theme& theme)
{
    auto* arrow = new IconLabel(theme, Icon::arrowRight, Measure::smallIconSize);
    arrow->setColour(Role::ink, Strength::quiet);
    auto* line = new QHBoxLayout;
    line->setSpacing(Measure::small);
    line->addWidget(kind_);
    line->addWidget(arrow);
    line->addWidget(folder_, 1);
    line->addWidget(add_);
    return line;
}

void FilingRulesForm::setFull(bool isFull)
{
    fields_->setVisible(!isFull);
    fullNote_->setVisible(isFull);
}

void FilingRulesForm::clear()
{
    folder_->clear();
    if (fields_->isVisible()) {
        folder_->setFocus(Qt::OtherFocusReason);
    }
}

std::vector<QWidget*> FilingRulesForm::tabStops() const
{
    return {kind_, folder_, add_, afterPatrol_};
}

void FilingRulesForm::submit()
{
    const QString name = FolderName::trimmed(folder_->text());
    const QString refusal = FolderName::refusal(name);
    if (refusal.isEmpty()) {
        const FileKind kind = filedKinds()[static_cast<std::size_t>(kind_->currentIndex())];
        Q_EMIT addRequested(kind, name, afterPatrol_->isChecked());
        return;
    }
    refusal_->refuse(refusal);
}

bool FilingRulesForm::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == folder_ && event->type() == QEvent::KeyPress) {
        const KeyPress press = returnPress(*static_cast<QKeyEvent*>(event));
        if (press == KeyPress::press) {
            submit();
        }
        if (press != KeyPress::other) {
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace gruk
