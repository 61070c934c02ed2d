#pragma once

#include <QString>

namespace gruk {

/// One line of a tray item's menu. A plain value.
struct TrayEntry {
    enum class Kind { action, divider };

    Kind kind = Kind::action;
    /// At least 1, and the same for the same thing however the menu changes, so that what was
    /// clicked is what was meant.
    int id = 0;
    /// As it is to be read, with no marks for keys in it. Empty for a divider.
    QString text = {};
    bool isEnabled = true;

    friend bool operator==(const TrayEntry&, const TrayEntry&) = default;
};

}  // namespace gruk
