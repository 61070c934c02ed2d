#pragma once

#include <vector>

#include <QWidget>

#include "app/theme/button.h"
#include "app/theme/label.h"
#include "app/theme/picker.h"
#include "app/theme/text_field.h"
#include "app/theme/toggle.h"
#include "core/patrol/file_kind.h"

namespace gruk {

class RefusalNote;

/// Where a new filing rule is written. A name that no folder can have is refused with a word why.
class FilingRulesForm : public QWidget {
    Q_OBJECT

public:
    explicit FilingRulesForm(Theme& theme, QWidget* parent = nullptr);

    /// Whether the realm has as many rules as a realm can have: then the form says so instead.
    void setFull(bool isFull);
    /// Ready for the next rule, with the focus where it begins.
    void clear();

    /// What Tab goes through, as it stands on the screen.
    [[nodiscard]] std::vector<QWidget*> tabStops() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// `folderName` is one that a folder can have, trimmed.
    void addRequested(gruk::FileKind kind, const QString& folderName, bool applyAfterPatrol);

private:
    [[nodiscard]] QLayout* makeLine(Theme& theme);
    void submit();

    QWidget* fields_;
    Picker* kind_;
    TextField* folder_;
    Toggle* afterPatrol_;
    Button* add_;
    RefusalNote* refusal_;
    Label* fullNote_;
};

}  // namespace gruk
