#include "QtWidgets/piano/NoteNamesQt.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QTranslator>

namespace {

/// Marks each text with its context.
class CMarkingTranslator : public QTranslator {
public:
    CMarkingTranslator() { QCoreApplication::installTranslator(this); }
    ~CMarkingTranslator() override { QCoreApplication::removeTranslator(this); }
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* text, const char*, int) const override {
        return QStringLiteral("[%1|%2]").arg(context, text);
    }
};

TEST(NoteNamesQt, Note61WithFlatsAndSharps) {
    EXPECT_EQ(NoteNameWithOctave(61, false, -1, true), "Db4");
    EXPECT_EQ(NoteNameWithOctave(61, false, -1, false), "C#4");
    EXPECT_EQ(NoteNameWithOctave(0, false, -1, false), "C-1");
    EXPECT_EQ(NoteNameWithOctave(60, true, 0, false), "C5");
    EXPECT_EQ(NoteName(70, true, true), "Bb");
}

TEST(NoteNamesQt, NoteFrom128) {
    EXPECT_EQ(NoteName(128, false, false), "INVALID NOTE NUMBER: 128");
    EXPECT_EQ(NoteNameWithOctave(200, true, -1, false), "INVALID NOTE NUMBER: 200");
    EXPECT_EQ(NoteName(-1, true, false), "INVALID NOTE NUMBER: -1");
}

TEST(NoteNamesQt, Programs) {
    EXPECT_EQ(GMProgramName(0), "Acoustic Grand Piano");
    EXPECT_EQ(GMProgramName(127), "Gunshot");
    EXPECT_EQ(GMProgramName(128), "INVALID PATCH NUMBER: 128");
    EXPECT_EQ(GMProgramName(-1), "INVALID PATCH NUMBER: -1");
    EXPECT_EQ(GMDrumKitName(), "Standard Drum Kit");
}

TEST(NoteNamesQt, NamesPassThroughTheCatalogueInTheirContexts) {
    const CMarkingTranslator translator;
    EXPECT_EQ(NoteName(60, false, false), "[Note name|C]");
    EXPECT_EQ(NoteName(61, true, true), "[One-letter note name|Db]");
    EXPECT_EQ(NoteNameWithOctave(61, true, -1, false), "[One-letter note name|C#]4");
    EXPECT_EQ(GMProgramName(4), "[GM|Rhodes Piano]");
    EXPECT_EQ(GMDrumKitName(), "[GM|Standard Drum Kit]");
}

}  // namespace
