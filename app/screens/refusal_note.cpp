#include "app/screens/refusal_note.h"

#include <QHBoxLayout>

#include "app/theme/accessible.h"
#include "app/theme/label.h"

namespace gruk {

RefusalNote::RefusalNote(Theme& theme, TextField& field, QWidget* parent)
    : QWidget(parent), field_(field), reason_(new Label(theme, TextStyle::detail))
{
    auto* symbol = new IconLabel(theme, Icon::warning, Measure::smallIconSize);
    symbol->setColour(Role::red);
    reason_->setWordWrap(true);
    setAccessibleRole(*reason_, QAccessible::Notification);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::hair);
    row->addWidget(symbol, 0, Qt::AlignTop);
    row->addWidget(reason_, 1);
    hide();
    connect(&field_, &QLineEdit::textChanged, this, &RefusalNote::clear);
}

void RefusalNote::refuse(const QString& reason)
{
    reason_->setText(reason);
    field_.setRefused(true);
    show();
    field_.setFocus(Qt::OtherFocusReason);
}

void RefusalNote::clear()
{
    field_.setRefused(false);
    hide();
}

}  // namespace gruk
