// The program ends when the system asks it to.
#include "app/EndRequests.h"

#include <gtest/gtest.h>
#include <qpa/qwindowsysteminterface.h>
#include <signal.h>

#include <functional>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QSessionManager>
#include <QTimer>
#include <QWidget>

namespace {

using Kivora::EndRequests;

/// A window that does not want to be closed.
class Stubborn : public QWidget {
public:
    int asked = 0;

protected:
    void closeEvent(QCloseEvent* event) override {
        ++asked;
        event->ignore();
    }
};

class EndRequestsTest : public testing::Test {
protected:
    EndRequestsTest() : before_(signal(SIGHUP, SIG_DFL)) {
        window_.show();
        QObject::connect(&requests_, &EndRequests::SaveWanted, [this] { ++saves_; });
    }
    ~EndRequestsTest() override { signal(SIGHUP, before_); }

    /// The event loop as main() runs it; `action` is its first event.
    static int Run(const std::function<void()>& action) {
        QTimer::singleShot(0, qApp, action);
        return QApplication::exec();
    }
    static void TellOfTheSessionsEnd() {
        auto* const manager = qApp->findChild<QSessionManager*>();
        ASSERT_NE(manager, nullptr);
        emit qApp->commitDataRequest(*manager);
    }
    static void EndTheSession() {
        QWindowSystemInterface::handleApplicationTermination<QWindowSystemInterface::SynchronousDelivery>();
    }
    static void AskToQuit() {
        QEvent quit(QEvent::Quit);
        QCoreApplication::sendEvent(qApp, &quit);
    }

private:
    void (*before_)(int);

protected:
    EndRequests requests_;
    Stubborn window_;
    int saves_ = 0;
};

TEST_F(EndRequestsTest, ASignalEndsTheEventLoopAndNoWindowIsAsked) {
    EXPECT_FALSE(requests_.IsEndWanted());
    EXPECT_EQ(Run([] { raise(SIGTERM); }), 0);
    EXPECT_TRUE(requests_.IsEndWanted());
    EXPECT_EQ(window_.asked, 0);
    EXPECT_EQ(saves_, 0);
}

TEST_F(EndRequestsTest, AClosedTerminalEndsItToo) {
    EXPECT_EQ(Run([] { raise(SIGHUP); }), 0);
    EXPECT_TRUE(requests_.IsEndWanted());
}

TEST_F(EndRequestsTest, ADialogThatIsOpenIsEndedWithoutAnAnswer) {
    QDialog dialog;
    int result = QDialog::Accepted;
    EXPECT_EQ(Run([&] {
                  QTimer::singleShot(0, &dialog, [] { raise(SIGTERM); });
                  result = dialog.exec();
              }),
              0);
    EXPECT_EQ(result, QDialog::Rejected);
    EXPECT_TRUE(requests_.IsEndWanted());
}

TEST_F(EndRequestsTest, ABoxBeforeTheEventLoopIsEndedAndTheLoopCanBeLeftOut) {
    QDialog box;
    QTimer::singleShot(0, &box, [] { raise(SIGTERM); });
    EXPECT_EQ(box.exec(), QDialog::Rejected);
    EXPECT_TRUE(requests_.IsEndWanted());
    Run([] { QCoreApplication::exit(0); });  // the application object forgets that it was to end
}

TEST_F(EndRequestsTest, TheEndOfTheSessionSavesFirstAndEndsWhenItComes) {
    EXPECT_EQ(Run([this] {
                  TellOfTheSessionsEnd();
                  EXPECT_EQ(saves_, 1);
                  EXPECT_FALSE(requests_.IsEndWanted()) << "it may go on";
                  EndTheSession();
              }),
              0);
    EXPECT_TRUE(requests_.IsEndWanted());
    EXPECT_EQ(window_.asked, 0);
    EXPECT_EQ(saves_, 1);
}

TEST_F(EndRequestsTest, ASessionThatEndsWithoutHavingThisSavedAsksNobody) {
    EXPECT_EQ(Run([this] {
                  EndTheSession();
                  if (!requests_.IsEndWanted()) {
                      QCoreApplication::exit(3);
                  }
              }),
              0);
    EXPECT_TRUE(requests_.IsEndWanted());
    EXPECT_EQ(window_.asked, 0);
}

TEST_F(EndRequestsTest, QuittingAfterASessionThatWentOnAsksTheWindows) {
    EXPECT_EQ(Run([this] {
                  TellOfTheSessionsEnd();
                  AskToQuit();
                  EXPECT_FALSE(requests_.IsEndWanted());
                  EXPECT_EQ(window_.asked, 1);
                  QCoreApplication::exit(3);
              }),
              3);
}

TEST_F(EndRequestsTest, QuittingWithoutTheSessionsEndAsksTheWindows) {
    EXPECT_EQ(Run([this] {
                  AskToQuit();
                  EXPECT_FALSE(requests_.IsEndWanted());
                  EXPECT_EQ(window_.asked, 1);
                  QCoreApplication::exit(3);
              }),
              3);
}

}  // namespace
