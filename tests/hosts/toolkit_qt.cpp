// Qt 5 and Qt 6.
#include <QApplication>
#include <QColor>
#include <QMetaObject>
#include <QPainter>
#include <QTimer>
#include <QWidget>
#include <array>

#include "toolkit.h"

namespace testhost {

namespace {

class HostWindow : public QWidget {
public:
    HostWindow() {
        setWindowTitle(kWindowTitle);
        resize(kWindowWidth, kWindowHeight);
    }

private:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), QColor(NextFrame(), 127, 127));
    }
};

}  // namespace

bool RunToolkit(const std::function<void()>& running) {
    static std::array<char, 5> name{"host"};
    static std::array<char*, 2> words{name.data(), nullptr};
    static int count = 1;
    QApplication application(count, words.data());
    HostWindow window;
    window.show();
    QTimer frames;
    QObject::connect(&frames, &QTimer::timeout, &window, [&window] { window.update(); });
    frames.start(kFrameMilliseconds);
    QTimer::singleShot(0, running);
    QApplication::exec();
    return true;
}

void QuitToolkit() {
    QMetaObject::invokeMethod(QApplication::instance(), &QApplication::quit, Qt::QueuedConnection);
}

}  // namespace testhost
