#include "app/RunningInstance.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <QDir>
#include <QGuiApplication>
#include <QTest>
#include <thread>

#include "support/TemporaryFolder.h"

namespace {

constexpr int kLimitMs = 30000;

/// A runtime folder of the test's own.
class RunningInstance : public testing::Test {
protected:
    RunningInstance() {
        qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(folder_.GetPath().string()));
        qunsetenv("XDG_ACTIVATION_TOKEN");
    }
    ~RunningInstance() override {
        runtime_.isNull() ? qunsetenv("XDG_RUNTIME_DIR") : qputenv("XDG_RUNTIME_DIR", runtime_);
        qunsetenv("XDG_ACTIVATION_TOKEN");
    }
    /// Another program hands the file over while this one goes on.
    bool Hand(const QString& path, const QString& display = ":77") {
        std::atomic<int> outcome = -1;
        std::thread other([&] { outcome = Kivora::HandToRunningInstance(path, display) ? 1 : 0; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return outcome >= 0; }, kLimitMs));
        other.join();
        return outcome == 1;
    }
    static void Listen(Kivora::FileReceiver& receiver, QStringList& received) {
        QObject::connect(&receiver, &Kivora::FileReceiver::FileReceived,
                         [&received](const QString& path) { received << path; });
    }

    KivoraTest::CTemporaryFolder folder_;

private:
    const QByteArray runtime_ = qgetenv("XDG_RUNTIME_DIR");
};

}  // namespace

TEST_F(RunningInstance, TakesAFileByItsWholePath) {
    EXPECT_FALSE(Hand("a")) << "nobody runs";
    Kivora::FileReceiver receiver(":77");
    ASSERT_TRUE(receiver.IsListening());
    QStringList received;
    Listen(receiver, received);
    EXPECT_TRUE(Hand("/a/Ночь.kivoraLXPreset"));
    EXPECT_TRUE(Hand("b"));
    EXPECT_EQ(received, QStringList({"/a/Ночь.kivoraLXPreset", QDir::current().absoluteFilePath("b")}));
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    qputenv("XDG_ACTIVATION_TOKEN", "token-1");
    EXPECT_TRUE(Hand("c"));
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token-1");
}

TEST_F(RunningInstance, IsAskedOnItsOwnDisplayAlone) {
    const Kivora::FileReceiver receiver(":77");
    EXPECT_FALSE(Hand("a", ":78"));
    EXPECT_FALSE(Hand("a", "/run/wayland-9"));
    const Kivora::FileReceiver other("/run/wayland-9");
    EXPECT_TRUE(other.IsListening());
    EXPECT_TRUE(Hand("a", "/run/wayland-9"));
}

TEST_F(RunningInstance, TheNextOneTakesItsTurnWhenTheFirstHasGone) {
    auto first = std::make_unique<Kivora::FileReceiver>(":77");
    Kivora::FileReceiver second(":77");
    QStringList received;
    Listen(second, received);
    EXPECT_FALSE(second.IsListening());
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_FALSE(second.IsListening());
    first.reset();
    EXPECT_FALSE(Hand("a"));
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_TRUE(second.IsListening());
    EXPECT_TRUE(Hand("/a"));
    EXPECT_EQ(received, QStringList("/a"));
}

TEST_F(RunningInstance, NeedsNoRuntimeFolder) {
    qunsetenv("XDG_RUNTIME_DIR");
    const Kivora::FileReceiver receiver(":77");
    EXPECT_FALSE(receiver.IsListening());
    EXPECT_FALSE(Hand("a"));
}

TEST_F(RunningInstance, OnADisplayOfItsOwnNobodyIsMet) {
    const Kivora::FileReceiver receiver("");
    EXPECT_FALSE(receiver.IsListening());
    EXPECT_FALSE(Hand("a", ""));
}
