#pragma once

#include <functional>

#include <QObject>

namespace gruk {

/// Gathers a burst of changes into one call, made once the event loop is back in charge, so that a
/// screen whose model assigns ten fields is rebuilt once.
class RepaintOnce : public QObject {
    Q_OBJECT

public:
    RepaintOnce(std::function<void()> repaint, QObject* parent);

    /// Makes `changed` of `sender` cause a repaint.
    template <typename Sender, typename Base>
    void on(const Sender& sender, void (Base::*changed)())
    {
        connect(&sender, changed, this, &RepaintOnce::request);
    }

    void request();

private:
    std::function<void()> repaint_;
    bool isRequested_ = false;
};

}  // namespace gruk
