// The about window and the legal information.
#include "ui/dialogs/About.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>

#include "locale/Locale.h"
#include "widget/ui/DialogTexts.h"

namespace {

class About : public testing::Test {
protected:
    About() { Kivora::SetLocale("en_US", false); }
    ~About() override { Kivora::SetLocale("en_US", false); }
    static QPushButton* Button(QWidget& window, const char* name) { return window.findChild<QPushButton*>(name); }
    static QString Caption(QWidget& window, const char* name) { return Button(window, name)->text().remove('&'); }
};

TEST_F(About, HasItsNameTitleIconAndPicture) {
    const kivoraAbout about;
    EXPECT_EQ(about.objectName(), "kivoraAboutClass");
    EXPECT_EQ(about.windowTitle(), "About");
    EXPECT_FALSE(about.windowIcon().pixmap(256).isNull());
    EXPECT_EQ(about.windowIcon().availableSizes().size(), 7);
    const QPixmap picture = about.findChild<QLabel*>("picture")->pixmap();
    EXPECT_EQ(picture.deviceIndependentSize(), QSizeF(480, 150));
    EXPECT_EQ(picture.devicePixelRatio(), qApp->devicePixelRatio());
}

TEST_F(About, ShowsTheVersionAndTheBuildDate) {
    QCoreApplication::setApplicationVersion("1.2.0");
    const kivoraAbout about;
    const QString text = about.findChild<QLabel*>("version")->text();
    static const QRegularExpression form("^Version: 1\\.2\\.0 \\([A-Z][a-z]{2} [0-3][0-9] 20[0-9]{2}\\)$");
    EXPECT_TRUE(form.match(text).hasMatch()) << text.toStdString();
}

TEST_F(About, CreditsAreThoseOfTheLanguageElseTheEnglishOnes) {
    EXPECT_EQ(kivoraAbout::creditsFile(), ":/Resources/Authors.html");
    kivoraAbout about;
    auto* credits = about.findChild<QTextBrowser*>("credits");
    EXPECT_TRUE(credits->toPlainText().contains("made by Brennholt")) << credits->toPlainText().toStdString();
    Kivora::SetLocale("ru_RU", false);
    EXPECT_EQ(kivoraAbout::creditsFile(), ":/Resources/Authors_ru.html");
    QCoreApplication::processEvents();
    QApplication::sendPostedEvents();
    const kivoraAbout russian;
    EXPECT_TRUE(russian.findChild<QTextBrowser*>("credits")->toPlainText().contains("Создатель — Brennholt"));
}

TEST_F(About, FollowsTheLanguageWhileItIsOpen) {
    kivoraAbout about;
    legalinfo legal;
    about.show();
    legal.show();
    Kivora::SetLocale("ru_RU", false);
    QCoreApplication::processEvents();
    EXPECT_EQ(legal.windowTitle(), "Правовая информация");
    EXPECT_EQ(Caption(legal, "closeButton"), "Закрыть");
    EXPECT_EQ(about.windowTitle(), "О программе");
    EXPECT_EQ(Caption(about, "closeButton"), "Закрыть");
    EXPECT_TRUE(about.findChild<QTextBrowser*>("credits")->toPlainText().contains("Brennholt"));
}

TEST_F(About, TheWebSiteIsTheOneOfTheLanguage) {
    kivoraAbout about;
    const QSignalSpy wanted(&about, &kivoraAbout::webSiteWanted);
    QTest::mouseClick(Button(about, "webSiteButton"), Qt::LeftButton);
    Kivora::SetLocale("ru_RU", false);
    QTest::mouseClick(Button(about, "webSiteButton"), Qt::LeftButton);
    ASSERT_EQ(wanted.count(), 2);
    EXPECT_EQ(wanted[0][0].toString(), "https://brennholt.example/kivora/en/");
    EXPECT_EQ(wanted[1][0].toString(), "https://brennholt.example/kivora/ru/");
}

TEST_F(About, TheLegalInformationOpensAndCloses) {
    kivoraAbout about;
    about.show();
    EXPECT_EQ(Caption(about, "legalButton"), "Copyright and Library Information");
    bool seen = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        auto* legal = qobject_cast<legalinfo*>(QApplication::activeModalWidget());
        if (legal == nullptr || seen) {
            return;
        }
        seen = true;
        EXPECT_EQ(legal->objectName(), "legalinfoClass");
        EXPECT_EQ(legal->windowTitle(), "Legal Information");
        const auto* text = legal->findChild<QTextBrowser*>("text");
        EXPECT_EQ(text->source(), QUrl("qrc:/Resources/Legal.html"));
        for (const char* name : {"Brennholt", "PortMidi", "FluidSynth", "Qt 6", "Inter", "Play", "Liberation"}) {
            EXPECT_TRUE(text->toPlainText().contains(name)) << name;
        }
        EXPECT_EQ(Caption(*legal, "closeButton"), "Close");
        QTest::mouseClick(Button(*legal, "closeButton"), Qt::LeftButton);
    });
    timer.start(1);
    QTest::mouseClick(Button(about, "legalButton"), Qt::LeftButton);
    EXPECT_TRUE(seen);
    QTest::mouseClick(Button(about, "closeButton"), Qt::LeftButton);
    EXPECT_FALSE(about.isVisible());
}

TEST_F(About, NothingIsClippedAndEverythingIsNamedInEitherLanguage) {
    for (const char* locale : {"ru_RU", "en_US"}) {
        Kivora::SetLocale(locale, false);
        kivoraAbout about;
        legalinfo legal;
        for (QDialog* const window : {static_cast<QDialog*>(&about), static_cast<QDialog*>(&legal)}) {
            window->show();
            ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
            EXPECT_EQ(ClippedTexts(*window), "") << locale;
            EXPECT_EQ(NamelessControls(*window), "") << locale;
            EXPECT_EQ(SharedMnemonics(*window), "") << locale;
            EXPECT_TRUE(Button(*window, "closeButton")->text().contains('&')) << locale;
        }
    }
}

TEST_F(About, EnterAndEscapeClose) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        kivoraAbout about;
        legalinfo legal;
        for (QDialog* const window : {static_cast<QDialog*>(&about), static_cast<QDialog*>(&legal)}) {
            window->show();
            window->activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(window));
            QTest::keyClick(QApplication::focusWidget(), key);
            EXPECT_FALSE(window->isVisible()) << window->objectName().toStdString();
        }
    }
}

}  // namespace
