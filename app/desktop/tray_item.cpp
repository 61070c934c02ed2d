#include "app/desktop/tray_item.h"

#include <algorithm>
#include <chrono>
#include <optional>

#include <QAction>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QSystemTrayIcon>

#include "app/desktop/session_bus.h"

namespace gruk {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 500ms;

bool isOnX11()
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

/// A menu of the toolkit takes one "&" for the mark of a key.
QString actionText(const TrayEntry& entry)
{
    return QString(entry.text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

bool haveSameShape(const QList<QAction*>& actions, const std::vector<TrayEntry>& entries)
{
    return std::ranges::equal(actions, entries, [](const QAction* action, const TrayEntry& entry) {
        return action->data().toInt() == entry.id;
    });
}

}  // namespace

TrayItem::TrayItem(const QString& applicationID, QObject* parent) : QObject(parent)
{
    if (const auto connection = connectToSessionBus(QDeadlineTimer(patience))) {
        bus_ = std::make_unique<TrayBus>(*connection, applicationID);
        connectBus();
    }
    connect(&menu_, &QMenu::triggered, this,
            [this](const QAction* action) { Q_EMIT chosen(action->data().toInt(), {}); });
}

TrayItem::~TrayItem() = default;

void TrayItem::connectBus()
{
    connect(bus_.get(), &TrayBus::stateChanged, this, [this] {
        updateX11();
        Q_EMIT isShownChanged();
    });
    connect(bus_.get(), &TrayBus::activated, this,
            [this](const QPoint& at, const ActivationTokens& tokens) {
                // Only there are places of the screen the same to everybody.
                const QPoint place = (QPointF(at) / qGuiApp->devicePixelRatio()).toPoint();
                Q_EMIT activated(isOnX11() ? QRect(place, QSize(1, 1)) : QRect(), tokens);
            });
    connect(bus_.get(), &TrayBus::menuRequested, this, [this](const QPoint& at) {
        menu_.popup((QPointF(at) / qGuiApp->devicePixelRatio()).toPoint());
    });
    connect(bus_.get(), &TrayBus::chosen, this, &TrayItem::chosen);
}

void TrayItem::setLook(const TrayLook& look)
{
    look_ = look;
    if (bus_) {
        bus_->setLook(look_);
    }
    updateX11();
    if (x11_ != nullptr) {
        x11_->setIcon(look_.icon);
        x11_->setToolTip(look_.title);
    }
}

void TrayItem::setEntries(const std::vector<TrayEntry>& entries)
{
    if (entries == entries_) {
        return;
    }
    entries_ = entries;
    if (bus_) {
        bus_->setEntries(entries_);
    }
    fillMenu();
}

void TrayItem::fillMenu()
{
    if (!haveSameShape(menu_.actions(), entries_)) {
        menu_.clear();
        for (const TrayEntry& entry : entries_) {
            QAction* action = entry.kind == TrayEntry::Kind::divider ? menu_.addSeparator()
                                                                     : menu_.addAction(QString());
            action->setData(entry.id);
        }
    }
    const QList<QAction*> actions = menu_.actions();
    for (qsizetype i = 0; i < actions.size(); ++i) {
        const TrayEntry& entry = entries_[static_cast<std::size_t>(i)];
        actions[i]->setText(actionText(entry));
        actions[i]->setEnabled(entry.isEnabled);
    }
}

bool TrayItem::isShown() const
{
    return (bus_ && bus_->isShown())
           || (x11_ != nullptr && x11_->isVisible() && QSystemTrayIcon::isSystemTrayAvailable());
}

void TrayItem::updateX11()
{
    const bool isWanted =
        isOnX11() && !look_.icon.isNull() && (!bus_ || (bus_->isAnswered() && !bus_->isShown()));
    if (isWanted && x11_ == nullptr) {
        // Made no sooner: the toolkit decides once, at the first one, which kind of tray it uses.
        x11_ = new QSystemTrayIcon(look_.icon, this);
        x11_->setToolTip(look_.title);
        x11_->setContextMenu(&menu_);
        connect(x11_, &QSystemTrayIcon::activated, this,
                [this](QSystemTrayIcon::ActivationReason reason) {
                    if (reason != QSystemTrayIcon::Context) {
                        Q_EMIT activated(x11_->geometry(), {});
                    }
                });
    }
    if (x11_ != nullptr) {
        x11_->setVisible(isWanted);
    }
}

}  // namespace gruk
