#include "app/screens/welcome_page.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/theme/button.h"
#include "app/theme/label.h"

namespace gruk {

namespace {

Label* line(Theme& theme, TextStyle style, const QString& text)
{
    auto* label = new Label(theme, style);
    label->setText(text);
    label->setWordWrap(true);
    return label;
}

QLayout* promise(Theme& theme, Icon icon, const QString& text)
{
    auto* row = new QHBoxLayout;
    row->setSpacing(Measure::medium);
    auto* symbol = new IconLabel(theme, icon, Measure::largeIconSize);
    symbol->setColour(Role::fern);
    row->addWidget(symbol);
    row->addWidget(line(theme, TextStyle::bodyStrong, text), 1);
    return row;
}

/// A column in the middle of a page, as wide as a page's column at most.
QVBoxLayout* middleColumn(QWidget* page)
{
    auto* column = new QVBoxLayout;
    column->setSpacing(Measure::rowGap);
    auto* sides = new QHBoxLayout;
    sides->addStretch(1);
    sides->addLayout(column, 4);
    sides->addStretch(1);
    auto* rows = new QVBoxLayout(page);
    rows->setContentsMargins(Measure::pageMargin, Measure::pageMargin, Measure::pageMargin,
                             Measure::pageMargin);
    rows->addStretch(1);
    rows->addLayout(sides);
    rows->addStretch(1);
    return column;
}

}  // namespace

GrukWelcomeView::GrukWelcomeView(AppModel& model, Theme& theme, QWidget* parent)
    : PaperBackdrop(theme, parent)
{
    setObjectName(QStringLiteral("welcomePage"));
    auto* choose =
        new Button(theme, Button::Kind::primary, QStringLiteral("Choose a realm to patrol"));
    choose->setSymbol(Icon::folderAdd);

    auto* titles = new QVBoxLayout;
    titles->setSpacing(0);
    titles->addWidget(line(theme, TextStyle::pageTitle, QStringLiteral("KNOW WHAT GREW.")));
    titles->addWidget(line(theme, TextStyle::pageTitle, QStringLiteral("RECLAIM YOUR REALM.")));
    QVBoxLayout* column = middleColumn(this);
    column->addLayout(titles);
    column->addWidget(line(theme, TextStyle::lead,
                           QStringLiteral("Gruk maps a folder, remembers it, then shows you what "
                                          "changed. It never deletes on its own.")));
    column->addSpacing(Measure::small);
    column->addLayout(promise(theme, Icon::lock, QStringLiteral("Local metadata only")));
    column->addLayout(promise(theme, Icon::shieldCheck, QStringLiteral("Review before Trash")));
    column->addLayout(promise(theme, Icon::noSubscription, QStringLiteral("No subscriptions")));
    column->addSpacing(Measure::small);
    column->addWidget(choose, 0, Qt::AlignLeft);

    connect(choose, &QPushButton::clicked, this, [&model] { model.grantRealm(); });
}

NoRealmPage::NoRealmPage(Theme& theme, QWidget* parent) : PaperBackdrop(theme, parent)
{
    setObjectName(QStringLiteral("noRealmPage"));
    QVBoxLayout* column = middleColumn(this);
    column->addWidget(line(theme, TextStyle::brand, QStringLiteral("GRUK")));
    column->addWidget(line(theme, TextStyle::lead,
                           QStringLiteral("Carry on being you. The Gruk has your back.")));
    column->addWidget(line(theme, TextStyle::body,
                           QStringLiteral("Pick a realm on the left to see what the Gruk knows "
                                          "about it.")));
}

}  // namespace gruk
