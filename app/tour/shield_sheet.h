#pragma once

#include <QWidget>

#include "app/theme/theme.h"
#include "core/realm/realm_identity.h"

class QLayout;

namespace gruk::tour {

/// A contact sheet of the shields: every shape by every division by every charge, with each
/// tincture in use, then the same small and large, and a few realms on their land.
class ShieldSheet : public QWidget {
    Q_OBJECT

public:
    explicit ShieldSheet(Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QLayout* makeBlock(FieldShape shape);
    [[nodiscard]] QLayout* makeSizes();
    [[nodiscard]] QLayout* makeLands();
    [[nodiscard]] QWidget* makeLabel(const QString& text);

    Theme& theme_;
};

}  // namespace gruk::tour
