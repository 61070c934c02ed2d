#include "app/screens/organise_row.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "app/screens/file_kind_copy.h"
#include "app/screens/folder_name.h"
#include "app/screens/refusal_note.h"
#include "app/screens/section_title.h"
#include "app/theme/accessible.h"
#include "app/theme/button.h"
#include "app/theme/key_press.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

Label* quietFigure(Theme& theme, const QString& text)
{
    auto* label = new Label(theme, TextStyle::detail);
    label->setColour(Role::ink, Strength::quiet);
    label->setText(text);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(Measure::figureWidth);
    return label;
}

}  // namespace

OrganiseRow::OrganiseRow(Theme& theme, const OrganisePlan::CategoryMove& move, QWidget* parent)
    : Row(theme, parent), kind_(move.kind), folder_(displayName(move.destinationFolderName)),
      note_(sectionNote(theme, QString())), editor_(nullptr)
{
    setAccessibleRole(*note_, QAccessible::Notification);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, Measure::small, 0, Measure::small);
    column->setSpacing(Measure::hair);
    column->addWidget(makeHead(move));
    column->addWidget(note_);
    editor_ = makeEditor();
    column->addWidget(editor_);
    note_->setContentsMargins(Measure::iconSize + Measure::medium, 0, 0, 0);
    note_->hide();
    editor_->hide();
}

QWidget* OrganiseRow::makeHead(const OrganisePlan::CategoryMove& move)
{
    setAccessibleName(QStringLiteral("%1, %2 files")
                          .arg(folder_)
                          .arg(groupedNumber(static_cast<qint64>(move.files.size()))));
    auto* head = new QWidget(this);
    auto* name = new ElidedLabel(theme(), TextStyle::bodyStrong, Qt::ElideMiddle);
    name->setFullText(folder_);
    pencil_ = new IconButton(
        theme(), Icon::pencil,
        QStringLiteral("Retarget the folder for %1 files").arg(nameInSentence(kind_)));
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(0, 0, Measure::hair, 0);
    row->setSpacing(Measure::medium);
    row->addWidget(new IconLabel(theme(), iconFor(kind_), Measure::iconSize));
    row->addWidget(name, 1);
    row->addWidget(quietFigure(
        theme(),
        QStringLiteral("%1 files").arg(groupedNumber(static_cast<qint64>(move.files.size())))));
    row->addWidget(quietFigure(theme(), bytesText(move.totalBytes)));
    row->addWidget(pencil_);
    connect(pencil_, &QAbstractButton::clicked, this, &OrganiseRow::editRequested);
    return head;
}

QWidget* OrganiseRow::makeEditor()
{
    auto* editor = new QWidget(this);
    auto* title = new Label(theme(), TextStyle::body);
    title->setText(pencil_->accessibleName());
    field_ = new TextField(theme(), QStringLiteral("Folder name"), QStringLiteral("Folder name"));
    field_->installEventFilter(this);
    refusal_ = new RefusalNote(theme(), *field_);
    auto* cancel = new Button(theme(), Button::Kind::secondary, QStringLiteral("Cancel"));
    auto* keep = new Button(theme(), Button::Kind::secondary, QStringLiteral("Save"));

    auto* line = new QHBoxLayout;
    line->setSpacing(Measure::small);
    line->addWidget(field_, 1);
    line->addWidget(cancel);
    line->addWidget(keep);
    auto* column = new QVBoxLayout(editor);
    column->setContentsMargins(Measure::iconSize + Measure::medium, Measure::hair, Measure::hair,
                               Measure::hair);
    column->setSpacing(Measure::small);
    column->addWidget(title);
    column->addLayout(line);
    column->addWidget(refusal_);
    connect(cancel, &QPushButton::clicked, this, &OrganiseRow::cancelRequested);
    connect(keep, &QPushButton::clicked, this, &OrganiseRow::save);
    cancel_ = cancel;
    keep_ = keep;
    return editor;
}

std::vector<QWidget*> OrganiseRow::tabStops() const
{
    return {pencil_, field_, cancel_, keep_};
}

void OrganiseRow::setEditing(bool isEditing)
{
    editor_->setVisible(isEditing);
    refusal_->clear();
    if (isEditing) {
        note_->hide();
        field_->setText(folder_);
        field_->selectAll();
        field_->setFocus(Qt::OtherFocusReason);
    }
}

void OrganiseRow::setNote(const QString& note)
{
    note_->setText(note);
    note_->setVisible(!note.isEmpty());
}

void OrganiseRow::save()
{
    const QString name = FolderName::trimmed(field_->text());
    const QString refusal = FolderName::refusal(name);
    if (refusal.isEmpty()) {
        Q_EMIT saveRequested(name);
        return;
    }
    refusal_->refuse(refusal);
}

bool OrganiseRow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == field_ && event->type() == QEvent::KeyPress) {
        // In the field these two end the editor, and not the sheet around it.
        const auto& key = static_cast<QKeyEvent&>(*event);
        const KeyPress press = returnPress(key);
        if (press == KeyPress::press) {
            save();
        } else if (key.key() == Qt::Key_Escape) {
            Q_EMIT cancelRequested();
        }
        if (press != KeyPress::other || key.key() == Qt::Key_Escape) {
            return true;
        }
    }
    return Row::eventFilter(watched, event);
}

}  // namespace gruk
