// The instrument's look put on the application.
#include <gtest/gtest.h>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformtheme.h>
#include <qpa/qwindowsysteminterface.h>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QIcon>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QSpinBox>
#include <QStyleFactory>
#include <QToolTip>
#include <QtTest/QTest>
#include <utility>

#include "support/Files.h"
#include "support/TemporaryFolder.h"
#include "ui/parts/EmbeddedFonts.h"
#include "ui/parts/InstrumentColors.h"
#include "ui/parts/InstrumentPalette.h"
#include "ui/parts/InstrumentStyle.h"
#include "ui/parts/SkinColors.h"

namespace {

void Dress() {
    InstrumentStyle::Dress(QStyleFactory::create("Fusion"));
}

class Dressed : public testing::Test {
protected:
    Dressed() {
        Kivora::RegisterEmbeddedFonts();
        Dress();
    }
};

TEST_F(Dressed, EveryWidgetHasThePaletteAndTheTypeface) {
    QMessageBox box;
    box.ensurePolished();
    EXPECT_EQ(box.palette(), InstrumentPalette::Make());
    EXPECT_EQ(QToolTip::palette(), InstrumentPalette::Make());
    EXPECT_EQ(box.font().family(), "Inter");
    EXPECT_TRUE(QApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
}

TEST_F(Dressed, FieldsShowFiguresInGreen) {
    QLineEdit edit;
    QComboBox combo;
    QSpinBox spin;
    for (QWidget* field : std::initializer_list<QWidget*>{&edit, &combo, &spin}) {
        field->ensurePolished();
        EXPECT_EQ(field->palette().color(QPalette::Text), InstrumentColors::kFigures);
    }
}

TEST_F(Dressed, SizesOfTypeAreTheDesktops) {
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSize(23);
    QApplication::setFont(large);
    Dress();
    EXPECT_EQ(QApplication::font().pointSize(), 23);
    QApplication::setFont(usual);
    Dress();
}

/// The desktop that turns dark, or whose colours are chosen anew, tells so.
TEST_F(Dressed, NothingOfAnotherDesktopShowsThrough) {
    QMessageBox box;
    QWindowSystemInterface::handleThemeChange<QWindowSystemInterface::SynchronousDelivery>(nullptr);
    QApplication::processEvents();
    EXPECT_EQ(box.palette(), InstrumentPalette::Make());
    EXPECT_EQ(QApplication::palette("QMenu"), InstrumentPalette::Make());
    EXPECT_EQ(QApplication::palette("QLineEdit"), InstrumentPalette::MakeForFields());
}

TEST_F(Dressed, MarksOfBoxesAreTheInstrumentsOwnAtAnySize) {
    for (const QStyle::StandardPixmap icon : {QStyle::SP_MessageBoxInformation, QStyle::SP_MessageBoxQuestion,
                                              QStyle::SP_MessageBoxWarning, QStyle::SP_MessageBoxCritical}) {
        for (const int side : {16, 40, 120}) {
            const QImage mark = QApplication::style()->standardIcon(icon).pixmap(QSize(side, side), 1.0).toImage();
            EXPECT_EQ(mark.size(), QSize(side, side));
            // Dark glass, unlike Qt's pictures.
            EXPECT_LT(RelativeLuminance(mark.pixelColor(side / 5, side / 2)), 0.05) << icon;
        }
    }
}

/// A desktop that has a red picture for every file.
class RedDesktop : public QPlatformTheme {
public:
    RedDesktop() : former_(std::exchange(QGuiApplicationPrivate::platform_theme, this)) {}
    ~RedDesktop() override { QGuiApplicationPrivate::platform_theme = former_; }

    QIcon fileIcon(const QFileInfo&, IconOptions) const override {
        QPixmap red(16, 16);
        red.fill(Qt::red);
        return red;
    }

private:
    QPlatformTheme* const former_;
};

TEST_F(Dressed, FilesHaveTheInstrumentsMarksNotTheDesktopsPictures) {
    const KivoraTest::CTemporaryFolder folder;
    KivoraTest::WriteFileBytes(folder / "song.mid", "x");
    const RedDesktop desktop;
    QFileDialog files(nullptr, {}, QString::fromStdString(folder.GetPath()));
    files.show();
    auto* const list = files.findChild<QListView*>("listView");
    ASSERT_NE(list, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([list] { return list->model()->rowCount(list->rootIndex()) == 1; }, 30000));
    const auto mark = [list] {
        const QModelIndex song = list->model()->index(0, 0, list->rootIndex());
        return song.data(Qt::DecorationRole).value<QIcon>().pixmap(QSize(16, 16), 1.0).toImage();
    };
    const QImage own = QApplication::style()->standardIcon(QStyle::SP_FileIcon).pixmap(QSize(16, 16), 1.0).toImage();
    EXPECT_TRUE(QTest::qWaitFor([&] { return mark() == own; }, 30000));
}

TEST_F(Dressed, TheContrastIsChosenOrTheDesktops) {
    InstrumentStyle::ChooseContrast(EContrast::kHigh);
    EXPECT_TRUE(InstrumentStyle::IsHighContrast());
    EXPECT_EQ(QApplication::palette(), InstrumentPalette::MakeHighContrast());
    EXPECT_EQ(QApplication::palette("QLineEdit"), InstrumentPalette::MakeHighContrast());
    InstrumentStyle::ChooseContrast(EContrast::kAsDesktop);
    EXPECT_FALSE(InstrumentStyle::IsHighContrast());
    EXPECT_EQ(QApplication::palette(), InstrumentPalette::Make());
    EXPECT_EQ(QApplication::palette("QLineEdit"), InstrumentPalette::MakeForFields());
    QIcon::setThemeName("HighContrast");
    InstrumentStyle::ChooseContrast(EContrast::kUsual);
    EXPECT_FALSE(InstrumentStyle::IsHighContrast());
    InstrumentStyle::ChooseContrast(EContrast::kAsDesktop);
    EXPECT_TRUE(InstrumentStyle::IsHighContrast());
    QIcon::setThemeName({});
    InstrumentStyle::ChooseContrast(EContrast::kAsDesktop);
    EXPECT_FALSE(InstrumentStyle::IsHighContrast());
}

TEST_F(Dressed, HighContrastIsHonoured) {
    QIcon::setThemeName("HighContrast");
    Dress();
    EXPECT_EQ(QApplication::palette(), InstrumentPalette::MakeHighContrast());
    EXPECT_EQ(QApplication::palette("QLineEdit"), InstrumentPalette::MakeHighContrast());
    QIcon::setThemeName({});
    QPalette desktop(Qt::black, Qt::white, Qt::white, Qt::darkGray, Qt::gray, Qt::black, Qt::black, Qt::white,
                     Qt::white);
    QApplication::setPalette(desktop);
    Dress();
    EXPECT_EQ(QApplication::palette(), InstrumentPalette::MakeHighContrast());
    QApplication::setPalette(InstrumentPalette::Make());
}

}  // namespace
