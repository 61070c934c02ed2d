#include "app/screens/sidebar.h"

#include <QMenu>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

#include "app/screens/confirmation_dialog.h"
#include "app/screens/realm_row.h"
#include "app/screens/repaint_once.h"
#include "app/screens/section_title.h"
#include "app/theme/button.h"
#include "app/theme/label.h"
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
    auto* heading = new Label(theme, TextStyle::eyebrow);
    heading->setText(QStringLiteral("Realms"));
    heading->setColour(Role::ink, Strength::quiet);
    heading->setContentsMargins(Measure::medium, 0, 0, 0);
    auto* grantAnother =
        new Button(theme, Button::Kind::secondary, QStringLiteral("Grant another realm…"));
    grantAnother->setSymbol(Icon::folderAdd);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Measure::medium, Measure::pageMargin, Measure::medium,
                               Measure::large);
    column->setSpacing(Measure::small);
    column->addWidget(makeBrand());
    column->addSpacing(Measure::small);
    column->addWidget(heading);
    column->addWidget(makeRealms(), 1);
    column->addWidget(grantAnother, 0, Qt::AlignLeft);

    connect(grantAnother, &QPushButton::clicked, this, [this] { model_.grantRealm(); });
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    auto* repaint = new RepaintOnce([this] { showRealms(); }, this);
    repaint->on(model_, &AppModel::grantsChanged);
    repaint->on(model_, &AppModel::activeRootURLChanged);
    repaint->on(model_, &AppModel::errorMessageChanged);
    auto* repaintShields = new RepaintOnce([this] { showShields(); }, this);
    repaintShields->on(model_, &AppModel::realmIdentityStoreChanged);
    showRealms();
}

QWidget* SidebarView::makeBrand()
{
    auto* brand = new QWidget;
    auto* name = new Label(theme_, TextStyle::brand);
    name->setText(QStringLiteral("GRUK"));
    auto* line = new Label(theme_, TextStyle::detail);
    line->setText(QStringLiteral("Local storage patrol"));
    line->setColour(Role::ink, Strength::quiet);
    auto* column = new QVBoxLayout(brand);
    column->setContentsMargins(Measure::medium, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(name);
    column->addWidget(line);
    return brand;
}

QWidget* SidebarView::makeRealms()
{
    auto* realms = new QWidget;
    rows_ = new QVBoxLayout;
    rows_->setSpacing(Measure::hair);
    auto* column = new QVBoxLayout(realms);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(rows_);
    column->addStretch();

    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(realms);
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
}

void SidebarView::showRealms()
{
    std::vector<std::pair<Grant, bool>> realms;
    for (const Grant& grant : model_.grants()) {
        realms.emplace_back(grant, model_.isConnected(grant));
    }
    if (realms != shown_) {
        // Only then, so that the focus stays on a row that is still right.
        shown_ = std::move(realms);
        removeRows(*rows_);
        realmRows_.clear();
        disconnectedRows_.clear();
        for (const auto& [grant, isConnected] : shown_) {
            addRow(grant, isConnected);
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

void SidebarView::addRow(const Grant& grant, bool isConnected)
{
    QWidget* row = nullptr;
    if (isConnected) {
        auto* realm = new RealmRow(theme_, grant, identityOf(grant));
        connect(realm, &QPushButton::clicked, this,
                [this, grant] { model_.selectRealm(FileURL::directory(grant.path)); });
        realmRows_.emplace_back(grant, realm);
        row = realm;
    } else {
        auto* disconnected = new DisconnectedRealmRow(theme_, grant, identityOf(grant));
        connect(disconnected, &DisconnectedRealmRow::regrantRequested, this,
                [this, grant] { model_.regrantRealm(grant); });
        disconnectedRows_.emplace_back(grant, disconnected);
        row = disconnected;
    }
    row->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(row, &QWidget::customContextMenuRequested, this,
            [this, row, grant](const QPoint& at) { showContextMenu(*row, grant, at); });
    rows_->addWidget(row);
}

void SidebarView::showContextMenu(QWidget& row, const Grant& grant, const QPoint& at)
{
    auto* menu = new QMenu(&row);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setPalette(theme_.windowPalette());
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
    connect(question, &QDialog::accepted, this, [this, grant] { model_.removeRealm(grant); });
    question->open();
}

void SidebarView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), theme_.colour(Role::paperInset));
    painter.fillRect(width() - 1, 0, 1, height(), theme_.colour(Role::ink, Strength::edge));
}

}  // namespace gruk
