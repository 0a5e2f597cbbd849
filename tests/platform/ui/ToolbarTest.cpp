#include "platform/ui/Toolbar.h"

#include <QAction>
#include <QStringList>
#include <gtest/gtest.h>

using namespace quillon;

namespace {

TEST(Toolbars, TheRuleIsAskedForEveryItemByItsLabel) {
    Toolbar toolbar;
    QAction* first = toolbar.addAction(QStringLiteral("&First…"));
    first->setIconText(QStringLiteral("First"));
    toolbar.addSeparator();
    QAction* second = toolbar.addAction(QStringLiteral("Second"));
    QStringList asked;
    QString enabled = QStringLiteral("First");
    toolbar.setValidator([&](const QString& label) {
        asked.append(label);
        return label == enabled;
    });
    EXPECT_EQ(asked, (QStringList{QStringLiteral("First"), QStringLiteral("Second")}));
    EXPECT_TRUE(first->isEnabled());
    EXPECT_FALSE(second->isEnabled());
    enabled = QStringLiteral("Second");
    toolbar.validateItems();
    EXPECT_FALSE(first->isEnabled());
    EXPECT_TRUE(second->isEnabled());
}

}  // namespace
