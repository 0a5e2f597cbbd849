#include "tests/app/MainWindowTest.h"

#include <QTest>

namespace quillon::test {

MainWindowTest::MainWindowTest() {
    controller_.window().show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&controller_.window()));
}

QUrl MainWindowTest::pdf(const std::string& name, int pages) const {
    return urlOf(dir_.write(name + ".pdf", PdfFixture(name, pages).bytes()));
}

void MainWindowTest::choose(const char* name) {
    QAction& chosen = action(name);
    ASSERT_TRUE(waitFor([&chosen] { return chosen.isEnabled(); })) << name;
    chosen.trigger();
    QCoreApplication::processEvents();
}

void MainWindowTest::add(const QList<QUrl>& urls) {
    panels_.answerNext(urls);
    choose("actionAddFile");
}

void MainWindowTest::addPdfs(const QStringList& names) {
    QList<QUrl> urls;
    for (const QString& name : names) urls.append(pdf(name.toStdString()));
    add(urls);
}

void MainWindowTest::select(int row) {
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, table().rectOfRow(row).center());
    QCoreApplication::processEvents();
    ASSERT_EQ(table().selectedRow(), row);
}

QStringList MainWindowTest::names() {
    QStringList result;
    for (const auto& data : list().cache()) result.append(data->url().fileName().chopped(4));
    return result;
}

SheetDialog* MainWindowTest::sheet(const char* name) {
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (window->objectName() == QLatin1String(name)) return qobject_cast<SheetDialog*>(window);
    }
    return nullptr;
}

bool MainWindowTest::isFinished() {
    const SheetDialog* sheet = progressSheet();
    return sheet != nullptr && sheet->isVisible() && find<QPushButton>(*sheet, "openButton").isVisible();
}

void MainWindowTest::merge() {
    panels_.answerNext({target()});
    choose("actionMerge");
    ASSERT_TRUE(waitFor([this] { return isFinished(); }));
}

}  // namespace quillon::test
