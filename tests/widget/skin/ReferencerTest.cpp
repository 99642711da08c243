#include <gtest/gtest.h>

#include "QtWidgets/skin/QMultiPixmapReferencer.h"
#include "QtWidgets/skin/QPixmapReferencer.h"
#include "support/FilePath.h"
#include "widget/skin/Images.h"

namespace {

QString WriteImage(const KivoraTest::CTemporaryFolder& dir, const QString& name, QColor color) {
    const QString path = KivoraTest::FilePath(dir, name);
    PlainPixmap(4, 4, color).save(path);
    return path;
}

TEST(PixmapReferencer, IsEmptyAtFirst) {
    EXPECT_EQ(QPixmapReferencer().pixmap(), nullptr);
}

TEST(PixmapReferencer, ACopyOfAHolderThatRefersRefersToTheSamePixmap) {
    QPixmap pixmap = PlainPixmap(4, 4, Qt::red);
    QPixmapReferencer holder;
    holder.reference(&pixmap);
    const QPixmapReferencer copy = holder;
    EXPECT_EQ(copy.pixmap(), &pixmap);
}

TEST(PixmapReferencer, ACopyOfAHolderThatOwnsOwnsACopy) {
    const KivoraTest::CTemporaryFolder dir;
    QPixmapReferencer holder;
    holder.load(WriteImage(dir, "red.png", Qt::red));
    ASSERT_NE(holder.pixmap(), nullptr);
    const QPixmapReferencer copy = holder;
    ASSERT_NE(copy.pixmap(), nullptr);
    EXPECT_NE(copy.pixmap(), holder.pixmap());
    holder.clear();
    EXPECT_EQ(copy.pixmap()->toImage().pixelColor(1, 1), QColor(Qt::red));
}

TEST(PixmapReferencer, AssigningReplacesAnOwnedPixmapByAReference) {
    const KivoraTest::CTemporaryFolder dir;
    QPixmap pixmap = PlainPixmap(4, 4, Qt::blue);
    QPixmapReferencer referring;
    referring.reference(&pixmap);
    QPixmapReferencer owning;
    owning.load(WriteImage(dir, "red.png", Qt::red));
    owning = referring;
    EXPECT_EQ(owning.pixmap(), &pixmap);
}

TEST(PixmapReferencer, AtMostOneOfTheTwoIsSet) {
    const KivoraTest::CTemporaryFolder dir;
    QPixmap pixmap = PlainPixmap(4, 4, Qt::blue);
    QPixmapReferencer holder;
    holder.reference(&pixmap);
    holder.load(WriteImage(dir, "red.png", Qt::red));
    EXPECT_NE(holder.pixmap(), &pixmap);
    holder.reference(&pixmap);
    EXPECT_EQ(holder.pixmap(), &pixmap);
    holder.clear();
    EXPECT_EQ(holder.pixmap(), nullptr);
}

TEST(MultiPixmapReferencer, ASetMayHaveHoles) {
    QPixmap first = PlainPixmap(4, 4, Qt::red);
    QPixmap third = PlainPixmap(4, 4, Qt::blue);
    QMultiPixmapReferencer set;
    set.reference(0, &first);
    set.reference(2, &third);
    EXPECT_TRUE(set.isMulti());
    EXPECT_EQ(set.count(), 3);
    EXPECT_EQ(set.pixmap(), &first);
    EXPECT_EQ(set.pixmapAt(1), nullptr);
    EXPECT_EQ(set.pixmapAt(2), &third);
    EXPECT_EQ(set.pixmapAt(3), nullptr);
    EXPECT_EQ(set.pixmapAt(-1), nullptr);
}

TEST(MultiPixmapReferencer, TheWholeSetIsReplacedByOnePixmap) {
    QPixmap first = PlainPixmap(4, 4, Qt::red);
    QPixmap second = PlainPixmap(4, 4, Qt::blue);
    QMultiPixmapReferencer set;
    set.reference(0, &first);
    set.reference(1, &second);
    set.reference(&second);
    EXPECT_EQ(set.count(), 1);
    EXPECT_EQ(set.pixmap(), &second);
    set.clear();
    EXPECT_EQ(set.count(), 0);
    EXPECT_EQ(set.pixmap(), nullptr);
}

TEST(MultiPixmapReferencer, AFileThatCannotBeReadCountsButHasNoPixmap) {
    QMultiPixmapReferencer set;
    set.load(1, "/nowhere/image.png");
    EXPECT_EQ(set.count(), 2);
    EXPECT_EQ(set.pixmapAt(1), nullptr);
}

}  // namespace
