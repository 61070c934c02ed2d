#pragma once

#include <vector>

#include "app/screens/icon_button.h"
#include "app/theme/label.h"
#include "app/theme/row.h"
#include "app/theme/text_field.h"
#include "core/actions/organise_plan.h"

namespace gruk {

class RefusalNote;

/// All loose files of one kind, with the folder that they would go into, and a small editor for the
/// name of that folder.
class OrganiseRow : public Row {
    Q_OBJECT

public:
    OrganiseRow(Theme& theme, const OrganisePlan::CategoryMove& move, QWidget* parent = nullptr);

    [[nodiscard]] FileKind kind() const { return kind_; }
    [[nodiscard]] QAbstractButton* pencil() const { return pencil_; }
    /// What Tab goes through, as it stands on the screen.
    [[nodiscard]] std::vector<QWidget*> tabStops() const;

    /// Opens the editor with the present name, and puts the focus into it; or closes it.
    void setEditing(bool isEditing);
    /// What happened to the name just now.
    void setNote(const QString& note);

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void editRequested();
    void cancelRequested();
    /// A name that a folder can have, trimmed.
    void saveRequested(const QString& name);

private:
    [[nodiscard]] QWidget* makeHead(const OrganisePlan::CategoryMove& move);
    [[nodiscard]] QWidget* makeEditor();
    void save();

    FileKind kind_;
    QString folder_;
    IconButton* pencil_ = nullptr;
    TextField* field_ = nullptr;
    QWidget* cancel_ = nullptr;
    QWidget* keep_ = nullptr;
    RefusalNote* refusal_ = nullptr;
    Label* note_;
    QWidget* editor_;
};

}  // namespace gruk
