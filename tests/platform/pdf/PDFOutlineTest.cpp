#include "platform/pdf/PDFDestination.h"
#include "platform/pdf/PDFOutline.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

std::shared_ptr<PDFOutline> node(const QString& label) {
    auto made = std::make_shared<PDFOutline>();
    made->setLabel(label);
    return made;
}

QString labels(const PDFOutline& root) {
    QString all;
    for (int i = 0; i < root.numberOfChildren(); ++i) all += root.childAtIndex(i)->label();
    return all;
}

TEST(PDFOutline, ANewNodeIsEmpty) {
    const PDFOutline root;
    EXPECT_TRUE(root.label().isEmpty());
    EXPECT_EQ(root.destination(), nullptr);
    EXPECT_EQ(root.numberOfChildren(), 0);
}

TEST(PDFOutline, ChildrenAreInsertedInFrontOfTheIndex) {
    PDFOutline root;
    root.insertChild(node(QStringLiteral("b")), 0);
    root.insertChild(node(QStringLiteral("c")), 1);
    root.insertChild(node(QStringLiteral("a")), 0);
    EXPECT_EQ(labels(root), QStringLiteral("abc"));
}

TEST(PDFOutline, AnIndexOutsideMeansTheNearestEnd) {
    PDFOutline root;
    root.insertChild(node(QStringLiteral("b")), 7);
    root.insertChild(node(QStringLiteral("c")), 99);
    root.insertChild(node(QStringLiteral("a")), -1);
    EXPECT_EQ(labels(root), QStringLiteral("abc"));
}

TEST(PDFOutline, NoChildIsNotInserted) {
    PDFOutline root;
    root.insertChild(nullptr, 0);
    EXPECT_EQ(root.numberOfChildren(), 0);
}

TEST(PDFOutline, ThereIsNoChildOutside) {
    PDFOutline root;
    root.insertChild(node(QStringLiteral("a")), 0);
    EXPECT_EQ(root.childAtIndex(-1), nullptr);
    EXPECT_EQ(root.childAtIndex(1), nullptr);
}

TEST(PDFDestination, KeepsPageAndPoint) {
    const PDFDestination destination(nullptr, QPointF(3, 4));
    EXPECT_EQ(destination.page(), nullptr);
    EXPECT_EQ(destination.point(), QPointF(3, 4));
}

}  // namespace
}  // namespace quillon
