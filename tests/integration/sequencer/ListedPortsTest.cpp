// Which ports the built program lists where there is a sequencer.
#include <gmock/gmock.h>
#include <QProcess>

#include "integration/sequencer/RequireSequencer.h"
#include "support/TemporaryFolder.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class ListedPorts : public testing::Test {
protected:
    void SetUp() override { KivoraTest::RequireSequencer(); }

    std::string List(const char* backend) {
        constexpr int kLimitMs = 60000;
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert("HOME", QString::fromStdString(folder_.GetPath().native()));
        variables.remove("XDG_DATA_HOME");
        variables.remove("KIVORA_MIDI");
        if (backend != nullptr) {
            variables.insert("KIVORA_MIDI", backend);
        }
        QProcess program;
        program.setProcessEnvironment(variables);
        program.start(KIVORA_PROGRAM, {"--locale", "en_US", "--list-ports"});
        return program.waitForFinished(kLimitMs) ? "\n" + program.readAllStandardOutput().toStdString() : "no end";
    }

private:
    KivoraTest::CTemporaryFolder folder_;
};

TEST_F(ListedPorts, TheSequencersAreListedOnceAndPortMidisAreNot) {
    const KivoraTest::CSequencerClient client("Test synth", "Test keyboard");
    const std::string listed = List(nullptr);
    for (const char* line :
         {"\nInput: All MIDI keyboards\n", "\nInput: Test keyboard\n", "\nOutput: Test synth\n",
          "\nInput: Other programs (Kivora LX in)\n", "\nOutput: Other programs (Kivora LX out)\n"}) {
        EXPECT_THAT(listed, HasSubstr(line));
    }
    EXPECT_THAT(listed, Not(HasSubstr("(2)")));
}

TEST_F(ListedPorts, PortMidisAreListedWhereItIsWanted) {
    const KivoraTest::CSequencerClient client("Test synth", "Test keyboard");
    const std::string listed = List("portmidi");
    EXPECT_THAT(listed, HasSubstr("\nInput: Test keyboard\n"));
    EXPECT_THAT(listed, HasSubstr("\nOutput: Test synth\n"));
    EXPECT_THAT(listed, Not(HasSubstr("All MIDI keyboards")));
    EXPECT_THAT(listed, Not(HasSubstr("Other programs")));
}

}  // namespace
