#include "app/screens/sidebar.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QMenu>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

#include "app/screens/confirmation_dialog.h"
#include "app/screens/desktop_tidy_section.h"
#include "app/screens/realm_row.h"
#include "app/screens/repaint_once.h"
#include "app/screens/section_title.h"
#include "app/screens/shortcuts.h"
#include "app/screens/sidebar_link.h"
#include "app/theme/accessible.h"
#include "app/theme/art.h"
#include "app/theme/button.h"
#include "app/theme/label.h"
#include "app/theme/tab_order.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

std::string standardizedPath(const Grant& grant)
{
    return FileURL::directory(grant.path).standardized().path();
}

}  // namespace

SidebarView::SidebarView(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme)
{
    setFixedWidth(Measure::sidebarWidth);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Measure::small, Measure::large, Measure::small, Measure::medium);
    column->setSpacing(Measure::small);
    column->addWidget(makeBrand());
    column->addWidget(scrolling(makePlaces()), 1);
    auto* foot = new QHBoxLayout;
    foot->setContentsMargins(Measure::hair, 0, 0, 0);
    foot->addWidget(makePatrolAll());
    foot->addStretch();
    column->addLayout(foot);

    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    auto* repaint = new RepaintOnce([this] { refresh(); }, this);
    repaint->on(model_, &AppModel::grantsChanged);
    repaint->on(model_, &AppModel::activeRootURLChanged);
    repaint->on(model_, &AppModel::errorMessageChanged);
    auto* repaintShields = new RepaintOnce([this] { showShields(); }, this);
    repaintShields->on(model_, &AppModel::realmIdentityStoreChanged);
    refresh();
}

QWidget* SidebarView::makeBrand()
{
    auto* brand = new QWidget;
    auto* hero = new ArtView(theme_, Art::grukHero, {});
    hero->setFixedSize(Measure::brandHero, Measure::brandHero);
    auto* name = new Label(theme_, TextStyle::brand);
    name->setText(QStringLiteral("GRUK"));
    auto* line = new Label(theme_, TextStyle::detail);
    line->setText(QStringLiteral("Local storage patrol"));
    line->setColour(Role::ink, Strength::quiet);
    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addStretch();
    words->addWidget(name);
    words->addWidget(line);
    words->addStretch();
    auto* row = new QHBoxLayout(brand);
    row->setContentsMargins(Measure::medium, 0, 0, 0);
    row->setSpacing(Measure::medium);
    row->addWidget(hero);
    row->addLayout(words, 1);
    return brand;
}

QWidget* SidebarView::makePlaces()
{
    auto* back =
        new SidebarLink(theme_, Icon::chevronLeft, QStringLiteral("Back to your Territories"));
    back_ = back;
    const auto showBack = [this, back] {
        const bool isWanted = model_.activeRootURL().has_value();
        if (!isWanted) {
            // Left to the page that comes, and to no neighbour.
            back->clearFocus();
        }
        back->setVisible(isWanted);
    };
    connect(&model_, &AppModel::activeRootURLChanged, back, showBack);
    connect(back, &QPushButton::clicked, this, [this] { model_.showTerritories(); });
    auto* heading = new Label(theme_, TextStyle::eyebrow);
    setAccessibleRole(*heading, QAccessible::Heading);
    heading->setText(QStringLiteral("Realms"));
    heading->setColour(Role::ink, Strength::quiet);
    heading->setContentsMargins(Measure::medium, Measure::small, 0, 0);
    auto* grantAnother =
        new SidebarLink(theme_, Icon::folderAdd, QStringLiteral("Grant another realm…"));
    connect(grantAnother, &QPushButton::clicked, this, [this] { model_.grantRealm(); });
    tidy_ = new DesktopTidySection(model_, theme_);
    connect(tidy_, &DesktopTidySection::stashRequested, this, &SidebarView::stashRequested);
    connect(tidy_, &DesktopTidySection::organiseRequested, this, &SidebarView::organiseRequested);

    auto* places = new QWidget;
    rows_ = new QVBoxLayout;
    rows_->setSpacing(Measure::hair);
    shortcuts_ = new QVBoxLayout;
    shortcuts_->setSpacing(0);
    auto* column = new QVBoxLayout(places);
    // Room for the ring around what has the focus.
    column->setContentsMargins(Measure::hair, Measure::hair, Measure::hair, Measure::hair);
    column->setSpacing(Measure::hair);
    column->addWidget(back);
    column->addWidget(heading);
    column->addLayout(rows_);
    column->addLayout(shortcuts_);
    column->addWidget(grantAnother);
    column->addSpacing(Measure::medium);
    column->addWidget(tidy_);
    column->addStretch();
    showBack();
    return places;
}

QWidget* SidebarView::makePatrolAll()
{
    auto* patrolAll =
        new Button(theme_, Button::Kind::secondary, QStringLiteral("Patrol all realms"));
    patrolAll->setSymbol(Icon::hiking);
    patrolAll->setObjectName(QStringLiteral("patrolAllRealms"));
    const auto showModel = [this, patrolAll] {
        patrolAll->setEnabled(!model_.isPatrolling() && !model_.grants().empty());
    };
    connect(&model_, &AppModel::isPatrollingChanged, patrolAll, showModel);
    connect(&model_, &AppModel::grantsChanged, patrolAll, showModel);
    connect(patrolAll, &QPushButton::clicked, this, [this] { model_.patrolAllRealms(); });
    showModel();
    return patrolAll;
}

QWidget* SidebarView::scrolling(QWidget* content)
{
    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(content);
    const auto dress = [this, scroll] {
        QPalette colours = theme_.windowPalette();
        colours.setColor(QPalette::Window, theme_.colour(Role::paperInset));
        scroll->setPalette(colours);
    };
    connect(&theme_, &Theme::changed, scroll, dress);
    dress();
    return scroll;
}

void SidebarView::refresh()
{
    showRealms();
    showShortcuts();
    chainRows();
    tidy_->refresh();
}

void SidebarView::chainRows()
{
    std::vector<QWidget*> stops = {back_};
    for (const QVBoxLayout* rows : {rows_, shortcuts_}) {
        for (int i = 0; i < rows->count(); ++i) {
            QWidget* row = rows->itemAt(i)->widget();
            // A realm that is not there is a row with a button in it.
            auto* control = qobject_cast<QAbstractButton*>(row);
            stops.push_back(control != nullptr ? control : row->findChild<QAbstractButton*>());
        }
    }
    chainTabStops(stops);
}

void SidebarView::showShortcuts()
{
    const std::vector<Shortcut> places = shortcuts(model_);
    QStringList ids;
    for (const Shortcut& place : places) {
        ids.append(place.id + displayName(place.url.path()));
    }
    if (ids == shownShortcuts_) {
        // Only then, so that the focus stays on a line that is still right.
        return;
    }
    shownShortcuts_ = ids;
    removeRows(*shortcuts_);
    for (const Shortcut& place : places) {
        auto* link = new SidebarLink(theme_, place.systemImage, place.name);
        giveToolTip(*link, displayName(place.url.path()));
        connect(link, &QPushButton::clicked, this,
                [this, url = place.url] { model_.selectRealm(url); });
        shortcuts_->addWidget(link);
    }
}

void SidebarView::showRealms()
{
    std::vector<ShownRealm> realms;
    for (const Grant& grant : model_.grants()) {
        const bool isConnected = model_.isConnected(grant);
        realms.push_back(
            {grant, isConnected, isConnected ? std::nullopt : model_.nowCalled(grant)});
    }
    if (realms != shown_) {
        // Only then, so that the focus stays on a row that is still right.
        shown_ = std::move(realms);
        removeRows(*rows_);
        realmRows_.clear();
        disconnectedRows_.clear();
        for (const ShownRealm& realm : shown_) {
            addRow(realm);
        }
    }
    for (const auto& [grant, row] : realmRows_) {
        row->setActive(model_.activeRootURL()
                       && model_.activeRootURL()->path() == standardizedPath(grant));
    }
}

void SidebarView::showShields()
{
    for (const auto& [grant, row] : realmRows_) {
        row->setIdentity(identityOf(grant));
    }
    for (const auto& [grant, row] : disconnectedRows_) {
        row->setIdentity(identityOf(grant));
    }
}

RealmIdentity SidebarView::identityOf(const Grant& grant) const
{
    return model_.realmIdentityStore().identity(standardizedPath(grant));
}

void SidebarView::addRow(const ShownRealm& shown)
{
    const Grant& grant = shown.grant;
    QWidget* row = nullptr;
    if (shown.isConnected) {
        auto* realm = new RealmRow(theme_, grant, identityOf(grant));
        connect(realm, &QPushButton::clicked, this,
                [this, grant] { model_.selectRealm(FileURL::directory(grant.path)); });
        realmRows_.emplace_back(grant, realm);
        row = realm;
    } else {
        auto* disconnected =
            new DisconnectedRealmRow(theme_, grant, identityOf(grant), shown.nowCalled);
        connect(disconnected, &DisconnectedRealmRow::regrantRequested, this,
                [this, grant] { model_.regrantRealm(grant); });
        connect(disconnected, &DisconnectedRealmRow::renamingRequested, this,
                [this, grant] { confirmRenaming(grant); });
        disconnectedRows_.emplace_back(grant, disconnected);
        row = disconnected;
    }
    row->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(row, &QWidget::customContextMenuRequested, this,
            [this, row, shown](const QPoint& at) { showContextMenu(*row, shown, at); });
    rows_->addWidget(row);
}

void SidebarView::showContextMenu(QWidget& row, const ShownRealm& realm, const QPoint& at)
{
    const Grant grant = realm.grant;
    auto* menu = new QMenu(&row);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setPalette(theme_.windowPalette());
    if (realm.nowCalled) {
        // Whoever knows better than the name that was found.
        QAction* again = menu->addAction(QStringLiteral("Grant again…"));
        connect(again, &QAction::triggered, this, [this, grant] { model_.regrantRealm(grant); });
    }
    QAction* remove = menu->addAction(QStringLiteral("Remove Realm…"));
    connect(remove, &QAction::triggered, this, [this, grant] { confirmRemoval(grant); });
    menu->popup(row.mapToGlobal(at));
}

void SidebarView::confirmRemoval(const Grant& grant)
{
    const FileURL url = FileURL::directory(grant.path).standardized();
    const Confirmation confirmation = {
        QStringLiteral("Remove %1?").arg(displayName(url.lastPathComponent())),
        QStringLiteral("The Gruk stops watching this realm. Nothing here is deleted — your files "
                       "stay exactly where they are. You can grant it again any time."),
        QStringLiteral("Remove Realm"),
        QStringLiteral("Cancel"),
    };
    auto* question = new ConfirmationDialog(theme_, confirmation, this);
    question->setObjectName(QStringLiteral("removalDialog"));
    connect(question, &ConfirmationDialog::accepted, this,
            [this, grant] { model_.removeRealm(grant); });
    question->open();
}

void SidebarView::confirmRenaming(const Grant& grant)
{
    const std::optional<FileURL> place = model_.nowCalled(grant);
    if (!place) {
        // Gone again, or back at its place, since the row was drawn.
        return refresh();
    }
    const FileURL former = FileURL::directory(grant.path).standardized();
    const QString name = displayName(former.lastPathComponent());
    const QString newName = displayName(place->lastPathComponent());
    QString message =
        QStringLiteral("The Gruk found the folder at %1. All that is known about it comes along: "
                       "its history, its shield, its cadence and its rules. Your files stay "
                       "exactly as they are.")
            .arg(displayName(place->path()));
    const bool isRealm = std::ranges::any_of(model_.grants(), [&](const Grant& other) {
        return standardizedPath(other) == place->standardized().path();
    });
    if (isRealm) {
        message +=
            QStringLiteral("\n\n%1 is a realm already. The two become one; where both have a "
                           "shield, a cadence or rules, those of %2 stay.")
                .arg(newName, name);
    }
    auto* question = new ConfirmationDialog(
        theme_,
        {QStringLiteral("Is %1 now called %2?").arg(name, newName), message,
         QStringLiteral("Carry it over"), QStringLiteral("Not now"), Button::Kind::primary},
        this);
    question->setObjectName(QStringLiteral("renamingDialog"));
    connect(question, &ConfirmationDialog::accepted, this,
            [this, grant, place] { model_.renameRealm(grant, *place); });
    question->open();
}

void SidebarView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), theme_.colour(Role::paperInset));
    painter.fillRect(width() - 1, 0, 1, height(), theme_.colour(Role::ink, Strength::edge));
}

}  // namespace gruk
