#include "tests/support/patrol_page_house.h"

#include <map>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QScrollBar>
#include <gtest/gtest.h>

#include "app/screens/selection_box.h"

namespace gruk::test {

void PatrolPageHouse::makeDuplicate(const std::string& folder, std::size_t size)
{
    directory.file(folder + "/report.pdf", size);
    directory.file(folder + "/report (1).pdf", size);
}

FileURL PatrolPageHouse::makeFindings()
{
    directory.file("Home/p/node_modules/x.js", 81'920);
    makeDuplicate("Home", 40'960);
    makeDuplicate("Home/b", 8'192);
    return makePatrolledRealm("Home");
}

FileURL PatrolPageHouse::makeManyFindings(int count)
{
    constexpr std::size_t step = 4'096;
    for (int number = 0; number < count; ++number) {
        const std::string folder = "Home/folder" + std::to_string(number);
        makeDuplicate(folder, static_cast<std::size_t>(count - number) * step);
    }
    return makePatrolledRealm("Home");
}

void PatrolPageHouse::activate()
{
    QApplication::setActiveWindow(window.get());
    settle();
}

void PatrolPageHouse::shrink()
{
    constexpr QSize small(900, 600);
    window->resize(small);
    settle();
}

GrukPatrolView* PatrolPageHouse::page() const
{
    return window->findChild<GrukPatrolView*>();
}

QScrollBar* PatrolPageHouse::scrollBar() const
{
    return page()->verticalScrollBar();
}

std::vector<FindingRow*> PatrolPageHouse::rows() const
{
    std::map<int, FindingRow*> byPlace;
    for (FindingRow* row : window->findChildren<FindingRow*>()) {
        if (row->isVisible()) {
            byPlace[row->y()] = row;
        }
    }
    std::vector<FindingRow*> sorted;
    for (const auto& [place, row] : byPlace) {
        sorted.push_back(row);
    }
    return sorted;
}

QWidget* PatrolPageHouse::question(const char* name) const
{
    for (auto* found : window->findChildren<QWidget*>(QString::fromLatin1(name))) {
        if (found->isVisible()) {
            return found;
        }
    }
    return nullptr;
}

void PatrolPageHouse::answer(const char* name, const char* text)
{
    QWidget* asked = question(name);
    ASSERT_NE(asked, nullptr) << name;
    buttonIn(asked, text)->click();
    settle();
}

void PatrolPageHouse::filterBy(const char* kind)
{
    for (QAction* action : window->findChildren<QAction*>()) {
        if (action->isCheckable() && action->text() == QString::fromUtf8(kind)) {
            action->trigger();
        }
    }
    settle();
}

bool isTicked(const FindingRow* row)
{
    return row->findChild<SelectionBox*>()->isChecked();
}

QAbstractButton* buttonIn(const QWidget* widget, const char* text)
{
    for (QAbstractButton* button : widget->findChildren<QAbstractButton*>()) {
        if (button->text() == QString::fromUtf8(text)) {
            return button;
        }
    }
    return nullptr;
}

QString textIn(const QWidget* widget)
{
    QStringList texts;
    for (const QLabel* label : widget->findChildren<QLabel*>()) {
        texts.append(label->text());
    }
    return texts.join(QLatin1Char('|'));
}

}  // namespace gruk::test
