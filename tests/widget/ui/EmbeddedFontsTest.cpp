// The typefaces that the panel is drawn with.
#include "ui/parts/EmbeddedFonts.h"

#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>

namespace {

QFontInfo InfoOf(const QString& family, QFont::Weight weight) {
    QFont font(family);
    font.setWeight(weight);
    font.setPixelSize(20);
    return QFontInfo(font);
}

TEST(EmbeddedFonts, ThePanelsTypefacesAreThere) {
    ASSERT_TRUE(Kivora::RegisterEmbeddedFonts());
    EXPECT_EQ(InfoOf("Inter", QFont::DemiBold).family(), "Inter");
    EXPECT_EQ(InfoOf("Inter", QFont::DemiBold).weight(), QFont::DemiBold);
    EXPECT_EQ(InfoOf("Inter", QFont::Bold).weight(), QFont::Bold);
    EXPECT_EQ(InfoOf("Play", QFont::Bold).family(), "Play");
    EXPECT_EQ(InfoOf("Play", QFont::Bold).weight(), QFont::Bold);
    EXPECT_EQ(InfoOf("Liberation Sans", QFont::Normal).family(), "Liberation Sans");
}

TEST(EmbeddedFonts, TheyHaveCyrillicLetters) {
    ASSERT_TRUE(Kivora::RegisterEmbeddedFonts());
    for (const char* family : {"Inter", "Play", "Liberation Sans"}) {
        QFont font(family);
        font.setBold(true);
        font.setStyleStrategy(QFont::NoFontMerging);
        const QFontMetrics metrics(font);
        for (const QChar letter : QStringLiteral("АЯЁаяё№")) {
            EXPECT_TRUE(metrics.inFont(letter)) << family << " U+" << std::hex << static_cast<int>(letter.unicode());
        }
    }
}

}  // namespace
