#include "tests/support/screen_house.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>

#include "app/model/setting_keys.h"

namespace gruk::test {

ScreenHouse::ScreenHouse(std::shared_ptr<SnapshotScanner> scanner) : ModelHouse(std::move(scanner))
{
    open();
}

ScreenHouse::ScreenHouse(const std::function<void(ModelCollaborators&)>& change)
    : ModelHouse(change)
{
    open();
}

void ScreenHouse::open()
{
    theme.setReducedMotion(true);
    // Whoever tests a page has been through the walkthrough.
    preferences->setBoolean(SettingKeys::hasSeenWalkthrough, true);
    window = std::make_unique<SweepView>(*model, theme);
    // So tall that a whole page is in view: what is out of view has no widgets.
    constexpr int tall = 4'000;
    window->resize(Measure::defaultWindowWidth, tall);
    window->show();
    repaint();
}

ScreenHouse::~ScreenHouse()
{
    window.reset();
}

void ScreenHouse::repaint()
{
    constexpr int turns = 5;
    for (int turn = 0; turn < turns; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void ScreenHouse::settle()
{
    do {
        ModelHouse::settle();
        repaint();
    } while (pool->count() > 0);
}

FileURL ScreenHouse::makePatrolledRealm(const std::string& name)
{
    const FileURL url = makeRealm(name);
    settle();
    patrol();
    return url;
}

void ScreenHouse::patrol()
{
    model->patrolActiveRealm();
    settle();
}

QStringList ScreenHouse::texts() const
{
    QStringList texts;
    for (const QLabel* label : window->findChildren<QLabel*>()) {
        if (label->isVisible()) {
            texts.append(label->text());
        }
    }
    for (const QAbstractButton* each : window->findChildren<QAbstractButton*>()) {
        if (each->isVisible()) {
            texts.append(each->text());
        }
    }
    return texts;
}

QAbstractButton* ScreenHouse::button(const QString& text) const
{
    for (QAbstractButton* each : window->findChildren<QAbstractButton*>()) {
        if (each->isVisible() && each->text() == text) {
            return each;
        }
    }
    return nullptr;
}

}  // namespace gruk::test
