// Qt 5 and Qt 6.
#include <QApplication>
#include <QColor>
#include <QLabel>
#include <QLineEdit>
#include <QMetaObject>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <array>

#include "toolkit.h"

namespace testhost {

namespace {

class Area : public QWidget {
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
    QWidget window;
    Area area;
    QLabel text(kWindowText);
    QLineEdit field;
    QVBoxLayout rows(&window);
    rows.addWidget(&text);
    rows.addWidget(&field);
    rows.addWidget(&area, 1);
    window.setWindowTitle(kWindowTitle);
    window.resize(kWindowWidth, kWindowHeight);
    window.show();
    QTimer frames;
    QObject::connect(&frames, &QTimer::timeout, &area, [&area] { area.update(); });
    frames.start(kFrameMilliseconds);
    QTimer::singleShot(0, running);
    QApplication::exec();
    return true;
}

void QuitToolkit() {
    QMetaObject::invokeMethod(QApplication::instance(), &QApplication::quit, Qt::QueuedConnection);
}

}  // namespace testhost
