// A piano whose signals are written down in order.
#pragma once

#include <gtest/gtest.h>
#include <QApplication>
#include <QKeyEvent>
#include <QTest>

#include <string>
#include <vector>

#include "QtWidgets/piano/QPiano.h"

using CSignals = std::vector<std::string>;

/// Keys 60..71 (60..72 less the last C) on 140 x 100 pixels: a white key is 20 wide, a black key 10 wide and 67 long.
class PianoTest : public testing::Test {
protected:
    PianoTest() {
        piano_.resize(140, 100);
        piano_.SetKeys(60, 12);
        QObject::connect(&piano_, &QPiano::geometryChanged, [this] { log_.emplace_back("geometry"); });
        QObject::connect(&piano_, qOverload<BYTE>(&QPiano::keyPressed), [this](BYTE key) { Note("pressed", key); });
        QObject::connect(&piano_, qOverload<BYTE, BYTE>(&QPiano::keyPressed),
                         [this](BYTE key, BYTE velocity) { Note("pressed", key, velocity); });
        QObject::connect(&piano_, &QPiano::keyAfterTouch,
                         [this](BYTE key, BYTE velocity) { Note("touch", key, velocity); });
        QObject::connect(&piano_, &QPiano::keyReleased, [this](BYTE key) { Note("released", key); });
        QObject::connect(&piano_, &QPiano::cursorChanged, [this](BYTE key) { Note("cursor", key); });
    }

    /// What was emitted since the last call.
    CSignals Signals() { return std::exchange(log_, {}); }

    /// Shows the piano with its cursor and the focus.
    void ShowWithCursor() {
        piano_.setEnableCursor(true);
        piano_.show();
        piano_.activateWindow();
        piano_.setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&piano_));
        ASSERT_TRUE(piano_.isCursorShown());
        Signals();
    }

    /// Sends a key event; true if it was accepted.
    bool SendKey(QEvent::Type type, int code, bool autoRepeat = false, quint32 scanCode = 0, quint64 timeMs = 0) {
        QKeyEvent event(type, code, Qt::NoModifier, scanCode, 0, 0, QString(), autoRepeat);
        event.setTimestamp(timeMs);
        event.ignore();
        QCoreApplication::sendEvent(&piano_, &event);
        return event.isAccepted();
    }
    void Type(int code) {
        SendKey(QEvent::KeyPress, code);
        SendKey(QEvent::KeyRelease, code);
    }

    QPiano piano_;

private:
    void Note(const char* signal, BYTE key) { log_.push_back(std::string(signal) + " " + std::to_string(key)); }
    void Note(const char* signal, BYTE key, BYTE velocity) {
        Note(signal, key);
        log_.back() += " " + std::to_string(velocity);
    }

    CSignals log_;
};
