#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QTranslator>

#include "nk/nk_exception.h"
#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"

namespace {

class CKeyboardMapTranslator : public QTranslator {
public:
    CKeyboardMapTranslator() { QCoreApplication::installTranslator(this); }
    ~CKeyboardMapTranslator() override { QCoreApplication::removeTranslator(this); }
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* text, const char* comment, int) const override {
        const bool isHint = qstrcmp(context, "Keyboard map") == 0 &&
                            qstrcmp(comment, "Letter on the same key on localized keyboard") == 0;
        return isHint ? QStringLiteral("<%1>").arg(text) : QString();
    }
};

QString LabelsOf(const QPianoPCKeyHelpBar& bar, int first, int last) {
    QString labels;
    for (int note = first; note <= last; ++note) {
        const QString label = bar.label(static_cast<BYTE>(note));
        labels += label.isEmpty() ? QStringLiteral(" ") : label;
    }
    return labels;
}

TEST(PCKeyHelpBar, Defaults) {
    const QPianoPCKeyHelpBar bar;
    EXPECT_EQ(bar.firstNote(), 36);
    EXPECT_EQ(bar.keyCount(), 61);
    EXPECT_EQ(bar.octaveShift(), 0);
    EXPECT_TRUE(bar.translateKeyNames());
    EXPECT_EQ(bar.textColor(), QColor(255, 255, 255));
}

TEST(PCKeyHelpBar, Shows2Under73AndQUnder72) {
    const QPianoPCKeyHelpBar bar;
    EXPECT_EQ(bar.label(73), "2");
    EXPECT_EQ(bar.label(72), "Q");
    EXPECT_EQ(LabelsOf(bar, 60, 91), "ZSXDCVGBHNJMQ2W3ER5T6Y7UI9O0P[=]");
    EXPECT_EQ(bar.label(59), "");
}

TEST(PCKeyHelpBar, ShiftOf12ShowsZUnder72) {
    QPianoPCKeyHelpBar bar;
    bar.setOctaveShift(12);
    EXPECT_EQ(bar.label(72), "Z");
    EXPECT_EQ(bar.label(60), "");
}

TEST(PCKeyHelpBar, LabelsFollowTheShiftToBothEnds) {
    QPianoPCKeyHelpBar bar;
    bar.setOctaveShift(48);
    EXPECT_EQ(bar.label(127), "T") << "127 - 48 is 79";
    EXPECT_EQ(bar.label(0), "") << "0 - 48 wraps to 0, which no key plays";
    bar.setOctaveShift(-60);
    EXPECT_EQ(bar.label(0), "Z");
    EXPECT_EQ(bar.label(100), "") << "160 wraps to 124, which no key plays";
}

TEST(PCKeyHelpBar, HintsAreTranslatedUnlessSwitchedOff) {
    const CKeyboardMapTranslator translator;
    QPianoPCKeyHelpBar bar;
    EXPECT_EQ(bar.label(60), "<Z>");
    EXPECT_EQ(bar.label(89), "<[>");
    EXPECT_EQ(bar.label(73), "2") << "digits are shown as themselves";
    EXPECT_EQ(bar.label(90), "=");
    bar.setTranslateKeyNames(false);
    EXPECT_EQ(bar.label(60), "Z");
}

TEST(PCKeyHelpBar, ChangeOfLanguageRebuildsTheLabels) {
    QPianoPCKeyHelpBar bar;
    EXPECT_EQ(bar.label(60), "Z");
    const CKeyboardMapTranslator translator;
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&bar, &change);
    EXPECT_EQ(bar.label(60), "<Z>");
}

TEST(PCKeyHelpBar, LabelsStandInTheirCells) {
    QPianoPCKeyHelpBar bar;
    bar.resize(610, 14);
    bar.setTextColor(Qt::red);
    bar.setRange(36, 61);
    QImage picture(bar.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::black);
    bar.render(&picture, {}, {}, QWidget::RenderFlags());
    for (int cell = 0; cell < 61; ++cell) {
        bool inked = false;
        for (int x = cell * 10 + 2; x < cell * 10 + 8; ++x) {
            for (int y = 0; y < 14; ++y) {
                inked = inked || qRed(picture.pixel(x, y)) > 60;
            }
        }
        EXPECT_EQ(inked, !bar.label(static_cast<BYTE>(36 + cell)).isEmpty()) << cell;
    }
}

/// The rows of a picture, from the first to the last, that have ink between two columns; 0 for none.
int InkedRows(const QImage& picture, int left, int right) {
    int first = -1;
    int last = -1;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = left; x < right; ++x) {
            if (qRed(picture.pixel(x, y)) > 60) {
                first = first < 0 ? y : first;
                last = y;
            }
        }
    }
    return first < 0 ? 0 : last - first + 1;
}

TEST(PCKeyHelpBar, NoStrokeIsCut) {
    QPianoPCKeyHelpBar bar;
    bar.resize(1152, 14);
    QImage picture(bar.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::black);
    bar.render(&picture, {}, {}, QWidget::RenderFlags());
    QFont font("Helvetica");
    font.setPixelSize(13);  // 10 points
    for (const BYTE note : std::initializer_list<BYTE>{60, 74, 77, 89, 91}) {
        QImage free(40, 60, QImage::Format_ARGB32_Premultiplied);
        free.fill(Qt::black);
        QPainter painter(&free);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(QPointF(10, 30), bar.label(note));
        painter.end();
        const int centre = qRound(bar.centreOf(note));
        EXPECT_EQ(InkedRows(picture, centre - 9, centre + 9), InkedRows(free, 0, 40)) << bar.label(note).toStdString();
    }
}

TEST(PCKeyHelpBar, HintsStandWhereTheirCentresAreTold) {
    QPianoPCKeyHelpBar bar;
    bar.resize(610, 14);
    EXPECT_DOUBLE_EQ(bar.centreOf(36), 5.0);
    EXPECT_DOUBLE_EQ(bar.centreOf(60), 245.0);
    std::vector<double> centres(128, -100.0);
    centres[60] = 400.0;
    bar.setCentres(centres);
    EXPECT_DOUBLE_EQ(bar.centreOf(60), 400.0);
    QImage picture(bar.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::black);
    bar.render(&picture, {}, {}, QWidget::RenderFlags());
    EXPECT_GT(InkedRows(picture, 396, 405), 0);
    EXPECT_EQ(InkedRows(picture, 0, 390) + InkedRows(picture, 410, 610), 0);
    EXPECT_THROW(bar.setCentres({1.0}), NK::CInvalidParameterException);
    bar.setCentres({});
    EXPECT_DOUBLE_EQ(bar.centreOf(60), 245.0);
}

TEST(PCKeyHelpBar, EmptyRangePaintsNothing) {
    QPianoPCKeyHelpBar bar;
    bar.resize(100, 14);
    bar.setRange(60, 0);
    EXPECT_FALSE(bar.grab().isNull());
    bar.setRange(120, 20);
    EXPECT_FALSE(bar.grab().isNull());
}

}  // namespace
