#include "app/screens/desktop_tidy_section.h"

#include <QPainter>
#include <QVBoxLayout>

#include "app/screens/repaint_once.h"
#include "app/screens/section_title.h"
#include "app/theme/accessible.h"
#include "app/theme/layouts.h"

namespace gruk {

DesktopTidySection::DesktopTidySection(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme),
      stash_(new Button(theme, Button::Kind::link, QStringLiteral("Stash it all"))),
      sort_(new Button(theme, Button::Kind::link, QStringLiteral("Sort into folders"))),
      stashNote_(sectionNote(theme, QStringLiteral("Move everything into one dated folder. Nothing "
                                                   "sorted, nothing deleted, one click undoes "
                                                   "it."))),
      sortNote_(sectionNote(theme, QStringLiteral("Group loose files by kind — Screenshots, "
                                                  "Installers, and so on. Same folder, tidier."))),
      lockedNote_(sectionNote(theme, QStringLiteral("Needs Trash actions enabled first — it's a "
                                                    "bulk move, so it gets the same trust bar."))),
      request_(makeRequest(theme)), entries_(makeEntries(theme))
{
    auto* column = columnIn(this, 0);
    // From the left as the links over it, under a line of its own.
    column->setContentsMargins(Measure::medium, Measure::large, Measure::medium, 0);
    column->addWidget(request_);
    column->addWidget(entries_);

    auto* repaint = new RepaintOnce([this] { refresh(); }, this);
    repaint->on(model_, &AppModel::grantsChanged);
    repaint->on(model_, &AppModel::reviewOnlyModeChanged);
    refresh();
}

QWidget* DesktopTidySection::makeRequest(Theme& theme)
{
    auto* request = new QWidget(this);
    auto* grant =
        new Button(theme, Button::Kind::link, QStringLiteral("Let the Gruk at the Desktop…"));
    auto* column = columnIn(request, Measure::small);
    column->addWidget(sectionNote(
        theme, QStringLiteral("The Gruk can only tidy what you've let it see. One grant, and the "
                              "panic button is yours.")));
    column->addWidget(grant, 0, Qt::AlignLeft);
    connect(grant, &QPushButton::clicked, this, [this] { model_.grantDesktop(); });
    return request;
}

QWidget* DesktopTidySection::makeEntries(Theme& theme)
{
    auto* entries = new QWidget(this);
    auto* heading = new Label(theme, TextStyle::bodyStrong);
    setAccessibleRole(*heading, QAccessible::Heading);
    heading->setText(QStringLiteral("Tidy my Desktop"));
    stash_->setSymbol(Icon::trayDown);
    sort_->setSymbol(Icon::trays);
    auto* column = columnIn(entries, 0);
    column->addWidget(heading);
    column->addSpacing(Measure::hair);
    column->addWidget(stash_, 0, Qt::AlignLeft);
    column->addWidget(stashNote_);
    column->addSpacing(Measure::small);
    column->addWidget(sort_, 0, Qt::AlignLeft);
    column->addWidget(sortNote_);
    column->addWidget(lockedNote_);
    connect(stash_, &QPushButton::clicked, this, &DesktopTidySection::stashRequested);
    connect(sort_, &QPushButton::clicked, this, &DesktopTidySection::organise);
    return entries;
}

void DesktopTidySection::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(Measure::medium, 0, width() - 2 * Measure::medium, 1,
                     theme_.colour(Role::ink, Strength::edge));
}

void DesktopTidySection::refresh()
{
    const bool isGranted = model_.grantedDesktopURL().has_value();
    request_->setVisible(!isGranted);
    entries_->setVisible(isGranted);
    const bool isLocked = model_.reviewOnlyMode();
    for (Button* button : {stash_, sort_}) {
        button->setEnabled(!isLocked);
    }
    for (Label* note : {stashNote_, sortNote_}) {
        note->setVisible(!isLocked);
    }
    lockedNote_->setVisible(isLocked);
}

void DesktopTidySection::organise()
{
    const std::optional<OrganisePlan> plan = model_.organisePlanForDesktop();
    if (!plan) {
        // It has gone since the last look.
        refresh();
        return;
    }
    Q_EMIT organiseRequested(*plan, plan->realm);
}

}  // namespace gruk
