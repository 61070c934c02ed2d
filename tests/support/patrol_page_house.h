#pragma once

#include <string>
#include <vector>

#include "app/screens/finding_row.h"
#include "app/screens/patrol_page.h"
#include "tests/support/screen_house.h"

namespace gruk::test {

/// The window on the page of a patrolled realm with findings.
class PatrolPageHouse : public ScreenHouse {
public:
    using ScreenHouse::ScreenHouse;

    /// Puts two files into a folder that look like one thing downloaded twice.
    void makeDuplicate(const std::string& folder, std::size_t size);
    /// The realm "Home" with three findings, the largest first: a cache and two duplicates.
    FileURL makeFindings();
    /// The realm "Home" with so many duplicates, one larger than the next.
    FileURL makeManyFindings(int count);

    /// Lets the keyboard in.
    void activate();
    /// Makes the window as small as a user's.
    void shrink();

    [[nodiscard]] GrukPatrolView* page() const;
    [[nodiscard]] QScrollBar* scrollBar() const;
    /// The rows of the findings that can be seen, from the top.
    [[nodiscard]] std::vector<FindingRow*> rows() const;

    /// The open question of that name, or none.
    [[nodiscard]] QWidget* question(const char* name) const;
    /// Presses a button of an open question, and lets everything follow from it.
    void answer(const char* name, const char* text);
    /// Chooses a kind in the filter's menu.
    void filterBy(const char* kind);
};

[[nodiscard]] bool isTicked(const FindingRow* row);

/// The button inside `widget` with that text; none without one.
[[nodiscard]] QAbstractButton* buttonIn(const QWidget* widget, const char* text);

/// The texts of every label inside `widget`, with "|" between them.
[[nodiscard]] QString textIn(const QWidget* widget);

}  // namespace gruk::test
