#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QString>
#include <QTest>
#include <QWidget>

#include <functional>

namespace quillon::test {

/// Runs the event loop until the condition holds. False when that takes more than ten seconds.
[[nodiscard]] inline bool waitFor(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 10'000);
}

/// The control of the name beneath `parent`. The test ends here when there is none.
template <typename Control>
[[nodiscard]] Control& find(const QWidget& parent, const char* objectName) {
    auto* control = parent.findChild<Control*>(QString::fromLatin1(objectName));
    if (control == nullptr) qFatal("no control %s", objectName);
    return *control;
}

/// The alert that is on the screen, null without one.
[[nodiscard]] inline QMessageBox* visibleAlert() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        auto* box = qobject_cast<QMessageBox*>(window);
        if (box != nullptr && box->isVisible() && box->objectName() == QLatin1String("alert")) return box;
    }
    return nullptr;
}

/// The text of the alert that is on the screen, which is closed by its button; null without one.
[[nodiscard]] inline QString takeAlert() {
    QMessageBox* box = visibleAlert();
    if (box == nullptr) return {};
    const QString text = box->text();
    box->buttons().constFirst()->click();
    return text;
}

inline void click(QAbstractButton& button) {
    QTest::mouseClick(&button, Qt::LeftButton);
}

}  // namespace quillon::test
