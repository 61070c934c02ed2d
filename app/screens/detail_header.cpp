#include "app/screens/detail_header.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

#include "app/screens/icon_button.h"
#include "app/theme/label.h"

namespace gruk {

DetailHeader::DetailHeader(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme),
      pages_(new SegmentedControl(theme, {QStringLiteral("Patrol"), QStringLiteral("Browse")},
                                  QStringLiteral("Page")))
{
    auto* help = new IconButton(theme, Icon::question, QStringLiteral("How the Gruk works"),
                                IconButton::Place::header);
    auto* tidy = new IconButton(theme, Icon::trayDown, QStringLiteral("Tidy my Desktop"),
                                IconButton::Place::header);
    tidy->setObjectName(QStringLiteral("tidyDesktop"));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Measure::pageMargin, Measure::medium, Measure::pageMargin,
                            Measure::medium);
    row->setSpacing(Measure::small);
    row->addWidget(makeProductLine(), 1);
    row->addWidget(pages_);
    row->addSpacing(Measure::small);
    row->addWidget(tidy);
    row->addWidget(help);
    row->addWidget(makeMenuButton());

    connect(pages_, &SegmentedControl::currentChanged, this,
            [this](int index) { Q_EMIT pageChosen(static_cast<DetailPage>(index)); });
    connect(help, &QAbstractButton::clicked, this, &DetailHeader::walkthroughRequested);
    connect(tidy, &QAbstractButton::clicked, this, &DetailHeader::tidyRequested);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    const auto showModel = [this] { pages_->setVisible(model_.activeRootURL().has_value()); };
    connect(&model_, &AppModel::activeRootURLChanged, this, showModel);
    showModel();
}

QWidget* DetailHeader::makeProductLine()
{
    auto* line = new QWidget;
    auto* name = new Label(theme_, TextStyle::brand);
    name->setText(QStringLiteral("GRUK"));
    auto* motto = new ElidedLabel(theme_, TextStyle::detail, Qt::ElideRight);
    motto->setFullText(QStringLiteral("Carry on being you. The Gruk has your back."));
    motto->setColour(Role::ink, Strength::quiet);
    auto* column = new QVBoxLayout(line);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(name);
    column->addWidget(motto);
    return line;
}

QWidget* DetailHeader::makeMenuButton()
{
    auto* button =
        new IconButton(theme_, Icon::gear, QStringLiteral("Menu"), IconButton::Place::header);
    button->setObjectName(QStringLiteral("windowMenu"));
    auto* menu = new QMenu(this);
    menu->addAction(QStringLiteral("Settings…"), this, &DetailHeader::settingsRequested)
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    menu->addSeparator();
    menu->addAction(QStringLiteral("Quit Gruk"), this, &DetailHeader::quitRequested)
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    // The window has the keys; here they only stand beside the words.
    for (QAction* action : menu->actions()) {
        action->setShortcutContext(Qt::WidgetShortcut);
    }
    connect(button, &QAbstractButton::clicked, this, [this, button, menu] {
        menu->setPalette(theme_.windowPalette());
        menu->popup(button->mapToGlobal(
            QPoint(button->width() - menu->sizeHint().width(), button->height())));
    });
    return button;
}

void DetailHeader::setPage(DetailPage page)
{
    pages_->setCurrent(static_cast<int>(page));
}

void DetailHeader::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), theme_.colour(Role::paper));
    painter.fillRect(0, height() - 1, width(), 1, theme_.colour(Role::ink, Strength::edge));
}

}  // namespace gruk
