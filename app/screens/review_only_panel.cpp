#include "app/screens/review_only_panel.h"

#include <QHBoxLayout>

namespace gruk {

ReviewOnlyPanel::ReviewOnlyPanel(AppModel& model, Theme& theme, QWidget* parent)
    : Card(theme, Measure::cardPadding, parent), model_(model),
      symbol_(new IconLabel(theme, Icon::lockShield, Measure::largeIconSize)),
      state_(new Label(theme, TextStyle::bodyStrong)),
      button_(new Button(theme, Button::Kind::secondary, QString()))
{
    state_->setWordWrap(true);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::medium);
    row->addWidget(symbol_);
    row->addWidget(state_, 1);
    row->addWidget(button_);

    connect(button_, &QPushButton::clicked, this, [this, &theme] {
        if (model_.reviewOnlyMode()) {
            askToEnableTrashActions(model_, theme, this);
        } else {
            model_.setReviewOnly(true);
        }
    });
    connect(&model_, &AppModel::reviewOnlyModeChanged, this, &ReviewOnlyPanel::showModel);
    showModel();
}

void ReviewOnlyPanel::showModel()
{
    const bool isOn = model_.reviewOnlyMode();
    symbol_->setIcon(isOn ? Icon::lockShield : Icon::warningShield);
    symbol_->setColour(isOn ? Role::accent : Role::red);
    state_->setText(isOn ? QStringLiteral("Review Only is on")
                         : QStringLiteral("Trash actions enabled"));
    button_->setText(isOn ? QStringLiteral("Enable Trash actions…")
                          : QStringLiteral("Return to Review Only"));
    button_->updateGeometry();
}

ConfirmationDialog* askToEnableTrashActions(AppModel& model, Theme& theme, QWidget* anyWidget)
{
    auto* question = new ConfirmationDialog(
        theme,
        {QStringLiteral("Enable Trash actions?"),
         QStringLiteral("Only use this in a disposable test realm for now. Gruk will still ask "
                        "before each item and will only use the system Trash."),
         QStringLiteral("Enable Trash Actions"), QStringLiteral("Keep Review Only")},
        anyWidget);
    question->setObjectName(QStringLiteral("trashUnlockDialog"));
    QObject::connect(question, &ConfirmationDialog::accepted, &model,
                     [&model] { model.setReviewOnly(false); });
    question->open();
    return question;
}

}  // namespace gruk
