#include "app/screens/window_memory.h"

#include <algorithm>
#include <string>

#include <QCoreApplication>
#include <QEvent>
#include <QScreen>
#include <QWidget>

#include "app/model/setting_keys.h"

namespace gruk {

namespace {

/// What the frame around a window takes, as most desktops draw it; it is not known before there is
/// one.
constexpr QSize usualFrame(8, 44);

constexpr const char* browseName = "browse";
constexpr const char* patrolName = "patrol";

}  // namespace

QSize sizeWithin(const QSize& wished, const QSize& screen)
{
    return wished.boundedTo(screen - usualFrame);
}

WindowMemory::WindowMemory(AppModel& model, QWidget& window)
    : QObject(&window), model_(model), window_(window), page_(page())
{
    window_.installEventFilter(this);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] {
        if (window_.isVisible()) {
            keep();
        }
    });
}

void WindowMemory::restorePlace(const QSize& usual)
{
    window_.resize(sizeWithin(usual, window_.screen()->availableSize()));
    if (const auto kept = model_.preferences().data(SettingKeys::windowGeometry)) {
        // The toolkit leaves out what fits no screen of today.
        window_.restoreGeometry(
            QByteArray::fromRawData(kept->data(), static_cast<qsizetype>(kept->size())));
    }
}

DetailPage WindowMemory::page() const
{
    return model_.preferences().text(SettingKeys::windowPage) == browseName ? DetailPage::browse
                                                                            : DetailPage::patrol;
}

std::optional<FileURL> WindowMemory::realm() const
{
    const auto path = model_.preferences().data(SettingKeys::windowRealm);
    if (!path || path->empty()) {
        return std::nullopt;
    }
    const FileURL url = FileURL::directory(*path);
    const auto grant = std::ranges::find_if(model_.grants(), [&url](const Grant& each) {
        return FileURL::directory(each.path).standardized().path() == url.path();
    });
    return grant != model_.grants().end() && model_.isConnected(*grant) ? std::optional(url)
                                                                        : std::nullopt;
}

void WindowMemory::keep()
{
    const QByteArray geometry = window_.saveGeometry();
    const std::string realm = model_.activeRootURL() ? model_.activeRootURL()->path() : "";
    const std::string page = page_ == DetailPage::browse ? browseName : patrolName;
    UserDefaults& settings = model_.preferences();
    try {
        // What is kept already is not written again.
        if (settings.data(SettingKeys::windowGeometry) != geometry.toStdString()) {
            settings.setData(SettingKeys::windowGeometry, geometry.toStdString());
        }
        if (settings.text(SettingKeys::windowPage).value_or(patrolName) != page) {
            settings.setText(SettingKeys::windowPage, page);
        }
        if (settings.data(SettingKeys::windowRealm).value_or("") != realm) {
            settings.setData(SettingKeys::windowRealm, realm);
        }
    } catch (const std::exception& error) {
        qWarning("Gruk: failed to remember the window: %s", error.what());
    }
}

bool WindowMemory::eventFilter(QObject* watched, QEvent* event)
{
    // A window that is only minimised, or on another workspace, is still to be seen.
    if (watched == &window_ && event->type() == QEvent::Hide && !event->spontaneous()) {
        keep();
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace gruk
