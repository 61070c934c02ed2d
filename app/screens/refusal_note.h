#pragma once

#include <QWidget>

#include "app/theme/text_field.h"

namespace gruk {

class Label;

/// Why what was written in a field cannot be taken: a sentence under it beside a warning, with the
/// field outlined. Gone as soon as something else is written.
class RefusalNote : public QWidget {
    Q_OBJECT

public:
    /// `field` must live as long.
    RefusalNote(Theme& theme, TextField& field, QWidget* parent = nullptr);

    /// Says why, and gives the field the focus.
    void refuse(const QString& reason);
    void clear();

private:
    TextField& field_;
    Label* reason_;
};

}  // namespace gruk
