#pragma once

#include "app/screens/icon_button.h"
#include "app/theme/row.h"
#include "core/actions/realm_rules.h"

namespace gruk {

/// One filing rule, in one line, with a button that takes it away.
class FilingRuleRow : public Row {
    Q_OBJECT

public:
    FilingRuleRow(Theme& theme, const RealmRule& rule, QWidget* parent = nullptr);

    [[nodiscard]] IconButton* removal() const { return removal_; }

Q_SIGNALS:
    void removeRequested();

private:
    IconButton* removal_;
};

}  // namespace gruk
