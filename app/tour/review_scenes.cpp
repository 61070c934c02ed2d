#include "app/tour/review_scenes.h"

#include <stdexcept>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>

#include "app/screens/finding_row.h"
#include "app/theme/sheet.h"
#include "app/tour/tour.h"

namespace gruk::tour {

namespace {

QAbstractButton* buttonWith(Stage& stage, const QString& text)
{
    for (QAbstractButton* button : stage.window().findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->text() == text) {
            return button;
        }
    }
    return nullptr;
}

/// Throws `std::runtime_error` when there is no such button, so that no picture shows less than
/// its name says.
void press(Stage& stage, const QString& text)
{
    QAbstractButton* button = buttonWith(stage, text);
    if (button == nullptr) {
        throw std::runtime_error("no button \"" + text.toStdString() + "\"");
    }
    button->click();
}

void scrollTo(Stage& stage, QWidget& widget)
{
    if (auto* page = qobject_cast<QScrollArea*>(stage.window().page())) {
        const int top = widget.mapTo(page->widget(), QPoint(0, 0)).y();
        page->verticalScrollBar()->setValue(top - 4 * Measure::huge);
    }
}

void scrollToTop(Stage& stage)
{
    if (auto* page = qobject_cast<QScrollArea*>(stage.window().page())) {
        page->verticalScrollBar()->setValue(0);
    }
}

void closeSheets(Stage& stage)
{
    for (Sheet* sheet : stage.window().findChildren<Sheet*>()) {
        sheet->reject();
    }
}

/// The pointer's left button goes down or up on the name in that row.
void pointAt(FindingRow& row, QEvent::Type type)
{
    const QPoint onTheName(4 * Measure::huge, Measure::large);
    const QPointF global = row.mapToGlobal(onTheName);
    QWidget* receiver = row.childAt(onTheName);
    QMouseEvent event(type, receiver->mapFromGlobal(global), global, Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(receiver, &event);
}

QCoro::Task<> showPress(Tour& tour, Stage& stage)
{
    FindingRow* row = stage.window().findChildren<FindingRow*>().at(1);
    pointAt(*row, QEvent::MouseButtonPress);
    co_await tour.take(stage, "100-pressed-finding");
    pointAt(*row, QEvent::MouseButtonRelease);
    co_await stage.settle();
}

QCoro::Task<> showSelection(Tour& tour, Stage& stage)
{
    QAbstractButton* all = buttonWith(stage, QStringLiteral("Select all"));
    press(stage, QStringLiteral("Select all"));
    // What is out of view has no rows yet.
    scrollTo(stage, *all);
    co_await stage.settle();
    const auto rows = stage.window().findChildren<FindingRow*>();
    co_await tour.take(stage, "55-selected");
    co_await showPress(tour, stage);
    for (QAbstractButton* button : rows.first()->findChildren<QAbstractButton*>()) {
        if (button->text() == QStringLiteral("Move to Trash")) {
            button->click();
        }
    }
    co_await tour.take(stage, "56-trash-question");
    closeSheets(stage);
}

}  // namespace

QCoro::Task<> showReview(Tour& tour, Stage& stage)
{
    co_await stage.model().selectRealm(FileURL::directory((tour.realms() / "Forest").native()));
    co_await stage.settle();
    co_await stage.model().patrolActiveRealm();
    co_await stage.settle();
    stage.model().setReviewOnly(true);
    co_await stage.settle();
    press(stage, QStringLiteral("Enable Trash actions…"));
    co_await tour.take(stage, "54-enable-trash-actions");
    closeSheets(stage);
    stage.model().setReviewOnly(false);
    co_await stage.settle();
    co_await showSelection(tour, stage);
    press(stage, QStringLiteral("Automations"));
    co_await stage.settle();
    scrollToTop(stage);
    co_await tour.take(stage, "57-automations");
    press(stage, QStringLiteral("Organise this realm"));
    co_await tour.take(stage, "58-organise");
    closeSheets(stage);
    press(stage, QStringLiteral("Automations"));
    stage.model().setReviewOnly(true);
    co_await stage.settle();
}

}  // namespace gruk::tour
