#include "app/screens/confirmation_dialog.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/theme/button.h"
#include "app/theme/label.h"

namespace gruk {

ConfirmationDialog::ConfirmationDialog(Theme& theme, const Confirmation& confirmation,
                                       QWidget* parent)
    : QDialog(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setPalette(theme.windowPalette());
    setWindowTitle(confirmation.title);
    setAccessibleName(confirmation.title);
    setAccessibleDescription(confirmation.message);
    auto* title = new Label(theme, TextStyle::lead);
    title->setText(confirmation.title);
    title->setWordWrap(true);
    auto* message = new Label(theme, TextStyle::body);
    message->setText(confirmation.message);
    message->setWordWrap(true);
    message->setMinimumWidth(Measure::dialogTextWidth);
    auto* refusal = new Button(theme, Button::Kind::secondary, confirmation.refusal);
    auto* action = new Button(theme, Button::Kind::destructive, confirmation.action);
    action->setAutoDefault(false);
    refusal->setDefault(true);
    refusal->setFocus();

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Measure::small);
    buttons->addStretch();
    buttons->addWidget(refusal);
    buttons->addWidget(action);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Measure::wide, Measure::wide, Measure::wide, Measure::large);
    column->setSpacing(Measure::medium);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(title);
    column->addWidget(message);
    column->addSpacing(Measure::small);
    column->addLayout(buttons);

    connect(refusal, &QPushButton::clicked, this, &QDialog::reject);
    connect(action, &QPushButton::clicked, this, &QDialog::accept);
}

}  // namespace gruk
