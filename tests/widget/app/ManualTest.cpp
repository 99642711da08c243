// The manual explains what the panel has, and its charts and pictures are true.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSet>

#include "locale/Locale.h"
#include "piano/PCKeyTable.h"
#include "QtWidgets/piano/QPiano.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "QtWidgets/skin/QJogDial.h"
#include "ui/dialogs/KeyboardTest.h"
#include "ui/dialogs/midiSettings.h"
#include "ui/dialogs/PresetList.h"
#include "ui/KivoraWidget.h"

namespace {

class Manual : public testing::TestWithParam<const char*> {
protected:
    Manual() : text_(Read(GetParam())) { Kivora::SetLocale("en_US", false); }

    static QString Read(const QString& language) {
        QFile file(QString(KIVORA_HELP_DIR "/%1/index.html").arg(language));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
        return QString::fromUtf8(file.readAll());
    }
    static QStringList All(const QString& text, const char* expression) {
        QStringList found;
        auto matches = QRegularExpression(expression).globalMatch(text);
        while (matches.hasNext()) {
            found << matches.next().captured(1);
        }
        return found;
    }
    static QStringList Ids(const QString& text) { return All(text, " id=\"([^\"]+)\""); }

    const QString text_;
};

/// The names of what the user works or reads in a window; parts that Qt's own widgets are made of are left out.
QStringList ControlsOf(const QWidget& window) {
    QStringList names;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isControl =
            qobject_cast<const QAbstractButton*>(widget) != nullptr ||
            qobject_cast<const QAbstractSlider*>(widget) != nullptr ||
            qobject_cast<const QAbstractSpinBox*>(widget) != nullptr ||
            qobject_cast<const QAbstractItemView*>(widget) != nullptr ||
            qobject_cast<const QComboBox*>(widget) != nullptr || qobject_cast<const QLineEdit*>(widget) != nullptr ||
            qobject_cast<const QPiano*>(widget) != nullptr || qobject_cast<const QBlinkingLed*>(widget) != nullptr ||
            qobject_cast<const QJogDial*>(widget) != nullptr;
        const bool isPart = qobject_cast<const QComboBox*>(widget->parentWidget()) != nullptr ||
                            qobject_cast<const QAbstractSpinBox*>(widget->parentWidget()) != nullptr ||
                            widget->objectName().startsWith("qt_");
        if (isControl && !isPart && !widget->objectName().isEmpty()) {
            names << widget->objectName();
        }
    }
    return names;
}

TEST_P(Manual, ExplainsEveryControlOfThePanel) {
    const QStringList controls = ControlsOf(KivoraWidget(nullptr));
    EXPECT_GT(controls.size(), 30);
    for (const QString& name : controls) {
        EXPECT_TRUE(Ids(text_).contains(name)) << name.toStdString();
    }
}

TEST_P(Manual, ExplainsEveryControlOfTheDialogs) {
    const QStringList controls =
        ControlsOf(midiSettings(nullptr)) + ControlsOf(PresetList(nullptr, false)) + ControlsOf(KeyboardTest(nullptr));
    EXPECT_GT(controls.size(), 30);
    for (const QString& name : controls) {
        EXPECT_TRUE(Ids(text_).contains(name)) << name.toStdString();
    }
}

TEST_P(Manual, HasEachIdOnceAndAllLinksLead) {
    const QStringList ids = Ids(text_);
    EXPECT_EQ(QSet<QString>(ids.begin(), ids.end()).size(), ids.size());
    for (const QString& link : All(text_, "href=\"#([^\"]+)\"")) {
        EXPECT_TRUE(ids.contains(link)) << link.toStdString();
    }
}

TEST_P(Manual, HasTheSameSectionsAsTheOther) {
    EXPECT_EQ(Ids(text_), Ids(Read(QString(GetParam()) == "en" ? "ru" : "en")));
}

TEST_P(Manual, MarksStandOnWhatTheyExplain) {
    KivoraWidget panel(nullptr);
    static const QRegularExpression mark(
        "<a class=\"mark\" style=\"left:([0-9.]+)%;top:([0-9.]+)%\" href=\"#([^\"]+)\">([0-9]+)</a>");
    auto matches = mark.globalMatch(text_);
    int count = 0;
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        ++count;
        EXPECT_EQ(match.captured(4).toInt(), count) << "they are numbered as they come";
        const auto* widget = panel.findChild<QWidget*>(match.captured(3));
        if (widget != nullptr) {
            const QPoint at(qRound(match.captured(1).toDouble() / 100 * panel.sizeHint().width()),
                            qRound(match.captured(2).toDouble() / 100 * panel.sizeHint().height()));
            const QRect place(widget->mapTo(&panel, QPoint()), widget->size());
            EXPECT_TRUE(place.adjusted(-5, -5, 5, 5).contains(at)) << match.captured(3).toStdString();
        }
    }
    EXPECT_EQ(count, 24);
}

TEST_P(Manual, TheKeyChartsAreTrue) {
    Kivora::SetLocale("ru_RU", false);
    const Kivora::CLocalizedKeyMap map = Kivora::GetLocalizedKeyMap();
    Kivora::SetLocale("en_US", false);
    int charts = 0;
    for (const QString& chart : text_.split("<div class=\"chart\" data-layout=\"").mid(1)) {
        const bool russian = chart.startsWith("ru\"");
        const QString rows = chart.section("</div>\n</div>", 0, 0);
        ++charts;
        int playing = 0;
        static const QRegularExpression key(
            "<span class=\"key(| white| black)\"( data-note=\"([0-9]+)\")?>(<b>)?([^<]+)<");
        auto matches = key.globalMatch(rows);
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            QString cap = match.captured(5);
            cap.replace("&#x27;", "'").replace("&amp;", "&");
            const int typed = cap.toLower().at(0).unicode();
            const int character = russian ? map.Find(typed) : typed;
            const int note = match.captured(3).isEmpty() ? NK::Piano::TPCKeyEntry::kNone : match.captured(3).toInt();
            EXPECT_EQ(NK::Piano::GetPCKeyEntry(character).note, note) << cap.toStdString();
            playing += note != NK::Piano::TPCKeyEntry::kNone ? 1 : 0;
        }
        EXPECT_EQ(playing, 37);
    }
    EXPECT_EQ(charts, 2);
}

TEST_P(Manual, StandsBesideTheProgramWithItsPictures) {
    const QString folder = QString(KIVORA_BUILT_HELP_DIR "/%1/").arg(GetParam());
    for (const QString& file : All(text_, "(?:src|href)=\"([^#\"][^\":]*)\"")) {
        if (file.endsWith(".png") && !KIVORA_HELP_HAS_PICTURES) {
            continue;
        }
        EXPECT_TRUE(QFile::exists(folder + file)) << (folder + file).toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, Manual, testing::Values("en", "ru"),
                         [](const auto& test) { return std::string(test.param); });

}  // namespace
