#include "app/screens/confirmation_dialog.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/theme/label.h"

namespace gruk {

ConfirmationDialog::ConfirmationDialog(Theme& theme, const Confirmation& confirmation,
                                       QWidget* anyWidget)
    : Sheet(theme, confirmation.title, anyWidget)
{
    setAccessibleDescription(confirmation.message);
    auto* title = new Label(theme, TextStyle::sectionTitle);
    title->setText(confirmation.title);
    title->setWordWrap(true);
    auto* message = new Label(theme, TextStyle::body);
    message->setText(confirmation.message);
    message->setWordWrap(true);
    message->setMinimumWidth(Measure::dialogTextWidth);
    auto* refusal = new Button(theme, Button::Kind::secondary, confirmation.refusal);
    auto* action = new Button(theme, confirmation.actionKind, confirmation.action);
    refusal->setDefault(true);
    setDefaultButton(refusal);
    setInitialFocus(refusal);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Measure::small);
    buttons->addStretch();
    buttons->addWidget(refusal);
    buttons->addWidget(action);
    column()->addWidget(title);
    column()->addWidget(message);
    column()->addSpacing(Measure::small);
    column()->addLayout(buttons);

    connect(refusal, &QPushButton::clicked, this, &Overlay::reject);
    connect(action, &QPushButton::clicked, this, &Overlay::accept);
}

}  // namespace gruk
